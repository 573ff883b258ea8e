// Every control of the add-on's dialog under the mouse and the keyboard: what the user does reaches
// the model, and what the add-on answers reaches the widget.
#include "WorkbenchTest.h"

#include "UserActions.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QMessageBox>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QtTest>

namespace marquell::workbench {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kRectangle[] = "Define pick area using a rectangle";
constexpr char kCube[] = "Define pick area using a cube";
constexpr char kSphere[] = "Define pick area using a sphere";
constexpr const char* kTools[] = {
    "Pick individual cells/nodes",      kRectangle, "Define pick area using a circle",
    "Define pick area using a polygon", kCube,      kSphere};
constexpr char kSurface[] = "Limit picked cells to surface only or drill through";

class DialogActions : public WorkbenchTest {
 protected:
  DialogActions() { OpenDialog(); }

  std::string TextOf(QWidget* field) {
    for (LgIndex_t id = 1; host.dialogs.Find(id) != nullptr; ++id) {
      if (Window().WidgetOf(id) == field) return host.dialogs.Find(id)->text;
    }
    throw std::logic_error("no such field");
  }
  static QLineEdit* EditOf(QWidget* field) { return field->findChild<QLineEdit*>(); }
  QPoint ArrowOf(QWidget* field, bool up) {
    QStyleOptionSpinBox option;
    option.initFrom(field);
    option.subControls = QStyle::SC_All;
    option.buttonSymbols = QAbstractSpinBox::UpDownArrows;
    option.frame = true;
    return field->style()
        ->subControlRect(QStyle::CC_SpinBox, &option,
                         up ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown, field)
        .center();
  }
  void Draw() { workspace.Act("$!GEOMETRY RECTANGLE X=-1 Y=-1 WIDTH=2 HEIGHT=2"); }
  /// Boxes as a window shows them; a click of the user on OK, a moment later.
  void ShowRealBoxes() {
    host.messages.SetBox([this](const std::string& text, QelMessageBox_e) {
      QMessageBox box(QMessageBox::Critical, "box", QString::fromStdString(text), QMessageBox::Ok,
                      &mainWindow);
      QTimer::singleShot(0, &box, [&box] {
        if (QApplication::mouseButtons() != Qt::NoButton) QTest::mouseRelease(&box, Qt::LeftButton);
        box.accept();
      });
      box.exec();
      return true;
    });
  }
};

TEST_F(DialogActions, ToolsExcludeEachOther) {
  for (const char* const tool : kTools) {
    Click(Button(tool));
    for (const char* const other : kTools) {
      EXPECT_EQ(Control(other).selected, other == tool ? 1 : 0) << tool << ", " << other;
    }
    ExpectAgreement();
    Click(Button(tool));
    EXPECT_EQ(Control(tool).selected, 0) << tool;
    ExpectAgreement();
  }
}

TEST_F(DialogActions, SpaceAndReturnPressWhatHasTheKeyboard) {
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
    Button(kRectangle)->setFocus();
    QTest::keyClick(Window().focusWidget(), key);
    EXPECT_EQ(Control(kRectangle).selected, key == Qt::Key_Space ? 1 : 0);
    ExpectAgreement();
  }
}

TEST_F(DialogActions, ReturnInAFieldEntersItAndPressesNothing) {
  ChooseItem(Menu("Choose variable to pick and alter"), "p");
  Click(Button(kRectangle));
  Draw();
  const Values before = ValuesNow();
  Type(ModifierField(), "*3");
  QTest::keyClick(ModifierField(), Qt::Key_Return);
  EXPECT_EQ(TextOf(ModifierField()), "*3");
  EXPECT_EQ(ValuesNow(), before);
  EXPECT_TRUE(Window().isVisible());
  ExpectAgreement();
}

TEST_F(DialogActions, WhatIsTypedIsEnteredWhenTheKeyboardGoesElsewhere) {
  Type(ModifierField(), "+2");
  EXPECT_NE(TextOf(ModifierField()), "+2") << "nothing is entered at each key";
  QTest::keyClick(ModifierField(), Qt::Key_Tab);
  EXPECT_EQ(TextOf(ModifierField()), "+2");
  Type(ModifierField(), "*4");
  QApplication::setActiveWindow(&mainWindow);
  EXPECT_EQ(TextOf(ModifierField()), "*4") << "a click into the plot may use it";
  ExpectAgreement();
}

TEST_F(DialogActions, WhatIsTypedStaysWhileOtherThingsChange) {
  Type(ModifierField(), "+12");
  auto* const edit = static_cast<QLineEdit*>(ModifierField());
  edit->setSelection(1, 1);
  workspace.Act("$!VIEW FIT");
  EXPECT_EQ(edit->text(), "+12");
  EXPECT_EQ(edit->selectedText(), "1");
}

TEST_F(DialogActions, ATextThatTheAddOnRefusesIsTakenBack) {
  const std::string before = TextOf(ModifierField());
  Type(ModifierField(), "what");
  QTest::keyClick(ModifierField(), Qt::Key_Return);
  EXPECT_THAT(said, ElementsAre(HasSubstr("Bad input for the value modifier:  what")));
  EXPECT_EQ(TextOf(ModifierField()), before);
  EXPECT_EQ(static_cast<QLineEdit*>(ModifierField())->text().toStdString(), before);
  ExpectAgreement();
}

TEST_F(DialogActions, AMessageAboutATextComesOnceAndHoldsBackTheClick) {
  Click(Button(kRectangle));
  Draw();
  ChooseItem(Menu("Choose variable to pick and alter"), "p");
  ShowRealBoxes();
  const Values before = ValuesNow();
  for (const bool byMouse : {true, false}) {
    said.clear();
    Type(ModifierField(), "what");
    if (byMouse) {
      QTest::mousePress(Button("Apply Alteration"), Qt::LeftButton);
      // The box took the release.
      QTest::qWait(1);
      EXPECT_FALSE(Button("Apply Alteration")->isDown());
    } else {
      Button("Apply Alteration")->click();
    }
    EXPECT_THAT(said, ElementsAre(HasSubstr("Bad input"))) << byMouse;
    EXPECT_EQ(ValuesNow(), before) << byMouse;
    ExpectAgreement();
  }
}

TEST_F(DialogActions, TurningThePageEntersWhatIsTyped) {
  Type(ModifierField(), "/5");
  ClickTab(2);
  EXPECT_EQ(host.dialogs.Find(TabId())->selected, 2);
  EXPECT_EQ(TextOf(ModifierField()), "/5");
  ExpectAgreement();
  ClickTab(1);
  Type(ModifierField(), "nonsense");
  ShowRealBoxes();
  QTest::keyClick(ModifierField(), Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(TextOf(ModifierField()), "/5");
  ExpectAgreement();
}

TEST_F(DialogActions, MenusFollowTheKeyboardAndTheAddOn) {
  QComboBox* const place = Menu("Inside");
  QComboBox* const corners = Menu("Any");
  for (const char* const where : {"Outside", "Inside"}) {
    ChooseItem(place, where);
    ExpectAgreement();
    EXPECT_EQ(Control(std::string("corners ") + (*where == 'I' ? "inside" : "outside")).kind,
              qelhost::ControlKind::Label);
  }
  ChooseItem(corners, "All");
  ExpectAgreement();
  EXPECT_EQ(corners->currentIndex(), 1);
  QComboBox* const variables = Menu("Choose variable to pick and alter");
  for (const char* const name : {"X", "Y", "Z", "p", "c"}) {
    ChooseItem(variables, name);
    ExpectAgreement();
  }
}

TEST_F(DialogActions, AnItemIsChosenWithTheMouseToo) {
  QComboBox* const corners = Menu("Any");
  ChooseItem(corners, "Any");
  for (const int row : {1, 0}) {
    Click(corners);
    QAbstractItemView* const list = corners->view();
    ASSERT_TRUE(list->isVisible());
    // A list that has just come up does not take the release of the click that opened it for a
    // choice; its timer is a coarse one.
    QTest::qWait(QApplication::doubleClickInterval() * 5 / 4);
    const QRect item = list->visualRect(list->model()->index(row, 0));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(10, item.center().y()));
    EXPECT_TRUE(QTest::qWaitFor([list] { return !list->isVisible(); }));
    EXPECT_EQ(corners->currentIndex(), row);
    ExpectAgreement();
  }
}

TEST_F(DialogActions, TogglesReachTheModel) {
  const LgIndex_t before = Control("Sync C1 contours").selected;
  Click(Button("Sync C1 contours"));
  EXPECT_EQ(Control("Sync C1 contours").selected, 1 - before);
  ExpectAgreement();
  ClickTab(2);
  Click(Button("Include Blanking"));
  EXPECT_TRUE(host.frames.Active()->styles.blanking.include);
  ExpectAgreement();
  Click(Button(kCube));
  Click(Button("Shade"));
  EXPECT_EQ(Control("Shade").selected, 1);
  ExpectAgreement();
}

TEST_F(DialogActions, RadioButtonsFollowTheMouseAndTheArrowKeys) {
  const auto radios = Widget(kSurface)->findChildren<QRadioButton*>();
  Click(radios.at(1));
  EXPECT_EQ(Control(kSurface).selected, 2);
  ExpectAgreement();
  QTest::keyClick(radios.at(1), Qt::Key_Up);
  EXPECT_EQ(Control(kSurface).selected, 1);
  QTest::keyClick(radios.at(0), Qt::Key_Down);
  EXPECT_EQ(Control(kSurface).selected, 2);
  ExpectAgreement();
}

TEST_F(DialogActions, ArrowsAndKeysStepAField) {
  Click(Button(kCube));
  QWidget* const rotate = Named("Rotate X");
  ASSERT_EQ(TextOf(rotate), "0");
  QTest::mouseClick(rotate, Qt::LeftButton, {}, ArrowOf(rotate, true));
  EXPECT_EQ(TextOf(rotate), "5");
  QTest::mouseClick(rotate, Qt::LeftButton, {}, ArrowOf(rotate, false));
  QTest::mouseClick(rotate, Qt::LeftButton, {}, ArrowOf(rotate, false));
  EXPECT_EQ(TextOf(rotate), "-5");
  QTest::keyClick(rotate, Qt::Key_Up);
  QTest::keyClick(rotate, Qt::Key_Up);
  EXPECT_EQ(TextOf(rotate), "5");
  QTest::keyClick(rotate, Qt::Key_Down);
  EXPECT_EQ(TextOf(rotate), "0");
  ExpectAgreement();
}

TEST_F(DialogActions, AnArrowThatIsHeldGoesOnStepping) {
  Click(Button(kCube));
  QWidget* const rotate = Named("Rotate Y");
  QTest::mousePress(rotate, Qt::LeftButton, {}, ArrowOf(rotate, true));
  EXPECT_TRUE(QTest::qWaitFor([&] { return std::stod(TextOf(rotate)) >= 15; }, 10000));
  QTest::mouseRelease(rotate, Qt::LeftButton, {}, ArrowOf(rotate, true));
  ExpectAgreement();
}

TEST_F(DialogActions, AStepBeginsFromWhatIsTyped) {
  Click(Button(kCube));
  QWidget* const rotate = Named("Rotate Z");
  Type(rotate, "357.5");
  QTest::keyClick(rotate, Qt::Key_Up);
  EXPECT_EQ(TextOf(rotate), "2.5");
  ExpectAgreement();
}

TEST_F(DialogActions, EveryNumberOfBoxAndSphereIsTyped) {
  const char* const names[][9] = {{"Anchor X", "Anchor Y", "Anchor Z", "Size X", "Size Y", "Size Z",
                                   "Rotate X", "Rotate Y", "Rotate Z"},
                                  {"Center X", "Center Y", "Center Z", "Radius"}};
  for (const bool isSphere : {false, true}) {
    Click(Button(isSphere ? kSphere : kCube));
    int number = 1;
    for (const char* const name : names[isSphere ? 1 : 0]) {
      if (name == nullptr) break;
      const std::string text = std::to_string(number++) + ".25";
      Type(Named(name), QString::fromStdString(text));
      QTest::keyClick(Named(name), Qt::Key_Return);
      EXPECT_EQ(TextOf(Named(name)), text) << name;
      ExpectAgreement();
    }
  }
  Type(Named("Radius"), "abc");
  QTest::keyClick(Named("Radius"), Qt::Key_Return);
  EXPECT_THAT(said, ElementsAre("Illegal input ( abc ) for radius"));
  EXPECT_EQ(EditOf(Named("Radius"))->text(), "4.25");
}

TEST_F(DialogActions, ViewButtonsTurnTheView) {
  host.recorder.Start({});
  for (const char* const view : {" XY ", " XZ ", " YZ ", " 3D "}) {
    Click(Button(view));
    ExpectAgreement();
  }
  const auto lines = host.recorder.Lines();
  for (const char* const line :
       {"Marquell VIEWXY", "Marquell VIEWXZ", "Marquell VIEWYZ", "Marquell VIEW3D"}) {
    EXPECT_THAT(lines, Contains(line));
  }
}

TEST_F(DialogActions, ApplyAndUndoWorkOnBothPages) {
  ChooseItem(Menu("Choose variable to pick and alter"), "p");
  Type(ModifierField(), "*2");
  Click(Button(kRectangle));
  EXPECT_FALSE(Button("Apply Alteration")->isEnabled());
  Draw();
  const Values before = ValuesNow();
  Click(Button("Apply Alteration"));
  EXPECT_NE(ValuesNow(), before);
  ExpectAgreement();
  Click(Button("Undo last alter"));
  EXPECT_EQ(ValuesNow(), before);
  EXPECT_FALSE(Button("Undo last alter")->isEnabled());
  ExpectAgreement();
  ClickTab(2);
  const Values shown = ValuesNow();
  host.messages.QueueAnswer(true);
  Click(Button("Apply Blanking"));
  EXPECT_NE(ValuesNow(), shown);
  ExpectAgreement();
  Click(Button("Undo all pick blanks"));
  EXPECT_EQ(ValuesNow(), shown);
  ExpectAgreement();
}

TEST_F(DialogActions, EscapeAndTheCloseButtonsCloseTheDialog) {
  const auto close = [this](int way) {
    if (way == 0) QTest::keyClick(&Window(), Qt::Key_Escape);
    if (way == 1) Window().close();
    if (way == 2) Click(Window().findChild<QAbstractButton*>("close"));
  };
  for (const int way : {0, 1, 2}) {
    Click(Button(kCube));
    close(way);
    EXPECT_FALSE(host.dialogs.IsUp(Window().Dialog())) << way;
    EXPECT_FALSE(Window().isVisible()) << way;
    DialogWindow* const before = &Window();
    EXPECT_EQ(&OpenDialog(), before) << "the window is made once";
    EXPECT_EQ(Control(kCube).selected, 0);
    ExpectAgreement();
  }
}

TEST_F(DialogActions, ADialogThatTheHostDropsForgetsWhatWasTyped) {
  const std::string before = TextOf(ModifierField());
  Type(ModifierField(), "+77");
  workspace.Do([this](qelhost::Host& h) { h.dialogs.Drop(Window().Dialog()); });
  EXPECT_FALSE(Window().isVisible());
  OpenDialog();
  EXPECT_EQ(static_cast<QLineEdit*>(ModifierField())->text().toStdString(), before);
  EXPECT_THAT(failures, IsEmpty());
}

TEST_F(DialogActions, HelpIsAskedForByKeyAndButton) {
  host.helpAsked.clear();
  QTest::keyClick(&Window(), Qt::Key_F1);
  EXPECT_THAT(host.helpAsked, ElementsAre("selvane.html"));
  Click(Window().findChild<QAbstractButton*>("help"));
  EXPECT_THAT(host.helpAsked, ElementsAre("selvane.html", "selvane.html"));
}

}  // namespace
}  // namespace marquell::workbench
