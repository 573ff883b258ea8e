#include "DialogWindows.h"

namespace marquell::workbench {

using qelhost::ControlKind;
using qelhost::DialogModel;

DialogWindows::DialogWindows(Workspace& workspace, QWidget* parent)
    : QObject(parent), m_workspace(workspace), m_parent(parent) {
  connect(&workspace, &Workspace::Changed, this, &DialogWindows::Sync);
}

DialogWindow* DialogWindows::WindowOf(LgIndex_t dialog) const {
  const auto found = m_windows.find(dialog);
  return found == m_windows.end() ? nullptr : found->second;
}

void DialogWindows::Raise() {
  for (const auto& [dialog, window] : m_windows) {
    if (!window->isVisible()) continue;
    window->raise();
    window->activateWindow();
  }
}

bool DialogWindows::CommitTyped() {
  bool isQuiet = true;
  for (const auto& [dialog, window] : m_windows) isQuiet = window->CommitTyped() && isQuiet;
  return isQuiet;
}

void DialogWindows::Sync() {
  const DialogModel& model = m_workspace.TheHost().dialogs;
  for (LgIndex_t id = 1; model.Find(id) != nullptr; ++id) {
    if (model.Find(id)->kind != ControlKind::Dialog) continue;
    const auto window = m_windows.find(id);
    if (window != m_windows.end()) {
      window->second->Sync();
    } else if (model.IsUp(id)) {
      m_windows[id] = new DialogWindow(m_workspace, id, m_parent);
    }
  }
}

}  // namespace marquell::workbench
