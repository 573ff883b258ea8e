// What colours the plot.
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QToolBar>

#include "LookSettings.h"
#include "Workspace.h"

namespace marquell::workbench {

/// Chooses the variable, the colours and their range.
class LookBar : public QToolBar {
  Q_OBJECT

 public:
  LookBar(Workspace& workspace, LookSettings& look, QWidget* parent = nullptr);

  void Follow();

 private:
  void TakeVariable(int place);
  /// typed: the end that the user has entered.
  void TakeRange(const QLineEdit& typed);
  void FollowVariables(const qelhost::Frame* frame);

  Workspace& m_workspace;
  LookSettings& m_look;
  QComboBox* m_variable;
  QComboBox* m_colours;
  QLineEdit* m_min;
  QLineEdit* m_max;
  QAction* m_automatic;
};

}  // namespace marquell::workbench
