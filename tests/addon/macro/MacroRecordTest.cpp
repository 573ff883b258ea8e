#include "CMacroEngine.h"
#include "RecorderHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>

namespace qelvane::qelutiltools {
namespace {

using recorderhost::Host;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

class Recording : public ::testing::Test {
 protected:
  void SetUp() override { recorderhost::ResetHost(); }
  void TearDown() override {
    EXPECT_EQ(Host().lockDepth, 0) << "a lock was left open";
    EXPECT_EQ(Host().callsWithoutLock, 0);
  }

  void Commit(std::int32_t command) {
    engine.CurrentCommand.Command = command;
    engine.CurrentCommand.Attributes.clear();
    engine.CommitCommand();
  }

  CMacroEngine engine;
};

TEST_F(Recording, WritesAttributesInTheOrderInWhichTheyWereAdded) {
  engine.CurrentCommand.Command = Command_AlterElement;
  engine.AddStringAttribute(Attribute_Variable, "X");
  engine.AddStringAttribute(Attribute_Modifier, "+2.5");
  engine.AddNumberAttribute(Attribute_Zone, 3.0);
  engine.CommitCommand();
  EXPECT_THAT(Host().lines, ElementsAre(R"(ALTERELEMENT VARIABLE="X" MODIFIER="+2.5" ZONE=3)"));
  EXPECT_THAT(Host().owners, ElementsAre("Marquell"));
}

TEST_F(Recording, WritesEveryTypeOfValue) {
  engine.CurrentCommand.Command = Command_AlterArea;
  engine.AddStringListAttribute(Attribute_Corners, {"1, 2", "3, 4"});
  engine.AddRangeAttribute(Attribute_Zone, 3, 7);
  engine.AddBooleanAttribute(Attribute_Mode, true);
  engine.AddBooleanAttribute(Attribute_Mode, false);
  engine.AddKeywordAttribute(Attribute_Rule, Keyword_AnyOutside);
  engine.CommitCommand();
  EXPECT_THAT(Host().lines, ElementsAre(R"(ALTERAREA CORNERS="1, 2","3, 4" ZONE="3-7" MODE=T )"
                                        R"(MODE=F RULE=ANYOUTSIDE)"));
}

TEST_F(Recording, AnEmptyListOfCornersAddsNothing) {
  engine.CurrentCommand.Command = Command_PickPolygon;
  engine.AddStringListAttribute(Attribute_Corners, {});
  EXPECT_THAT(engine.CurrentCommand.Attributes, IsEmpty());
}

TEST_F(Recording, AStringValueWithoutStringsIsAnEmptyPairOfQuotes) {
  MacroCommand command;
  command.Command = Command_PickPolygon;
  command.Attributes.push_back({Attribute_Corners, MacroValue()});
  engine.RecordCommand(command);
  EXPECT_THAT(Host().lines, ElementsAre(R"(PICKPOLYGON CORNERS="")"));
}

TEST_F(Recording, EmptyStringsAreWrittenLikeOthers) {
  MacroCommand command;
  command.Command = Command_PickPolygon;
  MacroValue value;
  value.Strings = {"", "a", "b\"c"};
  command.Attributes.push_back({Attribute_Corners, value});
  engine.RecordCommand(command);
  EXPECT_THAT(Host().lines, ElementsAre("PICKPOLYGON CORNERS=\"\",\"a\",\"b\"c\""));
}

struct RecordedNumberRow {
  const char* rule;
  double number;
  const char* text;
};

class RecordedNumber : public ::testing::TestWithParam<RecordedNumberRow> {};

TEST_P(RecordedNumber, IsWrittenWholeWhenItIsWhole) {
  recorderhost::ResetHost();
  CMacroEngine engine;
  engine.CurrentCommand.Command = Command_AlterElement;
  engine.AddNumberAttribute(Attribute_Zone, GetParam().number);
  engine.CommitCommand();
  EXPECT_THAT(Host().lines, ElementsAre(std::string("ALTERELEMENT ZONE=") + GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Rules, RecordedNumber,
    ::testing::Values(RecordedNumberRow{"Whole", 5.0, "5"},
                      RecordedNumberRow{"NegativeWhole", -4.0, "-4"},
                      RecordedNumberRow{"Fraction", 0.1, "0.1"},
                      RecordedNumberRow{"SixSignificantDigits", 1.23456789, "1.23457"},
                      RecordedNumberRow{"LargestInt", 2147483646.0, "2147483646"},
                      RecordedNumberRow{"AboveLargestInt", 2147483647.0, "2.14748e+09"},
                      RecordedNumberRow{"SmallestInt", -2147483648.0, "-2147483648"},
                      RecordedNumberRow{"BelowSmallestInt", -2147483649.0, "-2.14748e+09"},
                      RecordedNumberRow{"JustAboveWhole", 3.00000005, "3"},
                      RecordedNumberRow{"JustBelowWhole", 2.99999999, "3"},
                      RecordedNumberRow{"NotQuiteWhole", 3.000001, "3"},
                      RecordedNumberRow{"Huge", 1e300, "1e+300"},
                      RecordedNumberRow{"Infinite", std::numeric_limits<double>::infinity(),
                                        "inf"}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(Recording, NothingIsWrittenWhileTheHostDoesNotRecord) {
  Host().isRecording = false;
  Commit(Command_UndoAlter);
  EXPECT_THAT(Host().lines, IsEmpty());
  EXPECT_EQ(Host().recordingQueries, 1);
}

TEST_F(Recording, NothingIsWrittenWhenRecordingEndsMeanwhile) {
  Host().stopsAfterQueries = 1;
  Commit(Command_UndoAlter);
  EXPECT_THAT(Host().lines, IsEmpty());
  EXPECT_EQ(Host().recordingQueries, 2);
}

TEST_F(Recording, ARefusedLineIsAnInternalErrorThatNamesTheCall) {
  Host().refusesLines = true;
  try {
    Commit(Command_UndoAlter);
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), MatchesRegex("Assert failed: QelUtilMacroRecordAddOnCommand\\("
                                           "ADDON_NAME, strFinalCommand\\.c_str\\(\\)\\) "
                                           "\\(macro [0-9]+\\)"));
  }
}

TEST_F(Recording, DeferredCommandsAreWrittenInOrderByTheFlush) {
  engine.BeginDeferredRecording();
  EXPECT_TRUE(engine.Deferring);
  Commit(Command_ViewXY);
  Commit(Command_UndoAlter);
  EXPECT_THAT(Host().lines, IsEmpty());
  EXPECT_EQ(engine.PendingCommands.size(), 2u);
  engine.FlushDeferredCommands();
  EXPECT_THAT(Host().lines, ElementsAre("VIEWXY", "UNDOALTER"));
  EXPECT_FALSE(engine.Deferring);
  EXPECT_THAT(engine.PendingCommands, IsEmpty());
  Commit(Command_View3D);
  EXPECT_THAT(Host().lines, ElementsAre("VIEWXY", "UNDOALTER", "VIEW3D"));
}

TEST_F(Recording, FlushingAnEmptyQueueWritesNothing) {
  engine.FlushDeferredCommands();
  EXPECT_THAT(Host().lines, IsEmpty());
  EXPECT_EQ(Host().recordingQueries, 0);
}

TEST_F(Recording, ALineMayBeOfAnyLength) {
  const std::string name(100000, 'n');
  engine.CurrentCommand.Command = Command_AlterArea;
  engine.AddStringAttribute(Attribute_Variable, name);
  engine.CommitCommand();
  EXPECT_THAT(Host().lines, ElementsAre("ALTERAREA VARIABLE=\"" + name + "\""));
}

TEST(MacroEngine, StartsIdleWithoutACommandAndIsOneForTheProcess) {
  const CMacroEngine engine;
  EXPECT_FALSE(engine.Deferring);
  EXPECT_FALSE(engine.PlayingBack);
  EXPECT_EQ(engine.GlobalError(), "");
  EXPECT_EQ(engine.CurrentCommand.Command, -1);
  EXPECT_EQ(&MacroEngine, &TheMacroEngine());
}

}  // namespace
}  // namespace qelvane::qelutiltools
