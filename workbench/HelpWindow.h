// The help pages of add-ons.
#pragma once

#include <QMainWindow>
#include <QTextBrowser>

#include "Workspace.h"

namespace marquell::workbench {

/// Where help pages lie: MARQUELL_HELP_PATH, or where the program was built or installed. Empty
/// when the page is in none of these.
QString HelpFile(const QString& page);

/// Shows the page that an add-on asked for last.
class HelpWindow : public QMainWindow {
  Q_OBJECT

 public:
  HelpWindow(Workspace& workspace, QWidget* parent);
  /// Shows the page if one was asked for since the last time.
  void Follow();
  void ShowPage(const QString& page);

 private:
  Workspace& m_workspace;
  QTextBrowser* m_browser;
  std::size_t m_shownCount = 0;
};

}  // namespace marquell::workbench
