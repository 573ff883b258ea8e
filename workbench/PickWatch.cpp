#include "PickWatch.h"

namespace marquell::workbench {

PickWatch::PickWatch(Workspace& workspace, PlotArea& plot, QObject* parent)
    : QObject(parent), m_workspace(workspace), m_plot(plot) {
  m_timer.setSingleShot(true);
  connect(&m_timer, &QTimer::timeout, this, &PickWatch::Ask);
  connect(&workspace, &Workspace::Changed, this, [this] { m_timer.start(0); });
}

void PickWatch::Ask() {
  if (m_workspace.IsBusy()) {
    constexpr int kLookAgainMs = 50;
    m_timer.start(kLookAgainMs);
    return;
  }
  m_preview = qelhost::AskForPick(m_workspace.TheHost());
  m_plot.ShowPreview(m_preview);
  emit Counted(QString::fromStdString(qelhost::Describe(m_preview)));
}

}  // namespace marquell::workbench
