#include <gmock/gmock.h>
#include <vtkBitArray.h>
#include <vtkDataArray.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkSOADataArrayTemplate.h>
#include <vtkType.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "FieldData.h"

namespace {

using namespace qelhost;

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

std::shared_ptr<Storage> StorageOf(int vtkType, int components, int tuples, int component = 0) {
  auto storage = std::make_shared<Storage>();
  storage->array = vtkSmartPointer<vtkDataArray>::Take(vtkDataArray::CreateDataArray(vtkType));
  storage->array->SetNumberOfComponents(components);
  storage->array->SetNumberOfTuples(tuples);
  storage->array->Fill(0);
  storage->component = component;
  return storage;
}

struct Conversion {
  const char* rule;
  int vtkType;
  double written;
  double stored;
};

class StoredValue : public ::testing::TestWithParam<Conversion> {};

TEST_P(StoredValue, FollowsRule) {
  const FieldView view = MakeDirectView(StorageOf(GetParam().vtkType, 1, 2), 0, 2);
  view->set(view.get(), 1, GetParam().written);
  EXPECT_EQ(view->get(view.get(), 1), GetParam().stored);
  EXPECT_EQ(view->get(view.get(), 0), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, StoredValue,
    ::testing::Values(Conversion{"HalfRoundsAwayFromZero", VTK_INT, 2.5, 3},
                      Conversion{"NegativeHalfRoundsAwayFromZero", VTK_INT, -2.5, -3},
                      Conversion{"BelowHalfRoundsDown", VTK_INT, 2.49, 2},
                      Conversion{"NaNBecomesZeroInIntegers", VTK_INT, kNaN, 0},
                      Conversion{"Int32ClampsAbove", VTK_INT, 1e10, 2147483647.0},
                      Conversion{"Int32ClampsBelow", VTK_INT, -kInf, -2147483648.0},
                      Conversion{"Int16Clamps", VTK_SHORT, 40000, 32767},
                      Conversion{"ByteClampsBelow", VTK_UNSIGNED_CHAR, -1, 0},
                      Conversion{"ByteClampsAbove", VTK_UNSIGNED_CHAR, 255.5, 255},
                      Conversion{"Int8Clamps", VTK_SIGNED_CHAR, -200, -128},
                      Conversion{"CharIsInt8", VTK_CHAR, -128, -128},
                      Conversion{"UInt16Clamps", VTK_UNSIGNED_SHORT, 70000, 65535},
                      Conversion{"UInt32Clamps", VTK_UNSIGNED_INT, 5e9, 4294967295.0},
                      Conversion{"Int64ClampsAtTwoToThe63", VTK_LONG_LONG, 9223372036854775808.0,
                                 9223372036854775807.0},
                      Conversion{"Int64ClampsBelow", VTK_LONG, -1e30, -9223372036854775808.0},
                      Conversion{"UInt64ClampsAtTwoToThe64", VTK_UNSIGNED_LONG,
                                 18446744073709551616.0, 18446744073709551615.0},
                      Conversion{"UInt64ClampsInfinity", VTK_UNSIGNED_LONG_LONG, kInf,
                                 18446744073709551615.0},
                      Conversion{"IdTypeIsAnInteger", VTK_ID_TYPE, 7.5, 8},
                      Conversion{"FloatRounds", VTK_FLOAT, 0.1, static_cast<double>(0.1f)},
                      Conversion{"FloatOverflowIsInfinity", VTK_FLOAT, 1e300, kInf},
                      Conversion{"DoubleIsExact", VTK_DOUBLE, 0.1, 0.1},
                      Conversion{"BitRoundsToOne", VTK_BIT, 0.5, 1},
                      Conversion{"BitNaNIsZero", VTK_BIT, kNaN, 0}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(FieldData, UnsignedLongKeepsItsLimit) {
  const auto storage = StorageOf(VTK_UNSIGNED_LONG, 1, 1);
  const FieldView view = MakeDirectView(storage, 0, 1);
  view->set(view.get(), 0, kInf);
  EXPECT_EQ(*static_cast<unsigned long*>(storage->array->GetVoidPointer(0)),
            std::numeric_limits<unsigned long>::max());
}

TEST(FieldData, NaNStaysInFloats) {
  for (const int type : {VTK_FLOAT, VTK_DOUBLE}) {
    const FieldView view = MakeDirectView(StorageOf(type, 1, 1), 0, 1);
    view->set(view.get(), 0, kNaN);
    EXPECT_TRUE(std::isnan(view->get(view.get(), 0)));
  }
}

TEST(FieldData, ComponentIsWrittenInPlaceAndItsNeighboursAreNot) {
  const auto storage = StorageOf(VTK_FLOAT, 3, 4, 1);
  const FieldView view = MakeDirectView(storage, 1, 3);
  view->set(view.get(), 0, 5);
  for (int value = 0; value < 12; ++value) {
    EXPECT_EQ(storage->array->GetComponent(value / 3, value % 3), value == 4 ? 5 : 0);
  }
  EXPECT_EQ(view->count, 3);
  EXPECT_EQ(view->type, FieldDataType_Float);
  EXPECT_TRUE(IsStridedRun(*view));
}

TEST(FieldData, MappedItemsAreTheTuplesListed) {
  const auto storage = StorageOf(VTK_DOUBLE, 1, 5);
  const std::vector<std::int64_t> tuples{1, 4};
  const FieldView view = MakeMappedView(storage, tuples);
  view->set(view.get(), 1, 9);
  EXPECT_EQ(storage->array->GetComponent(4, 0), 9);
  EXPECT_EQ(view->get(view.get(), 1), 9);
  EXPECT_FALSE(IsStridedRun(*view));
}

TEST(FieldData, ComponentsInArraysOfTheirOwnAreSeenInPlace) {
  vtkNew<vtkSOADataArrayTemplate<double>> apart;
  apart->SetNumberOfComponents(2);
  apart->SetNumberOfTuples(2);
  apart->Fill(0);
  auto storage = std::make_shared<Storage>();
  storage->array = apart;
  storage->component = 1;
  const FieldView view = MakeDirectView(storage, 0, 2);
  view->set(view.get(), 1, 3);
  EXPECT_EQ(apart->GetComponent(1, 1), 3);
  EXPECT_EQ(apart->GetComponent(1, 0), 0);
}

TEST(FieldData, TallyTellsWritesFromChanges) {
  const auto storage = StorageOf(VTK_INT, 1, 3);
  const FieldView view = MakeDirectView(storage, 0, 3);
  view->set(view.get(), 0, 0.2);  // rounds to what is there
  view->set(view.get(), 1, 7);
  view->set(view.get(), 1, 7);
  EXPECT_EQ(storage->tally.writes, 3);
  EXPECT_EQ(storage->tally.changed, 1);
}

TEST(FieldData, NaNOverNaNIsNoChange) {
  const auto storage = StorageOf(VTK_DOUBLE, 1, 1);
  const FieldView view = MakeDirectView(storage, 0, 1);
  view->set(view.get(), 0, kNaN);
  view->set(view.get(), 0, kNaN);
  EXPECT_EQ(storage->tally.changed, 1);
}

TEST(FieldData, StoredValuesAreCopiedAsTheyAre) {
  const FieldView view = MakeDirectView(StorageOf(VTK_SHORT, 2, 3, 1), 0, 3);
  const short source[2] = {-5, 6};
  ASSERT_TRUE(CopyStoredValues(*view, 1, 2, source));
  EXPECT_EQ(view->get(view.get(), 0), 0);
  EXPECT_EQ(view->get(view.get(), 1), -5);
  EXPECT_EQ(view->get(view.get(), 2), 6);
}

TEST(FieldData, ComputedValuesCannotBeWritten) {
  const FieldView zeros = MakeZeroView(2);
  EXPECT_EQ(zeros->set, nullptr);
  EXPECT_EQ(zeros->get(zeros.get(), 1), 0);
  const double source = 1;
  EXPECT_FALSE(CopyStoredValues(*zeros, 0, 1, &source));
}

TEST(FieldData, RangeLeavesNaNOut) {
  const FieldView view = MakeDirectView(StorageOf(VTK_DOUBLE, 1, 3), 0, 3);
  view->set(view.get(), 0, kNaN);
  view->set(view.get(), 1, -3);
  view->set(view.get(), 2, 4);
  const Range range = ScanRange(*view);
  EXPECT_TRUE(range.hasValues);
  EXPECT_EQ(range.min, -3);
  EXPECT_EQ(range.max, 4);
}

TEST(FieldData, RangeOfNothingButNaNIsEmpty) {
  const FieldView view = MakeDirectView(StorageOf(VTK_DOUBLE, 1, 1), 0, 1);
  view->set(view.get(), 0, kNaN);
  EXPECT_FALSE(ScanRange(*view).hasValues);
}

// ---- ranges of computed coordinates ----

Range Walked(const QelFieldData& ref) {
  Range range;
  for (LgIndex_t i = 0; i < ref.count; ++i) {
    const double value = ref.get(&ref, i);
    if (std::isnan(value)) continue;
    range.min = range.hasValues ? std::min(range.min, value) : value;
    range.max = range.hasValues ? std::max(range.max, value) : value;
    range.hasValues = true;
  }
  return range;
}

FieldView ViewOf(const ComputedCoordinates& grid) {
  const std::int64_t nodes = grid.dimensions[0] * grid.dimensions[1] * grid.dimensions[2];
  return MakeComputedView(std::make_shared<ComputedCoordinates>(grid),
                          static_cast<LgIndex_t>(nodes));
}

void ExpectWalkedRange(const ComputedCoordinates& grid) {
  const FieldView view = ViewOf(grid);
  const Range walked = Walked(*view);
  const Range range = ScanRange(*view);
  EXPECT_EQ(range.hasValues, walked.hasValues);
  EXPECT_EQ(range.min, walked.min);
  EXPECT_EQ(range.max, walked.max);
}

TEST(ComputedRange, OfAnImageIsThatOfAllItsNodes) {
  std::mt19937 random(7);
  std::uniform_int_distribution<std::int64_t> nodes(1, 7), start(-9, 9);
  // Turned about any axis, so that all three indices count and steps fall as well as rise.
  std::uniform_real_distribution<double> step(-1, 1);
  std::uniform_int_distribution<int> magnitude(-12, 12);
  for (int n = 0; n < 2000; ++n) {
    ComputedCoordinates grid;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      grid.dimensions[axis] = nodes(random);
      grid.start[axis] = start(random);
      grid.row[axis] = n % 5 == static_cast<int>(axis) ? 0 : step(random);
      grid.row[axis] *= std::pow(10.0, magnitude(random));
    }
    grid.row[3] = step(random) * std::pow(10.0, magnitude(random));
    ExpectWalkedRange(grid);
  }
}

TEST(ComputedRange, OfARectilinearGridIsThatOfItsTicks) {
  std::mt19937 random(8);
  std::uniform_real_distribution<double> tick(-1, 1);
  for (int axis = 0; axis < 3; ++axis) {
    ComputedCoordinates grid;
    grid.dimensions = {4, 3, 5};
    grid.axis = axis;
    vtkNew<vtkFloatArray> ticks;
    for (std::int64_t n = 0; n < grid.dimensions[static_cast<std::size_t>(axis)]; ++n) {
      ticks->InsertNextValue(static_cast<float>(tick(random)));
    }
    grid.ticks = ticks;
    ExpectWalkedRange(grid);
    ticks->SetValue(1, std::nanf(""));
    ExpectWalkedRange(grid);
    ticks->Fill(kNaN);
    ExpectWalkedRange(grid);
  }
}

/// With a walk over all nodes this would take hours.
TEST(ComputedRange, DoesNotWalkOverTwoBillionNodes) {
  constexpr std::int64_t kMost = std::numeric_limits<LgIndex_t>::max();
  for (int n = 1; n <= 1000; ++n) {
    ComputedCoordinates grid;
    grid.dimensions[static_cast<std::size_t>(n) % 3] = kMost;
    grid.row = {0.5, 0.5, 0.5, static_cast<double>(n)};
    const Range range = ScanRange(*ViewOf(grid));
    EXPECT_EQ(range.min, n);
    EXPECT_EQ(range.max, 0.5 * static_cast<double>(kMost - 1) + n);
  }
}

}  // namespace
