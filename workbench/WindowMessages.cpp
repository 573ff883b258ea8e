#include "WindowMessages.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPointer>
#include <QProgressDialog>

#include <map>
#include <memory>

namespace marquell::workbench {

namespace {

bool ShowBox(QWidget* window, const std::string& text, QelMessageBox_e kind) {
  struct Row {
    QMessageBox::Icon icon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton yes;
  };
  static const std::map<QelMessageBox_e, Row> kinds = {
      {MessageBox_Information, {QMessageBox::Information, QMessageBox::Ok, QMessageBox::Ok}},
      {MessageBox_Error, {QMessageBox::Critical, QMessageBox::Ok, QMessageBox::Ok}},
      {MessageBox_Warning, {QMessageBox::Warning, QMessageBox::Ok, QMessageBox::Ok}},
      {MessageBox_OkCancel,
       {QMessageBox::Question, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok}},
      {MessageBox_YesNo,
       {QMessageBox::Question, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}}};
  const auto found = kinds.find(kind);
  const Row& row = found == kinds.end() ? kinds.at(MessageBox_Information) : found->second;
  // A dialog of an add-on may lie above the window: the box belongs to what is in front.
  QWidget* const front = QApplication::activeWindow();
  QMessageBox box(row.icon, QObject::tr("Marquell Workbench"), QString::fromStdString(text),
                  row.buttons, front != nullptr ? front : window);
  box.setObjectName("message");
  box.setTextFormat(Qt::PlainText);
  const int answer = box.exec();
  const bool isAsked = kind == MessageBox_OkCancel || kind == MessageBox_YesNo;
  return !isAsked || answer == row.yes;
}

/// A bar over the window while an add-on works, painted in between without taking input: the work
/// is done by whom the window belongs to as well. Where one piece of work follows the other, only a
/// long one that tells how far it is shows the bar again.
class WorkBar {
 public:
  explicit WorkBar(QWidget* window) : m_window(window) {}

  void Say(const std::string& text) {
    // A bar takes longer to come and go than many a step of a journal to be done.
    constexpr int kOneAfterTheOtherMs = 1000;
    const bool isNext = m_ended.isValid() && m_ended.elapsed() < kOneAfterTheOtherMs;
    m_text = QString::fromStdString(text);
    if (m_text.isEmpty()) {
      m_ended.start();
      Hide();
    } else if (!isNext) {
      Show(-1.0);
    }
  }

  void Report(double fraction) {
    if (!m_clock.isValid() || fraction <= 0.0) m_clock.start();
    if (fraction >= 1.0) {
      m_clock.invalidate();
      if (m_text.isEmpty()) Hide();
      return;
    }
    constexpr int kShowAfterMs = 400;
    constexpr int kPaintEveryMs = 50;
    if (m_clock.elapsed() < kShowAfterMs) return;
    if (m_painted.isValid() && m_painted.elapsed() < kPaintEveryMs) return;
    m_painted.start();
    Show(fraction);
  }

 private:
  /// What the user did to the window meanwhile goes to the bar, and with it: an impatient second
  /// click must not begin the work again.
  void Hide() {
    if (m_bar != nullptr) QApplication::processEvents();
    m_bar.reset();
  }

  void Show(double fraction) {
    constexpr int kSteps = 1000;
    if (m_bar == nullptr) {
      m_bar = std::make_unique<QProgressDialog>(m_window);
      m_bar->setWindowTitle(QObject::tr("Marquell Workbench"));
      m_bar->setCancelButton(nullptr);
      m_bar->setWindowModality(Qt::ApplicationModal);
      m_bar->setMinimumDuration(0);
      m_bar->setAutoClose(false);
      m_bar->setAutoReset(false);
    }
    m_bar->show();
    m_bar->setLabelText(m_text.isEmpty() ? QObject::tr("Working ...") : m_text);
    m_bar->setMaximum(fraction < 0.0 ? 0 : kSteps);
    m_bar->setValue(fraction < 0.0 ? 0 : static_cast<int>(fraction * kSteps));
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }

  QWidget* m_window;
  QString m_text;
  QElapsedTimer m_clock;
  QElapsedTimer m_painted;
  QElapsedTimer m_ended;  ///< since the last work that was told of
  std::unique_ptr<QProgressDialog> m_bar;
};

}  // namespace

void ShowMessagesIn(qelhost::Host& host, QWidget* window) {
  host.messages.isBatch = false;
  host.messages.SetBox([window](const std::string& text, QelMessageBox_e kind) {
    return ShowBox(window, text, kind);
  });
  auto bar = std::make_shared<WorkBar>(window);
  host.messages.SetWaitWatch([bar](const std::string& text) { bar->Say(text); });
  host.progress.changed = [bar](double fraction) { bar->Report(fraction); };
}

void ForgetWindowMessages(qelhost::Host& host) {
  host.messages.isBatch = true;
  host.messages.SetBox(nullptr);
  host.messages.SetWaitWatch(nullptr);
  host.progress.changed = nullptr;
}

}  // namespace marquell::workbench
