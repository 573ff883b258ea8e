// The windows of the add-ons' dialogs.
#pragma once

#include <QObject>

#include <map>

#include "DialogWindow.h"

namespace marquell::workbench {

/// Opens a window for a dialog when it is up for the first time, and keeps all of them in step with
/// the model. The windows belong to their parent and stay above it.
class DialogWindows : public QObject {
  Q_OBJECT

 public:
  DialogWindows(Workspace& workspace, QWidget* parent);

  /// Null when the dialog was never up.
  DialogWindow* WindowOf(LgIndex_t dialog) const;
  /// Brings the dialogs that are up to the front: for a user who asks for one that he has already.
  void Raise();
  /// Enters what stands in fields and was not entered yet. False when a message came up about it.
  bool CommitTyped();
  void Sync();

 private:
  Workspace& m_workspace;
  QWidget* m_parent;
  std::map<LgIndex_t, DialogWindow*> m_windows;
};

}  // namespace marquell::workbench
