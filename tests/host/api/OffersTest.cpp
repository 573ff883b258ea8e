// What add-ons hand the host through extensions, and what the host makes of it.
#include "ApiTesting.h"
#include "Host.h"
#include "PickPreview.h"
#include "UserActions.h"

#include "qelvane/Extensions.h"
#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

template <class Service>
const Service& OfferedByHost(const char* id) {
  return *static_cast<const Service*>(QelUtilExtensionGet(id));
}

/// What the test's add-on answers and hears.
struct AddOn {
  bool hasPick = true;
  std::int64_t targetCount = 0;           ///< values of the target, in every zone
  std::vector<std::int64_t> picked;       ///< values that the pick changes, from 0
  std::vector<std::string> asked;         ///< "zone/bitCount"
  std::vector<std::string> restoredWith;  ///< who held the lock then
  std::vector<std::array<double, 9>> drags;
};
AddOn addOn;

bool AnswerPick(LgIndex_t zone, std::uint64_t* bits, std::int64_t bitCount) {
  addOn.asked.push_back(std::to_string(zone) + "/" + std::to_string(bitCount));
  if (!addOn.hasPick || addOn.targetCount > bitCount) return false;
  for (const std::int64_t item : addOn.picked) bits[item / 64] |= std::uint64_t{1} << (item % 64);
  return true;
}

void ValuesRestored() {
  char* owner = nullptr;
  QelUtilLockGetCurrentOwnerName(&owner);
  addOn.restoredWith.push_back(owner == nullptr ? "nobody" : Taken(owner));
}

void ShapeChanged(const double anchor[3], const double size[3], const double rotationDeg[3]) {
  std::array<double, 9> numbers{};
  std::copy_n(anchor, 3, numbers.begin());
  std::copy_n(size, 3, numbers.begin() + 3);
  std::copy_n(rotationDeg, 3, numbers.begin() + 6);
  addOn.drags.push_back(numbers);
}

class Offers : public ::testing::Test {
 protected:
  void SetUp() override {
    CloseEverything();
    addOn = AddOn();
    host.pickQueries.clear();
    host.valuesRestored.clear();
    host.history.isKept = true;
  }
  void TearDown() override {
    shapes.hide();
    host.progress.changed = nullptr;
    host.progress.End();
    host.pickQueries.clear();
    host.valuesRestored.clear();
    host.history.isKept = false;
    CloseEverything();
  }

  void Write(LgIndex_t var, LgIndex_t item, double value) {
    Perform(host, "Write", [&] {
      QelFieldData* const field = QelUtilDataValueGetWritableNativeRef(1, var);
      QelUtilDataValueSetByRef(field, item, value);
    });
  }
  double Read(LgIndex_t var, LgIndex_t item) {
    return QelUtilDataValueGetByRef(QelUtilDataValueGetReadableNLRef(1, var), item);
  }

  Host& host = Host::Instance();
  const QelPickQuery_s& queries = OfferedByHost<QelPickQuery_s>(QEL_EXTENSION_PICK_QUERY);
  const QelHistory_s& history = OfferedByHost<QelHistory_s>(QEL_EXTENSION_HISTORY);
  const QelShapeHandles_s& shapes = OfferedByHost<QelShapeHandles_s>(QEL_EXTENSION_SHAPE_HANDLES);
  const QelProgress_s& progress = OfferedByHost<QelProgress_s>(QEL_EXTENSION_PROGRESS);
};

TEST_F(Offers, OfNothingAreRefusedAndOneTwiceCountsOnce) {
  queries.offer(nullptr);
  history.offer(nullptr);
  EXPECT_THAT(host.pickQueries, IsEmpty());
  EXPECT_THAT(host.valuesRestored, IsEmpty());
  queries.offer(AnswerPick);
  queries.offer(AnswerPick);
  history.offer(ValuesRestored);
  history.offer(ValuesRestored);
  EXPECT_EQ(host.pickQueries.size(), 1U);
  EXPECT_EQ(host.valuesRestored.size(), 1U);
}

// 3 x 3 x 2 nodes have 4 cells: fewer than nodes.
TEST_F(Offers, TellCellsFromNodesByTheCountThatIsAnswered) {
  ShowBricks(3, 3, 2);
  queries.offer(AnswerPick);
  addOn.targetCount = 4;
  addOn.picked = {0, 3};
  PickPreview preview = AskForPick(host);
  EXPECT_TRUE(preview.isReady);
  ASSERT_EQ(preview.zones.size(), 1U);
  EXPECT_EQ(preview.zones[0].zone, 1);
  EXPECT_EQ(preview.zones[0].location, ValueLocation_CellCentered);
  EXPECT_EQ(preview.zones[0].items.count, 4);
  EXPECT_TRUE(preview.zones[0].items.Has(3));
  EXPECT_FALSE(preview.zones[0].items.Has(2));
  EXPECT_EQ(preview.cellCount, 2);
  EXPECT_EQ(preview.nodeCount, 0);
  EXPECT_EQ(Describe(preview), "2 cells in 1 zone");
  EXPECT_THAT(addOn.asked, ElementsAre("1/4"));

  addOn.asked.clear();
  addOn.targetCount = 18;
  addOn.picked = {17};
  preview = AskForPick(host);
  ASSERT_EQ(preview.zones.size(), 1U);
  EXPECT_EQ(preview.zones[0].location, ValueLocation_Nodal);
  EXPECT_TRUE(preview.zones[0].items.Has(17));
  EXPECT_EQ(Describe(preview), "1 node in 1 zone");
  EXPECT_THAT(addOn.asked, ElementsAre("1/4", "1/18"));
}

TEST_F(Offers, AreAskedAboutActiveZonesOfTheTimeAlone) {
  ShowTimeSteps();
  queries.offer(AnswerPick);
  addOn.targetCount = 1;
  addOn.picked = {0};
  EXPECT_EQ(Describe(AskForPick(host)), "1 cell in 1 zone");
  EXPECT_EQ(AskForPick(host).zones[0].zone, 1);
  Act(host, "$!TIME 1.5");
  EXPECT_EQ(AskForPick(host).zones[0].zone, 2);
  Act(host, "$!ZONE 2 ACTIVE=NO");
  EXPECT_FALSE(AskForPick(host).isReady);
  EXPECT_EQ(Describe(AskForPick(host)), "");
}

TEST_F(Offers, SayNothingWithoutAPickAndNothingWhileTheLockIsHeld) {
  ShowBricks(3, 3, 2);
  EXPECT_FALSE(AskForPick(host).isReady) << "nobody offered";
  queries.offer(AnswerPick);
  addOn.hasPick = false;
  EXPECT_FALSE(AskForPick(host).isReady);
  addOn.hasPick = true;
  addOn.targetCount = 4;
  const PickPreview empty = AskForPick(host);
  EXPECT_TRUE(empty.isReady);
  EXPECT_THAT(empty.zones, IsEmpty());
  EXPECT_EQ(Describe(empty), "nothing");
  addOn.asked.clear();
  {
    const HostAction lock(host.lock);
    EXPECT_FALSE(AskForPick(host).isReady);
  }
  EXPECT_THAT(addOn.asked, IsEmpty());
  CloseEverything();
  EXPECT_FALSE(AskForPick(host).isReady);
}

TEST_F(Offers, CountLargeNumbersInGroups) {
  PickPreview preview;
  preview.isReady = true;
  preview.zones.resize(1000);
  preview.cellCount = 1284;
  EXPECT_EQ(Describe(preview), "1 284 cells in 1 000 zones");
  preview.nodeCount = 12345678;
  EXPECT_EQ(Describe(preview), "1 284 cells and 12 345 678 nodes in 1 000 zones");
  preview.cellCount = 0;
  preview.nodeCount = 999;
  EXPECT_EQ(Describe(preview), "999 nodes in 1 000 zones");
}

TEST_F(Offers, AreToldOfUndoAndRedoWithTheLockFree) {
  ShowOrdered(3, 3, 1);
  history.offer(ValuesRestored);
  StartListening();
  Write(4, 2, 77.0);
  EXPECT_THAT(Heard(), IsEmpty());
  UndoLast(host);
  EXPECT_EQ(Read(4, 2), 1.0);
  RedoLast(host);
  EXPECT_EQ(Read(4, 2), 77.0);
  EXPECT_THAT(Heard(), ElementsAre("2 by Workbench", "2 by Workbench"));
  EXPECT_THAT(addOn.restoredWith, ElementsAre("nobody", "nobody"));
  EXPECT_FALSE(host.lock.IsOn());
}

TEST_F(Offers, OfAHistoryLetItSeeDirectWrites) {
  ShowOrdered(3, 3, 1);
  const QelBulkAccess_s& bulk = OfferedByHost<QelBulkAccess_s>(QEL_EXTENSION_BULK_ACCESS);
  Perform(host, "Bulk", [&] {
    QelFieldSpan_s span{};
    ASSERT_TRUE(bulk.fieldSpan(QelUtilDataValueGetWritableNativeRef(1, 4), &span));
    static_cast<float*>(span.first)[8] = -1.0F;
    progress.changed(1, 4, 1);
  });
  EXPECT_EQ(host.frames.Active()->Data()->VariableRange(4).min, -1.0);
  UndoLast(host);
  EXPECT_EQ(Read(4, 9), 8.0);
  EXPECT_EQ(host.frames.Active()->Data()->VariableRange(4).min, 0.0);
}

TEST_F(Offers, OfAnUndoInsideAnAlterationAreRefused) {
  ShowOrdered(3, 3, 1);
  Write(4, 1, 5.0);
  bool isDone = true;
  Perform(host, "Alter", [&] {
    QelUtilDataValueGetWritableNativeRef(1, 4);
    isDone = QelUtilMacroExecuteCommand("$!UNDO");
  });
  EXPECT_FALSE(isDone);
  EXPECT_EQ(Read(4, 1), 5.0);
  UndoLast(host);
  EXPECT_EQ(Read(4, 1), 0.0);
}

TEST_F(Offers, OfShapesAreShownMovedAndHidden) {
  const double anchor[] = {1, 2, 3};
  const double size[] = {4, 5, 6};
  const double rotation[] = {10, 20, 30};
  const std::int64_t before = host.shape.version;
  shapes.show(Shape_Box, anchor, size, rotation, ShapeChanged);
  EXPECT_TRUE(host.shape.isShown);
  EXPECT_EQ(host.shape.kind, Shape_Box);
  EXPECT_THAT(host.shape.anchor, ElementsAre(1, 2, 3));
  EXPECT_THAT(host.shape.rotationDeg, ElementsAre(10, 20, 30));
  EXPECT_GT(host.shape.version, before);
  const std::int64_t shown = host.shape.version;
  shapes.show(Shape_Box, anchor, size, rotation, ShapeChanged);
  EXPECT_EQ(host.shape.version, shown) << "nothing is new";

  EXPECT_TRUE(UserDragsShape(host, {1.0 / 3.0, 2, 3}, {4, 5, 1234567.0}, {0, 0, -1e-9 / 3.0}));
  ASSERT_EQ(addOn.drags.size(), 1U);
  EXPECT_THAT(addOn.drags[0], ElementsAre(0.333333, 2, 3, 4, 5, 1.23457e6, 0, 0, -3.33333e-10));
  EXPECT_EQ(host.shape.anchor[0], 0.333333);
  EXPECT_EQ(host.shape.version, shown) << "the plot shows it already";
  EXPECT_FALSE(UserDragsShape(host, {kNaN, 2, 3}, {4, 5, 6}, {0, 0, 0}));
  EXPECT_EQ(addOn.drags.size(), 1U);

  shapes.hide();
  EXPECT_FALSE(host.shape.isShown);
  EXPECT_GT(host.shape.version, shown);
  EXPECT_FALSE(UserDragsShape(host, {1, 2, 3}, {4, 5, 6}, {0, 0, 0}));
}

TEST_F(Offers, OfASphereNeedItsRadiusAlone) {
  const double anchor[] = {1, 2, 3};
  const double radius[] = {4, kNaN, kNaN};
  shapes.show(Shape_Sphere, anchor, radius, nullptr, ShapeChanged);
  EXPECT_TRUE(host.shape.isShown);
  EXPECT_EQ(host.shape.kind, Shape_Sphere);
  EXPECT_THAT(host.shape.size, ElementsAre(4, 4, 4));
}

TEST_F(Offers, OfShapesThatAreNoneAreRefused) {
  const double good[] = {1, 2, 3};
  const double bad[] = {1, kNaN, 3};
  const double endless[] = {std::numeric_limits<double>::infinity(), 2, 3};
  shapes.show(Shape_Box, good, good, good, nullptr);
  shapes.show(Shape_Box, nullptr, good, good, ShapeChanged);
  shapes.show(Shape_Box, good, nullptr, good, ShapeChanged);
  shapes.show(Shape_Box, good, good, nullptr, ShapeChanged);
  shapes.show(Shape_Box, bad, good, good, ShapeChanged);
  shapes.show(Shape_Box, good, bad, good, ShapeChanged);
  shapes.show(Shape_Box, good, good, bad, ShapeChanged);
  shapes.show(Shape_Sphere, endless, good, good, ShapeChanged);
  shapes.show(Shape_Sphere, good, endless, good, ShapeChanged);
  shapes.show(static_cast<QelShape_e>(7), good, good, good, ShapeChanged);
  EXPECT_FALSE(host.shape.isShown);
}

TEST_F(Offers, OfProgressAreToldOnceEachAndEndWithTheDeed) {
  std::vector<double> told;
  host.progress.changed = [&told](double fraction) { told.push_back(fraction); };
  Perform(host, "Work", [&] {
    for (const double fraction : {0.25, 0.25, kNaN, -3.0, 0.5, 7.0}) progress.report(fraction);
  });
  EXPECT_THAT(told, ElementsAre(0.25, 0.0, 0.5, 1.0));
  told.clear();
  Perform(host, "Work", [&] { progress.report(0.125); });
  Perform(host, "No work", [] {});
  EXPECT_THAT(told, ElementsAre(0.125, 1.0));
  EXPECT_EQ(host.progress.fraction, 0.0);
}

TEST_F(Offers, OfWordsToWaitForReachTheWindow) {
  std::vector<std::string> told;
  host.messages.SetWaitWatch([&told](const std::string& text) { told.push_back(text); });
  QelUtilPleaseWait("Altering", true);
  EXPECT_EQ(host.messages.waitText, "Altering");
  QelUtilPleaseWait("Altering", false);
  host.messages.SetWaitWatch(nullptr);
  EXPECT_THAT(told, ElementsAre("Altering", ""));
}

}  // namespace
}  // namespace qelhost
