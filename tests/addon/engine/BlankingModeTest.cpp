// What hiding sets in the frame and in the session, and what a switch of it leaves.
#include "BlankTest.h"

#include "Utilities.h"

namespace {

using fakehost::kBlank3;
using fakehost::kEverywhere;
using fakehost::PickBlanking;
using fakehost::StyleCall;
using qelvane::qelutiltools::GetValueBlankingInclude;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::SetValueBlankingInclude;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

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

}  // namespace
