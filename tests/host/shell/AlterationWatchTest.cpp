#include "Host.h"
#include "TestData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

void Write(DataSet& data, LgIndex_t zone, LgIndex_t variable, LgIndex_t offset, double value) {
  QelFieldData* const field = data.Writable(zone, variable);
  field->set(field, offset, value);
}

class Watch : public ::testing::Test {
 protected:
  DataSetPtr data = MakeData(2, 2, 2);
  LgIndex_t p = data->VariableNumber("p");
  AlterationWatch watch;
};

TEST_F(Watch, CountsWhatWasWrittenAndWhatBecameAnotherNumber) {
  Write(*data, 1, p, 0, 5);
  watch.Start();
  watch.BeforeWriting(data, 1, p);
  Write(*data, 1, p, 0, 5);
  Write(*data, 1, p, 1, -2);
  Write(*data, 1, p, 2, 9);
  const std::vector<Alteration> alterations = watch.Finish();
  ASSERT_THAT(alterations, SizeIs(1));
  EXPECT_EQ(alterations[0].variableName, "p");
  EXPECT_EQ(alterations[0].location, ValueLocation_Nodal);
  EXPECT_THAT(alterations[0].zones, ElementsAre(1));
  EXPECT_EQ(alterations[0].pickedCount, 3);
  EXPECT_EQ(alterations[0].changedCount, 2);
  EXPECT_EQ(alterations[0].before.min, 0);
  EXPECT_EQ(alterations[0].before.max, 5);
  EXPECT_EQ(alterations[0].after.min, -2);
  EXPECT_EQ(alterations[0].after.max, 9);
}

TEST_F(Watch, LeavesOutWhatWasHandedOutAndNotWritten) {
  watch.Start();
  watch.BeforeWriting(data, 1, p);
  EXPECT_THAT(watch.Finish(), IsEmpty());
}

TEST_F(Watch, TakesTheRangeBeforeTheFirstWriteHoweverOftenTheFieldIsHandedOut) {
  watch.Start();
  watch.BeforeWriting(data, 1, p);
  Write(*data, 1, p, 0, 7);
  watch.BeforeWriting(data, 1, p);
  Write(*data, 1, p, 1, 8);
  const std::vector<Alteration> alterations = watch.Finish();
  ASSERT_THAT(alterations, SizeIs(1));
  EXPECT_EQ(alterations[0].pickedCount, 2);
  EXPECT_EQ(alterations[0].before.max, 0);
}

TEST_F(Watch, DoesNothingWhileItIsOff) {
  watch.BeforeWriting(data, 1, p);
  Write(*data, 1, p, 0, 7);
  EXPECT_THAT(watch.Finish(), IsEmpty());
}

TEST_F(Watch, BelievesTheAddOnThatCountsItself) {
  watch.Start();
  watch.BeforeWriting(data, 1, p);
  for (LgIndex_t node = 0; node < 8; ++node) Write(*data, 1, p, node, 0);
  Write(*data, 1, p, 3, 1);
  watch.Altered(data, 1, p, 1);
  watch.Altered(data, 1, p + 1, 5);  // never handed out
  const std::vector<Alteration> alterations = watch.Finish();
  ASSERT_THAT(alterations, SizeIs(1));
  EXPECT_EQ(alterations[0].pickedCount, 1);
  EXPECT_EQ(alterations[0].changedCount, 1);
}

TEST_F(Watch, LeavesOutValuesThatWerePreparedAndNotPicked) {
  watch.Start();
  watch.BeforeWriting(data, 1, p);
  Write(*data, 1, p, 3, 0);
  watch.Altered(data, 1, p, 0);
  EXPECT_THAT(watch.Finish(), IsEmpty());
}

TEST_F(Watch, LeavesOutZonesThatNoFileHolds) {
  ASSERT_EQ(data->AddZone("made here", 2, 2, 1, ZoneType_Ordered, nullptr), 2);
  const LgIndex_t x = data->CoordinateVariable('X');
  watch.Start();
  watch.BeforeWriting(data, 2, x);
  Write(*data, 2, x, 0, 1);
  EXPECT_THAT(watch.Finish(), IsEmpty());
}

}  // namespace
}  // namespace qelhost
