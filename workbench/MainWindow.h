// The workbench's window.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QTabBar>

#include <memory>

#include "Documents.h"
#include "LookSettings.h"
#include "PlotArea.h"
#include "Workspace.h"

namespace marquell::workbench {

class AddOnMenus;
class CrashLog;
class DialogWindows;
class HelpWindow;
class JournalPanel;
class LayerActions;
class LookBar;
class ModeActions;
class PickWatch;
class TimeBar;
class ZonesPanel;

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow(Workspace& workspace, const MakePlotArea& makePlot);
  ~MainWindow() override;

  Documents& Files() { return *m_documents; }
  JournalPanel& Journal() { return *m_journal; }
  PlotArea& Plot() { return *m_plot; }

  /// Brings back, and keeps, the layout, the recent files and the colours of the last time.
  void RestoreSettings();
  void SaveSettings() const;

  /// From now on keeps what is done in logs in the folder, for the day on which the program ends
  /// unexpectedly.
  CrashLog& KeepCrashLog(const QString& folder);

  /// Why errors are told to the user; tests replace the box.
  std::function<void(const QString& reason)> tellFailure;
  /// Asks whether recorded lines that stand in no file may go.
  std::function<bool()> mayForgetJournal;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void BuildCentre(const MakePlotArea& makePlot);
  void BuildPanels();
  void BuildMenus();
  void BuildFileMenu();
  void BuildEditMenu();
  void BuildViewMenu();
  void BuildToolBars();
  void BuildStatusBar();
  void ConnectHost();

  void Follow();
  void ForgoUnreadableColours(qelhost::Frame& frame);
  void FollowTitle();
  void FollowHistory();
  void FollowFrames();
  void FollowRecent();
  void FollowProbe();
  void SayProbed(const QString& text);

  bool TakesFiles() const;

  void LookAlong(double psiDeg, double alphaDeg);
  void ExportPicture();
  void DeleteSelected();
  void ShowShortcuts();
  void ShowAbout();

  Workspace& m_workspace;
  LookSettings m_look;
  Documents* m_documents = nullptr;
  PlotArea* m_plot = nullptr;
  QTabBar* m_frames = nullptr;
  ZonesPanel* m_zones = nullptr;
  JournalPanel* m_journal = nullptr;
  LookBar* m_lookBar = nullptr;
  TimeBar* m_timeBar = nullptr;
  ModeActions* m_modes = nullptr;
  LayerActions* m_layers = nullptr;
  AddOnMenus* m_addOnMenus = nullptr;
  DialogWindows* m_dialogs = nullptr;
  HelpWindow* m_help = nullptr;
  PickWatch* m_pickWatch = nullptr;
  CrashLog* m_crashLog = nullptr;
  QMenu* m_recentMenu = nullptr;
  QMenu* m_viewMenu = nullptr;
  QMenu* m_helpMenu = nullptr;
  QLabel* m_pointed = nullptr;
  QLabel* m_probed = nullptr;
  QLabel* m_counted = nullptr;
  QelUniqueID_t m_uncoloured = 0;    ///< data whose values could not be read
  std::int64_t m_tooLargeCount = 0;  ///< steps that the user was told cannot be undone
  QString m_instruction;
  QelUniqueID_t m_probedData = 0;
};

}  // namespace marquell::workbench
