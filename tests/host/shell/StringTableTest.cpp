#include "StringTable.h"

#include <gtest/gtest.h>

#include <string>

namespace qelhost {
namespace {

TEST(StringTable, GivesOneByteMoreThanAskedForAllOfThemZero) {
  StringTable table;
  const char* const text = table.Alloc(5, "label");
  EXPECT_EQ(std::string(text, 6), std::string(6, '\0'));
}

TEST(StringTable, RefusesWhatItDidNotGiveOrHasTakenBack) {
  StringTable table;
  char foreign[] = "foreign";
  char* const text = table.Copy("text", "label");
  EXPECT_FALSE(table.Release(foreign));
  EXPECT_FALSE(table.Release(nullptr));
  EXPECT_EQ(table.Count(), 1U);
  EXPECT_TRUE(table.Release(text));
  EXPECT_FALSE(table.Release(text));
  EXPECT_EQ(table.Count(), 0U);
}

TEST(StringTable, TakesAStringOverAndReleasesIt) {
  StringTable table;
  EXPECT_EQ(table.TakeOver(table.Copy("text", "label")), "text");
  EXPECT_EQ(table.TakeOver(nullptr), "");
  char foreign[] = "foreign";
  EXPECT_EQ(table.TakeOver(foreign), "");
  EXPECT_EQ(table.Count(), 0U);
}

}  // namespace
}  // namespace qelhost
