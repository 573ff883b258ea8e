#include "SelfTest.h"

#include "qelvane/QelGUI.h"

namespace {

using fakehost::Control;
using fakehost::ControlKind;
using fakehost::FakeHostTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What the callbacks were called with, in their order.
std::vector<std::string> heard;

void Hear(const std::string& what) {
  heard.push_back(what);
  if (QelUtilLockIsOn()) heard.push_back("the lock is on");
}

/// A dialog with one control of each kind.
class Gui : public FakeHostTest {
 protected:
  Gui() {
    QelUtilLockOn();
    dialog = QelGUIDialogCreateModeless(
        -1, 500, 200, "Title", [] { heard.push_back("init"); }, [] { Hear("close"); },
        [] { Hear("help"); });
    button = QelGUIButtonAdd(dialog, 1, 2, 3, 4, "Do", [] { Hear("pressed"); });
    toggle = QelGUIToggleAdd(dialog, 0, 0, 9, 9, "On",
                             [](LgIndex_t on) { Hear("toggle " + std::to_string(on)); });
    menu = QelGUIOptionMenuAdd(dialog, 0, 0, 9, 9, "a,b b,c",
                               [](LgIndex_t item) { Hear("item " + std::to_string(item)); });
    radio = QelGUIRadioBoxAdd(dialog, 0, 0, 9, 9, "one", "two", nullptr, nullptr, nullptr,
                              [](LgIndex_t item) { Hear("radio " + std::to_string(item)); });
    field = QelGUITextFieldAdd(dialog, 0, 0, 9, 9, [](const char* text) {
      Hear(std::string("text ") + text);
      return text[0] != 'n';
    });
    tab = QelGUITabAdd(
        dialog, 0, 0, 9, 9, [](LgIndex_t page) { Hear("to page " + std::to_string(page)); },
        [](LgIndex_t page) { Hear("from page " + std::to_string(page)); });
    firstPage = QelGUITabAddPage(tab, "First");
    secondPage = QelGUITabAddPage(tab, "Second");
    form = QelGUIFormAdd(dialog, 0, 0, 9, 9);
    upperPage = QelGUIFormAddPage(form);
    lowerPage = QelGUIFormAddPage(form);
    spin = QelGUISpinTextFieldAdd(
        lowerPage, 0, 0, 9, 9, [](const char*) { return true; }, [] { Hear("up"); },
        [] { Hear("down"); });
    onSecondPage = QelGUIButtonAdd(secondPage, 0, 0, 9, 9, "", [] { Hear("second"); });
    QelGUIDialogLaunch(dialog);
    QelUtilLockOff();
    heard.clear();
  }

  /// Asks and sets as an add-on does.
  template <class Body>
  static void Locked(const Body& body) {
    QelUtilLockOn();
    body();
    QelUtilLockOff();
  }

  LgIndex_t dialog, button, toggle, menu, radio, field, tab, firstPage, secondPage, form, upperPage,
      lowerPage, spin, onSecondPage;
};

TEST_F(Gui, RemembersWhatAControlWasMadeWith) {
  const Control& made = host.At(button);
  EXPECT_EQ(made.made.kind, ControlKind::Button);
  EXPECT_EQ(made.made.parent, dialog);
  EXPECT_THAT(std::vector<LgIndex_t>({made.made.x, made.made.y, made.made.width, made.made.height}),
              ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(made.made.text, "Do");
  Locked([&] { QelGUIButtonSetText(button, "Do it"); });
  EXPECT_EQ(host.At(button).text, "Do it");
  EXPECT_EQ(host.At(button).made.text, "Do");
  EXPECT_THAT(host.At(menu).items, ElementsAre("a", "b b", "c"));
  EXPECT_THAT(host.At(radio).items, ElementsAre("one", "two"));
  EXPECT_EQ(host.Controls().back().id, onSecondPage);
}

TEST_F(Gui, CopiesThePixelsOfABitmap) {
  std::string pixels(2 * 1 * 3, '\xff');
  LgIndex_t bitmap = 0;
  Locked([&] {
    bitmap = QelGUIBitmapToggleAdd(dialog, 0, 0, 9, 9, 2, 1, pixels.data(), true, 1, 2, 3, nullptr);
    QelGUISetToolTip(bitmap, "tip");
  });
  pixels.assign(6, '\0');
  EXPECT_THAT(host.At(bitmap).made.pixels, ElementsAre(255, 255, 255, 255, 255, 255));
  EXPECT_THAT(host.At(bitmap).made.transparentColor, ElementsAre(1, 2, 3));
  EXPECT_EQ(host.At(bitmap).toolTip, "tip");
}

TEST_F(Gui, RunsTheCallbackOfWhatTheUserDoesWithoutTheLock) {
  EXPECT_TRUE(host.Press(button));
  EXPECT_TRUE(host.Switch(toggle, true));
  EXPECT_TRUE(host.Choose(menu, 3));
  EXPECT_TRUE(host.ChooseRadio(radio, 2));
  EXPECT_TRUE(host.EnterText(field, "yes"));
  EXPECT_FALSE(host.EnterText(field, "no"));
  EXPECT_TRUE(host.TurnTo(tab, 2));
  EXPECT_TRUE(host.AskForHelp(dialog));
  EXPECT_TRUE(host.CloseWindow(dialog));
  EXPECT_THAT(heard, ElementsAre("pressed", "toggle 1", "item 3", "radio 2", "text yes", "text no",
                                 "from page 1", "to page 2", "help", "close"));
  EXPECT_EQ(host.At(toggle).value, 1);
  EXPECT_EQ(host.ChosenItem(menu), "c");
  EXPECT_EQ(host.At(field).text, "no");
}

TEST_F(Gui, RunsNoCallbackOfWhatIsSet) {
  Locked([&] {
    QelGUIToggleSet(toggle, true);
    QelGUIOptionMenuSet(menu, 2);
    QelGUITextFieldSetString(field, "4");
    QelGUITabSetCurrentPage(tab, 2);
    QelGUIFormSetCurrentPage(lowerPage);
  });
  EXPECT_THAT(heard, IsEmpty());
  EXPECT_EQ(host.ChosenItem(menu), "b b");
  EXPECT_EQ(host.At(tab).value, 2);
  EXPECT_EQ(host.At(form).value, 2);
}

TEST_F(Gui, LetsTheUserReachOnlyWhatIsShown) {
  EXPECT_FALSE(host.StepUp(spin));
  EXPECT_FALSE(host.Press(onSecondPage));
  Locked([&] {
    QelGUIFormSetCurrentPage(lowerPage);
    QelGUITabSetCurrentPage(tab, 2);
    QelGUISetVisibility(button, false);
    QelGUISetSensitivity(menu, false);
  });
  EXPECT_TRUE(host.StepUp(spin));
  EXPECT_TRUE(host.StepDown(spin));
  EXPECT_TRUE(host.Press(onSecondPage));
  EXPECT_FALSE(host.Press(button));
  EXPECT_FALSE(host.Choose(menu, 2));
  EXPECT_THAT(heard, ElementsAre("up", "down", "second"));
  Locked([&] { QelGUIDialogDrop(dialog); });
  EXPECT_FALSE(host.Switch(toggle, true));
  EXPECT_FALSE(host.CloseWindow(dialog));
  EXPECT_THAT(heard, ElementsAre("up", "down", "second"));
}

TEST_F(Gui, LetsTheUserDoOnlyWhatThereIsToDo) {
  EXPECT_FALSE(host.Switch(toggle, false));
  EXPECT_FALSE(host.Choose(menu, 4));
  EXPECT_FALSE(host.Choose(menu, 0));
  EXPECT_FALSE(host.ChooseRadio(radio, 3));
  EXPECT_FALSE(host.TurnTo(tab, 1));
  EXPECT_FALSE(host.Press(menu));
  EXPECT_FALSE(host.Press(-2));
  EXPECT_THAT(heard, IsEmpty());
}

TEST_F(Gui, KeepsTheControlsAndDropsTheDialogsOfAnEarlierTest) {
  const std::size_t count = host.Controls().size();
  host.Reset();
  EXPECT_FALSE(host.IsDialogUp());
  EXPECT_EQ(host.Controls().size(), count);
  EXPECT_EQ(host.At(dialog).text, "Title");
}

TEST_F(Gui, ChoosesTheFirstItemOfAMenuThatWasEmpty) {
  Locked([&] {
    QelGUIOptionMenuDeleteAllItems(menu);
    EXPECT_EQ(QelGUIOptionMenuGet(menu), 0);
    QelGUIOptionMenuAppendItem(menu, "x");
    QelGUIOptionMenuAppendItem(menu, "y");
    EXPECT_EQ(QelGUIOptionMenuGet(menu), 1);
    EXPECT_EQ(QelGUIOptionMenuGetItemCount(menu), 2);
  });
}

struct NumberRow {
  const char* text;
  bool isNumber;
  double value;
};

TEST_F(Gui, ReadsANumberOnlyFromTheWholeText) {
  const NumberRow rows[] = {{"1.5", true, 1.5},  {" 2 ", true, 2.0}, {"-1e3", true, -1000.0},
                            {"abc", false, 0.0}, {"", false, 0.0},   {"5x", false, 0.0}};
  for (const NumberRow& row : rows) {
    host.EnterText(field, row.text);
    double value = 7.0;
    Locked([&] { EXPECT_EQ(QelGUITextFieldGetDouble(field, &value), row.isNumber) << row.text; });
    EXPECT_EQ(value, row.isNumber ? row.value : 7.0) << row.text;
  }
}

TEST_F(Gui, RefusesParentsThatHoldNoControls) {
  Locked([&] {
    EXPECT_EQ(QelGUILabelAdd(button, 0, 0, ""), -2);
    EXPECT_EQ(QelGUILabelAdd(dialog + 1000, 0, 0, ""), -2);
    EXPECT_EQ(QelGUITabAddPage(form, ""), -2);
  });
  EXPECT_EQ(host.Misuse().size(), 3U);
  host.Reset();
}

TEST_F(Gui, AnswersQuestionsInTheirOrderThenNo) {
  host.queuedAnswers = {true, false};
  Locked([] {
    EXPECT_TRUE(QelUtilDialogMessageBox("a", MessageBox_YesNo));
    EXPECT_TRUE(QelUtilDialogMessageBox("b", MessageBox_Error));
    EXPECT_FALSE(QelUtilDialogMessageBox("c", MessageBox_YesNo));
    EXPECT_FALSE(QelUtilDialogMessageBox("d", MessageBox_YesNo));
  });
  EXPECT_THAT(host.queuedAnswers, IsEmpty());
}

/// The owner of the lock at each notice, and the first style parameter.
std::string OwnerAndStyle() {
  char* text = nullptr;
  std::string told;
  if (QelUtilLockGetCurrentOwnerName(&text)) {
    told = text;
    QelUtilStringDealloc(&text);
  }
  if (QelUtilStateChangeGetStyleParam(1, &text)) {
    told += std::string(" ") + text;
    QelUtilStringDealloc(&text);
  }
  return told;
}

TEST_F(Gui, TellsOfMouseViewAndBlankingUnderTheHostsLock) {
  host.AddFrame(PlotType_Cartesian3D);
  host.stateCallbacks.push_back([](QelStateChange_t change) {
    heard.push_back(std::to_string(change) + " " + OwnerAndStyle());
  });
  host.ChooseMouseMode(Mouse_GeomCircle);
  const QelGeomID_t drawn = host.DrawGeometry({});
  host.RotateView(10, 20, 30);
  host.SwitchBlanking(true);
  EXPECT_THAT(heard, ElementsAre("25 Workbench", "36 Workbench", "7 Workbench THREEDVIEW",
                                 "7 Workbench BLANKING"));
  EXPECT_EQ(host.mouseMode, Mouse_GeomCircle);
  EXPECT_EQ(host.ActiveFrame().geometries.back().id, drawn);
  EXPECT_EQ(host.ActiveFrame().view.alpha, 20.0);
  EXPECT_TRUE(host.ActiveFrame().blanking.include);
  EXPECT_EQ(host.LockDepth(), 0);
}

}  // namespace
