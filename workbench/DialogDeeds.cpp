#include "DialogDeeds.h"

#include <utility>

#include "UserActions.h"

namespace marquell::workbench {

using qelhost::Host;

DialogDeeds::DialogDeeds(Workspace& workspace, std::function<bool()> commitTyped)
    : m_workspace(workspace), m_commitTyped(std::move(commitTyped)) {}

void DialogDeeds::Press(LgIndex_t button) {
  AfterTyped([button](Host& host) { qelhost::PressControl(host, button); });
}

void DialogDeeds::Toggle(LgIndex_t toggle, bool on) {
  AfterTyped([toggle, on](Host& host) { qelhost::ToggleControl(host, toggle, on); });
}

void DialogDeeds::Choose(LgIndex_t menuOrRadioBox, LgIndex_t item) {
  AfterTyped(
      [menuOrRadioBox, item](Host& host) { qelhost::ChooseItem(host, menuOrRadioBox, item); });
}

void DialogDeeds::TurnToPage(LgIndex_t tab, LgIndex_t page) {
  AfterTyped([tab, page](Host& host) { qelhost::TurnToPage(host, tab, page); });
}

void DialogDeeds::Spin(LgIndex_t field, bool up) {
  AfterTyped([field, up](Host& host) { qelhost::Spin(host, field, up); });
}

void DialogDeeds::Enter(LgIndex_t field, const std::string& text) {
  m_workspace.Do([field, text](Host& host) { qelhost::EnterText(host, field, text); });
}

void DialogDeeds::AskForHelp(LgIndex_t dialog) {
  m_workspace.Do([dialog](Host& host) { qelhost::AskForHelp(host, dialog); });
}

void DialogDeeds::CloseWindow(LgIndex_t dialog) {
  m_workspace.Do([dialog](Host& host) { qelhost::CloseDialog(host, dialog); });
}

/// Also when it is forgotten the dialog shows the model again: the toolkit has moved on already.
void DialogDeeds::AfterTyped(const Deed& deed) {
  if (m_commitTyped()) {
    m_workspace.Do(deed);
  } else {
    emit m_workspace.Changed();
  }
}

}  // namespace marquell::workbench
