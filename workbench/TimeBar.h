// The slider of time steps.
#pragma once

#include <QLabel>
#include <QSlider>
#include <QToolBar>

#include <vector>

#include "Workspace.h"

namespace marquell::workbench {

/// Greyed where the data have no steps.
class TimeBar : public QToolBar {
  Q_OBJECT

 public:
  explicit TimeBar(Workspace& workspace, QWidget* parent = nullptr);

  void Follow();

 private:
  void Take(int step);

  Workspace& m_workspace;
  QSlider* m_slider;
  QLabel* m_label;
  QAction* m_previous;
  QAction* m_next;
  std::vector<double> m_times;
};

}  // namespace marquell::workbench
