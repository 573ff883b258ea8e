// The window around the controls: the way of the keyboard, names, pictures.
#include "WorkbenchTest.h"

#include "BitmapIcon.h"
#include "DialogOrder.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

#include <set>

namespace marquell::workbench {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Not;

class DialogWindowTest : public WorkbenchTest {
 protected:
  DialogWindowTest() { OpenDialog(); }

  /// What the keyboard comes to, by pressing Tab until it is back.
  std::vector<QWidget*> TabRound() {
    auto* const bar = static_cast<QTabWidget*>(Window().WidgetOf(TabId()))->tabBar();
    bar->setFocus();
    std::vector<QWidget*> round;
    do {
      round.push_back(Window().focusWidget());
      QTest::keyClick(Window().focusWidget(), Qt::Key_Tab);
    } while (Window().focusWidget() != round.front() && round.size() < 100);
    return round;
  }

  QRect PlaceOf(QWidget* widget) {
    return {widget->mapTo(&Window(), QPoint(0, 0)), widget->size()};
  }
};

TEST_F(DialogWindowTest, TabComesToEverythingAsItIsRead) {
  for (const char* const tool :
       {"Define pick area using a rectangle", "Define pick area using a cube",
        "Define pick area using a sphere"}) {
    Click(Button(tool));
    for (const int page : {1, 2}) {
      ClickTab(page);
      const std::vector<QWidget*> round = TabRound();
      const std::set<QWidget*> met(round.begin(), round.end());
      for (QWidget* const widget : Window().findChildren<QWidget*>()) {
        const bool takesKeys = widget->focusPolicy() & Qt::TabFocus &&
                               widget->focusProxy() == nullptr && widget->isVisible() &&
                               widget->isEnabled();
        // Of radio buttons Tab comes to the one that is on; arrows lead to the others.
        auto* const button = qobject_cast<QAbstractButton*>(widget);
        const bool isOtherRadio =
            button != nullptr && button->autoExclusive() && !button->isChecked();
        if (takesKeys && !isOtherRadio && widget->parentWidget() != nullptr &&
            widget->parentWidget()->focusProxy() == nullptr &&
            qobject_cast<QAbstractSpinBox*>(widget->parentWidget()) == nullptr) {
          EXPECT_EQ(met.count(widget), 1U)
              << widget->metaObject()->className() << ' ' << widget->accessibleName().toStdString();
        }
      }
      for (std::size_t i = 1; i < round.size(); ++i) {
        const QRect a = PlaceOf(round[i - 1]);
        const QRect b = PlaceOf(round[i]);
        const bool isLower = b.center().y() > a.center().y() + a.height() / 4;
        const bool isRight = b.left() >= a.right() && b.center().y() > a.center().y() - 12;
        // The apply button stands beside a box of two lines.
        EXPECT_TRUE(isLower || isRight)
            << i << ": " << a.x() << ',' << a.y() << " to " << b.x() << ',' << b.y();
      }
    }
  }
}

TEST_F(DialogWindowTest, EverythingHasANameForThoseWhoDoNotSee) {
  for (LgIndex_t id = Window().Dialog() + 1; host.dialogs.Find(id) != nullptr; ++id) {
    const qelhost::Control& control = *host.dialogs.Find(id);
    const bool isNameless = control.kind == qelhost::ControlKind::OptionMenu ||
                            control.kind == qelhost::ControlKind::TextField ||
                            control.kind == qelhost::ControlKind::SpinTextField ||
                            control.kind == qelhost::ControlKind::BitmapToggle;
    if (isNameless) {
      EXPECT_FALSE(Window().WidgetOf(id)->accessibleName().isEmpty()) << id << control.toolTip;
    }
  }
  EXPECT_EQ(Menu("Inside")->accessibleName(), "Apply changes");
  EXPECT_EQ(Menu("Any")->accessibleName(), "Choose cells with");
  EXPECT_EQ(Menu("Choose variable to pick and alter")->accessibleName(), "Variable");
  EXPECT_EQ(ModifierField()->accessibleName(), "Modifier");
  EXPECT_NO_THROW(Named("Size Z"));
  EXPECT_NO_THROW(Named("Radius"));
}

TEST_F(DialogWindowTest, NoTwoMnemonicsAreTheSame) {
  const DialogTexts texts = TextsOf(host.dialogs, Window().Dialog(), "CH");
  std::set<QChar> letters = {'C', 'H'};
  for (const auto& [id, letter] : texts.mnemonics) {
    EXPECT_TRUE(letters.insert(letter).second) << QString(letter).toStdString();
  }
  EXPECT_EQ(texts.mnemonics.at(Control("Apply Alteration").id), 'A');
  EXPECT_GT(texts.mnemonics.size(), 10U);
}

TEST_F(DialogWindowTest, AMnemonicOfALabelLeadsToItsField) {
  auto* const label = static_cast<QLabel*>(Widget("Modifier"));
  const int mark = label->text().indexOf('&');
  ASSERT_GE(mark, 0);
  Menu("Any")->setFocus();
  const auto letter = static_cast<Qt::Key>(label->text().at(mark + 1).toUpper().unicode());
  QTest::keyClick(Menu("Any"), letter, Qt::AltModifier);
  EXPECT_TRUE(ModifierField()->hasFocus());
}

TEST_F(DialogWindowTest, LongNamesStandWholeInTheTipAndTheList) {
  workspace.Do([this](qelhost::Host& h) {
    const LgIndex_t id = Control("Choose variable to pick and alter").id;
    h.dialogs.Find(id)->items = {"a name that is far longer than any menu of a dialog is wide",
                                 "another"};
    h.dialogs.Find(id)->selected = 1;
  });
  QComboBox* const menu = Menu("Choose variable to pick and alter");
  EXPECT_TRUE(menu->toolTip().contains("far longer than any menu of a dialog is wide"));
  EXPECT_TRUE(menu->toolTip().contains("Choose variable"));
  EXPECT_GE(menu->view()->minimumWidth(), menu->fontMetrics().horizontalAdvance(menu->itemText(0)));
  const int right = menu->geometry().right();
  EXPECT_LT(right, Button("Sync C1 contours")->geometry().left());
  menu->setCurrentIndex(1);
}

TEST_F(DialogWindowTest, ADialogThatGrowsIsWiderNotCutOff) {
  const int before = Window().WholeSize().width();
  workspace.Do([this](qelhost::Host& h) {
    h.dialogs.Find(Control("Undo last alter").id)->text = "Undo the alteration of p once";
  });
  QPushButton* const button = static_cast<QPushButton*>(Widget("Undo the alteration of p once"));
  EXPECT_GT(Window().WholeSize().width(), before);
  EXPECT_GE(button->width(),
            button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width());
  EXPECT_TRUE(button->parentWidget()->rect().contains(button->geometry()));
  workspace.Do([](qelhost::Host& h) {
    for (LgIndex_t id = 1; h.dialogs.Find(id) != nullptr; ++id) {
      if (h.dialogs.Find(id)->text.rfind("Undo the", 0) == 0) {
        h.dialogs.Find(id)->text = "Undo last alter";
      }
    }
  });
}

TEST_F(DialogWindowTest, TheDialogFollowsTheFont) {
  const QSize before = Window().WholeSize();
  QFont font = Window().font();
  font.setPointSize(font.pointSize() * 2);
  Window().setFont(font);
  QTest::qWait(5);
  EXPECT_GT(Window().WholeSize().width(), before.width() * 3 / 2);
  EXPECT_GT(Window().WholeSize().height(), before.height() * 3 / 2);
}

TEST_F(DialogWindowTest, MenusOneBelowTheOtherAreEquallyWide) {
  EXPECT_EQ(Menu("Inside")->width(), Menu("Any")->width());
  EXPECT_EQ(Menu("Inside")->x(), Menu("Any")->x());
}

TEST_F(DialogWindowTest, ItBelongsToTheMainWindowAndBlocksNothing) {
  EXPECT_EQ(Window().parentWidget(), &mainWindow);
  EXPECT_FALSE(Window().isModal());
  EXPECT_EQ(Window().windowTitle(), "Marquell");
}

TEST(BitmapIconTest, LeavesOutTheTransparentColourAndTurnsBrightnessOnDark) {
  qelhost::Bitmap bitmap;
  bitmap.width = 2;
  bitmap.height = 1;
  bitmap.rgb = std::string("\xFF\xFF\xFF\x10\x20\x60", 6);
  bitmap.hasTransparentColor = true;
  bitmap.red = bitmap.green = bitmap.blue = 255;
  const QPalette light(QColor(240, 240, 240));
  const QPalette dark(QColor(40, 40, 40));
  const QImage onLight = IconOf(bitmap, light).pixmap(2, 1).toImage();
  EXPECT_EQ(onLight.pixelColor(0, 0).alpha(), 0);
  EXPECT_EQ(onLight.pixelColor(1, 0), QColor(0x10, 0x20, 0x60));
  const QImage onDark = IconOf(bitmap, dark).pixmap(2, 1).toImage();
  EXPECT_EQ(onDark.pixelColor(0, 0).alpha(), 0);
  EXPECT_GT(onDark.pixelColor(1, 0).lightness(), 150);
  EXPECT_NEAR(onDark.pixelColor(1, 0).hslHue(), QColor(0x10, 0x20, 0x60).hslHue(), 3);
}

TEST(BitmapIconTest, PixelsStaySquareAtTwiceTheScale) {
  qelhost::Bitmap bitmap;
  bitmap.width = bitmap.height = 2;
  bitmap.rgb = std::string("\0\0\0\xFF\0\0\0\xFF\0\0\0\xFF", 12);
  const QIcon icon = IconOf(bitmap, QPalette(QColor(240, 240, 240)));
  const QImage image = icon.pixmap(QSize(4, 4)).toImage();
  ASSERT_EQ(image.size(), QSize(4, 4));
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) {
      const auto at = static_cast<std::size_t>(3 * (x / 2 + 2 * (y / 2)));
      const auto part = [&](std::size_t i) {
        return static_cast<int>(static_cast<unsigned char>(bitmap.rgb[at + i]));
      };
      EXPECT_EQ(image.pixelColor(x, y), QColor(part(0), part(1), part(2))) << x << ',' << y;
    }
  }
}

TEST(DialogLayoutRules, ControlsThatTheirAuthorPutUponEachOtherStaySo) {
  std::vector<QRect> rects;
  LayoutItem one;
  one.place = {0, 0, 1000, 200};
  one.need = QSize(10, 10);
  EXPECT_FALSE(PlaceSiblings({one, one}, {8, 16}, QSize(200, 100), rects).IsAny());
  EXPECT_EQ(rects[0], rects[1]);
}

TEST(DialogLayoutRules, AControlThatNeedsMoreAsksForLargerUnits) {
  std::vector<QRect> rects;
  LayoutItem upper;
  upper.place = {0, 0, 1000, 100};
  upper.need = QSize(10, 40);
  LayoutItem lower = upper;
  lower.place.y = 150;
  Shortage shortage = PlaceSiblings({upper, lower}, {8, 16}, QSize(200, 200), rects);
  EXPECT_TRUE(shortage.inHeight);
  EXPECT_FALSE(shortage.inWidth);
  shortage = PlaceSiblings({upper, lower}, {8, 32}, QSize(200, 200), rects);
  EXPECT_FALSE(shortage.IsAny());
  LayoutItem wide = upper;
  wide.need = QSize(300, 10);
  EXPECT_TRUE(PlaceSiblings({wide}, {8, 16}, QSize(200, 200), rects).inWidth);
}

}  // namespace
}  // namespace marquell::workbench
