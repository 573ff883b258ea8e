// The settings of value blanking: which are read and written, in which order, and what a refused
// argument leaves.
#include "Utilities.h"

#include "CallLogTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {
namespace {

using callloghost::Host;
using ::testing::ElementsAre;
using ::testing::MatchesRegex;

class ValueBlankingTest : public CallLogTest {};

/// The calls that read or write a setting, without what prepares them.
std::vector<std::string> StyleCalls() {
  std::vector<std::string> calls;
  for (const std::string& call : Host().log) {
    if (call.find("Style") != std::string::npos) calls.push_back(call);
  }
  return calls;
}

QelSetValueResult_e WriteConstraint() {
  return SetValueBlankConstraint(8, true, 5, 1.0, BlankRelOp_EqualTo,
                                 ConstraintOp2Mode_UseConstant);
}

constexpr char kSetConstraint[] = "StyleSet OFFSET1=8 P1=BLANKING P2=VALUE P3=CONSTRAINT P4=";

TEST_F(ValueBlankingTest, ConstraintIsWrittenSettingBySetting) {
  WriteConstraint();
  const std::string set = kSetConstraint;
  EXPECT_THAT(StyleCalls(),
              ElementsAre(set + "INCLUDE IVALUE=1", set + "VARA IVALUE=5", set + "RELOP IVALUE=4",
                          set + "CONSTRAINTOP2MODE IVALUE=1", set + "VALUECUTOFF DVALUE=1"));
}

TEST_F(ValueBlankingTest, ConstraintTakesEveryArgumentToItsOwnSetting) {
  SetValueBlankConstraint(3, false, 17, -2.5, BlankRelOp_GreaterThan, ConstraintOp2Mode_UseVar);
  const std::string set = "StyleSet OFFSET1=3 P1=BLANKING P2=VALUE P3=CONSTRAINT P4=";
  EXPECT_THAT(StyleCalls(),
              ElementsAre(set + "INCLUDE IVALUE=0", set + "VARA IVALUE=17", set + "RELOP IVALUE=3",
                          set + "CONSTRAINTOP2MODE IVALUE=0", set + "VALUECUTOFF DVALUE=-2.5"));
}

TEST_F(ValueBlankingTest, EverySettingIsWrittenWithTheOneListCleared) {
  SetValueBlankingCellMode(true, BlankCellMode_PrimaryValue);
  EXPECT_THAT(Host().log,
              ElementsAre("ArgListAlloc", "ArgListClear", "Append P1=BLANKING", "Append P2=VALUE",
                          "Append P3=BLANKENTIRECELL", "Append IVALUE=1",
                          "StyleSet P1=BLANKING P2=VALUE P3=BLANKENTIRECELL IVALUE=1",
                          "ArgListClear", "Append P1=BLANKING", "Append P2=VALUE",
                          "Append P3=VALUEBLANKCELLMODE", "Append IVALUE=2",
                          "StyleSet P1=BLANKING P2=VALUE P3=VALUEBLANKCELLMODE IVALUE=2"));
}

TEST_F(ValueBlankingTest, ConstraintNumberComesBeforeThePath) {
  SetConstraintInclude(2, false);
  EXPECT_THAT(
      Host().log,
      ElementsAre("ArgListAlloc", "ArgListClear", "Append OFFSET1=2", "Append P1=BLANKING",
                  "Append P2=VALUE", "Append P3=CONSTRAINT", "Append P4=INCLUDE", "Append IVALUE=0",
                  "StyleSet OFFSET1=2 P1=BLANKING P2=VALUE P3=CONSTRAINT P4=INCLUDE "
                  "IVALUE=0"));
}

TEST_F(ValueBlankingTest, SwitchesTheWholeOnAndOff) {
  SetValueBlankingInclude(true);
  SetValueBlankingInclude(false);
  EXPECT_THAT(StyleCalls(), ElementsAre("StyleSet P1=BLANKING P2=VALUE P3=INCLUDE IVALUE=1",
                                        "StyleSet P1=BLANKING P2=VALUE P3=INCLUDE IVALUE=0"));
}

// Answers --------------------------------------------------------------------------------------

TEST_F(ValueBlankingTest, AnswerIsThatOfTheLastSetting) {
  Host().styleAnswers = {SetValueResult_Duplicate, SetValueResult_ValueError, SetValueResult_Ok,
                         SetValueResult_SyntaxError, SetValueResult_Duplicate};
  EXPECT_EQ(WriteConstraint(), SetValueResult_Duplicate);
  Host().styleAnswers = {SetValueResult_Duplicate, SetValueResult_SyntaxError};
  EXPECT_EQ(SetValueBlankingCellMode(true, BlankCellMode_AnyCorner), SetValueResult_SyntaxError);
  Host().styleAnswers = {SetValueResult_ValueError, SetValueResult_Duplicate};
  EXPECT_EQ(SetValueBlankingInclude(true), SetValueResult_ValueError);
  EXPECT_EQ(SetConstraintInclude(8, true), SetValueResult_Duplicate);
}

TEST_F(ValueBlankingTest, RefusedValueDoesNotStopTheRest) {
  Host().styleAnswers.assign(5, SetValueResult_ValueError);
  EXPECT_EQ(WriteConstraint(), SetValueResult_ValueError);
  EXPECT_EQ(StyleCalls().size(), 5u);
}

// Reading --------------------------------------------------------------------------------------

TEST_F(ValueBlankingTest, ConstraintIsReadWithBothVariables) {
  const std::string path = "OFFSET1=8 P1=BLANKING P2=VALUE P3=CONSTRAINT P4=";
  Host().styles = {{path + "INCLUDE IVALUE=&", 1},
                   {path + "VARA IVALUE=&", 5},
                   {path + "VARB IVALUE=&", 7},
                   {path + "RELOP IVALUE=&", 3},
                   {path + "CONSTRAINTOP2MODE IVALUE=&", 1},
                   {path + "VALUECUTOFF DVALUE=&", -0.25}};
  bool include = false;
  LgIndex_t varA = 0;
  LgIndex_t varB = 0;
  int relativeOp = 0;
  int mode = 0;
  double cutoff = 0.0;
  GetValueBlankConstraint(8, include, varA, varB, relativeOp, mode, cutoff);
  EXPECT_TRUE(include);
  EXPECT_EQ(varA, 5);
  EXPECT_EQ(varB, 7);
  EXPECT_EQ(relativeOp, BlankRelOp_GreaterThan);
  EXPECT_EQ(mode, ConstraintOp2Mode_UseConstant);
  EXPECT_EQ(cutoff, -0.25);
  const std::string get = "StyleGet " + path;
  EXPECT_THAT(StyleCalls(),
              ElementsAre(get + "INCLUDE IVALUE=&", get + "VARA IVALUE=&", get + "VARB IVALUE=&",
                          get + "RELOP IVALUE=&", get + "CONSTRAINTOP2MODE IVALUE=&",
                          get + "VALUECUTOFF DVALUE=&"));
}

TEST_F(ValueBlankingTest, CellSettingsAreReadWithTheSwitch) {
  const std::string path = "P1=BLANKING P2=VALUE P3=";
  Host().styles = {{path + "BLANKENTIRECELL IVALUE=&", 1},
                   {path + "VALUEBLANKCELLMODE IVALUE=&", 2},
                   {path + "INCLUDE IVALUE=&", 0}};
  bool wholeCell = false;
  int mode = 0;
  bool include = true;
  GetValueBlankingCellSettings(wholeCell, mode, include);
  EXPECT_TRUE(wholeCell);
  EXPECT_EQ(mode, BlankCellMode_PrimaryValue);
  EXPECT_FALSE(include);
  const std::string get = "StyleGet " + path;
  EXPECT_THAT(StyleCalls(),
              ElementsAre(get + "BLANKENTIRECELL IVALUE=&", get + "VALUEBLANKCELLMODE IVALUE=&",
                          get + "INCLUDE IVALUE=&"));
}

TEST_F(ValueBlankingTest, SwitchIsReadUnderTheLock) {
  Host().styles = {{"P1=BLANKING P2=VALUE P3=INCLUDE IVALUE=&", 1}};
  EXPECT_TRUE(GetValueBlankingInclude());
  Host().styles = {{"P1=BLANKING P2=VALUE P3=INCLUDE IVALUE=&", 0}};
  EXPECT_FALSE(GetValueBlankingInclude());
  const std::string get = "Locked StyleGet P1=BLANKING P2=VALUE P3=INCLUDE IVALUE=&";
  EXPECT_THAT(StyleCalls(), ElementsAre(get, get));
}

// Refused arguments ----------------------------------------------------------------------------

void WriteWhole() { WriteConstraint(); }
void WriteSwitch() { SetValueBlankingInclude(true); }
void WriteConstraintSwitch() { SetConstraintInclude(8, true); }
void WriteCellMode() { SetValueBlankingCellMode(true, BlankCellMode_PrimaryValue); }
void ReadSwitch() { GetValueBlankingInclude(); }
void ReadCellSettings() {
  bool wholeCell = false;
  int mode = 0;
  bool include = false;
  GetValueBlankingCellSettings(wholeCell, mode, include);
}
void ReadConstraint() {
  bool include = false;
  LgIndex_t varA = 0;
  LgIndex_t varB = 0;
  int relativeOp = 0;
  int mode = 0;
  double cutoff = 0.0;
  GetValueBlankConstraint(8, include, varA, varB, relativeOp, mode, cutoff);
}

struct RefusedChoiceRow {
  const char* rule;
  std::function<void()> operation;
  const char* refused;  ///< as in the host's log
  int passes;           ///< how many equal calls are let through first
  const char* quoted;
  int settingsBefore;  ///< settings that were read or written before the error
};

void PrintTo(const RefusedChoiceRow& row, std::ostream* out) { *out << row.rule; }

class RefusedArgument : public CallLogTest,
                        public ::testing::WithParamInterface<RefusedChoiceRow> {};

std::string Escaped(const std::string& text) {
  std::string pattern;
  for (const char letter : text) {
    if (std::string("()*+?.[]{}|^$\\").find(letter) != std::string::npos) pattern += '\\';
    pattern += letter;
  }
  return pattern;
}

TEST_P(RefusedArgument, IsAnInternalErrorThatQuotesItAndKeepsWhatWasSetBefore) {
  const RefusedChoiceRow& row = GetParam();
  Host().refused = row.refused;
  Host().passesBeforeRefusal = row.passes;
  try {
    row.operation();
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(),
                MatchesRegex("Assert failed: " + Escaped(row.quoted) + " \\(Utilities [0-9]+\\)"));
  }
  EXPECT_EQ(Host().log.back(), row.refused);
  EXPECT_EQ(StyleCalls().size(), static_cast<std::size_t>(row.settingsBefore));
}

constexpr char kAlloc[] = "argList = QelUtilArgListAlloc()";
constexpr char kOffset[] = "QelUtilArgListAppendInt(argList, SV_OFFSET1, constraintNum)";
constexpr char kP1[] = "QelUtilArgListAppendString(argList, SV_P1, SV_BLANKING)";
constexpr char kP2[] = "QelUtilArgListAppendString(argList, SV_P2, SV_VALUE)";
constexpr char kP3[] = "QelUtilArgListAppendString(argList, SV_P3, SV_CONSTRAINT)";

INSTANTIATE_TEST_SUITE_P(
    Constraint, RefusedArgument,
    ::testing::Values(
        RefusedChoiceRow{"List", WriteWhole, "ArgListAlloc", 0, kAlloc, 0},
        RefusedChoiceRow{"FirstOffset", WriteWhole, "Append OFFSET1=8", 0, kOffset, 0},
        RefusedChoiceRow{"FirstP1", WriteWhole, "Append P1=BLANKING", 0, kP1, 0},
        RefusedChoiceRow{"FirstP2", WriteWhole, "Append P2=VALUE", 0, kP2, 0},
        RefusedChoiceRow{"FirstP3", WriteWhole, "Append P3=CONSTRAINT", 0, kP3, 0},
        RefusedChoiceRow{"Include", WriteWhole, "Append P4=INCLUDE", 0,
                         "QelUtilArgListAppendString(argList, SV_P4, SV_INCLUDE)", 0},
        RefusedChoiceRow{"IncludeValue", WriteWhole, "Append IVALUE=1", 0,
                         "QelUtilArgListAppendArbParam(argList, SV_IVALUE, (ArbParam_t) include)",
                         0},
        RefusedChoiceRow{"VarA", WriteWhole, "Append P4=VARA", 0,
                         "QelUtilArgListAppendString(argList, SV_P4, SV_VARA)", 1},
        RefusedChoiceRow{"VarAValue", WriteWhole, "Append IVALUE=5", 0,
                         "QelUtilArgListAppendArbParam(argList, SV_IVALUE, (ArbParam_t) varA)", 1},
        RefusedChoiceRow{"RelOp", WriteWhole, "Append P4=RELOP", 0,
                         "QelUtilArgListAppendString(argList, SV_P4, SV_RELOP)", 2},
        RefusedChoiceRow{
            "RelOpValue", WriteWhole, "Append IVALUE=4", 0,
            "QelUtilArgListAppendArbParam(argList, SV_IVALUE, (ArbParam_t) relativeOp)", 2},
        RefusedChoiceRow{"Op2Mode", WriteWhole, "Append P4=CONSTRAINTOP2MODE", 0,
                         "QelUtilArgListAppendString(argList, SV_P4, SV_CONSTRAINTOP2MODE)", 3},
        RefusedChoiceRow{"Op2ModeValue", WriteWhole, "Append IVALUE=1", 1,
                         "QelUtilArgListAppendArbParam(argList, SV_IVALUE, (ArbParam_t) mode)", 3},
        RefusedChoiceRow{"LastOffset", WriteWhole, "Append OFFSET1=8", 4, kOffset, 4},
        RefusedChoiceRow{"LastP1", WriteWhole, "Append P1=BLANKING", 4, kP1, 4},
        RefusedChoiceRow{"LastP2", WriteWhole, "Append P2=VALUE", 4, kP2, 4},
        RefusedChoiceRow{"LastP3", WriteWhole, "Append P3=CONSTRAINT", 4, kP3, 4},
        RefusedChoiceRow{"Cutoff", WriteWhole, "Append P4=VALUECUTOFF", 0,
                         "QelUtilArgListAppendString(argList, SV_P4, SV_VALUECUTOFF)", 4},
        RefusedChoiceRow{"CutoffValue", WriteWhole, "Append DVALUE=1", 0,
                         "QelUtilArgListAppendDouble(argList, SV_DVALUE, valCutoff)", 4},
        RefusedChoiceRow{"SwitchOffset", WriteConstraintSwitch, "Append OFFSET1=8", 0, kOffset, 0},
        RefusedChoiceRow{"SwitchValue", WriteConstraintSwitch, "Append IVALUE=1", 0,
                         "QelUtilArgListAppendArbParam(argList, SV_IVALUE, (ArbParam_t) include)",
                         0},
        RefusedChoiceRow{"ReadList", ReadConstraint, "ArgListAlloc", 0, kAlloc, 0},
        RefusedChoiceRow{"ReadVarB", ReadConstraint, "Append P4=VARB", 0,
                         "QelUtilArgListAppendString(argList, SV_P4, SV_VARB)", 2},
        RefusedChoiceRow{"ReadAddress", ReadConstraint, "Append IVALUE=&", 4,
                         "QelUtilArgListAppendArbParamPtr(argList, SV_IVALUE, &value)", 4},
        RefusedChoiceRow{"ReadCutoffAddress", ReadConstraint, "Append DVALUE=&", 0,
                         "QelUtilArgListAppendDoublePtr(argList, SV_DVALUE, &value)", 5}),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    Whole, RefusedArgument,
    ::testing::Values(
        RefusedChoiceRow{"SwitchList", WriteSwitch, "ArgListAlloc", 0, kAlloc, 0},
        RefusedChoiceRow{"Switch", WriteSwitch, "Append P3=INCLUDE", 0,
                         "QelUtilArgListAppendString(argList, SV_P3, SV_INCLUDE)", 0},
        RefusedChoiceRow{"SwitchValue", WriteSwitch, "Append IVALUE=1", 0,
                         "QelUtilArgListAppendArbParam(argList, SV_IVALUE, (ArbParam_t) include)",
                         0},
        RefusedChoiceRow{"CellModeList", WriteCellMode, "ArgListAlloc", 0, kAlloc, 0},
        RefusedChoiceRow{"EntireCell", WriteCellMode, "Append P3=BLANKENTIRECELL", 0,
                         "QelUtilArgListAppendString(argList, SV_P3, SV_BLANKENTIRECELL)", 0},
        RefusedChoiceRow{"EntireCellValue", WriteCellMode, "Append IVALUE=1", 0,
                         "QelUtilArgListAppendArbParam(argList, SV_IVALUE, (ArbParam_t) wholeCell)",
                         0},
        RefusedChoiceRow{"CellMode", WriteCellMode, "Append P3=VALUEBLANKCELLMODE", 0,
                         "QelUtilArgListAppendString(argList, SV_P3, SV_VALUEBLANKCELLMODE)", 1},
        RefusedChoiceRow{"CellModeValue", WriteCellMode, "Append IVALUE=2", 0,
                         "QelUtilArgListAppendArbParam(argList, SV_IVALUE, (ArbParam_t) mode)", 1},
        RefusedChoiceRow{"ReadSwitchList", ReadSwitch, "ArgListAlloc", 0, kAlloc, 0},
        RefusedChoiceRow{"ReadSwitchAddress", ReadSwitch, "Append IVALUE=&", 0,
                         "QelUtilArgListAppendArbParamPtr(argList, SV_IVALUE, &value)", 0},
        RefusedChoiceRow{"ReadCellMode", ReadCellSettings, "Append P3=VALUEBLANKCELLMODE", 0,
                         "QelUtilArgListAppendString(argList, SV_P3, SV_VALUEBLANKCELLMODE)", 1},
        RefusedChoiceRow{"ReadInclude", ReadCellSettings, "Append P3=INCLUDE", 0,
                         "QelUtilArgListAppendString(argList, SV_P3, SV_INCLUDE)", 2}),
    [](const auto& row) { return std::string(row.param.rule); });

}  // namespace
}  // namespace qelvane::qelutiltools
