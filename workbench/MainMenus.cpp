// What stands in the main window's menus and tool bars.
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSpinBox>
#include <QTableWidget>
#include <QToolBar>

#include "DialogWindows.h"
#include "HelpWindow.h"
#include "JournalPanel.h"
#include "LookBar.h"
#include "MainWindow.h"
#include "MenuBar.h"
#include "TimeBar.h"
#include "UserActions.h"

#include <fmt/format.h>

namespace marquell::workbench {

void MainWindow::BuildMenus() {
  BuildFileMenu();
  BuildEditMenu();
  BuildViewMenu();

  m_modes = new ModeActions(m_workspace, this);
  QMenu* const tools = menuBar()->addMenu(tr("&Tools"));
  tools->addActions(m_modes->All());

  QMenu* const journal = menuBar()->addMenu(tr("&Journal"));
  journal->addActions(m_journal->Actions());

  m_helpMenu = menuBar()->addMenu(tr("&Help"));
  AddRows(m_helpMenu,
          {{"helpContents",
            tr("&Picking, altering, hiding"),
            QKeySequence::HelpContents,
            {},
            [this] { m_help->ShowPage("selvane.html"); }},
           {"shortcuts", tr("&Keyboard shortcuts"), {}, {}, [this] { ShowShortcuts(); }},
           {nullptr, {}, {}, {}, {}},
           {"about", tr("&About Marquell"), {}, {}, [this] { ShowAbout(); }}});
  // Add-ons add to menus of their own, which stand before the tools.
  m_addOnMenus = new AddOnMenus(m_workspace, this, tools);
  m_addOnMenus->onChosen = [this] { m_dialogs->Raise(); };
}

void MainWindow::BuildFileMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&File"));
  AddRows(menu, {{"open", tr("&Open..."), QKeySequence::Open, Glyph::Open,
                  [this] { m_documents->AskAndOpen(); }}});
  m_recentMenu = menu->addMenu(tr("Open &recent"));
  m_recentMenu->setObjectName("recent");
  m_recentMenu->setToolTipsVisible(true);
  m_recentMenu->setEnabled(false);
  AddRows(
      menu,
      {{"add", tr("Open in a &new frame..."), {}, {}, [this] { m_documents->AskAndAdd(); }},
       {nullptr, {}, {}, {}, {}},
       {"save", tr("&Save"), QKeySequence::Save, Glyph::Save, [this] { m_documents->Save(); }},
       {"saveAs",
        tr("Save &as..."),
        QKeySequence(tr("Ctrl+Shift+S")),
        {},
        [this] { m_documents->SaveAs(); }},
       {"exportPicture", tr("Export &picture..."), QKeySequence(tr("Ctrl+E")), Glyph::Picture,
        [this] { ExportPicture(); }},
       {nullptr, {}, {}, {}, {}},
       {"close", tr("&Close"), QKeySequence(tr("Ctrl+W")), {}, [this] { m_documents->Close(); }},
       {"quit", tr("&Quit"), QKeySequence(tr("Ctrl+Q")), {}, [this] { close(); }}});
}

void MainWindow::BuildEditMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Edit"));
  AddRows(menu, {{"undo", tr("&Undo"), QKeySequence::Undo, Glyph::Undo,
                  [this] { m_workspace.Do([](qelhost::Host& host) { qelhost::UndoLast(host); }); }},
                 {"redo", tr("&Redo"), QKeySequence(tr("Ctrl+Shift+Z")), Glyph::Redo,
                  [this] { m_workspace.Do([](qelhost::Host& host) { qelhost::RedoLast(host); }); }},
                 {nullptr, {}, {}, {}, {}},
                 {"deleteGeometry", tr("&Delete geometry"), QKeySequence::Delete, {}, [this] {
                    DeleteSelected();
                  }}});
}

void MainWindow::BuildViewMenu() {
  m_viewMenu = menuBar()->addMenu(tr("&View"));
  QMenu* const menu = m_viewMenu;
  AddRows(menu, {{"plot2d",
                  tr("&2D plot"),
                  QKeySequence(tr("Ctrl+2")),
                  {},
                  [this] { m_workspace.Act("$!PLOTTYPE CARTESIAN2D"); }},
                 {"plot3d",
                  tr("&3D plot"),
                  QKeySequence(tr("Ctrl+3")),
                  {},
                  [this] { m_workspace.Act("$!PLOTTYPE CARTESIAN3D"); }},
                 {nullptr, {}, {}, {}, {}},
                 {"fit", tr("&Fit"), QKeySequence(tr("F")), Glyph::Fit,
                  [this] { m_workspace.Act("$!VIEW FIT"); }},
                 {"alongZ", tr("&XY: along Z"), QKeySequence(tr("1")), Glyph::AlongZ,
                  [this] { LookAlong(0, 0); }},
                 {"alongY", tr("X&Z: along Y"), QKeySequence(tr("2")), Glyph::AlongY,
                  [this] { LookAlong(90, 0); }},
                 {"alongX", tr("&YZ: along X"), QKeySequence(tr("3")), Glyph::AlongX,
                  [this] { LookAlong(90, -90); }},
                 {"corner", tr("From a &corner"), QKeySequence(tr("4")), Glyph::Corner,
                  [this] { LookAlong(60, -30); }},
                 {nullptr, {}, {}, {}, {}}});
  for (const char* const name : {"plot2d", "plot3d"}) ActionNamed(this, name)->setCheckable(true);
  m_layers = new LayerActions(m_workspace, this);
  menu->addActions(m_layers->All());
  menu->addSeparator();
  AddRows(
      menu,
      {{"showAxes",
        tr("&Axes"),
        {},
        {},
        [this] { m_workspace.Do([this](qelhost::Host&) { m_look.showAxes = !m_look.showAxes; }); }},
       {"showOrientation", tr("&Orientation marker"), {}, {}, [this] {
          m_workspace.Do(
              [this](qelhost::Host&) { m_look.showOrientation = !m_look.showOrientation; });
        }}});
  for (const char* const name : {"showAxes", "showOrientation"}) {
    ActionNamed(this, name)->setCheckable(true);
    ActionNamed(this, name)->setChecked(true);
  }
}

void MainWindow::BuildToolBars() {
  QToolBar* const files = addToolBar(tr("File and edit"));
  files->setObjectName("fileBar");
  for (const char* const name : {"open", "save", "exportPicture", "undo", "redo"}) {
    files->addAction(ActionNamed(this, name));
  }
  // Their texts hold whole step names.
  for (const char* const name : {"undo", "redo"}) {
    ActionNamed(this, name)->setIconText(ActionNamed(this, name)->text().remove('&'));
  }
  QToolBar* const tools = addToolBar(tr("Tools"));
  tools->setObjectName("toolBar");
  tools->addActions(m_modes->All());
  QToolBar* const views = addToolBar(tr("View"));
  views->setObjectName("viewBar");
  for (const char* const name : {"fit", "alongZ", "alongY", "alongX", "corner"}) {
    views->addAction(ActionNamed(this, name));
  }
  m_lookBar = new LookBar(m_workspace, m_look);
  addToolBar(m_lookBar);
  QToolBar* const layers = addToolBar(tr("Layers"));
  layers->setObjectName("layerBar");
  layers->addActions(m_layers->All());
  m_timeBar = new TimeBar(m_workspace);
  insertToolBar(m_lookBar, m_timeBar);
  insertToolBarBreak(m_lookBar);
  m_viewMenu->addSeparator();
  QMenu* const panels = createPopupMenu();
  panels->setTitle(tr("&Panels and tool bars"));
  m_viewMenu->addMenu(panels);
}

void MainWindow::LookAlong(double psiDeg, double alphaDeg) {
  m_workspace.Do([=](qelhost::Host& host) {
    qelhost::Act(host, fmt::format("$!VIEW PSI={} ALPHA={} THETA=0", psiDeg, alphaDeg));
    qelhost::Act(host, "$!VIEW FIT");
  });
}

void MainWindow::DeleteSelected() {
  qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  if (frame == nullptr || frame->picked.empty()) return;
  LgIndex_t n = 0;
  for (QelGeomID_t id = frame->geometries.First(); id != 0; id = frame->geometries.After(id)) {
    ++n;
    if (id != frame->picked.front().geometry) continue;
    m_workspace.Act("$!GEOMETRY DELETE " + std::to_string(n));
    return;
  }
}

void MainWindow::ExportPicture() {
  QDialog dialog(this);
  dialog.setWindowTitle(tr("Export picture"));
  auto* const layout = new QFormLayout(&dialog);
  const QSize now = m_plot->Widget()->size() * devicePixelRatioF();
  const auto addSize = [&](const QString& label, const char* name, int value) {
    auto* const field = new QSpinBox;
    field->setObjectName(name);
    field->setRange(64, 8192);
    field->setSuffix(tr(" pixels"));
    field->setValue(value);
    layout->addRow(label, field);
    return field;
  };
  QSpinBox* const width = addSize(tr("&Width"), "pictureWidth", now.width());
  QSpinBox* const height = addSize(tr("&Height"), "pictureHeight", now.height());
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
  layout->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  if (dialog.exec() != QDialog::Accepted) return;
  QString path = QFileDialog::getSaveFileName(this, tr("Export picture"), {}, tr("PNG (*.png)"));
  if (path.isEmpty()) return;
  if (!path.endsWith(".png", Qt::CaseInsensitive)) path += ".png";
  m_workspace.Do([&](qelhost::Host&) {
    m_plot->WritePicture(path.toStdString(), width->value(), height->value());
  });
}

void MainWindow::ShowShortcuts() {
  QDialog dialog(this);
  dialog.setWindowTitle(tr("Keyboard shortcuts"));
  auto* const layout = new QVBoxLayout(&dialog);
  auto* const table = new QTableWidget;
  table->setColumnCount(2);
  table->setHorizontalHeaderLabels({tr("Key"), tr("Does")});
  table->verticalHeader()->hide();
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->horizontalHeader()->setStretchLastSection(true);
  const auto add = [table](const QString& key, const QString& deed) {
    const int row = table->rowCount();
    table->insertRow(row);
    table->setItem(row, 0, new QTableWidgetItem(key));
    table->setItem(row, 1, new QTableWidgetItem(deed));
  };
  for (const QAction* const action : findChildren<QAction*>()) {
    if (action->shortcut().isEmpty()) continue;
    add(action->shortcut().toString(QKeySequence::NativeText), action->text().remove('&'));
  }
  add(tr("Left button"), tr("What the tool in hand does; else turns (3D) or moves (2D) the plot"));
  add(tr("Middle button"), tr("Moves the plot"));
  add(tr("Right button, wheel"), tr("Zooms"));
  add(tr("Ctrl+click with Probe"), tr("Probes the nearest node"));
  add(tr("Esc"), tr("Gives up the figure that is being drawn"));
  add(tr("Enter"), tr("Ends the polygon that is being drawn"));
  table->resizeColumnToContents(0);
  layout->addWidget(table);
  dialog.resize(520, 560);
  dialog.exec();
}

void MainWindow::ShowAbout() {
  QString addOns;
  for (const QelAddOn& addOn : m_workspace.TheHost().addOns.All()) {
    addOns += tr("<li>%1 %2</li>")
                  .arg(QString::fromStdString(addOn.name).toHtmlEscaped(),
                       QString::fromStdString(addOn.version).toHtmlEscaped());
  }
  QMessageBox::about(this, tr("About Marquell"),
                     tr("<p><b>Marquell Workbench %1</b></p><p>Pick cells or nodes of simulation "
                        "results, alter their values or hide them; every step is a line that can "
                        "be played again.</p><p>Add-ons:</p><ul>%2</ul>")
                         .arg(QApplication::applicationVersion(), addOns));
}

}  // namespace marquell::workbench
