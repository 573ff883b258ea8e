#include "MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QSettings>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

#include "CrashLog.h"
#include "DialogWindows.h"
#include "HelpWindow.h"
#include "JournalPanel.h"
#include "LookBar.h"
#include "MenuBar.h"
#include "PendingArray.h"
#include "PickWatch.h"
#include "TimeBar.h"
#include "WindowMessages.h"
#include "ZonesPanel.h"

namespace marquell::workbench {

namespace {

constexpr int kMessageMs = 8000;

QDockWidget* MakeDock(QMainWindow* window, const char* name, const QString& title, QWidget* content,
                      Qt::DockWidgetArea area) {
  auto* const dock = new QDockWidget(title, window);
  dock->setObjectName(name);
  dock->setWidget(content);
  window->addDockWidget(area, dock);
  return dock;
}

}  // namespace

MainWindow::MainWindow(Workspace& workspace, const MakePlotArea& makePlot)
    : m_workspace(workspace), m_documents(new Documents(workspace, this)) {
  setObjectName("workbench");
  setWindowIcon(IconOf(Glyph::Application));
  setAcceptDrops(true);
  resize(1280, 800);
  tellFailure = [this](const QString& reason) {
    QMessageBox box(QMessageBox::Warning, tr("Marquell Workbench"), reason, QMessageBox::Ok, this);
    // Names of files and arrays may look like marks.
    box.setTextFormat(Qt::PlainText);
    box.exec();
  };
  mayForgetJournal = [this] {
    return QMessageBox::question(this, tr("Unsaved journal"),
                                 tr("The recorded journal is not saved. Quit without it?"),
                                 QMessageBox::Discard | QMessageBox::Cancel,
                                 QMessageBox::Cancel) == QMessageBox::Discard;
  };
  BuildCentre(makePlot);
  BuildPanels();
  BuildMenus();
  BuildToolBars();
  BuildStatusBar();
  ConnectHost();
  Follow();
}

MainWindow::~MainWindow() { ForgetWindowMessages(m_workspace.TheHost()); }

void MainWindow::BuildCentre(const MakePlotArea& makePlot) {
  m_plot = makePlot(m_workspace, m_look);
  m_frames = new QTabBar;
  m_frames->setObjectName("frames");
  m_frames->setExpanding(false);
  m_frames->setDocumentMode(true);
  connect(m_frames, &QTabBar::currentChanged, this, [this](int tab) {
    if (tab >= 0) m_workspace.Act("$!FRAME " + std::to_string(tab + 1));
  });
  auto* const centre = new QWidget;
  auto* const layout = new QVBoxLayout(centre);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_frames);
  layout->addWidget(m_plot->Widget(), 1);
  setCentralWidget(centre);
}

void MainWindow::BuildPanels() {
  m_zones = new ZonesPanel(m_workspace);
  m_journal = new JournalPanel(m_workspace);
  MakeDock(this, "zonesDock", tr("Zones"), m_zones, Qt::LeftDockWidgetArea);
  QDockWidget* const journal =
      MakeDock(this, "journalDock", tr("Journal"), m_journal, Qt::LeftDockWidgetArea);
  constexpr int kPanelCharacters = 60;
  resizeDocks({journal}, {kPanelCharacters * fontMetrics().averageCharWidth()}, Qt::Horizontal);
  m_dialogs = new DialogWindows(m_workspace, this);
  m_help = new HelpWindow(m_workspace, this);
  m_pickWatch = new PickWatch(m_workspace, *m_plot, this);
}

void MainWindow::BuildStatusBar() {
  m_pointed = new QLabel;
  m_probed = new QLabel;
  m_counted = new QLabel;
  m_pointed->setObjectName("pointed");
  m_probed->setObjectName("probed");
  m_counted->setObjectName("counted");
  m_probed->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  // Long read-outs are cut off rather than widening the window; the tool tip has all of them.
  m_probed->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  QFont bold = m_counted->font();
  bold.setBold(true);
  m_counted->setFont(bold);
  m_counted->setToolTip(tr("What applying the pick in hand would change"));
  statusBar()->addWidget(m_probed, 1);
  statusBar()->addPermanentWidget(m_counted);
  statusBar()->addPermanentWidget(m_pointed);
  m_plot->onPointed = [this](const std::string& text) {
    m_pointed->setText(QString::fromStdString(text));
  };
  m_plot->onProbed = [this](const std::string& text) { SayProbed(QString::fromStdString(text)); };
  connect(m_pickWatch, &PickWatch::Counted, m_counted, &QLabel::setText);
}

void MainWindow::ConnectHost() {
  ShowMessagesIn(m_workspace.TheHost(), this);
  connect(&m_workspace, &Workspace::Changed, this, &MainWindow::Follow);
  connect(&m_workspace, &Workspace::Failed, this,
          [this](const QString& reason) { tellFailure(reason); });
  connect(m_documents, &Documents::RecentChanged, this, &MainWindow::FollowRecent);
  connect(m_documents, &Documents::Said, this,
          [this](const QString& text) { statusBar()->showMessage(text, kMessageMs); });
}

CrashLog& MainWindow::KeepCrashLog(const QString& folder) {
  m_crashLog = new CrashLog(m_workspace, folder, this);
  connect(m_documents, &Documents::Opened, m_crashLog, &CrashLog::FileOpened);
  connect(m_documents, &Documents::Saved, m_crashLog, &CrashLog::FileSaved);
  connect(m_documents, &Documents::Closed, m_crashLog, &CrashLog::End);
  connect(m_crashLog, &CrashLog::CannotKeep, this, [this](const QString& reason) {
    statusBar()->showMessage(tr("What you do is not kept for the case of a crash: %1").arg(reason));
  });
  return *m_crashLog;
}

void MainWindow::Follow() {
  qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  if (frame != nullptr) {
    ChooseContourVariable(*frame);
    ForgoUnreadableColours(*frame);
  }
  FollowFrames();
  FollowTitle();
  FollowHistory();
  m_zones->Follow();
  m_lookBar->Follow();
  m_timeBar->Follow();
  m_modes->Follow();
  m_layers->Follow();
  m_addOnMenus->Follow();
  m_help->Follow();
  FollowProbe();
  m_plot->Follow();
}

/// What was read out goes with its data; where an add-on waits for a click it says on what.
void MainWindow::FollowProbe() {
  const qelhost::Host& host = m_workspace.TheHost();
  const qelhost::Frame* const frame = host.frames.Active();
  const bool hasData = frame != nullptr && frame->Data() != nullptr;
  const QelUniqueID_t data = hasData ? frame->Data()->Id() : 0;
  const bool isAsked = host.interaction.probeCallback != nullptr;
  const QString instruction =
      isAsked ? QString::fromStdString(host.interaction.probeInstruction) : QString();
  if (instruction == m_instruction && data == m_probedData) return;
  m_instruction = instruction;
  m_probedData = data;
  SayProbed(instruction);
}

void MainWindow::SayProbed(const QString& text) {
  m_probed->setText(text);
  m_probed->setToolTip(text);
}

/// Values that cannot be read colour nothing; the user is told once and may choose others. Other
/// data are coloured again.
void MainWindow::ForgoUnreadableColours(qelhost::Frame& frame) {
  const QelUniqueID_t data = frame.Data() == nullptr ? 0 : frame.Data()->Id();
  if (m_uncoloured != 0 && data != m_uncoloured) {
    m_look.isColoured = true;
    m_uncoloured = 0;
  }
  try {
    LookOf(frame, m_look);
  } catch (const qelhost::ValuesError& e) {
    m_look.isColoured = false;
    m_uncoloured = data;
    m_workspace.TheHost().unreadableValues = e.what();
  }
}

void MainWindow::FollowTitle() {
  const qelhost::Host& host = m_workspace.TheHost();
  const qelhost::Frame* const frame = host.frames.Active();
  const bool hasData = frame != nullptr && frame->Data() != nullptr;
  const QString name =
      hasData ? QFileInfo(QString::fromStdString(frame->fileName)).fileName() : QString();
  setWindowTitle(hasData ? tr("%1[*] - Marquell Workbench").arg(name)
                         : tr("Marquell Workbench[*]"));
  bool isUnsaved = false;
  for (LgIndex_t n = 1; n <= host.frames.Count(); ++n) {
    isUnsaved = isUnsaved || m_documents->IsUnsaved(*host.frames.At(n));
  }
  setWindowModified(isUnsaved);
  for (const char* const name :
       {"save", "saveAs", "close", "exportPicture", "fit", "alongX", "alongY", "alongZ", "corner",
        "plot2d", "plot3d", "add", "addOrientation"}) {
    if (QAction* const action = ActionNamed(this, name)) action->setEnabled(hasData);
  }
  const bool isVolume = hasData && frame->plotType == PlotType_Cartesian3D;
  ActionNamed(this, "plot3d")->setChecked(isVolume);
  ActionNamed(this, "plot2d")->setChecked(hasData && !isVolume);
  for (const char* const name : {"alongX", "alongY", "alongZ", "corner"}) {
    ActionNamed(this, name)->setEnabled(isVolume);
  }
  ActionNamed(this, "deleteGeometry")->setEnabled(hasData && !frame->picked.empty());
}

void MainWindow::FollowHistory() {
  qelhost::Host& host = m_workspace.TheHost();
  if (host.history.TooLargeCount() > m_tooLargeCount) {
    m_tooLargeCount = host.history.TooLargeCount();
    statusBar()->showMessage(tr("This step is too large to be undone"), kMessageMs);
  }
  const qelhost::Frame* const frame = host.frames.Active();
  const bool hasData = frame != nullptr && frame->Data() != nullptr;
  const auto show = [this](const char* name, const QString& plain, const QString& named,
                           const std::string* step) {
    QAction* const action = ActionNamed(this, name);
    action->setEnabled(step != nullptr);
    action->setText(step == nullptr ? plain : named.arg(QString::fromStdString(*step)));
  };
  show("undo", tr("&Undo"), tr("&Undo \"%1\""),
       hasData ? host.history.UndoName(frame->Data()->Id()) : nullptr);
  show("redo", tr("&Redo"), tr("&Redo \"%1\""),
       hasData ? host.history.RedoName(frame->Data()->Id()) : nullptr);
}

void MainWindow::FollowFrames() {
  const qelhost::FrameList& frames = m_workspace.TheHost().frames;
  const QSignalBlocker quiet(m_frames);
  while (m_frames->count() > frames.Count()) m_frames->removeTab(m_frames->count() - 1);
  while (m_frames->count() < frames.Count()) m_frames->addTab({});
  for (LgIndex_t n = 1; n <= frames.Count(); ++n) {
    const qelhost::Frame& frame = *frames.At(n);
    const QString name = QFileInfo(QString::fromStdString(frame.fileName)).fileName();
    const QString label = tr("%1: %2%3").arg(n).arg(name, m_documents->IsUnsaved(frame) ? "*" : "");
    if (m_frames->tabText(n - 1) != label) m_frames->setTabText(n - 1, label);
    if (&frame == frames.Active()) m_frames->setCurrentIndex(n - 1);
  }
  m_frames->setVisible(frames.Count() > 1);
}

void MainWindow::FollowRecent() {
  m_recentMenu->clear();
  int n = 0;
  for (const QString& file : m_documents->Recent()) {
    QAction* const action = m_recentMenu->addAction(
        tr("&%1  %2").arg(++n).arg(QFileInfo(file).fileName().replace("&", "&&")));
    action->setToolTip(file);
    action->setStatusTip(file);
    // Later: opening makes this menu anew, and its actions with it.
    connect(
        action, &QAction::triggered, this, [this, file] { m_documents->Open(file); },
        Qt::QueuedConnection);
  }
  m_recentMenu->setEnabled(n > 0);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (m_workspace.IsBusy()) {
    event->ignore();
    return;
  }
  const Workspace::Hold hold(m_workspace);
  const bool mayGo =
      m_documents->MayDiscard() && (!m_journal->HasUnsavedLines() || mayForgetJournal());
  if (!mayGo) {
    event->ignore();
    return;
  }
  SaveSettings();
  if (m_crashLog != nullptr) m_crashLog->End();
  m_workspace.Do([](qelhost::Host& host) { host.Quit(); });
  event->accept();
}

/// A box before the window keeps the mouse away from it, but not what is dragged.
bool MainWindow::TakesFiles() const {
  return !m_workspace.IsBusy() && QApplication::activeModalWidget() == nullptr;
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!TakesFiles()) return;
  const QList<QUrl> urls = event->mimeData()->urls();
  if (urls.size() == 1 && urls.front().isLocalFile()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QString file = event->mimeData()->urls().front().toLocalFile();
  event->acceptProposedAction();
  // The program that the file comes from waits until the drop has been handled.
  QTimer::singleShot(0, this, [this, file] {
    if (TakesFiles()) m_documents->Open(file);
  });
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  m_plot->Follow();
}

namespace {

constexpr char kGeometryKey[] = "window/geometry";
constexpr char kStateKey[] = "window/state";
constexpr char kRecentKey[] = "files/recent";
constexpr char kColoursKey[] = "look/colourMap";
constexpr char kAxesKey[] = "look/axes";
constexpr char kOrientationKey[] = "look/orientation";
/// Another number when docks or tool bars become others, so that an old layout is not taken.
constexpr int kStateVersion = 1;

}  // namespace

void MainWindow::RestoreSettings() {
  const QSettings settings;
  restoreGeometry(settings.value(kGeometryKey).toByteArray());
  restoreState(settings.value(kStateKey).toByteArray(), kStateVersion);
  m_documents->SetRecent(settings.value(kRecentKey).toStringList());
  m_look.colourMap = settings.value(kColoursKey, QString::fromStdString(m_look.colourMap))
                         .toString()
                         .toStdString();
  m_look.showAxes = settings.value(kAxesKey, m_look.showAxes).toBool();
  m_look.showOrientation = settings.value(kOrientationKey, m_look.showOrientation).toBool();
  ActionNamed(this, "showAxes")->setChecked(m_look.showAxes);
  ActionNamed(this, "showOrientation")->setChecked(m_look.showOrientation);
  FollowRecent();
  Follow();
}

void MainWindow::SaveSettings() const {
  QSettings settings;
  settings.setValue(kGeometryKey, saveGeometry());
  settings.setValue(kStateKey, saveState(kStateVersion));
  settings.setValue(kRecentKey, m_documents->Recent());
  settings.setValue(kColoursKey, QString::fromStdString(m_look.colourMap));
  settings.setValue(kAxesKey, m_look.showAxes);
  settings.setValue(kOrientationKey, m_look.showOrientation);
}

}  // namespace marquell::workbench
