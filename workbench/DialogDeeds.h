// What a user does in an add-on's dialog, as deeds of the workspace.
#pragma once

#include <functional>
#include <string>

#include "Workspace.h"

namespace marquell::workbench {

/// What is typed somewhere in the dialog is entered before anything else is done there. When that
/// brings up a message the user's click is forgotten: what it was to work on is not there.
class DialogDeeds {
 public:
  /// commitTyped: enters what is typed and answers whether the user may go on.
  DialogDeeds(Workspace& workspace, std::function<bool()> commitTyped);

  void Press(LgIndex_t button);
  void Toggle(LgIndex_t toggle, bool on);
  void Choose(LgIndex_t menuOrRadioBox, LgIndex_t item);
  void TurnToPage(LgIndex_t tab, LgIndex_t page);
  void Spin(LgIndex_t field, bool up);
  void Enter(LgIndex_t field, const std::string& text);
  void AskForHelp(LgIndex_t dialog);
  void CloseWindow(LgIndex_t dialog);

  const qelhost::DialogModel& Model() const { return m_workspace.TheHost().dialogs; }

 private:
  using Deed = std::function<void(qelhost::Host&)>;
  void AfterTyped(const Deed& deed);

  Workspace& m_workspace;
  std::function<bool()> m_commitTyped;
};

}  // namespace marquell::workbench
