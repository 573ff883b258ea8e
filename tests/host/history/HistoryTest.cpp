#include "HistoryTesting.h"

#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkSOADataArrayTemplate.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace historytest {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Steps : public ::testing::Test {
 protected:
  Steps() { history.isKept = true; }

  StepOutcome Do(const std::string& name, const std::function<void()>& deed) {
    history.Begin(name);
    deed();
    return history.End();
  }
  StepOutcome DoPut(const DataSetPtr& data, LgIndex_t zone, const std::string& variable,
                    LgIndex_t offset, double value) {
    return Do("Put", [&] { Alter(history, data, zone, variable, Put(offset, value)); });
  }

  History history;
};

struct TypeRow {
  const char* name;
  int vtkType;
};

class OfEveryType : public Steps, public ::testing::WithParamInterface<TypeRow> {};

TEST_P(OfEveryType, ComeBackBitByBitAndGoAgain) {
  for (const int components : {1, 3}) {
    SCOPED_TRACE(components);
    const auto data = MakeLines({{MakeArray(GetParam().vtkType, "v", 300, components)}}, 300);
    const std::string name = components == 1 ? "v" : "v_Y";
    const auto before = BytesOf(*data);
    ASSERT_EQ(Do("Deed",
                 [&] {
                   Alter(history, data, 1, name, Put(0, 1));
                   Alter(history, data, 1, name, Put(299, 0));
                   Alter(history, data, 1, name, Put(70, 1));
                   Alter(history, data, 1, name, Put(71, 1));
                 }),
              StepOutcome::Kept);
    const auto after = BytesOf(*data);
    ASSERT_NE(before, after);
    for (int round = 0; round < 3; ++round) {
      EXPECT_TRUE(history.Undo(*data));
      EXPECT_EQ(BytesOf(*data), before);
      EXPECT_TRUE(history.Redo(*data));
      EXPECT_EQ(BytesOf(*data), after);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Values, OfEveryType,
    ::testing::Values(TypeRow{"Float", VTK_FLOAT}, TypeRow{"Double", VTK_DOUBLE},
                      TypeRow{"Int8", VTK_SIGNED_CHAR}, TypeRow{"Char", VTK_CHAR},
                      TypeRow{"UInt8", VTK_UNSIGNED_CHAR}, TypeRow{"Int16", VTK_SHORT},
                      TypeRow{"UInt16", VTK_UNSIGNED_SHORT}, TypeRow{"Int32", VTK_INT},
                      TypeRow{"UInt32", VTK_UNSIGNED_INT}, TypeRow{"Int64", VTK_LONG_LONG},
                      TypeRow{"UInt64", VTK_UNSIGNED_LONG_LONG}, TypeRow{"Bit", VTK_BIT}),
    [](const auto& info) { return info.param.name; });

TEST_F(Steps, KeepNegativeZerosAndTheBitsOfNaN) {
  const auto array = MakeArray(VTK_FLOAT, "v", 4);
  const std::uint32_t payload = 0x7fc0beef;
  std::memcpy(array->GetVoidPointer(1), &payload, sizeof payload);
  array->SetComponent(2, 0, -0.0);
  const auto data = MakeLines({{array}}, 4);
  const auto before = BytesOf(*data);
  ASSERT_EQ(Do("Set", [&] { Alter(history, data, 1, "v", PutAll(0.0)); }), StepOutcome::Kept);
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_EQ(BytesOf(*data), before);
  EXPECT_TRUE(std::signbit(array->GetComponent(2, 0)));
  // A zero that only changed its sign is a step; the contract's range would not show it.
  EXPECT_EQ(DoPut(data, 1, "v", 2, 0.0), StepOutcome::Kept);
  const auto nan = [&](QelFieldData& field) {
    const std::uint32_t other = 0x7fc00001;
    std::memcpy(field.first + sizeof other, &other, sizeof other);
  };
  EXPECT_EQ(Do("Other NaN", [&] { Alter(history, data, 1, "v", nan); }), StepOutcome::Kept);
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_EQ(BytesOf(*data), before);
}

TEST_F(Steps, AreNoneWhereNoValueChanged) {
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", 4)}}, 4);
  EXPECT_EQ(DoPut(data, 1, "v", 1, 7.0), StepOutcome::NoStep);
  EXPECT_EQ(Do("Look", [] {}), StepOutcome::NoStep);
  EXPECT_EQ(history.UndoName(data->Id()), nullptr);
  EXPECT_FALSE(history.Undo(*data));
  EXPECT_FALSE(history.Redo(*data));
  EXPECT_EQ(history.Revision(data->Id()), 0);
}

TEST_F(Steps, AreTakenBackOneByOneAndNamedAfterWhatChanged) {
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", 9), MakeArray(VTK_DOUBLE, "w", 9)}}, 9);
  const QelUniqueID_t id = data->Id();
  std::vector<std::vector<std::string>> states = {BytesOf(*data)};
  Do("First", [&] { Alter(history, data, 1, "v", Put(1, -1)); });
  states.push_back(BytesOf(*data));
  Do("Second", [&] {
    Alter(history, data, 1, "w", Put(1, -1));
    Alter(history, data, 1, "v", Put(1, -2));
  });
  states.push_back(BytesOf(*data));
  Do("Third", [&] { Alter(history, data, 1, "v", Put(8, -3)); });
  states.push_back(BytesOf(*data));
  EXPECT_THAT(history.UndoNames(id), ElementsAre("Third: v", "Second: v, w", "First: v"));
  for (int n = 2; n >= 0; --n) {
    ASSERT_TRUE(history.Undo(*data));
    EXPECT_EQ(BytesOf(*data), states[static_cast<std::size_t>(n)]);
  }
  EXPECT_THAT(history.RedoNames(id), ElementsAre("First: v", "Second: v, w", "Third: v"));
  EXPECT_EQ(*history.RedoName(id), "First: v");
  for (std::size_t n = 1; n <= 3; ++n) {
    ASSERT_TRUE(history.Redo(*data));
    EXPECT_EQ(BytesOf(*data), states[n]);
  }
  ASSERT_TRUE(history.Undo(*data));
  ASSERT_TRUE(history.Undo(*data));
  DoPut(data, 1, "v", 5, -9);
  EXPECT_THAT(history.RedoNames(id), IsEmpty());
  EXPECT_THAT(history.UndoNames(id), ElementsAre("Put: v", "First: v"));
}

TEST_F(Steps, OfOperationsInsideAnotherBelongToIt) {
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", 4)}}, 4);
  const auto before = BytesOf(*data);
  Do("Outer", [&] {
    Alter(history, data, 1, "v", Put(0, -1));
    EXPECT_EQ(DoPut(data, 1, "v", 1, -2), StepOutcome::NoStep);
    Alter(history, data, 1, "v", Put(2, -3));
    EXPECT_TRUE(history.IsAltering());
    EXPECT_FALSE(history.Undo(*data));
  });
  EXPECT_THAT(history.UndoNames(data->Id()), ElementsAre("Outer: v"));
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_EQ(BytesOf(*data), before);
}

TEST_F(Steps, OutsideAnyOperationAreStepsOfTheirOwn) {
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", 4)}}, 4);
  const auto before = BytesOf(*data);
  Alter(history, data, 1, "v", Put(0, -1));
  const auto between = BytesOf(*data);
  DoPut(data, 1, "v", 1, -2);
  EXPECT_THAT(history.UndoNames(data->Id()), ElementsAre("Put: v", "v"));
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_EQ(BytesOf(*data), between);
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_EQ(BytesOf(*data), before);
  Alter(history, data, 1, "v", Put(0, -1));
  EXPECT_NE(history.Revision(data->Id()), 0);
}

TEST_F(Steps, OfSharedValuesAreKeptOnce) {
  const auto shared = MakeArray(VTK_DOUBLE, "v", 100);
  const auto data = MakeLines({{shared}, {shared}, {MakeArray(VTK_DOUBLE, "v", 100)}}, 100);
  const auto before = BytesOf(*data);
  Do("All", [&] {
    for (const LgIndex_t zone : {1, 2, 3}) Alter(history, data, zone, "v", PutAll(-zone));
  });
  const auto fields = history.UndoFields(*data);
  EXPECT_EQ(fields.size(), 3U);
  EXPECT_LT(history.ByteCount(), 2 * 100 * 8 + 100);
  const auto after = BytesOf(*data);
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_EQ(BytesOf(*data), before);
  EXPECT_TRUE(history.Redo(*data));
  EXPECT_EQ(BytesOf(*data), after);
}

TEST_F(Steps, ReachValuesThatWereSharedWhenTheyWereAltered) {
  const auto shared = MakeArray(VTK_DOUBLE, "v", 50);
  const auto data = MakeLines({{shared}, {shared}}, 50);
  const LgIndex_t v = data->VariableNumber("v");
  std::vector<std::vector<std::string>> states = {BytesOf(*data)};
  Do("Shared", [&] { Alter(history, data, 1, "v", Put(3, -1)); });
  states.push_back(BytesOf(*data));
  Do("Own", [&] {
    // The reference of the shared values is asked for, and given up for one of its own.
    history.BeforeWriting(data, 1, v);
    ASSERT_TRUE(data->BranchShared(1, v));
    Alter(history, data, 1, "v", Put(4, -2));
    Alter(history, data, 2, "v", Put(9, -3));
  });
  states.push_back(BytesOf(*data));
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(history.Undo(*data));
    EXPECT_EQ(BytesOf(*data), states[1]);
    EXPECT_TRUE(history.Undo(*data));
    EXPECT_EQ(BytesOf(*data), states[0]);
    EXPECT_TRUE(history.Redo(*data));
    EXPECT_EQ(BytesOf(*data), states[1]);
    EXPECT_TRUE(history.Redo(*data));
    EXPECT_EQ(BytesOf(*data), states[2]);
  }
}

TEST_F(Steps, LeaveValuesThatTheyMadeActiveAtZero) {
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", 4)}, {}}, 4);
  const LgIndex_t v = data->VariableNumber("v");
  const LgIndex_t added = data->AddVariable("w", {}, true);
  Do("Blank", [&] {
    ASSERT_TRUE(data->AllocateValues(2, v));
    ASSERT_TRUE(data->AllocateValues(1, added));
    Alter(history, data, 2, "v", Put(1, 1));
    Alter(history, data, 1, "w", PutAll(1));
  });
  const auto after = BytesOf(*data);
  EXPECT_TRUE(history.Undo(*data));
  for (const auto& [zone, variable] : {std::pair{2, v}, std::pair{1, added}}) {
    const Range range = data->ZoneRange(zone, variable);
    EXPECT_TRUE(range.hasValues);
    EXPECT_EQ(range.min, 0);
    EXPECT_EQ(range.max, 0);
  }
  EXPECT_TRUE(history.Redo(*data));
  EXPECT_EQ(BytesOf(*data), after);
}

TEST_F(Steps, MoveTheRangesAndTheTallyOn) {
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", 9)}}, 9);
  const LgIndex_t v = data->VariableNumber("v");
  DoPut(data, 1, "v", 0, 1000);
  EXPECT_EQ(data->VariableRange(v).max, 1000);
  const WriteTally before = data->ZoneWrites(1, v);
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_EQ(data->VariableRange(v).max, 56);
  EXPECT_EQ(data->ZoneWrites(1, v).changed, before.changed + 1);
  EXPECT_TRUE(history.Redo(*data));
  EXPECT_EQ(data->VariableRange(v).max, 1000);
}

TEST_F(Steps, OutliveZonesThatAddOnsMadeAndDeleted) {
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", 9)}}, 9);
  const auto before = BytesOf(*data);
  const LgIndex_t drawn = data->AddZone("box", 8, 1, 0, ZoneType_FEBrick, nullptr);
  ASSERT_EQ(drawn, 2);
  Do("Alter", [&] {
    Alter(history, data, 1, "v", Put(2, -1));
    Alter(history, data, drawn, "X", Put(2, -1));
  });
  EXPECT_EQ(history.UndoFields(*data).size(), 1U);
  ASSERT_TRUE(data->DeleteZones({drawn}));
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_EQ(BytesOf(*data), before);
  // A zone that is drawn alone is no step.
  data->AddZone("box", 8, 1, 0, ZoneType_FEBrick, nullptr);
  EXPECT_EQ(DoPut(data, 2, "Y", 1, 5.0), StepOutcome::NoStep);
}

TEST_F(Steps, OfTwoDataSetsDoNotMix) {
  const auto one = MakeLines({{MakeArray(VTK_FLOAT, "v", 9)}}, 9);
  const auto two = MakeLines({{MakeArray(VTK_FLOAT, "v", 9)}}, 9);
  const auto before = BytesOf(*one);
  DoPut(one, 1, "v", 0, -1);
  DoPut(two, 1, "v", 0, -2);
  const auto afterTwo = BytesOf(*two);
  EXPECT_TRUE(history.Undo(*one));
  EXPECT_EQ(BytesOf(*one), before);
  EXPECT_EQ(BytesOf(*two), afterTwo);
  DoPut(two, 1, "v", 1, -3);
  EXPECT_NE(history.RedoName(one->Id()), nullptr);
  Do("Both", [&] {
    Alter(history, one, 1, "v", Put(4, -4));
    Alter(history, two, 1, "v", Put(4, -4));
  });
  EXPECT_EQ(*history.UndoName(one->Id()), "Both: v");
  EXPECT_EQ(*history.UndoName(two->Id()), "Both: v");
  history.Forget(one->Id());
  EXPECT_FALSE(history.Undo(*one));
  EXPECT_TRUE(history.Undo(*two));
}

TEST_F(Steps, OfComponentsStoredApartComeBack) {
  vtkNew<vtkSOADataArrayTemplate<double>> apart;
  apart->SetName("v");
  apart->SetNumberOfComponents(3);
  apart->SetNumberOfTuples(20);
  for (vtkIdType i = 0; i < 20; ++i) {
    for (int n = 0; n < 3; ++n) apart->SetComponent(i, n, 10.0 * n + static_cast<double>(i));
  }
  const auto data = MakeLines({{apart.Get()}}, 20);
  const auto before = BytesOf(*data);
  ASSERT_EQ(DoPut(data, 1, "v_Z", 19, -1), StepOutcome::Kept);
  EXPECT_TRUE(history.Undo(*data));
  EXPECT_EQ(BytesOf(*data), before);
}

TEST_F(Steps, OfManyValuesInAnyPatternComeBack) {
  constexpr int kCount = 300000;
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", kCount, 3)}}, kCount);
  std::mt19937 random(7);
  for (const int every : {1, 2, 5, 17, 4096, 100000}) {
    SCOPED_TRACE(every);
    const auto before = BytesOf(*data);
    ASSERT_EQ(Do("Many",
                 [&] {
                   Alter(history, data, 1, "v_X", [&](QelFieldData& field) {
                     for (LgIndex_t i = 0; i < field.count; ++i) {
                       if (random() % static_cast<unsigned>(every) == 0) {
                         field.set(&field, i, -1.0 - every);
                       }
                     }
                   });
                 }),
              StepOutcome::Kept);
    const auto after = BytesOf(*data);
    EXPECT_TRUE(history.Undo(*data));
    EXPECT_EQ(BytesOf(*data), before);
    EXPECT_TRUE(history.Redo(*data));
    EXPECT_EQ(BytesOf(*data), after);
  }
}

TEST_F(Steps, GiveEveryStateANumber) {
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", 9)}}, 9);
  const QelUniqueID_t id = data->Id();
  EXPECT_EQ(history.Revision(id), 0);
  DoPut(data, 1, "v", 0, -1);
  const std::int64_t first = history.Revision(id);
  EXPECT_NE(first, 0);
  DoPut(data, 1, "v", 1, -1);
  const std::int64_t second = history.Revision(id);
  EXPECT_NE(second, first);
  history.Undo(*data);
  EXPECT_EQ(history.Revision(id), first);
  history.Undo(*data);
  EXPECT_EQ(history.Revision(id), 0);
  history.Redo(*data);
  history.Redo(*data);
  EXPECT_EQ(history.Revision(id), second);
  history.Undo(*data);
  DoPut(data, 1, "v", 1, -1);
  EXPECT_NE(history.Revision(id), second) << "another way to the same values is another state";
}

TEST(History, KeepsNothingWhileItIsOff) {
  History history;
  const auto data = MakeLines({{MakeArray(VTK_FLOAT, "v", 9)}}, 9);
  history.Begin("Put");
  Alter(history, data, 1, "v", Put(0, -1));
  EXPECT_EQ(history.End(), StepOutcome::NoStep);
  EXPECT_FALSE(history.Undo(*data));
  EXPECT_EQ(history.ByteCount(), 0);
}

}  // namespace
}  // namespace historytest
