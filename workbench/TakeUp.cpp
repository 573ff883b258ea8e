#include "TakeUp.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>

#include "Player.h"
#include "UserActions.h"

namespace marquell::workbench {

LostWorkAnswer AskAboutLostWork(QWidget* window, const LostWork& work) {
  QMessageBox box(QMessageBox::Question, QObject::tr("Work that was not saved"), {},
                  QMessageBox::NoButton, window);
  const QString name = QFileInfo(work.file).fileName();
  const int count = static_cast<int>(work.lines.size());
  box.setText(QObject::tr("The workbench ended unexpectedly after %1 steps on \"%2\".")
                  .arg(count)
                  .arg(name));
  QPushButton* takeUp = nullptr;
  if (work.isFileSame) {
    box.setInformativeText(QObject::tr("Open the file and play them again?"));
    takeUp = box.addButton(QObject::tr("&Play again"), QMessageBox::AcceptRole);
  } else {
    box.setInformativeText(
        QObject::tr("The file has changed since, so they cannot be played again by themselves. "
                    "They are a journal: %1")
            .arg(work.journal));
  }
  QPushButton* const discard = box.addButton(QObject::tr("&Discard"), QMessageBox::DestructiveRole);
  box.addButton(QObject::tr("&Later"), QMessageBox::RejectRole);
  box.exec();
  if (takeUp != nullptr && box.clickedButton() == takeUp) return LostWorkAnswer::TakeUp;
  return box.clickedButton() == discard ? LostWorkAnswer::Discard : LostWorkAnswer::Later;
}

namespace {

/// Over the window while lost steps are played; it can neither be used nor closed meanwhile.
class ReplayBar {
 public:
  ReplayBar(QWidget* window, std::size_t steps)
      : m_bar(QObject::tr("Playing the lost steps again ..."), {}, 0, static_cast<int>(steps),
              window) {
    constexpr int kShowAfterMs = 400;
    m_bar.setObjectName("replay");
    m_bar.setWindowTitle(QObject::tr("Marquell Workbench"));
    m_bar.setWindowModality(Qt::ApplicationModal);
    m_bar.setMinimumDuration(kShowAfterMs);
    m_painted.start();
  }

  void Played(std::size_t steps) {
    constexpr int kPaintEveryMs = 50;
    if (m_painted.elapsed() < kPaintEveryMs) return;
    m_bar.setValue(static_cast<int>(steps));
    m_painted.start();
  }

 private:
  QProgressDialog m_bar;
  QElapsedTimer m_painted;
};

/// False when a step failed, which was told then.
bool PlayAgain(Workspace& workspace, const LostWork& work, QWidget* window) {
  return workspace.Do([&work, window](qelhost::Host& host) {
    ReplayBar bar(window, work.lines.size());
    qelhost::Player player(host);
    for (std::size_t step = 0; step < work.lines.size(); ++step) {
      const std::string& line = work.lines[step];
      const qelhost::LineResult result = qelhost::PlayLine(host, player, line);
      if (!result.isDone) throw std::runtime_error(line + ": " + result.message);
      bar.Played(step + 1);
    }
  });
}

void TellOfChange(Workspace& workspace, const LostWork& work) {
  const QString changed = work.ChangedFile();
  if (changed.isEmpty()) return;  // it could not be read, which was told
  emit workspace.Failed(QObject::tr("\"%1\" is another file by now; the lost steps were not played "
                                    "on it. They are a journal: %2")
                            .arg(changed, work.journal));
}

}  // namespace

bool OfferLostWork(Workspace& workspace, Documents& documents, CrashLog& log, QWidget* window,
                   const LostWorkQuestion& ask) {
  for (const LostWork& work : log.FindLostWork()) {
    const LostWorkAnswer answer = ask(window, work);
    if (answer == LostWorkAnswer::Discard) log.Forget(work);
    if (answer != LostWorkAnswer::TakeUp || !work.isFileSame) continue;
    // The question may have stood there for hours, and reading takes its time.
    if (!work.AreFilesSame() || !documents.Open(work.file) || !work.AreFilesSame()) {
      TellOfChange(workspace, work);
      continue;
    }
    // What was played again stands in the log of this window now.
    if (PlayAgain(workspace, work, window)) log.Forget(work);
    return true;
  }
  return false;
}

}  // namespace marquell::workbench
