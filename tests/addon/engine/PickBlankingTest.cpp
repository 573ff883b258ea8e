// Hiding what is picked: the blanking variable, and who may have none.
#include "BlankTest.h"

namespace {

using fakehost::kBlank3;
using fakehost::kEverywhere;
using fakehost::PickBlanking;
using fakehost::StateChangeNotice;
using fakehost::StoredType;
using qelvane::qelutiltools::PickKind;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kRefused[] = "Unable to initialize this data set for pick blanking.";

// The variable ---------------------------------------------------------------------------------

TEST_F(PickBlanking, FirstBlankAddsAByteForEachCellOfEveryZoneWithoutValues) {
  LoadTwo();
  EXPECT_EQ(BlankVariable(), 0);
  PlayWell(kBlank3);
  ASSERT_EQ(BlankVariable(), 6);
  for (const LgIndex_t zone : {1, 2}) {
    EXPECT_EQ(host.ValuesAt(zone, 6)->location, ValueLocation_CellCentered);
    EXPECT_EQ(host.ValuesAt(zone, 6)->typeWhenAllocated, StoredType::Byte);
  }
  EXPECT_EQ(host.ValuesAt(2, 6)->storage, nullptr) << "only the picked zone gets values";
}

TEST_F(PickBlanking, FirstBlankOfAZoneSetsAllItsValuesTo0ThenThePickedOneTo1) {
  LoadTwo();
  PlayWell(kBlank3);
  EXPECT_THAT(Blanks(1), ElementsAre(0, 0, 1, 0));
  EXPECT_THAT(Blanks(2), IsEmpty());
  PlayWell("BLANKELEMENT ZONE=1 ELEMENT=1");
  EXPECT_THAT(Blanks(1), ElementsAre(1, 0, 1, 0)) << "set to 0 once, not again";
  PlayWell("BLANKELEMENT ZONE=2 ELEMENT=4");
  EXPECT_THAT(Blanks(2), ElementsAre(0, 0, 0, 1));
  EXPECT_EQ(host.CallCount("QelUtilDataValueAlloc"), 2);
}

TEST_F(PickBlanking, FreshValuesAreSetTo0WhateverTheHostAllocates) {
  LoadTwo();
  host.calls.clear();
  PlayWell(kBlank3);
  std::vector<std::string> writes;
  for (const fakehost::CallRecord& call : host.calls) {
    if (call.function == "QelUtilDataValueAlloc") writes.push_back(call.arguments);
    if (call.function == "QelUtilDataValueSetByRef") writes.push_back(call.arguments);
  }
  EXPECT_THAT(writes, ElementsAre("1, 6", "handle, 1, 0", "handle, 2, 0", "handle, 3, 0",
                                  "handle, 4, 0", "handle, 3, 1"));
}

TEST_F(PickBlanking, EverybodyHearsOfTheVariableOnce) {
  LoadTwo();
  PlayWell(kBlank3);
  PlayWell("BLANKELEMENT ZONE=1 ELEMENT=1");
  int heard = 0;
  for (const StateChangeNotice& notice : host.notices) {
    if (notice.change != StateChange_VarsAdded) continue;
    ++heard;
    EXPECT_THAT(notice.vars, ElementsAre(6));
  }
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(host.CallCount("QelUtilDataSetAddVarX"), 1);
}

TEST_F(PickBlanking, PickedZoneIsReportedAltered) {
  LoadTwo();
  PlayWell(kBlank3);
  EXPECT_THAT(ZonesReported(6), ElementsAre(1));
}

struct ExistingRow {
  const char* name;
  QelValueLocation_e location;
  StoredType type;
};

class ExistingBlankVariable : public PickBlanking,
                              public ::testing::WithParamInterface<ExistingRow> {};

TEST_P(ExistingBlankVariable, IsUsedAsItIs) {
  LoadTwo();
  const LgIndex_t var = host.AddVariable("PICK_BLANK", GetParam().location, GetParam().type,
                                         [](LgIndex_t, LgIndex_t item) { return item == 2; });
  PlayWell(kBlank3);
  EXPECT_EQ(host.CallCount("QelUtilDataSetAddVarX"), 0);
  EXPECT_EQ(host.ActiveFrame().blanking.constraints[8].varA, var);
  std::vector<double> expected(GetParam().location == ValueLocation_Nodal ? 9 : 4, 0.0);
  expected[1] = expected[2] = 1.0;
  EXPECT_EQ(host.ValuesOf(1, var), expected);
  EXPECT_EQ(host.ValuesAt(1, var)->storage->type, GetParam().type);
  // A whole area: nodes where the variable is nodal.
  PlayWell(kEverywhere);
  PlayWell("BLANKAREA");
  EXPECT_THAT(host.ValuesOf(1, var), Each(1.0));
  EXPECT_THAT(host.ValuesOf(2, var), Each(1.0));
  PlayWell("UNDOBLANK");
  EXPECT_THAT(host.ValuesOf(1, var), Each(0.0));
  EXPECT_THAT(host.ValuesOf(2, var), Each(0.0));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ExistingBlankVariable,
    ::testing::Values(ExistingRow{"Nodal", ValueLocation_Nodal, StoredType::Byte},
                      ExistingRow{"NodalDouble", ValueLocation_Nodal, StoredType::Double},
                      ExistingRow{"CellFloat", ValueLocation_CellCentered, StoredType::Float},
                      ExistingRow{"CellInt16", ValueLocation_CellCentered, StoredType::Int16},
                      ExistingRow{"CellInt64", ValueLocation_CellCentered, StoredType::Int64}),
    [](const auto& row) { return std::string(row.param.name); });

// A data set that cannot be blanked ------------------------------------------------------------

class RefusedBlank : public PickBlanking, public ::testing::WithParamInterface<const char*> {};

TEST_P(RefusedBlank, SaysThatTheDataSetHasNoZones) {
  LoadTwo();
  host.ActiveData()->zones.clear();
  EXPECT_EQ(PlayBadly(GetParam()), kRefused);
  EXPECT_EQ(host.CallCount("QelUtilDataSetAddVarX"), 0) << "the host is not even asked";
  EXPECT_EQ(BlankVariable(), 0);
  EXPECT_FALSE(Session().IsBlankMode());
  EXPECT_THAT(host.styleCalls, IsEmpty());
}

TEST_P(RefusedBlank, SaysThatTheHostRefusesTheVariable) {
  LoadTwo();
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+5\" ZONE=1 ELEMENT=1");
  host.notices.clear();
  host.FailCall("QelUtilDataSetAddVarX", 1);
  EXPECT_EQ(PlayBadly(GetParam()), kRefused);
  EXPECT_FALSE(Session().IsBlankMode()) << "the mode stays";
  EXPECT_FALSE(Session().IsUndoAvailable()) << "undo went first";
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_THAT(host.styleCalls, IsEmpty());
}

TEST_P(RefusedBlank, StaysInBlankMode) {
  LoadTwo();
  PlayWell(kBlank3);
  host.ActiveData()->varNames.back() = "renamed";
  host.FailCall("QelUtilDataSetAddVarX", 1);
  EXPECT_EQ(PlayBadly(GetParam()), kRefused);
  EXPECT_TRUE(Session().IsBlankMode());
}

INSTANTIATE_TEST_SUITE_P(Commands, RefusedBlank,
                         ::testing::Values(kBlank3, "BLANKAREA", "BLANKSURFACE ZONE=1 SEEDPOINT=1"),
                         [](const auto& line) {
                           const std::string text = line.param;
                           return text.substr(0, text.find(' '));
                         });

// Picks that hide and picks that heed what is hidden -------------------------------------------

TEST_F(PickBlanking, AreaFollowsTheRule) {
  LoadTwo();
  // The left column of nodes, so the left cells 1 and 3 have corners inside.
  PlayWell("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=1.5 SIZEY=9");
  PlayWell("BLANKAREA RULE=ANYINSIDE");
  EXPECT_THAT(Blanks(1), ElementsAre(1, 0, 1, 0));
  EXPECT_THAT(Blanks(2), ElementsAre(1, 0, 1, 0));
  PlayWell("BLANKAREA RULE=ALLOUTSIDE");
  EXPECT_THAT(Blanks(1), Each(1.0));
}

TEST_F(PickBlanking, AlterationLeavesOutWhatIsHiddenOnlyWhileBlankingIsOn) {
  LoadTwo();
  PlayWell(kBlank3);
  PlayWell(kEverywhere);
  PlayWell("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+100\"");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(111, 112, 113, 114));
  host.ActiveFrame().blanking.include = true;
  PlayWell("ALTERAREA");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(211, 212, 113, 214));
}

TEST_F(PickBlanking, BlankingHeedsNothingThatIsHidden) {
  LoadTwo();
  host.ActiveFrame().blanking.include = true;
  host.ActiveFrame().blanking.constraints[1] = {
      true, c, 0, BlankRelOp_GreaterThan, ConstraintOp2Mode_UseConstant, 0.0};
  ASSERT_TRUE(host.IsBlankedCell(1, 1));
  PlayWell(kEverywhere);
  PlayWell("BLANKAREA");
  EXPECT_THAT(Blanks(1), Each(1.0));
}

// The user's clicks ----------------------------------------------------------------------------

TEST_F(PickBlanking, ClickHidesTheCellAndIsRecorded) {
  LoadTwo();
  host.isRecording = true;
  ASSERT_TRUE(Session().EnterBlankMode());
  ASSERT_TRUE(Session().SetPickKind(PickKind::Element, true));
  host.Probe(false, 2, 3, 5);
  EXPECT_THAT(Blanks(2), ElementsAre(0, 0, 1, 0));
  EXPECT_THAT(host.recordedLines, ElementsAre("Marquell BLANKELEMENT ZONE=2 ELEMENT=3"));
}

TEST_F(PickBlanking, ClickOnANodeIsRefused) {
  LoadTwo();
  host.isRecording = true;
  ASSERT_TRUE(Session().EnterBlankMode());
  ASSERT_TRUE(Session().SetPickKind(PickKind::Element, true));
  host.Probe(true, 1, 3, 5);
  ASSERT_EQ(host.messageBoxes.size(), 1u);
  EXPECT_EQ(host.messageBoxes[0].text,
            "You have chosen a cell centered variable\n  but have clicked on a node.\n\nWhen "
            "identifying a cell, do not hold down the\n  CTRL key during selection.");
  EXPECT_THAT(Blanks(1), Each(0.0));
  EXPECT_THAT(host.recordedLines, IsEmpty());
}

TEST_F(PickBlanking, PlayedBlankRecordsNothing) {
  LoadTwo();
  PlayWell(kBlank3);
  EXPECT_EQ(host.CallCount("QelUtilMacroRecordAddOnCommand"), 0);
}

TEST_F(PickBlanking, AppliedAreaIsRecordedWithItsRuleAlone) {
  LoadTwo();
  host.isRecording = true;
  ASSERT_TRUE(Session().EnterBlankMode());
  Session().SetPickRule(qelvane::qelutiltools::PickRule::AnyOutside);
  Session().RecordArea();
  Session().RecordUndoBlank();
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell BLANKAREA RULE=ANYOUTSIDE", "Marquell UNDOBLANK"));
}

TEST_F(PickBlanking, SwitchIsRecordedWithoutAClosingBrace) {
  LoadTwo();
  Session().RecordBlankingInclude(true);
  EXPECT_EQ(host.CallCount("QelUtilMacroRecordRawCommand"), 0) << "nothing is recorded";
  host.isRecording = true;
  Session().RecordBlankingInclude(true);
  Session().RecordBlankingInclude(false);
  EXPECT_THAT(host.recordedLines,
              ElementsAre("$!BLANKING VALUE{INCLUDE = YES", "$!BLANKING VALUE{INCLUDE = NO"));
}

}  // namespace
