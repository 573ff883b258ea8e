// A window with a user before it, for tests.
#pragma once

#include <QLineEdit>
#include <QTemporaryDir>

#include <memory>
#include <string>
#include <vector>

#include "MainWindow.h"
#include "PlotCanvas.h"
#include "Workspace.h"

namespace marquell::workbench {

/// The program as Main.cpp puts it together, with the built add-on, on a fresh host.
class Desk {
 public:
  Desk();
  ~Desk();

  qelhost::Host& host() { return m_host; }
  Workspace& workspace() { return *m_workspace; }
  MainWindow& window() { return *m_window; }
  PlotCanvas& plot() { return dynamic_cast<PlotCanvas&>(m_window->Plot()); }
  /// A folder of its own, gone with the desk.
  QString Path(const QString& name) const { return m_folder.filePath(name); }
  /// What was told to the user as failures.
  const QStringList& Failures() const { return m_failures; }
  /// What add-ons have said in boxes; questions are answered with Yes.
  const std::vector<std::string>& Messages() const { return m_messages; }

  /// Copies the folder of an example to the desk's folder and answers the path of the copy.
  QString Example(const QString& name) const;
  void OpenExample(const QString& name);

  /// Chooses an entry of the window's menus by its name.
  void Choose(const char* action);
  /// Lets the event loop run until it has nothing to do.
  void Settle();

  /// A control that is shown, by its tool tip or its text; null when there is none.
  QWidget* Control(const QString& tipOrText) const;
  /// The same for a field, which may be part of a control.
  QLineEdit* Field(const QString& tipOrText) const;
  void Press(const QString& tipOrText);
  /// Replaces what stands in a field and enters it.
  void Type(const QString& tipOrText, const QString& text);
  void ChooseFrom(const QString& tip, const QString& item);

  /// Positions in the plot in grid coordinates, as the widget's pixels.
  QPoint At(double x, double y);
  void Drag(const QPoint& from, const QPoint& to, Qt::MouseButton button = Qt::LeftButton);
  void Click(const QPoint& at, Qt::KeyboardModifiers held = Qt::NoModifier);
  void Wheel(const QPoint& at, int notches);

  qelhost::Frame& Frame() { return *m_host.frames.Active(); }
  /// The text of a label in the status bar.
  QString Label(const char* name);

 private:
  QTemporaryDir m_folder;
  qelhost::Host& m_host;
  std::unique_ptr<Workspace> m_workspace;
  std::unique_ptr<MainWindow> m_window;
  QStringList m_failures;
  std::vector<std::string> m_messages;
};

/// Every value of every variable in every zone from a file.
std::vector<double> ValuesOf(qelhost::DataSet& data);

}  // namespace marquell::workbench
