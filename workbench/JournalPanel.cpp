#include "JournalPanel.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QListView>
#include <QMessageBox>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

#include <exception>
#include <utility>

#include "Icons.h"
#include "JournalIcons.h"
#include "PlotState.h"
#include "UserActions.h"

namespace marquell::workbench {

namespace {

constexpr int kRecordedPage = 0;
constexpr int kPlayedPage = 1;
/// While a message of an add-on stands before the window nothing is played.
constexpr int kLookAgainMs = 50;

QListView* MakeView(JournalLines* lines, const QString& name) {
  auto* const view = new QListView;
  view->setModel(lines);
  view->setObjectName(name);
  view->setUniformItemSizes(true);
  view->setEditTriggers(QAbstractItemView::NoEditTriggers);
  view->setTextElideMode(Qt::ElideRight);
  return view;
}

}  // namespace

JournalPanel::JournalPanel(Workspace& workspace, QWidget* parent)
    : QWidget(parent),
      m_workspace(workspace),
      m_player(workspace.TheHost()),
      m_recorded(new JournalLines(this)),
      m_played(new JournalLines(this)) {
  BuildActions();
  BuildLists();
  AskInBoxes();
  m_nextLine.setSingleShot(true);
  connect(&m_nextLine, &QTimer::timeout, this, &JournalPanel::PlayOnce);
  connect(&workspace, &Workspace::Changed, this, &JournalPanel::Follow);
  Follow();
}

QList<QAction*> JournalPanel::Actions() const {
  return {m_record, m_stop, m_play, m_step, m_fromHere, m_rewind, m_open, m_save, m_clear};
}

bool JournalPanel::OpenFile(const QString& path) {
  if (m_isPlaying) return false;
  try {
    m_played->Take(qelhost::ReadJournal(path.toStdString()));
  } catch (const std::exception& e) {
    emit m_workspace.Failed(QString::fromStdString(e.what()));
    return false;
  }
  m_pages->setTabText(kPlayedPage, QFileInfo(path).fileName().replace('&', "&&"));
  m_pages->setTabToolTip(kPlayedPage, path);
  m_pages->setCurrentIndex(kPlayedPage);
  ShowState();
  return true;
}

bool JournalPanel::SaveTo(const QString& path) {
  std::vector<std::string> lines;
  lines.reserve(static_cast<std::size_t>(m_recorded->Count()));
  for (int row = 0; row < m_recorded->Count(); ++row) lines.push_back(m_recorded->At(row).text);
  try {
    qelhost::WriteJournal(path.toStdString(), lines);
  } catch (const std::exception& e) {
    emit m_workspace.Failed(QString::fromStdString(e.what()));
    return false;
  }
  m_savedCount = m_recorded->Count();
  ShowState();
  return true;
}

bool JournalPanel::HasUnsavedLines() const {
  // The header alone is worth no question.
  return m_recorded->Count() > 1 && m_recorded->Count() != m_savedCount;
}

void JournalPanel::Record() {
  if (HasUnsavedLines() && !confirm(tr("Discard the lines that were recorded and not saved?"))) {
    ShowState();
    return;
  }
  m_recorded->Clear();
  m_savedCount = 0;
  m_pages->setCurrentIndex(kRecordedPage);
  m_workspace.Do(
      [](qelhost::Host& host) { host.recorder.Start(qelhost::FirstStateOf(host.frames)); });
}

void JournalPanel::Stop() {
  if (m_isPlaying) {
    EndPlaying();
  } else {
    m_workspace.Do([](qelhost::Host& host) { host.recorder.Stop(); });
  }
}

void JournalPanel::Play() {
  if (!PrepareToPlay()) return;
  m_isPlaying = true;
  ShowState();
  m_nextLine.start(0);
}

void JournalPanel::Step() {
  if (PrepareToPlay()) PlayLineInHand();
}

void JournalPanel::BuildActions() {
  m_record = AddAction("journalRecord", tr("&Record"), tr("Begin a new journal of what you do"),
                       &JournalPanel::Record);
  m_stop =
      AddAction("journalStop", tr("&Stop"), tr("End playing, or recording"), &JournalPanel::Stop);
  m_play = AddAction("journalPlay", tr("&Play"), tr("Play from the marked line on"),
                     &JournalPanel::Play);
  m_step = AddAction("journalStep", tr("Play &one line"), tr("Play the marked line"),
                     &JournalPanel::Step);
  m_fromHere = AddAction("journalFromHere", tr("&Mark the selected line"),
                         tr("Go on with the selected line"), &JournalPanel::GoToSelected);
  m_rewind = AddAction("journalRewind", tr("&Back to the first line"), tr("Mark the first line"),
                       &JournalPanel::Rewind);
  m_open = AddAction("journalOpen", tr("Open &journal..."), tr("Open a journal to play it"),
                     &JournalPanel::AskAndOpen);
  m_save = AddAction("journalSave", tr("Save recorded &lines..."), tr("Save what was recorded"),
                     &JournalPanel::AskAndSave);
  m_clear = AddAction("journalClear", tr("&Clear"), tr("Empty the list that is shown"),
                      &JournalPanel::Clear);
  m_record->setIcon(IconOf(JournalIcon::Record));
  m_stop->setIcon(IconOf(JournalIcon::Stop));
  m_play->setIcon(IconOf(JournalIcon::Play));
  m_step->setIcon(IconOf(JournalIcon::Step));
  m_fromHere->setIcon(IconOf(JournalIcon::FromHere));
  m_rewind->setIcon(IconOf(JournalIcon::Rewind));
  m_open->setIcon(IconOf(Glyph::Open));
  m_save->setIcon(IconOf(Glyph::Save));
  m_clear->setIcon(IconOf(JournalIcon::Clear));
}

QAction* JournalPanel::AddAction(const QString& name, const QString& text, const QString& toolTip,
                                 Slot slot) {
  auto* const action = new QAction(text, this);
  action->setObjectName(name);
  action->setToolTip(toolTip);
  connect(action, &QAction::triggered, this, slot);
  return action;
}

void JournalPanel::BuildLists() {
  auto* const bar = new QToolBar;
  bar->addActions(Actions());
  bar->setIconSize(QSize(1, 1) * style()->pixelMetric(QStyle::PM_SmallIconSize));
  m_recordedView = MakeView(m_recorded, "recordedLines");
  m_playedView = MakeView(m_played, "playedLines");
  m_pages = new QTabWidget;
  m_pages->setDocumentMode(true);
  m_pages->addTab(m_recordedView, tr("Recorded"));
  m_pages->addTab(m_playedView, tr("To play"));
  m_message = new QLabel;
  m_message->setObjectName("journalMessage");
  m_message->setTextFormat(Qt::PlainText);
  m_message->setWordWrap(true);
  m_message->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  m_message->setMargin(style()->pixelMetric(QStyle::PM_DefaultFrameWidth) * 2);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(bar);
  column->addWidget(m_pages, 1);
  column->addWidget(m_message);
  connect(m_pages, &QTabWidget::currentChanged, this, [this] { ShowState(); });
  connect(m_playedView, &QListView::activated, this, &JournalPanel::GoToSelected);
  connect(m_playedView->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { ShowState(); });
  connect(m_played, &QAbstractItemModel::modelReset, this, [this] { ShowState(); });
}

void JournalPanel::AskInBoxes() {
  const QString kinds = tr("Journals (*.journal);;All files (*)");
  askOpenPath = [this, kinds] {
    return QFileDialog::getOpenFileName(window(), tr("Open journal"), {}, kinds);
  };
  // The question about a file that exists is asked here, whichever way the path came.
  askSavePath = [this, kinds] {
    QString path = QFileDialog::getSaveFileName(window(), tr("Save recorded lines"), {}, kinds,
                                                nullptr, QFileDialog::DontConfirmOverwrite);
    if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty()) path += ".journal";
    return path;
  };
  confirm = [this](const QString& question) {
    return QMessageBox::question(window(), tr("Journal"), question) == QMessageBox::Yes;
  };
}

void JournalPanel::AskAndOpen() {
  const QString path = askOpenPath();
  if (!path.isEmpty()) OpenFile(path);
}

void JournalPanel::AskAndSave() {
  const QString path = askSavePath();
  if (path.isEmpty()) return;
  const bool isThere = QFileInfo::exists(path);
  if (isThere && !confirm(tr("%1 exists. Replace it?").arg(QFileInfo(path).fileName()))) return;
  SaveTo(path);
}

void JournalPanel::Clear() {
  if (IsShowingRecorded()) {
    if (HasUnsavedLines() && !confirm(tr("Discard the lines that were recorded and not saved?"))) {
      return;
    }
    m_recorded->Clear();
    m_savedCount = 0;
  } else {
    m_played->Clear();
    m_pages->setTabText(kPlayedPage, tr("To play"));
    m_pages->setTabToolTip(kPlayedPage, {});
  }
  ShowState();
}

void JournalPanel::GoToSelected() {
  const QModelIndex selected = m_playedView->currentIndex();
  if (!m_isPlaying && selected.isValid()) m_played->GoTo(selected.row());
  ShowState();
}

void JournalPanel::Rewind() {
  m_played->GoTo(0);
  m_playedView->scrollToTop();
  ShowState();
}

void JournalPanel::Follow() {
  if (IsRecording()) {
    const int before = m_recorded->Count();
    m_recorded->Follow(m_workspace.TheHost().recorder.Lines());
    if (m_recorded->Count() != before) m_recordedView->scrollToBottom();
  }
  ShowState();
}

bool JournalPanel::PrepareToPlay() {
  if (m_isPlaying || m_workspace.IsBusy()) return false;
  if (IsShowingRecorded() && !IsRecording() && m_recorded->Count() > 0) {
    std::string text;
    for (int row = 0; row < m_recorded->Count(); ++row) text += m_recorded->At(row).text + '\n';
    m_played->Take(qelhost::ParseJournal(text, tr("Recorded").toStdString()));
    m_pages->setTabText(kPlayedPage, tr("To play"));
    m_pages->setTabToolTip(kPlayedPage, {});
  }
  m_pages->setCurrentIndex(kPlayedPage);
  return m_played->InHand() < m_played->Count();
}

void JournalPanel::PlayOnce() {
  if (!m_isPlaying) return;
  if (m_workspace.IsBusy()) {
    m_nextLine.start(kLookAgainMs);
    return;
  }
  const bool isDone = PlayLineInHand();
  if (!m_isPlaying) return;
  if (isDone && m_played->InHand() < m_played->Count()) {
    m_nextLine.start(0);
  } else {
    EndPlaying();
  }
}

bool JournalPanel::PlayLineInHand() {
  const std::string line = m_played->At(m_played->InHand()).text;
  qelhost::LineResult result;
  // The workspace tells of what is thrown; here it becomes the line's message as well.
  const bool wasRun = m_workspace.Do([this, &line, &result](qelhost::Host& host) {
    try {
      result = qelhost::PlayLine(host, m_player, line);
    } catch (const std::exception& e) {
      result.message = e.what();
      throw;
    }
  });
  const bool isDone = wasRun && result.isDone;
  const QString message = QString::fromStdString(result.message);
  const int number = m_played->At(m_played->InHand()).number;
  m_played->Played(isDone, message);
  const int shown = qMin(m_played->InHand(), m_played->Count() - 1);
  m_playedView->scrollTo(m_played->index(shown, 0));
  ShowState();
  // With the panel closed nobody would see why playing stopped.
  if (wasRun && !isDone && !isVisible()) {
    emit m_workspace.Failed(tr("Line %1 of the journal: %2").arg(number).arg(message));
  }
  return isDone;
}

void JournalPanel::EndPlaying() {
  m_isPlaying = false;
  m_nextLine.stop();
  ShowState();
}

bool JournalPanel::IsShowingRecorded() const { return m_pages->currentIndex() == kRecordedPage; }

void JournalPanel::ShowState() {
  const bool isRecording = IsRecording();
  const bool hasRecorded = m_recorded->Count() > 0;
  const bool takesRecorded = IsShowingRecorded() && !isRecording && hasRecorded;
  const bool hasNext = m_played->InHand() < m_played->Count();
  m_record->setEnabled(!isRecording && !m_isPlaying);
  m_stop->setEnabled(isRecording || m_isPlaying);
  m_play->setEnabled(!m_isPlaying && (hasNext || takesRecorded));
  m_step->setEnabled(m_play->isEnabled());
  m_fromHere->setEnabled(!m_isPlaying && m_playedView->currentIndex().isValid());
  m_rewind->setEnabled(!m_isPlaying && m_played->InHand() > 0);
  m_open->setEnabled(!m_isPlaying);
  m_save->setEnabled(hasRecorded);
  m_clear->setEnabled(!m_isPlaying &&
                      (IsShowingRecorded() ? hasRecorded && !isRecording : m_played->Count() > 0));
  QString text;
  bool isAlarming = false;
  if (!IsShowingRecorded() && hasNext &&
      m_played->StateOf(m_played->InHand()) == LineState::Failed) {
    text = tr("Line %1 failed: %2")
               .arg(m_played->At(m_played->InHand()).number)
               .arg(m_played->MessageOf(m_played->InHand()));
    isAlarming = true;
  } else if (!IsShowingRecorded()) {
    text = m_played->Count() == 0
               ? tr("Open a journal to play it.")
               : tr("%1 of %2 lines played").arg(m_played->InHand()).arg(m_played->Count());
  } else {
    text = isRecording   ? tr("Recording: %1 lines").arg(m_recorded->Count())
           : hasRecorded ? tr("%1 lines").arg(m_recorded->Count())
                         : tr("Nothing is recorded. Press Record to begin.");
  }
  QPalette colors = palette();
  if (isAlarming) colors.setColor(QPalette::WindowText, AlarmColor(colors));
  m_message->setPalette(colors);
  m_message->setText(text);
}

}  // namespace marquell::workbench
