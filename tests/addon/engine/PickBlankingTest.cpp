// Hiding what is picked: the blanking variable, the constraint, what a reset leaves.
#include "EngineTest.h"

#include "Utilities.h"

namespace {

using fakehost::EngineTest;
using fakehost::MakeLattice;
using fakehost::StateChangeNotice;
using fakehost::StoredType;
using fakehost::StyleCall;
using qelvane::qelutiltools::GetValueBlankingInclude;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::SetValueBlankingInclude;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kBlank3[] = "BLANKELEMENT ZONE=1 ELEMENT=3";
constexpr char kRefused[] = "Unable to initialize this data set for pick blanking.";
constexpr char kEverywhere[] = "PICKRECTANGLE ANCHORX=-9 ANCHORY=-9 SIZEX=20 SIZEY=20";

/// Two zones of four quadrilaterals each.
class PickBlanking : public EngineTest {
 protected:
  void LoadTwo(QelPlotType_e plotType = PlotType_Cartesian2D) {
    host.AddFrame(plotType);
    host.AddZone(MakeLattice(ZoneType_FEQuad, 2, 2, 0));
    host.AddZone(MakeLattice(ZoneType_FEQuad, 2, 2, 0));
    n = host.AddVariable("n", ValueLocation_Nodal, StoredType::Double,
                         [](LgIndex_t zone, LgIndex_t node) { return 100.0 * zone + node; });
    c = host.AddVariable("c", ValueLocation_CellCentered, StoredType::Float,
                         [](LgIndex_t zone, LgIndex_t cell) { return 10.0 * zone + cell; });
    InitQelAddOn113();
  }

  LgIndex_t BlankVariable() {
    const HostLock lock;
    return QelUtilVarGetNumByName("PICK_BLANK");
  }
  std::vector<double> Blanks(LgIndex_t zone) { return host.ValuesOf(zone, BlankVariable()); }

  /// The zones that one variable was reported altered in, in that order.
  std::vector<SetIndex_t> ZonesReported(LgIndex_t var) const {
    std::vector<SetIndex_t> zones;
    for (const StateChangeNotice& notice : host.notices) {
      if (notice.change != StateChange_VarsAltered) continue;
      EXPECT_THAT(notice.vars, ElementsAre(var));
      zones.insert(zones.end(), notice.zones.begin(), notice.zones.end());
    }
    return zones;
  }
};

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

// Entering the mode ----------------------------------------------------------------------------

std::string TextOf(const StyleCall& call) {
  return call.setting + " of " + std::to_string(call.offset1) + " " +
         (call.setting == "BLANKING VALUE CONSTRAINT VALUECUTOFF" ? std::to_string(call.dValue)
                                                                  : std::to_string(call.iValue));
}

std::vector<std::string> BlankingCalls(const std::vector<StyleCall>& calls) {
  std::vector<std::string> texts;
  for (const StyleCall& call : calls) {
    if (call.setting.rfind("BLANKING", 0) == 0) texts.push_back(TextOf(call));
  }
  return texts;
}

TEST_F(PickBlanking, SettingsAreWrittenInTheirOrder) {
  LoadTwo();
  PlayWell(kBlank3);
  EXPECT_THAT(
      BlankingCalls(host.styleCalls),
      ElementsAre("BLANKING VALUE CONSTRAINT INCLUDE of 8 1",
                  "BLANKING VALUE CONSTRAINT VARA of 8 6", "BLANKING VALUE CONSTRAINT RELOP of 8 4",
                  "BLANKING VALUE CONSTRAINT CONSTRAINTOP2MODE of 8 1",
                  "BLANKING VALUE CONSTRAINT VALUECUTOFF of 8 1.000000",
                  "BLANKING VALUE BLANKENTIRECELL of 0 1",
                  "BLANKING VALUE VALUEBLANKCELLMODE of 0 2"));
}

TEST_F(PickBlanking, EveryBlankCommandWritesThemAgainAndChangesNothingBy) {
  LoadTwo();
  PlayWell(kBlank3);
  const std::vector<std::string> first = BlankingCalls(host.styleCalls);
  host.styleCalls.clear();
  PlayWell(kEverywhere);
  for (const char* const line : {kBlank3, "BLANKAREA", "BLANKSURFACE ZONE=1 SEEDPOINT=1"}) {
    host.styleCalls.clear();
    PlayWell(line);
    EXPECT_EQ(BlankingCalls(host.styleCalls), first) << line;
    for (const StyleCall& call : host.styleCalls) {
      EXPECT_EQ(call.result, SetValueResult_Duplicate) << line << ": " << TextOf(call);
    }
  }
}

TEST_F(PickBlanking, UsersConstraintIsOverwrittenButForItsVariableB) {
  LoadTwo();
  host.ActiveFrame().blanking.constraints[8] = {
      false, n, c, BlankRelOp_LessThan, ConstraintOp2Mode_UseVar, 7.0};
  host.ActiveFrame().blanking.constraints[7] = {
      true, n, c, BlankRelOp_LessThan, ConstraintOp2Mode_UseVar, 7.0};
  PlayWell(kBlank3);
  const fakehost::Blanking& blanking = host.ActiveFrame().blanking;
  const fakehost::Constraint& constraint = blanking.constraints.at(8);
  EXPECT_TRUE(constraint.include);
  EXPECT_EQ(constraint.varA, 6);
  EXPECT_EQ(constraint.varB, c);
  EXPECT_EQ(constraint.relOp, BlankRelOp_EqualTo);
  EXPECT_EQ(constraint.op2Mode, ConstraintOp2Mode_UseConstant);
  EXPECT_EQ(constraint.cutoff, 1.0);
  EXPECT_EQ(blanking.constraints.at(7).cutoff, 7.0);
  EXPECT_FALSE(blanking.include) << "whether anything is hidden is the user's choice";
}

TEST_F(PickBlanking, SwitchingBlankingOffAndOnKeepsThePicks) {
  LoadTwo();
  PlayWell(kBlank3);
  const HostLock lock;
  host.styleCalls.clear();
  SetValueBlankingInclude(true);
  EXPECT_TRUE(host.IsBlankedCell(1, 3));
  EXPECT_FALSE(host.IsBlankedCell(1, 2));
  SetValueBlankingInclude(false);
  EXPECT_FALSE(GetValueBlankingInclude());
  EXPECT_FALSE(host.IsBlankedCell(1, 3));
  SetValueBlankingInclude(true);
  EXPECT_TRUE(GetValueBlankingInclude());
  EXPECT_TRUE(host.IsBlankedCell(1, 3));
  EXPECT_THAT(BlankingCalls(host.styleCalls),
              ElementsAre("BLANKING VALUE INCLUDE of 0 1", "BLANKING VALUE INCLUDE of 0 0",
                          "BLANKING VALUE INCLUDE of 0 1"))
      << "the constraint is not written again";
}

TEST_F(PickBlanking, BlankingDiscardsUndo) {
  LoadTwo();
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+5\" ZONE=1 ELEMENT=1");
  PlayWell(kBlank3);
  EXPECT_EQ(PlayBadly("UNDOALTER"), "Macro failed to perform Undo");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(16, 12, 13, 14));
  EXPECT_THAT(Blanks(1), ElementsAre(0, 0, 1, 0)) << "a blank is not undone either";
}

TEST_F(PickBlanking, AlterCommandAltersAgainWithTheModifierFromBefore) {
  LoadTwo();
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+5\" ZONE=1 ELEMENT=1");
  PlayWell(kBlank3);
  PlayWell("ALTERELEMENT ZONE=1 ELEMENT=2");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(16, 17, 13, 14));
  EXPECT_THAT(Blanks(1), ElementsAre(0, 0, 1, 0));
  EXPECT_TRUE(host.ActiveFrame().blanking.constraints[8].include) << "the constraint stays";
}

TEST_F(PickBlanking, BadAttributeAddsNoVariable) {
  LoadTwo();
  for (const char* const line :
       {"BLANKELEMENT ZONE=1 ELEMENT=0", "BLANKELEMENT ZONE=1", "BLANKAREA VARIABLE=\"c\"",
        "BLANKAREA RULE=CUBE", "BLANKSURFACE MODIFIER=\"+1\""}) {
    PlayBadly(line);
  }
  EXPECT_EQ(BlankVariable(), 0);
  EXPECT_THAT(host.styleCalls, IsEmpty());
}

TEST_F(PickBlanking, ElementThatThereIsNotIsAFailure) {
  LoadTwo();
  EXPECT_EQ(PlayBadly("BLANKELEMENT ZONE=1 ELEMENT=5"),
            "Error during execution of BLANKELEMENT operation");
  EXPECT_EQ(PlayBadly("BLANKELEMENT ZONE=3 ELEMENT=1"),
            "Error during execution of BLANKELEMENT operation");
}

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

// Reset ----------------------------------------------------------------------------------------

TEST_F(PickBlanking, ResetWithoutTheVariableDoesNothing) {
  LoadTwo();
  host.notices.clear();
  PlayWell("UNDOBLANK");
  EXPECT_EQ(BlankVariable(), 0);
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11, 12, 13, 14));
}

TEST_F(PickBlanking, ResetLeavesTheVariableWithAllValues0) {
  LoadTwo();
  PlayWell(kEverywhere);
  PlayWell("BLANKAREA");
  ASSERT_THAT(Blanks(1), Each(1.0));
  host.notices.clear();
  PlayWell("UNDOBLANK ZONE=7");
  EXPECT_THAT(Blanks(1), ElementsAre(0, 0, 0, 0));
  EXPECT_THAT(Blanks(2), ElementsAre(0, 0, 0, 0));
  EXPECT_THAT(ZonesReported(6), ElementsAre(1, 2));
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11, 12, 13, 14));
  EXPECT_TRUE(Session().IsBlankMode());
}

TEST_F(PickBlanking, ResetSetsAZonesValuesAtOnce) {
  LoadTwo();
  PlayWell(kBlank3);
  PlayWell("BLANKELEMENT ZONE=2 ELEMENT=1");
  host.calls.clear();
  PlayWell("UNDOBLANK");
  std::vector<std::string> writes;
  for (const fakehost::CallRecord& call : host.calls) {
    if (call.function == "QelUtilDataValueArraySetByRef") writes.push_back(call.arguments);
  }
  EXPECT_THAT(writes, ElementsAre("handle, 1, 4", "handle, 1, 4"));
  EXPECT_EQ(host.CallCount("QelUtilDataValueSetByRef"), 0);
}

TEST_F(PickBlanking, ResetKeepsToTheZonesThatAPickWouldChange) {
  LoadTwo();
  host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  PlayWell(kBlank3);
  PlayWell("BLANKELEMENT ZONE=2 ELEMENT=1");
  host.ZoneAt(1)->isActive = false;
  host.ZoneAt(2)->strand = 1;
  host.ZoneAt(2)->solutionTime = 5.0;
  host.notices.clear();
  PlayWell("UNDOBLANK");
  EXPECT_THAT(Blanks(1), ElementsAre(0, 0, 1, 0));
  EXPECT_THAT(Blanks(2), ElementsAre(1, 0, 0, 0));
  EXPECT_THAT(ZonesReported(6), ElementsAre(3)) << "its values are made by the reset";
  EXPECT_THAT(Blanks(3), ElementsAre(0));
}

TEST_F(PickBlanking, ResetInAlterModeSetsTheAlterVariableTo0AndReportsTheBlanks) {
  LoadTwo();
  PlayWell(kBlank3);
  PlayWell("ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 ELEMENT=1");
  host.notices.clear();
  PlayWell("UNDOBLANK");
  EXPECT_THAT(host.ValuesOf(1, n), Each(0.0));
  EXPECT_THAT(host.ValuesOf(2, n), Each(0.0));
  EXPECT_THAT(Blanks(1), ElementsAre(0, 0, 1, 0)) << "the blanks stay";
  EXPECT_THAT(ZonesReported(6), ElementsAre(1, 2)) << "and are what is reported";
  EXPECT_FALSE(Session().IsBlankMode()) << "the mode is not switched";
}

TEST_F(PickBlanking, ResetInAlterModeLeavesPassiveZonesOut) {
  LoadTwo();
  PlayWell(kBlank3);
  PlayWell("ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 ELEMENT=1");
  host.MakePassive(2, n);
  host.notices.clear();
  PlayWell("UNDOBLANK");
  EXPECT_THAT(host.ValuesOf(1, n), Each(0.0));
  EXPECT_THAT(ZonesReported(6), ElementsAre(1));
}

TEST_F(PickBlanking, ResetOfASharedVariableTouchesNoZoneThatIsNotReset) {
  LoadTwo();
  host.AddVariable("PICK_BLANK", ValueLocation_CellCentered, StoredType::Byte,
                   [](LgIndex_t, LgIndex_t) { return 1.0; });
  host.Share(1, 2, 6);
  PlayWell(kBlank3);
  host.Share(1, 2, 6);
  host.ZoneAt(2)->isActive = false;
  PlayWell("UNDOBLANK");
  EXPECT_THAT(Blanks(1), Each(0.0));
  EXPECT_THAT(Blanks(2), Each(1.0));
}

class ResetType : public PickBlanking, public ::testing::WithParamInterface<StoredType> {};

TEST_P(ResetType, LeavesWhole0s) {
  LoadTwo();
  const LgIndex_t var = host.AddVariable("v", ValueLocation_Nodal, GetParam(),
                                         [](LgIndex_t, LgIndex_t node) { return 10.0 + node; });
  PlayWell(kBlank3);
  PlayWell("ALTERELEMENT VARIABLE=\"v\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1");
  PlayWell("UNDOBLANK");
  EXPECT_THAT(host.ValuesOf(1, var), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0));
}

INSTANTIATE_TEST_SUITE_P(Types, ResetType,
                         ::testing::Values(StoredType::Float, StoredType::Double, StoredType::Int32,
                                           StoredType::Int16, StoredType::Byte, StoredType::Int64,
                                           StoredType::Int8, StoredType::UInt64));

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
