#include "Busy.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>

#include <atomic>
#include <exception>
#include <thread>

namespace marquell::workbench {

namespace {

constexpr int kShowAfterMs = 300;
constexpr int kLookEveryMs = 25;
constexpr int kSteps = 1000;

struct Progress {
  std::atomic<double> fraction{-1.0};
  std::atomic<bool> isCancelled{false};
  std::atomic<bool> isDone{false};
};

}  // namespace

void RunBeside(QWidget* window, const QString& title,
               const std::function<void(const TellProgress&)>& work) {
  Progress progress;
  std::exception_ptr failure;
  std::thread thread([&] {
    try {
      work([&progress](double fraction) {
        progress.fraction = fraction;
        return !progress.isCancelled;
      });
    } catch (...) {
      failure = std::current_exception();
    }
    progress.isDone = true;
  });

  QProgressDialog bar(title, QObject::tr("Cancel"), 0, 0, window);
  bar.setObjectName("progress");
  bar.setWindowTitle(QObject::tr("Marquell Workbench"));
  bar.setWindowModality(Qt::ApplicationModal);
  bar.setMinimumDuration(kShowAfterMs);
  bar.setAutoClose(false);
  bar.setAutoReset(false);
  if (window != nullptr) window->setCursor(Qt::BusyCursor);

  QEventLoop loop;
  QElapsedTimer clock;
  clock.start();
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (progress.isDone) {
      loop.quit();
      return;
    }
    if (clock.elapsed() < kShowAfterMs) return;
    const double fraction = progress.fraction;
    bar.setMaximum(fraction < 0.0 ? 0 : kSteps);
    if (fraction >= 0.0) bar.setValue(static_cast<int>(fraction * kSteps));
    // It stays until the work has ended, also while that takes back what it has done.
    if (!bar.isVisible()) bar.show();
  });
  QObject::connect(&bar, &QProgressDialog::canceled, [&] {
    progress.isCancelled = true;
    bar.setLabelText(QObject::tr("Cancelling ..."));
    if (auto* const cancel = bar.findChild<QPushButton*>()) cancel->setEnabled(false);
    bar.show();
  });
  timer.start(kLookEveryMs);
  // What the user does before the bar is there waits: the work must not be begun twice, nor what
  // it works on be changed.
  QTimer::singleShot(kShowAfterMs, &loop, &QEventLoop::quit);
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  if (!progress.isDone) {
    bar.show();
    loop.exec();
  }
  thread.join();
  if (window != nullptr) window->unsetCursor();
  if (failure != nullptr) std::rethrow_exception(failure);
}

}  // namespace marquell::workbench
