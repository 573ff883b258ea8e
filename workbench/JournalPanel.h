// Recording and playing journals, line by line.
#pragma once

#include <QAction>
#include <QList>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

#include "JournalLines.h"
#include "Player.h"
#include "Workspace.h"

class QLabel;
class QListView;
class QTabWidget;
class QToolBar;

namespace marquell::workbench {

/// Two lists: what is being recorded, as it comes, and what is played. Playing does one line at a
/// turn of the event loop, so that the window paints and Stop is heard between lines. It ends at
/// the first line that fails, which stays in hand.
class JournalPanel : public QWidget {
  Q_OBJECT

 public:
  explicit JournalPanel(Workspace& workspace, QWidget* parent = nullptr);

  /// Record, Stop, Play, Step, From Here, Rewind, Open, Save and Clear, for menus.
  QList<QAction*> Actions() const;

  /// Shows a file's lines for playing. What cannot be read is told by the workspace's Failed, and
  /// the panel is as before; false then.
  bool OpenFile(const QString& path);
  bool SaveTo(const QString& path);

  bool IsPlaying() const { return m_isPlaying; }
  bool IsRecording() const { return m_workspace.TheHost().recorder.IsRecording(); }
  /// Whether lines were recorded that stand in no file.
  bool HasUnsavedLines() const;
  const JournalLines& Recorded() const { return *m_recorded; }
  const JournalLines& Played() const { return *m_played; }

  /// Which file; empty when the user thought better of it.
  std::function<QString()> askOpenPath;
  std::function<QString()> askSavePath;
  /// A question that is answered with Yes or No.
  std::function<bool(const QString& question)> confirm;

 public slots:
  void Record();
  void Stop();
  void Play();
  void Step();

 private:
  using Slot = void (JournalPanel::*)();

  void BuildActions();
  QAction* AddAction(const QString& name, const QString& text, const QString& toolTip, Slot slot);
  void BuildLists();
  void AskInBoxes();
  void AskAndOpen();
  void AskAndSave();
  void Clear();
  void GoToSelected();
  void Rewind();
  void Follow();
  /// The list that the next line is played from; what was recorded is taken over when it is shown.
  bool PrepareToPlay();
  void PlayOnce();
  bool PlayLineInHand();
  void EndPlaying();
  void ShowState();
  bool IsShowingRecorded() const;

  Workspace& m_workspace;
  qelhost::Player m_player;
  JournalLines* m_recorded;
  JournalLines* m_played;
  QTabWidget* m_pages = nullptr;
  QListView* m_recordedView = nullptr;
  QListView* m_playedView = nullptr;
  QLabel* m_message = nullptr;
  QTimer m_nextLine;
  QAction* m_record = nullptr;
  QAction* m_stop = nullptr;
  QAction* m_play = nullptr;
  QAction* m_step = nullptr;
  QAction* m_fromHere = nullptr;
  QAction* m_rewind = nullptr;
  QAction* m_open = nullptr;
  QAction* m_save = nullptr;
  QAction* m_clear = nullptr;
  int m_savedCount = 0;
  bool m_isPlaying = false;
};

}  // namespace marquell::workbench
