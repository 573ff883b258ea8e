#include "CMacroEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

MacroValue Strings(std::vector<std::string> strings) {
  return {MacroValue::kStrings, std::move(strings), 0.0, false, 0};
}
MacroValue Number(double number) { return {MacroValue::kNumber, {}, number, false, 0}; }
MacroValue Boolean(bool flag) { return {MacroValue::kBoolean, {}, 0.0, flag, 0}; }
MacroValue Keyword(std::int32_t keyword) { return {MacroValue::kKeyword, {}, 0.0, false, keyword}; }

/// One getter, called with an output that must stay as it is on failure.
struct WrongTypeRow {
  const char* getter;
  std::int32_t accepted;
  const char* message;
  std::function<bool(CMacroEngine&, const MacroValue&)> get;
};

template <class Out>
bool KeepsOnFailure(bool isDone, const Out& out, const Out& before) {
  EXPECT_TRUE(isDone || out == before) << "a failed getter changed its output";
  return isDone;
}

class Getter : public ::testing::TestWithParam<WrongTypeRow> {};

TEST_P(Getter, TakesItsTypeAloneAndNamesIt) {
  const std::vector<MacroValue> ofEachType = {Strings({"s"}), Number(1.0), Boolean(true),
                                              Keyword(Keyword_Cube)};
  for (const MacroValue& value : ofEachType) {
    CMacroEngine engine;
    const bool isAccepted = value.Type == GetParam().accepted;
    EXPECT_EQ(GetParam().get(engine, value), isAccepted) << "type " << value.Type;
    EXPECT_EQ(engine.GlobalError(), isAccepted ? "" : GetParam().message) << "type " << value.Type;
  }
}

constexpr std::int32_t kCubeAlone[] = {Keyword_Cube};

INSTANTIATE_TEST_SUITE_P(
    All, Getter,
    ::testing::Values(
        WrongTypeRow{"GetString", MacroValue::kStrings, "Expected a <string> value",
                     [](CMacroEngine& engine, const MacroValue& value) {
                       std::string out = "kept";
                       return KeepsOnFailure(engine.GetString(value, out), out,
                                             std::string("kept"));
                     }},
        WrongTypeRow{"GetStringList", MacroValue::kStrings, "Expected one or more <string> values",
                     [](CMacroEngine& engine, const MacroValue& value) {
                       std::vector<std::string> out = {"kept"};
                       return KeepsOnFailure(engine.GetStringList(value, out), out, {"kept"});
                     }},
        WrongTypeRow{"GetBoolean", MacroValue::kBoolean, "Expected a <boolean> value.",
                     [](CMacroEngine& engine, const MacroValue& value) {
                       bool out = true;
                       return KeepsOnFailure(engine.GetBoolean(value, out), out, true);
                     }},
        WrongTypeRow{"GetDouble", MacroValue::kNumber, "Expected a <double> value",
                     [](CMacroEngine& engine, const MacroValue& value) {
                       double out = -7.0;
                       return KeepsOnFailure(engine.GetDouble(value, out), out, -7.0);
                     }},
        WrongTypeRow{"GetDoubleInRange", MacroValue::kNumber, "Expected a <double> value",
                     [](CMacroEngine& engine, const MacroValue& value) {
                       double out = -7.0;
                       return KeepsOnFailure(engine.GetDoubleInRange(value, 0.0, 2.0, out), out,
                                             -7.0);
                     }},
        WrongTypeRow{"GetInt", MacroValue::kNumber, "Expected an <int> value",
                     [](CMacroEngine& engine, const MacroValue& value) {
                       std::int32_t out = -7;
                       return KeepsOnFailure(engine.GetInt(value, out), out, -7);
                     }},
        WrongTypeRow{"GetIntInRange", MacroValue::kNumber, "Expected an <int> value",
                     [](CMacroEngine& engine, const MacroValue& value) {
                       std::int32_t out = -7;
                       return KeepsOnFailure(engine.GetIntInRange(value, 0, 2, out), out, -7);
                     }},
        WrongTypeRow{"GetKeywordIndex", MacroValue::kKeyword, "Invalid type argument",
                     [](CMacroEngine& engine, const MacroValue& value) {
                       std::int32_t out = -7;
                       return KeepsOnFailure(engine.GetKeywordIndex(value, 1, kCubeAlone, out), out,
                                             -7);
                     }},
        WrongTypeRow{"GetKeywordMapped", MacroValue::kKeyword, "Invalid type argument",
                     [](CMacroEngine& engine, const MacroValue& value) {
                       std::int32_t out = -7;
                       return KeepsOnFailure(
                           engine.GetKeywordMapped(value, &out, Keyword_Cube, 5, Keyword_EndOfList),
                           out, -7);
                     }}),
    [](const auto& row) { return std::string(row.param.getter); });

TEST(GetString, YieldsTheFirstStringOrNone) {
  CMacroEngine engine;
  std::string out = "before";
  EXPECT_TRUE(engine.GetString(Strings({"a", "b"}), out));
  EXPECT_EQ(out, "a");
  EXPECT_TRUE(engine.GetString(Strings({}), out));
  EXPECT_EQ(out, "");
}

TEST(GetStringList, YieldsTheWholeList) {
  CMacroEngine engine;
  std::vector<std::string> out;
  EXPECT_TRUE(engine.GetStringList(Strings({"a", "b"}), out));
  EXPECT_THAT(out, ElementsAre("a", "b"));
  EXPECT_TRUE(engine.GetStringList(Strings({}), out));
  EXPECT_THAT(out, IsEmpty());
}

struct RangeRow {
  const char* rule;
  double number;
  bool inRange;
};

class IntRange : public ::testing::TestWithParam<RangeRow> {};

TEST_P(IntRange, IsInclusiveAndJudgesTheTruncatedValue) {
  CMacroEngine engine;
  std::int32_t out = -7;
  EXPECT_EQ(engine.GetIntInRange(Number(GetParam().number), 1, 3, out), GetParam().inRange);
  EXPECT_EQ(out, GetParam().inRange ? static_cast<std::int32_t>(GetParam().number) : -7);
  EXPECT_EQ(engine.GlobalError(), GetParam().inRange ? "" : "Value is outside allowable range");
}

INSTANTIATE_TEST_SUITE_P(Rules, IntRange,
                         ::testing::Values(RangeRow{"Below", 0.9, false},
                                           RangeRow{"Low", 1.0, true}, RangeRow{"High", 3.0, true},
                                           RangeRow{"TruncatedToHigh", 3.9, true},
                                           RangeRow{"Above", 4.0, false},
                                           RangeRow{"FarAbove", 1e300, false},
                                           RangeRow{"FarBelow", -1e300, false}),
                         [](const auto& row) { return std::string(row.param.rule); });

class DoubleRange : public ::testing::TestWithParam<RangeRow> {};

TEST_P(DoubleRange, IsInclusive) {
  CMacroEngine engine;
  double out = -7.0;
  EXPECT_EQ(engine.GetDoubleInRange(Number(GetParam().number), 1.0, 3.0, out), GetParam().inRange);
  EXPECT_EQ(out, GetParam().inRange ? GetParam().number : -7.0);
  EXPECT_EQ(engine.GlobalError(), GetParam().inRange ? "" : "Value is outside allowable range");
}

INSTANTIATE_TEST_SUITE_P(Rules, DoubleRange,
                         ::testing::Values(RangeRow{"Below", 0.9, false},
                                           RangeRow{"Low", 1.0, true},
                                           RangeRow{"Inside", 2.5, true},
                                           RangeRow{"High", 3.0, true},
                                           RangeRow{"Above", 3.1, false}),
                         [](const auto& row) { return std::string(row.param.rule); });

struct TruncationRow {
  const char* rule;
  double number;
  std::int32_t expected;
};

class Truncation : public ::testing::TestWithParam<TruncationRow> {};

TEST_P(Truncation, IsTowardZeroAndStaysWithinAnInt) {
  CMacroEngine engine;
  std::int32_t out = -7;
  EXPECT_TRUE(engine.GetInt(Number(GetParam().number), out));
  EXPECT_EQ(out, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, Truncation,
    ::testing::Values(TruncationRow{"Positive", 2.9, 2}, TruncationRow{"Negative", -2.9, -2},
                      TruncationRow{"Zero", -0.5, 0},
                      TruncationRow{"TooLarge", 1e10, std::numeric_limits<std::int32_t>::max()},
                      TruncationRow{"TooSmall", -1e10, std::numeric_limits<std::int32_t>::min()},
                      TruncationRow{"NaN", std::numeric_limits<double>::quiet_NaN(), 0}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(GetKeywordIndex, YieldsThePositionFromOneOrNamesTheKeyword) {
  constexpr std::int32_t kKeywords[] = {Keyword_AnyInside, Keyword_AllInside};
  CMacroEngine engine;
  std::int32_t out = -7;
  EXPECT_TRUE(engine.GetKeywordIndex(Keyword(Keyword_AnyInside), 2, kKeywords, out));
  EXPECT_EQ(out, 1);
  EXPECT_TRUE(engine.GetKeywordIndex(Keyword(Keyword_AllInside), 2, kKeywords, out));
  EXPECT_EQ(out, 2);
  EXPECT_FALSE(engine.GetKeywordIndex(Keyword(Keyword_Cube), 2, kKeywords, out));
  EXPECT_EQ(out, 2);
  EXPECT_EQ(engine.GlobalError(), "Invalid macro argument: CUBE");
}

TEST(GetKeywordMapped, YieldsThePairedResultOrNamesTheKeyword) {
  CMacroEngine engine;
  std::int32_t out = -7;
  EXPECT_TRUE(engine.GetKeywordMapped(Keyword(Keyword_Sphere), &out, Keyword_Cube, 5,
                                      Keyword_Sphere, 6, Keyword_EndOfList));
  EXPECT_EQ(out, 6);
  EXPECT_FALSE(
      engine.GetKeywordMapped(Keyword(Keyword_Off), &out, Keyword_Cube, 9, Keyword_EndOfList));
  EXPECT_EQ(out, 6);
  EXPECT_EQ(engine.GlobalError(), "Invalid macro argument: OFF");
  EXPECT_FALSE(engine.GetKeywordMapped(Keyword(Keyword_Off), &out, Keyword_EndOfList));
}

TEST(SetError, FormatsTextsOfAnyLength) {
  CMacroEngine engine;
  const std::string text(20000, 'e');
  engine.SetError("%d %s!", 42, text.c_str());
  EXPECT_EQ(engine.GlobalError(), "42 " + text + "!");
  engine.SetError("%s again", engine.GlobalError().c_str());
  EXPECT_EQ(engine.GlobalError(), "42 " + text + "! again");
  engine.SetError("%s", "");
  EXPECT_EQ(engine.GlobalError(), "");
}

}  // namespace
}  // namespace qelvane::qelutiltools
