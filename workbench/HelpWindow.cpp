#include "HelpWindow.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QUrl>

namespace marquell::workbench {

QString HelpFile(const QString& page) {
  const QString program = QCoreApplication::applicationDirPath();
  for (const QString& folder :
       {qEnvironmentVariable("MARQUELL_HELP_PATH"), program + "/../share/marquell/help",
        program + "/../share/doc/marquell/help"}) {
    const QFileInfo file(folder + "/" + page);
    if (!folder.isEmpty() && file.isFile()) return file.canonicalFilePath();
  }
  return {};
}

HelpWindow::HelpWindow(Workspace& workspace, QWidget* parent)
    : QMainWindow(parent), m_workspace(workspace), m_browser(new QTextBrowser(this)) {
  setObjectName("help");
  setWindowTitle(tr("Marquell Help"));
  m_browser->setOpenExternalLinks(false);
  setCentralWidget(m_browser);
  resize(820, 640);
}

void HelpWindow::Follow() {
  const auto& asked = m_workspace.TheHost().helpAsked;
  if (asked.size() <= m_shownCount) return;
  m_shownCount = asked.size();
  ShowPage(QString::fromStdString(asked.back()));
}

void HelpWindow::ShowPage(const QString& page) {
  const QString file = HelpFile(page);
  if (file.isEmpty()) {
    emit m_workspace.Failed(tr("The help page %1 is not installed.").arg(page));
    return;
  }
  m_browser->setSource(QUrl::fromLocalFile(file));
  show();
  raise();
}

}  // namespace marquell::workbench
