// The window's menus and tool bars, as tables of what each entry does.
#pragma once

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>
#include <QMenu>

#include <functional>
#include <map>
#include <vector>

#include "Icons.h"
#include "Workspace.h"

namespace marquell::workbench {

/// One entry: its name for tests and settings, its text, its shortcut (empty: none), the glyph of
/// its button (null: none) and what it does.
struct ActionRow {
  const char* name;
  QString text;
  QKeySequence shortcut;
  std::optional<Glyph> glyph;
  std::function<void()> deed;
};

/// Adds the rows to a menu; a row without a name is a separator.
void AddRows(QMenu* menu, const std::vector<ActionRow>& rows);

/// The action of that name in the window; null when there is none.
QAction* ActionNamed(const QObject* window, const char* name);

/// The mouse modes as actions of which one is checked.
class ModeActions : public QObject {
  Q_OBJECT

 public:
  ModeActions(Workspace& workspace, QMainWindow* window);
  QList<QAction*> All() const { return m_group->actions(); }
  void Follow();

 private:
  Workspace& m_workspace;
  QActionGroup* m_group;
  std::map<QelMouseMode_e, QAction*> m_actions;
};

/// The layers of the plot as actions that are checked where shown.
class LayerActions : public QObject {
  Q_OBJECT

 public:
  LayerActions(Workspace& workspace, QMainWindow* window);
  QList<QAction*> All() const { return m_all; }
  void Follow();

 private:
  Workspace& m_workspace;
  QList<QAction*> m_all;
};

/// The entries that add-ons have put into menus.
class AddOnMenus : public QObject {
  Q_OBJECT

 public:
  AddOnMenus(Workspace& workspace, QMainWindow* window, QMenu* before);
  void Follow();

  /// Called after the user has chosen an entry.
  std::function<void()> onChosen;

 private:
  QMenu* MenuOf(const QString& path);

  Workspace& m_workspace;
  QMainWindow* m_window;
  QMenu* m_before;
  std::map<QString, QMenu*> m_menus;
  std::vector<QAction*> m_entries;
};

}  // namespace marquell::workbench
