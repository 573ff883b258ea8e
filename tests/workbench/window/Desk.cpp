#include "Desk.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <filesystem>

#include "MenuBar.h"
#include "UserActions.h"

namespace marquell::workbench {

Desk::Desk() : m_host(qelhost::Host::Instance()) {
  m_host.CloseAll();
  m_host.history.Clear();
  m_host.history.isKept = true;
  m_host.recorder.Stop();
  m_workspace = std::make_unique<Workspace>(m_host);
  m_window = std::make_unique<MainWindow>(*m_workspace, MakePlotCanvas);
  m_window->tellFailure = [this](const QString& reason) { m_failures << reason; };
  m_window->Files().questions.unsaved = [](QWidget*, const QString&) {
    return DocumentQuestions::Answer::Discard;
  };
  m_window->mayForgetJournal = [] { return true; };
  m_host.messages.SetBox([this](const std::string& text, QelMessageBox_e) {
    m_messages.push_back(text);
    return true;
  });
  m_window->Files().questions.replace = [](QWidget*, const QString&) { return true; };
  m_window->show();
  EXPECT_TRUE(QTest::qWaitForWindowExposed(m_window.get()));
  m_workspace->Do([](qelhost::Host& host) {
    host.LoadAddOns({MARQUELL_ADDON});
    qelhost::ChooseMouseMode(host, Mouse_Select);
    host.idle.Run();
  });
  Settle();
}

Desk::~Desk() {
  m_workspace->Do([](qelhost::Host& host) {
    host.CloseAll();
    host.idle.Run();
  });
  m_window.reset();
}

QString Desk::Example(const QString& name) const {
  namespace fs = std::filesystem;
  const fs::path source = fs::path(MARQUELL_EXAMPLES) / name.toStdString();
  const fs::path folder = fs::path(m_folder.path().toStdString()) / source.parent_path().filename();
  fs::copy(source.parent_path(), folder,
           fs::copy_options::recursive | fs::copy_options::skip_existing);
  return QString::fromStdString((folder / source.filename()).string());
}

void Desk::OpenExample(const QString& name) {
  ASSERT_TRUE(m_window->Files().Open(Example(name))) << m_failures.join(";").toStdString();
  Settle();
}

void Desk::Choose(const char* action) {
  QAction* const found = ActionNamed(m_window.get(), action);
  ASSERT_NE(found, nullptr) << action;
  ASSERT_TRUE(found->isEnabled()) << action;
  found->trigger();
  Settle();
}

QWidget* Desk::Control(const QString& tipOrText) const {
  for (QWidget* const widget : QApplication::allWidgets()) {
    if (!widget->isVisible() || qobject_cast<QMenu*>(widget) != nullptr) continue;
    const auto* const button = qobject_cast<QAbstractButton*>(widget);
    const bool hasText = button != nullptr && button->text().remove('&') == tipOrText;
    if (hasText || widget->toolTip() == tipOrText || widget->accessibleName() == tipOrText) {
      return widget;
    }
  }
  return nullptr;
}

void Desk::Press(const QString& tipOrText) {
  QWidget* const widget = Control(tipOrText);
  ASSERT_NE(widget, nullptr) << tipOrText.toStdString();
  ASSERT_TRUE(widget->isEnabled()) << tipOrText.toStdString();
  QTest::mouseClick(widget, Qt::LeftButton);
  Settle();
}

QLineEdit* Desk::Field(const QString& tipOrText) const {
  QWidget* const widget = Control(tipOrText);
  auto* const field = qobject_cast<QLineEdit*>(widget);
  return field != nullptr || widget == nullptr ? field : widget->findChild<QLineEdit*>();
}

void Desk::Type(const QString& tipOrText, const QString& text) {
  QLineEdit* const field = Field(tipOrText);
  ASSERT_NE(field, nullptr) << tipOrText.toStdString();
  QTest::mouseClick(field, Qt::LeftButton);
  field->selectAll();
  QTest::keyClicks(field, text);
  QTest::keyClick(field, Qt::Key_Return);
  Settle();
}

void Desk::ChooseFrom(const QString& tip, const QString& item) {
  auto* const box = qobject_cast<QComboBox*>(Control(tip));
  ASSERT_NE(box, nullptr) << tip.toStdString();
  const int place = box->findText(item);
  ASSERT_GE(place, 0) << item.toStdString();
  box->setFocus();
  QTest::keyClick(box, Qt::Key_Home);
  for (int n = 0; n < place; ++n) QTest::keyClick(box, Qt::Key_Down);
  Settle();
  EXPECT_EQ(box->currentText(), item);
}

void Desk::Settle() {
  for (int turn = 0; turn < 5; ++turn) QCoreApplication::processEvents();
  QTest::qWait(1);
  QCoreApplication::sendPostedEvents();
}

QPoint Desk::At(double x, double y) {
  const auto pixel = plot().Scene().PixelAt(x, y);
  const double ratio = plot().devicePixelRatioF();
  return {static_cast<int>(pixel[0] / ratio),
          static_cast<int>(plot().height() - 1 - pixel[1] / ratio)};
}

void Desk::Drag(const QPoint& from, const QPoint& to, Qt::MouseButton button) {
  QTest::mouseMove(&plot(), from);
  QTest::mousePress(&plot(), button, Qt::NoModifier, from);
  constexpr int kSteps = 6;
  for (int step = 1; step <= kSteps; ++step) {
    const QPoint at = from + (to - from) * step / kSteps;
    // QTest's own move tells no button.
    QMouseEvent move(QEvent::MouseMove, at, plot().mapToGlobal(at), Qt::NoButton, button,
                     Qt::NoModifier);
    QApplication::sendEvent(&plot(), &move);
  }
  QTest::mouseRelease(&plot(), button, Qt::NoModifier, to);
  Settle();
}

void Desk::Click(const QPoint& at, Qt::KeyboardModifiers held) {
  QTest::mouseClick(&plot(), Qt::LeftButton, held, at);
  Settle();
}

void Desk::Wheel(const QPoint& at, int notches) {
  QWheelEvent event(at, plot().mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&plot(), &event);
  Settle();
}

QString Desk::Label(const char* name) {
  const QLabel* const label = m_window->findChild<QLabel*>(name);
  return label == nullptr ? QString("no such label") : label->text();
}

std::vector<double> ValuesOf(qelhost::DataSet& data) {
  std::vector<double> values;
  for (LgIndex_t zone = 1; zone <= data.ZoneCount(); ++zone) {
    if (!data.FindZone(zone)->IsFromFile()) continue;
    for (LgIndex_t variable = 1; variable <= data.VariableCount(); ++variable) {
      const QelFieldData* const field = data.Readable(zone, variable);
      for (LgIndex_t n = 0; field != nullptr && n < field->count; ++n) {
        values.push_back(field->get(field, n));
      }
    }
  }
  return values;
}

}  // namespace marquell::workbench
