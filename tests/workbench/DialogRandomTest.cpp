// Thousands of a user's clicks and keys at random places of the dialog. After each one the widgets
// and the model have to agree.
#include "WorkbenchTest.h"

#include "UserActions.h"

#include <QApplication>
#include <QTabBar>
#include <QToolButton>
#include <QtTest>

#include <random>

namespace marquell::workbench {
namespace {

class DialogRandom : public WorkbenchTest, public testing::WithParamInterface<unsigned> {
 protected:
  unsigned Number(unsigned below) { return static_cast<unsigned>(m_random() % below); }
  template <class T>
  const T& OneOf(const std::vector<T>& list) {
    return list[Number(static_cast<unsigned>(list.size()))];
  }

  std::vector<QWidget*> Targets() {
    std::vector<QWidget*> targets;
    for (QWidget* const widget : Window().findChildren<QWidget*>()) {
      const bool takesInput = widget->focusPolicy() != Qt::NoFocus;
      // Lists that a menu shows are windows of their own.
      if (takesInput && widget->isVisible() && widget->isEnabled() &&
          widget->window() == &Window()) {
        targets.push_back(widget);
      }
    }
    return targets;
  }

  void ActOn(QWidget* target);
  void Disturb();
  void Step();

 private:
  std::mt19937 m_random{GetParam()};
};

const std::vector<Qt::Key> kKeys = {Qt::Key_Space, Qt::Key_Up,    Qt::Key_Down,   Qt::Key_Left,
                                    Qt::Key_Right, Qt::Key_Tab,   Qt::Key_Return, Qt::Key_Backspace,
                                    Qt::Key_Home,  Qt::Key_PageUp};
const std::vector<QString> kTexts = {"+1", "*2", "=5", "/0", "abc", "1.5", "-2", "1e3", " 7 "};
const std::vector<std::string> kCommands = {"$!GEOMETRY RECTANGLE X=-1 Y=-1 WIDTH=2 HEIGHT=2",
                                            "$!GEOMETRY CIRCLE X=0 Y=0 RADIUS=1.5",
                                            "$!PLOTTYPE CARTESIAN3D",
                                            "$!PLOTTYPE CARTESIAN2D",
                                            "$!VIEW FIT",
                                            "$!VIEW PSI=40 ALPHA=10 THETA=5",
                                            "$!BLANKING VALUE{INCLUDE = NO}",
                                            "$!UNDO"};

void DialogRandom::ActOn(QWidget* target) {
  const QPoint at(static_cast<int>(Number(static_cast<unsigned>(target->width()))),
                  static_cast<int>(Number(static_cast<unsigned>(target->height()))));
  switch (Number(5)) {
    case 0:
    case 1:
      QTest::mouseClick(target, Qt::LeftButton, {}, at);
      break;
    case 2:
      target->setFocus();
      QTest::keyClick(target, OneOf(kKeys));
      break;
    case 3:
      target->setFocus();
      QTest::keyClicks(target, OneOf(kTexts));
      break;
    default: {
      QWheelEvent wheel(at, target->mapToGlobal(at), {}, {0, Number(2) == 0 ? 120 : -120},
                        Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
      QApplication::sendEvent(target, &wheel);
    }
  }
  // A list that came up goes again, or it would swallow the next click.
  if (QWidget* const popup = QApplication::activePopupWidget()) {
    QTest::keyClick(popup, Number(2) == 0 ? Qt::Key_Return : Qt::Key_Escape);
    if (popup->isVisible()) popup->close();
  }
}

void DialogRandom::Disturb() {
  switch (Number(4)) {
    case 0:
      workspace.Do([this](qelhost::Host& h) { qelhost::Act(h, OneOf(kCommands)); });
      break;
    case 1:
      host.messages.QueueAnswer(Number(2) == 0);
      break;
    case 2:
      workspace.Do([](qelhost::Host& h) { qelhost::ChooseMenu(h, "Data", "Marquell ..."); });
      break;
    default:
      QTest::keyClick(&Window(), Number(8) == 0 ? Qt::Key_Escape : Qt::Key_F1);
  }
}

void DialogRandom::Step() {
  if (!Window().isVisible()) {
    workspace.Do([](qelhost::Host& h) { qelhost::Act(h, "$!PLOTTYPE CARTESIAN3D"); });
    OpenDialog();
  }
  // A list of a menu takes the keyboard with it when it goes.
  QApplication::setActiveWindow(&Window());
  if (Number(8) == 0) {
    Disturb();
    return;
  }
  ActOn(OneOf(Targets()));
}

TEST_P(DialogRandom, WidgetsAndModelAgree) {
  OpenDialog();
  constexpr int kSteps = 2000;
  for (int step = 0; step < kSteps && !HasFailure(); ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    Step();
    ExpectAgreement();
  }
  Window().CommitTyped();
  ExpectAgreement();
}

INSTANTIATE_TEST_SUITE_P(Seeds, DialogRandom, testing::Values(1U, 2U, 3U));

}  // namespace
}  // namespace marquell::workbench
