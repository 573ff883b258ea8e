// The zones of the plot, to show and to hide.
#pragma once

#include <QTreeWidget>

#include "Workspace.h"

namespace marquell::workbench {

class ZonesPanel : public QTreeWidget {
  Q_OBJECT

 public:
  explicit ZonesPanel(Workspace& workspace, QWidget* parent = nullptr);

  /// Brings the list to the host's state; rows that did not change stay as they are.
  void Follow();

 private:
  void Rebuild(const qelhost::DataSet& data);
  void TakeCheck(QTreeWidgetItem* item);

  Workspace& m_workspace;
};

}  // namespace marquell::workbench
