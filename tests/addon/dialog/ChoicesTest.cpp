// What is altered and how: variable, modifier, contours, rule, and taking it back.
#include "DialogTest.h"
#include "HostLock.h"

namespace {

using fakehost::DialogTest;
using qelvane::qelutiltools::FormatModifier;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::PickRule;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr char kModifierHelp[] =
    "\n\nValid input is in the form of <operator><value>\n"
    "  where <operator> is one of: = + - * /\n"
    "If no operator is included, = is assumed.\n\n"
    "Examples:\n"
    "    99\tAssign a value of 99 to all picked elements.\n"
    "  =-33\tAssign a value of -33 to all picked elements.\n"
    "   +10\tAdd 10 to the current value of picked elements.\n"
    "  -0.5\tSubtract .5 from the current value of picked elements.\n"
    "  *1.4\tMultiply current value of picked elements by 1.4\n"
    "  /2.0\tDivide current value of picked elements by 2.\n"
    "  NOTE:  /0 is not allowed.";

// Variable and contours --------------------------------------------------------------------------

class Variable : public DialogTest {
 protected:
  /// As a toolkit whose menu is older than the data set.
  void ChooseStale(LgIndex_t item) { host.At(Ids().variableMenu).made.chosen(item); }
};

TEST_F(Variable, IsTheItemChosen) {
  ASSERT_TRUE(host.Choose(Ids().variableMenu, c));
  EXPECT_EQ(Session().AlterVariable(), c);
  EXPECT_EQ(host.ActiveFrame().contourVar, 0);
}

TEST_F(Variable, StaysAmongThoseThatThereAre) {
  ChooseStale(99);
  EXPECT_EQ(Session().AlterVariable(), c);
  ChooseStale(0);
  EXPECT_EQ(Session().AlterVariable(), 1);
  ChooseStale(-5);
  EXPECT_EQ(Session().AlterVariable(), 1);
}

TEST_F(Variable, DropsTheUndo) {
  AlterAll();
  ASSERT_TRUE(host.Choose(Ids().variableMenu, n));
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_F(Variable, IsShownByTheContoursWhileSynchronized) {
  ASSERT_TRUE(host.Switch(Ids().syncContoursToggle, true));
  EXPECT_TRUE(Session().IsSyncingContours());
  EXPECT_EQ(host.CallCount("QelUtilContourSetVariable"), 0) << "no variable is chosen yet";
  ASSERT_TRUE(host.Choose(Ids().variableMenu, c));
  EXPECT_EQ(host.ActiveFrame().contourVar, c);
  ASSERT_TRUE(host.Switch(Ids().syncContoursToggle, false));
  EXPECT_FALSE(Session().IsSyncingContours());
  ASSERT_TRUE(host.Choose(Ids().variableMenu, n));
  EXPECT_EQ(host.ActiveFrame().contourVar, c);
  ASSERT_TRUE(host.Switch(Ids().syncContoursToggle, true));
  EXPECT_EQ(host.ActiveFrame().contourVar, n) << "not at once";
}

// Modifier ---------------------------------------------------------------------------------------

struct ModifierRow {
  const char* typed;
  const char* shown;
};

class Modifier : public DialogTest {};

TEST_F(Modifier, IsTakenAndWrittenBack) {
  const ModifierRow rows[] = {{" + 1 0  ", "+10"}, {"99", "=99"},
                              {"=-33", "=-33"},    {"-0.5", "-0.5"},
                              {"*1.4", "*1.4"},    {"/2.0", "/2"},
                              {"*0", "*0"},        {"+", "+0"},
                              {"=", "=0"},         {"--5", "--5"},
                              {"1e3", "=1000"},    {"5abc", "=5"},
                              {"10", "=10"},       {"+1.23456789", "+1.23457"}};
  for (const ModifierRow& row : rows) {
    EXPECT_TRUE(host.EnterText(Ids().modifierField, row.typed)) << row.typed;
    EXPECT_EQ(TextOf(Ids().modifierField), row.shown) << row.typed;
    const HostLock lock;
    EXPECT_EQ(FormatModifier(Session().Modifier()), row.shown);
  }
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

TEST_F(Modifier, IsRefusedWithHelpAndPutBack) {
  ASSERT_TRUE(host.EnterText(Ids().modifierField, "*3"));
  for (const std::string typed : {"abc", "x 5 ", "e5", "", "   ", "/0", "/0.0", "/", "/-0"}) {
    host.messageBoxes.clear();
    EXPECT_TRUE(host.EnterText(Ids().modifierField, typed)) << typed;
    ASSERT_THAT(host.messageBoxes, SizeIs(1)) << typed;
    EXPECT_EQ(host.messageBoxes[0].text,
              "Bad input for the value modifier:  " + typed + kModifierHelp);
    EXPECT_EQ(host.messageBoxes[0].kind, MessageBox_Error);
    EXPECT_EQ(TextOf(Ids().modifierField), "*3");
  }
  const HostLock lock;
  EXPECT_EQ(FormatModifier(Session().Modifier()), "*3");
}

TEST_F(Modifier, KeepsTheUndoWhenRefusedAndDropsItWhenTaken) {
  AlterAll();
  ASSERT_TRUE(host.EnterText(Ids().modifierField, "abc"));
  EXPECT_TRUE(Session().IsUndoAvailable());
  EXPECT_TRUE(IsSensitive(Ids().undoAlterButton));
  ASSERT_TRUE(host.EnterText(Ids().modifierField, "+5"));
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

// Undo -------------------------------------------------------------------------------------------

class Undo : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    before = host.ValuesOf(1, n);
  }
  std::vector<double> before;
};

TEST_F(Undo, TakesTheAlterationBackOnce) {
  host.isRecording = true;
  AlterAll();
  ASSERT_NE(host.ValuesOf(1, n), before);
  host.recordedLines.clear();
  host.redrawCount = 0;
  ASSERT_TRUE(host.Press(Ids().undoAlterButton));
  EXPECT_EQ(host.ValuesOf(1, n), before);
  EXPECT_THAT(host.recordedLines,
              ElementsAre(::testing::StartsWith("Marquell PICKRECTANGLE "), "Marquell UNDOALTER"));
  EXPECT_EQ(host.redrawCount, 1);
  EXPECT_FALSE(host.Press(Ids().undoAlterButton)) << "there is nothing more to undo";
  EXPECT_EQ(TextOf(Ids().modifierField), "+5");
}

TEST_F(Undo, RecordsAndRedrawsOnlyWhileRecording) {
  AlterAll();
  ASSERT_TRUE(host.Press(Ids().undoAlterButton));
  EXPECT_EQ(host.ValuesOf(1, n), before);
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_EQ(host.redrawCount, 0);
}

TEST_F(Undo, IsNotOfferedForAnAssignment) {
  ChooseAlteration("=5");
  host.DrawGeometry(RectangleUpTo(9.0));
  ASSERT_TRUE(host.Press(Ids().applyButton));
  EXPECT_THAT(host.ValuesOf(1, n), Each(5.0));
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_F(Undo, OfAMultiplicationByZeroDoesAndRecordsNothing) {
  host.isRecording = true;
  ChooseAlteration("*0");
  host.DrawGeometry(RectangleUpTo(9.0));
  ASSERT_TRUE(host.Press(Ids().applyButton));
  host.recordedLines.clear();
  host.redrawCount = 0;
  ASSERT_TRUE(host.Press(Ids().undoAlterButton));
  EXPECT_THAT(host.ValuesOf(1, n), Each(0.0));
  EXPECT_THAT(host.recordedLines, IsEmpty());
  EXPECT_EQ(host.redrawCount, 0);
}

TEST_F(Undo, SaysWhenItsGeometryIsGone) {
  host.isRecording = true;
  AlterAll();
  const std::vector<double> altered = host.ValuesOf(1, n);
  host.DeleteGeometry(host.ActiveFrame().geometries.back().id);
  ASSERT_TRUE(host.Press(Ids().undoAlterButton));
  EXPECT_THAT(MessageTexts(),
              ElementsAre("Unable to perform Undo because geometry has been changed or deleted."));
  EXPECT_EQ(host.ValuesOf(1, n), altered);
  EXPECT_THAT(host.recordedLines, Not(Contains("Marquell UNDOALTER")));
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

// Rule -------------------------------------------------------------------------------------------

struct RuleChoiceRow {
  const char* rule;
  LgIndex_t side;
  LgIndex_t count;
  PickRule expected;
  const char* corners;
};

class Rule : public DialogTest, public ::testing::WithParamInterface<RuleChoiceRow> {};

TEST_P(Rule, IsReadFromBothMenus) {
  ASSERT_TRUE(host.Choose(Ids().insideOutsideMenu, GetParam().side));
  ASSERT_TRUE(host.Choose(Ids().anyAllMenu, GetParam().count));
  EXPECT_EQ(Session().Rule(), GetParam().expected);
  EXPECT_EQ(TextOf(Ids().cornersLabel), GetParam().corners);
}

TEST_P(Rule, IsTheSameInTheOtherOrder) {
  ASSERT_TRUE(host.Choose(Ids().anyAllMenu, GetParam().count));
  ASSERT_TRUE(host.Choose(Ids().insideOutsideMenu, GetParam().side));
  EXPECT_EQ(Session().Rule(), GetParam().expected);
  EXPECT_EQ(TextOf(Ids().cornersLabel), GetParam().corners);
}

TEST_P(Rule, DropsTheUndo) {
  AlterAll();
  ASSERT_TRUE(host.Choose(Ids().insideOutsideMenu, GetParam().side));
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_P(Rule, DropsTheUndoFromTheOtherMenuToo) {
  AlterAll();
  ASSERT_TRUE(host.Choose(Ids().anyAllMenu, GetParam().count));
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

INSTANTIATE_TEST_SUITE_P(
    Rules, Rule,
    ::testing::Values(RuleChoiceRow{"InsideAny", 1, 1, PickRule::AnyInside, "corners inside"},
                      RuleChoiceRow{"OutsideAny", 2, 1, PickRule::AnyOutside, "corners outside"},
                      RuleChoiceRow{"InsideAll", 1, 2, PickRule::AllInside, "corners inside"},
                      RuleChoiceRow{"OutsideAll", 2, 2, PickRule::AllOutside, "corners outside"}),
    [](const auto& row) { return std::string(row.param.rule); });

}  // namespace
