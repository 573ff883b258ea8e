#include "CommandText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

TEST(CommandText, CutsWordsAndValuesWithBlanksAroundTheEqualsSign) {
  const CommandText text = ParseCommandText("  move 2 x=1.5 Y = -2\tname =\"a =b\"");
  EXPECT_THAT(text.words, ElementsAre("MOVE", "2"));
  EXPECT_THAT(text.values, ElementsAre(Pair("NAME", "a =b"), Pair("X", "1.5"), Pair("Y", "-2")));
}

TEST(CommandText, KeepsAQuotedWordAsItIsWritten) {
  EXPECT_THAT(ParseCommandText("\"Some Word\" other").words, ElementsAre("Some Word", "OTHER"));
}

struct BadRow {
  const char* rule;
  const char* text;
  const char* reason;
};

class BadCommandText : public ::testing::TestWithParam<BadRow> {};

TEST_P(BadCommandText, SaysWhatIsWrong) {
  try {
    ParseCommandText(GetParam().text);
    ADD_FAILURE() << "the text was taken";
  } catch (const CommandError& e) {
    EXPECT_STREQ(e.what(), GetParam().reason);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, BadCommandText,
    ::testing::Values(BadRow{"OpenQuote", "NAME=\"a b", "a double quote is not closed"},
                      BadRow{"ValueWithoutName", "A =1 =2", "a value stands without a name"},
                      BadRow{"NameWithoutValue", "a=", "no value stands behind A="}),
    [](const auto& row) { return std::string(row.param.rule); });

struct NumberRow {
  const char* text;
  double number;
};

TEST(NumberOf, ReadsTheWholeTextAsAFiniteNumber) {
  for (const NumberRow& row : {NumberRow{"1.5", 1.5}, NumberRow{"+2", 2}, NumberRow{"-3e-2", -0.03},
                               NumberRow{".5", 0.5}, NumberRow{"0", 0}}) {
    EXPECT_EQ(NumberOf(row.text, "N"), row.number) << row.text;
  }
  for (const char* const text : {"", "x", "1x", "1,5", "nan", "inf", "1e999", " 1", "+-1"}) {
    EXPECT_THROW(NumberOf(text, "N"), CommandError) << text;
  }
}

TEST(CommandText, ReadsFlagsInEitherCase) {
  const CommandText text = ParseCommandText("A=yes B=NO C=On D=off E=True F=FALSE G=1");
  EXPECT_TRUE(text.Flag("A") && text.Flag("C") && text.Flag("E"));
  EXPECT_FALSE(text.Flag("B") || text.Flag("D") || text.Flag("F"));
  EXPECT_THROW(text.Flag("G"), CommandError);
  EXPECT_THROW(text.Flag("H"), CommandError);
}

}  // namespace
}  // namespace qelhost
