#include "HistoryTesting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace historytest {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Limit : public ::testing::Test {
 protected:
  static constexpr int kCount = 1000;
  Limit() { history.isKept = true; }

  StepOutcome DoAll(const DataSetPtr& data, const std::string& name, double value) {
    history.Begin(name);
    Alter(history, data, 1, "v", PutAll(value));
    return history.End();
  }

  History history;
  DataSetPtr data = MakeLines({{MakeArray(VTK_DOUBLE, "v", kCount)}}, kCount);
};

TEST_F(Limit, LetsTheOldestStepsGo) {
  history.SetLimit(2 * kCount * 8 + 1000);
  for (const double value : {-1.0, -2.0, -3.0, -4.0}) {
    EXPECT_EQ(DoAll(data, std::to_string(static_cast<int>(value)), value), StepOutcome::Kept);
  }
  EXPECT_THAT(history.UndoNames(data->Id()), ElementsAre("-4: v", "-3: v"));
  EXPECT_LE(history.ByteCount(), 2 * kCount * 8 + 1000);
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_FALSE(history.Undo(*data));
  EXPECT_EQ(data->ZoneRange(1, data->VariableNumber("v")).max, -2.0);
  EXPECT_NE(history.Revision(data->Id()), 0) << "the first two steps cannot be taken back";
}

TEST_F(Limit, IsOneForAllDataSets) {
  const auto other = MakeLines({{MakeArray(VTK_DOUBLE, "v", kCount)}}, kCount);
  history.SetLimit(2 * kCount * 8 + 1000);
  DoAll(data, "a", -1);
  DoAll(other, "b", -2);
  DoAll(other, "c", -3);
  EXPECT_THAT(history.UndoNames(data->Id()), IsEmpty());
  EXPECT_THAT(history.UndoNames(other->Id()), ElementsAre("c: v", "b: v"));
}

TEST_F(Limit, CountsWhatWasUndone) {
  const auto other = MakeLines({{MakeArray(VTK_DOUBLE, "v", kCount)}}, kCount);
  history.SetLimit(2 * kCount * 8 + 1000);
  DoAll(data, "a", -1);
  history.Undo(*data);
  DoAll(other, "b", -2);
  DoAll(other, "c", -3);
  EXPECT_THAT(history.RedoNames(data->Id()), IsEmpty());
  EXPECT_THAT(history.UndoNames(other->Id()), ElementsAre("c: v", "b: v"));
}

TEST_F(Limit, OfOneStepEndsTheHistoryAndStillCounts) {
  history.SetLimit(kCount * 8 - 1);
  history.Begin("Small");
  const auto small = MakeLines({{MakeArray(VTK_DOUBLE, "v", 10)}}, 10);
  Alter(history, small, 1, "v", Put(0, -1));
  EXPECT_EQ(history.End(), StepOutcome::Kept);
  EXPECT_EQ(DoAll(data, "Large", -1), StepOutcome::TooLarge);
  EXPECT_EQ(history.TooLargeCount(), 1);
  EXPECT_THAT(history.UndoNames(data->Id()), IsEmpty());
  const std::int64_t revision = history.Revision(data->Id());
  EXPECT_NE(revision, 0);
  EXPECT_THAT(history.UndoNames(small->Id()), ElementsAre("Small: v")) << "that one still fits";
  // What only asks for the values and leaves them is no change.
  history.Begin("Look");
  history.BeforeWriting(data, 1, data->VariableNumber("v"));
  EXPECT_EQ(history.End(), StepOutcome::NoStep);
  EXPECT_EQ(history.Revision(data->Id()), revision);
}

TEST_F(Limit, ReachedByOneStepTakesTheStepsBeforeAlong) {
  history.SetLimit(kCount * 8 + 500);
  history.Begin("One value");
  Alter(history, data, 1, "v", Put(0, -1));
  EXPECT_EQ(history.End(), StepOutcome::Kept);
  history.SetLimit(kCount * 8 - 1);
  EXPECT_EQ(DoAll(data, "Large", -1), StepOutcome::TooLarge);
  EXPECT_FALSE(history.Undo(*data)) << "values from before a step that stays must not come back";
}

TEST_F(Limit, IsNotReachedByACopyOfWhichLittleIsKept) {
  history.SetLimit(kCount * 8);
  for (int n = 0; n < 50; ++n) {
    history.Begin("One");
    Alter(history, data, 1, "v", Put(n, -1));
    EXPECT_EQ(history.End(), StepOutcome::Kept);
  }
  EXPECT_EQ(history.UndoNames(data->Id()).size(), 50U);
  EXPECT_LT(history.ByteCount(), 50 * 64);
}

TEST_F(Limit, GoesWithTheDataSet) {
  DoAll(data, "a", -1);
  EXPECT_GT(history.ByteCount(), 0);
  data.reset();
  data = MakeLines({{MakeArray(VTK_DOUBLE, "v", 10)}}, 10);
  DoAll(data, "b", -1);
  EXPECT_LT(history.ByteCount(), 10 * 8 + 100);
  EXPECT_THAT(history.UndoNames(data->Id()), ElementsAre("b: v"));
}

}  // namespace
}  // namespace historytest
