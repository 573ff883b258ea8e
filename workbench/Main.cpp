// marquell-workbench: the desktop application.
#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QTimer>

#include <spdlog/spdlog.h>

#include <clocale>

#include "CrashLog.h"
#include "Host.h"
#include "Icons.h"
#include "JournalPanel.h"
#include "MainWindow.h"
#include "PlotCanvas.h"
#include "TakeUp.h"
#include "Workspace.h"

namespace {

using marquell::workbench::MainWindow;

struct Arguments {
  QString file;
  QString journal;
  QStringList addOns;
  bool quitsAfterPicture = false;
};

Arguments ReadArguments(const QApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QObject::tr("Pick cells or nodes of simulation results and alter or hide them."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument("file", QObject::tr("Data set to show"), "[file]");
  const QCommandLineOption journal("journal", QObject::tr("Journal to open beside the plot"),
                                   "file");
  const QCommandLineOption addOn(
      "add-on", QObject::tr("Add-on to load instead of those found by themselves"), "file");
  QCommandLineOption quit("quit-after-picture",
                          QObject::tr("Quit when the file is drawn, for measuring"));
  quit.setFlags(QCommandLineOption::HiddenFromHelp);
  parser.addOption(quit);
  parser.addOption(journal);
  parser.addOption(addOn);
  parser.process(application);
  if (parser.positionalArguments().size() > 1) {
    qCritical("marquell-workbench: one file at a time; more are opened from the menu");
    constexpr int kWrongCommandLine = 2;
    std::exit(kWrongCommandLine);
  }
  return {parser.positionalArguments().value(0), parser.value(journal), parser.values(addOn),
          parser.isSet(quit)};
}

/// One after the other, so that one that fails does not keep the others out.
void LoadAddOns(MainWindow& window, qelhost::Host& host, const QStringList& files) {
  std::vector<std::string> all;
  for (const QString& file : files) all.push_back(file.toStdString());
  if (all.empty()) all = qelhost::AddOnFilesToLoad();
  for (const std::string& file : all) {
    try {
      host.LoadAddOns({file});
    } catch (const std::exception& e) {
      window.tellFailure(QString::fromStdString(e.what()));
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  QSurfaceFormat::setDefaultFormat(QVTKOpenGLNativeWidget::defaultFormat());
  QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
  QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
  QApplication application(argc, argv);
  // Numbers in journals and fields have a point, whatever the desktop's language.
  std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale(QLocale::system().language()));
  QCoreApplication::setOrganizationName("Marquell");
  QCoreApplication::setApplicationName("Workbench");
  QCoreApplication::setApplicationVersion(MARQUELL_VERSION);
  QGuiApplication::setDesktopFileName("marquell-workbench");
  const Arguments arguments = ReadArguments(application);

  qelhost::Host& host = qelhost::Host::Instance();
  host.history.isKept = true;
  marquell::workbench::Workspace workspace(host);
  MainWindow window(workspace, marquell::workbench::MakePlotCanvas);
  window.RestoreSettings();
  auto& crashLog = window.KeepCrashLog(marquell::workbench::CrashLog::DefaultFolder());
  window.show();
  QTimer::singleShot(0, &window, [&] {
    LoadAddOns(window, host, arguments.addOns);
    workspace.Do([](qelhost::Host& its) { its.idle.Run(); });
    const bool isTakenUp = OfferLostWork(workspace, window.Files(), crashLog, &window);
    if (!isTakenUp && !arguments.file.isEmpty()) window.Files().Open(arguments.file);
    if (!arguments.journal.isEmpty()) window.Journal().OpenFile(arguments.journal);
    if (arguments.quitsAfterPicture) {
      window.repaint();
      QCoreApplication::processEvents();
      QCoreApplication::quit();
    }
  });
  return QApplication::exec();
}
