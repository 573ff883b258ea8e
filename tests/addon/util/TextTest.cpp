#include "Utilities.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qelvane::qelutiltools {
namespace {

struct BlanksRow {
  const char* rule;
  const char* text;
  const char* expected;
};

class Blanks : public ::testing::TestWithParam<BlanksRow> {};

TEST_P(Blanks, AreRemoved) {
  std::string text = GetParam().text;
  RemoveBlanks(text);
  EXPECT_EQ(text, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Rules, Blanks,
                         ::testing::Values(BlanksRow{"Everywhere", " a b  ", "ab"},
                                           BlanksRow{"Empty", "", ""},
                                           BlanksRow{"BlanksAlone", "   ", ""},
                                           BlanksRow{"None", "ab", "ab"},
                                           BlanksRow{"TabsStay", " \ta\t ", "\ta\t"},
                                           BlanksRow{"LineBreaksStay", "a \n", "a\n"}),
                         [](const auto& row) { return std::string(row.param.rule); });

struct SplitRow {
  const char* rule;
  const char* text;
  const char* delimiters;
  std::vector<std::string> expected;
};

class Split : public ::testing::TestWithParam<SplitRow> {};

TEST_P(Split, YieldsTheRunsBetweenDelimiters) {
  std::vector<std::string> parts = {"from", "before"};
  SplitString(GetParam().text, parts, GetParam().delimiters);
  EXPECT_EQ(parts, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, Split,
    ::testing::Values(SplitRow{"OneDelimiter", "1,2,3", ",", {"1", "2", "3"}},
                      SplitRow{"SeveralDelimiters", "1, 2;3", ", ;", {"1", "2", "3"}},
                      SplitRow{"RunsOfDelimiters", "a,,,b", ",", {"a", "b"}},
                      SplitRow{"AtBothEnds", ",,a,b,", ",", {"a", "b"}},
                      SplitRow{"None", "ab", ",", {"ab"}}, SplitRow{"EmptyText", "", ",", {}},
                      SplitRow{"DelimitersAlone", ",,,", ",", {}},
                      SplitRow{"NoDelimiters", "a,b", "", {"a,b"}}),
    [](const auto& row) { return std::string(row.param.rule); });

}  // namespace
}  // namespace qelvane::qelutiltools
