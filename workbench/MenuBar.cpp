#include "MenuBar.h"

#include <QMenuBar>

#include "Frame.h"
#include "UserActions.h"

namespace marquell::workbench {

void AddRows(QMenu* menu, const std::vector<ActionRow>& rows) {
  for (const ActionRow& row : rows) {
    if (row.name == nullptr) {
      menu->addSeparator();
      continue;
    }
    auto* const action = new QAction(row.text, menu->window());
    action->setObjectName(row.name);
    if (!row.shortcut.isEmpty()) action->setShortcut(row.shortcut);
    // An add-on's dialog has the keyboard most of the time; what is saved there is the same data.
    if (!row.shortcut.isEmpty() && (row.shortcut[0] & Qt::CTRL) != 0) {
      action->setShortcutContext(Qt::ApplicationShortcut);
    }
    if (row.glyph) action->setIcon(IconOf(*row.glyph));
    QObject::connect(action, &QAction::triggered, action, [deed = row.deed] { deed(); });
    menu->addAction(action);
  }
}

QAction* ActionNamed(const QObject* window, const char* name) {
  return window->findChild<QAction*>(name);
}

ModeActions::ModeActions(Workspace& workspace, QMainWindow* window)
    : QObject(window), m_workspace(workspace), m_group(new QActionGroup(window)) {
  struct Row {
    QelMouseMode_e mode;
    Glyph glyph;
    const char* name;
    QString text;
    QString tip;
    Qt::Key key;
  };
  const Row rows[] = {
      {Mouse_Select, Glyph::Select, "modeSelect", tr("&Select"),
       tr("Select and move geometries; beside them, turn or move the plot"), Qt::Key_S},
      {Mouse_Rotate, Glyph::Rotate, "modeRotate", tr("&Rotate"), tr("Turn the plot"), Qt::Key_R},
      {Mouse_Translate, Glyph::Pan, "modePan", tr("&Move"), tr("Move the plot"), Qt::Key_M},
      {Mouse_Zoom, Glyph::Zoom, "modeZoom", tr("&Zoom"), tr("Drag upwards to zoom in"), Qt::Key_Z},
      {Mouse_Probe, Glyph::Probe, "modeProbe", tr("&Probe"),
       tr("Show the values of a cell, with CTRL those of a node"), Qt::Key_P},
      {Mouse_GeomRectangle, Glyph::Rectangle, "modeRectangle", tr("Draw r&ectangle"),
       tr("Draw a rectangle"), Qt::Key_E},
      {Mouse_GeomSquare, Glyph::Square, "modeSquare", tr("Draw s&quare"), tr("Draw a square"),
       Qt::Key_Q},
      {Mouse_GeomCircle, Glyph::Circle, "modeCircle", tr("Draw &circle"),
       tr("Draw a circle about its centre"), Qt::Key_C},
      {Mouse_GeomEllipse, Glyph::Ellipse, "modeEllipse", tr("Draw e&llipse"),
       tr("Draw an ellipse about its centre"), Qt::Key_L},
      {Mouse_GeomPolyline, Glyph::Polygon, "modePolygon", tr("Draw p&olygon"),
       tr("Click the corners; a double click, Enter or the first corner again ends it"),
       Qt::Key_O}};
  for (const Row& row : rows) {
    auto* const action = new QAction(IconOf(row.glyph), row.text, window);
    action->setObjectName(row.name);
    action->setCheckable(true);
    action->setToolTip(row.tip);
    action->setStatusTip(row.tip);
    action->setShortcut(row.key);
    m_group->addAction(action);
    m_actions[row.mode] = action;
    connect(action, &QAction::triggered, this, [this, mode = row.mode] {
      m_workspace.Do([mode](qelhost::Host& host) { qelhost::ChooseMouseMode(host, mode); });
    });
  }
}

void ModeActions::Follow() {
  const auto found = m_actions.find(m_workspace.TheHost().interaction.mouseMode);
  if (found != m_actions.end()) {
    found->second->setChecked(true);
  } else if (QAction* const checked = m_group->checkedAction()) {
    checked->setChecked(false);
  }
  const qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  m_group->setEnabled(frame != nullptr && frame->Data() != nullptr);
}

namespace {

struct LayerRow {
  qelhost::Layer layer;
  const char* keyword;
  const char* text;
};

constexpr LayerRow kLayers[] = {
    {qelhost::Layer::Edge, "SHOWEDGE", QT_TRANSLATE_NOOP("LayerActions", "Edges")},
    {qelhost::Layer::Mesh, "SHOWMESH", QT_TRANSLATE_NOOP("LayerActions", "Mesh")},
    {qelhost::Layer::Shade, "SHOWSHADE", QT_TRANSLATE_NOOP("LayerActions", "Shade")},
    {qelhost::Layer::Contour, "SHOWCONTOUR", QT_TRANSLATE_NOOP("LayerActions", "Contour lines")},
    {qelhost::Layer::Scatter, "SHOWSCATTER", QT_TRANSLATE_NOOP("LayerActions", "Scatter")}};

}  // namespace

LayerActions::LayerActions(Workspace& workspace, QMainWindow* window)
    : QObject(window), m_workspace(workspace) {
  for (const LayerRow& row : kLayers) {
    auto* const action = new QAction(tr(row.text), window);
    action->setObjectName(row.keyword);
    action->setCheckable(true);
    m_all << action;
    connect(action, &QAction::triggered, this, [this, keyword = row.keyword](bool on) {
      m_workspace.Act(std::string("$!LAYER ") + keyword + (on ? "=YES" : "=NO"));
    });
  }
}

void LayerActions::Follow() {
  const qelhost::Frame* const frame = m_workspace.TheHost().frames.Active();
  for (int n = 0; n < m_all.size(); ++n) {
    m_all[n]->setEnabled(frame != nullptr);
    const auto place = static_cast<std::size_t>(kLayers[n].layer);
    m_all[n]->setChecked(frame != nullptr && frame->styles.layerActive[place]);
  }
}

namespace {

/// The label with its letter marked, when it occurs in it.
QString Marked(const qelhost::MenuEntry& entry) {
  const QString label = QString::fromStdString(entry.label);
  const int place =
      entry.mnemonic == 0 ? -1 : label.indexOf(QChar(entry.mnemonic), 0, Qt::CaseInsensitive);
  QString text;
  for (int i = 0; i < label.size(); ++i) {
    if (i == place || label.at(i) == '&') text += '&';
    text += label.at(i);
  }
  return text;
}

}  // namespace

AddOnMenus::AddOnMenus(Workspace& workspace, QMainWindow* window, QMenu* before)
    : QObject(window), m_workspace(workspace), m_window(window), m_before(before) {}

QMenu* AddOnMenus::MenuOf(const QString& path) {
  QMenu*& menu = m_menus[path];
  if (menu != nullptr) return menu;
  const int cut = path.lastIndexOf('|');
  if (cut >= 0) {
    menu = MenuOf(path.left(cut))->addMenu(path.mid(cut + 1));
    return menu;
  }
  // A menu of the window's own takes an add-on's entries as well.
  for (const QAction* const own : m_window->menuBar()->actions()) {
    if (own->text().remove('&') == path) menu = own->menu();
  }
  if (menu == nullptr) {
    menu = new QMenu("&" + path, m_window);
    m_window->menuBar()->insertMenu(m_before->menuAction(), menu);
  }
  return menu;
}

void AddOnMenus::Follow() {
  const std::vector<qelhost::MenuEntry>& entries = m_workspace.TheHost().menus.Entries();
  for (std::size_t n = m_entries.size(); n < entries.size(); ++n) {
    const qelhost::MenuEntry& entry = entries[n];
    QMenu* const menu = MenuOf(QString::fromStdString(entry.path));
    if (entry.label.empty()) {
      m_entries.push_back(menu->addSeparator());
      continue;
    }
    QAction* const action = menu->addAction(Marked(entry));
    action->setObjectName("addOn:" + QString::fromStdString(entry.label));
    connect(action, &QAction::triggered, this, [this, path = entry.path, label = entry.label] {
      m_workspace.Do([&](qelhost::Host& host) { qelhost::ChooseMenu(host, path, label); });
      if (onChosen) onChosen();
    });
    m_entries.push_back(action);
  }
  for (std::size_t n = 0; n < entries.size(); ++n) {
    if (!entries[n].label.empty()) m_entries[n]->setEnabled(entries[n].isSensitive);
  }
}

}  // namespace marquell::workbench
