#include "ApiTesting.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include <array>
#include <functional>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Frames : public ::testing::Test {
 protected:
  void SetUp() override {
    CloseEverything();
    StartListening();
  }
  void TearDown() override { CloseEverything(); }
};

TEST_F(Frames, AreNoneAtFirst) {
  EXPECT_EQ(QelUtilFrameGetCount(), 0);
  EXPECT_EQ(QelUtilFrameGetUniqueID(), 0);
  EXPECT_EQ(QelUtilFrameGetPlotType(), PlotType_None);
  EXPECT_FALSE(QelUtilDataSetIsAvailable());
  EXPECT_EQ(QelUtilDataSetGetUniqueID(), 0);
  EXPECT_FALSE(QelUtilDataSetGetInfo(nullptr, nullptr, nullptr));
}

TEST_F(Frames, AreActivatedById) {
  ShowBricks(2, 2, 2);
  const QelUniqueID_t solid = QelUtilFrameGetUniqueID();
  const QelUniqueID_t solidData = QelUtilDataSetGetUniqueID();
  ShowElements();
  const QelUniqueID_t flat = QelUtilFrameGetUniqueID();
  EXPECT_NE(flat, solid);
  EXPECT_NE(QelUtilDataSetGetUniqueID(), solidData);
  EXPECT_EQ(QelUtilFrameGetPlotType(), PlotType_Cartesian2D);
  Heard().clear();
  EXPECT_TRUE(QelUtilFrameActivateByUniqueID(flat));
  EXPECT_FALSE(QelUtilFrameActivateByUniqueID(0));
  EXPECT_THAT(Heard(), IsEmpty());
  EXPECT_TRUE(QelUtilFrameActivateByUniqueID(solid));
  EXPECT_THAT(Heard(), ElementsAre("51", "7 PLOTTYPE"));
  EXPECT_EQ(QelUtilDataSetGetUniqueID(), solidData);
  EXPECT_EQ(QelUtilFrameGetCount(), 2);
}

TEST_F(Frames, TellOfTheirDataSet) {
  ShowBricks(3, 2, 2);
  char* title = nullptr;
  LgIndex_t zones = 0;
  LgIndex_t variables = 0;
  EXPECT_TRUE(QelUtilDataSetGetInfo(&title, &zones, &variables));
  EXPECT_EQ(Taken(title), "test");
  EXPECT_EQ(zones, 1);
  EXPECT_EQ(variables, 4);
  EXPECT_EQ(QelUtilDataSetGetNumZones(), 1);
  EXPECT_EQ(QelUtilDataSetGetNumVars(), 4);
  char* name = nullptr;
  EXPECT_TRUE(QelUtilZoneGetName(1, &name));
  EXPECT_EQ(Taken(name), "block");
  EXPECT_TRUE(QelUtilZoneRename(1, "other"));
  EXPECT_TRUE(QelUtilZoneGetName(1, &name));
  EXPECT_EQ(Taken(name), "other");
  EXPECT_EQ(QelUtilVarGetNumByName("p"), 4);
  EXPECT_EQ(QelUtilVarGetNumByName("q"), 0);
  EXPECT_EQ(QelUtilVarGetNumByAssignment('Z'), 3);
  EXPECT_EQ(QelUtilVarGetNumByAssignment('W'), 0);
  EXPECT_EQ(QelUtilZoneGetFieldMap(1), 1);
  EXPECT_EQ(QelUtilZoneGetFieldMap(2), 0);
}

struct ZoneRow {
  const char* rule;
  std::function<void()> show;
  QelZoneType_e type;
  std::array<LgIndex_t, 3> ijk;
};

class ZoneKind : public ::testing::TestWithParam<ZoneRow> {};

TEST_P(ZoneKind, TellsItsSize) {
  GetParam().show();
  EXPECT_EQ(QelUtilZoneGetType(1), GetParam().type);
  EXPECT_EQ(QelUtilZoneIsFiniteElement(1), GetParam().type != ZoneType_Ordered);
  std::array<LgIndex_t, 3> ijk{};
  QelUtilZoneGetIJK(1, &ijk[0], &ijk[1], &ijk[2]);
  EXPECT_EQ(ijk, GetParam().ijk);
  QelUtilZoneGetIJK(1, nullptr, nullptr, nullptr);
  CloseEverything();
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ZoneKind,
    ::testing::Values(ZoneRow{"Ordered", [] { ShowOrdered(4, 3, 1); }, ZoneType_Ordered, {4, 3, 1}},
                      ZoneRow{"Bricks", [] { ShowBricks(3, 2, 2); }, ZoneType_FEBrick, {12, 2, 8}},
                      ZoneRow{"Triangles", ShowElements, ZoneType_FETriangle, {4, 2, 3}},
                      ZoneRow{"Polyhedra", ShowPolyhedron, ZoneType_FEPolyhedron, {8, 1, 6}}),
    [](const auto& row) { return std::string(row.param.rule); });

std::vector<LgIndex_t> RelevantAt(double time, bool ignoreStrands) {
  QelSet* set = nullptr;
  std::vector<LgIndex_t> zones;
  if (!QelUtilZoneGetRelevant(time, ignoreStrands, &set)) return zones;
  for (SetIndex_t n = 0; (n = QelUtilSetGetNextMember(set, n)) != 0;) {
    zones.push_back(static_cast<LgIndex_t>(n));
  }
  QelUtilSetDealloc(&set);
  return zones;
}

TEST_F(Frames, TellWhichZonesApplyAtATime) {
  ShowTimeSteps();
  EXPECT_EQ(QelUtilSolutionTimeGetCurrent(), 0.5);
  EXPECT_THAT(RelevantAt(1, false), ElementsAre(1));
  EXPECT_THAT(RelevantAt(2, false), ElementsAre(2));
  EXPECT_THAT(RelevantAt(2, true), ElementsAre(1, 2));
  QelUtilZoneSetStrandID(1, 0);
  EXPECT_THAT(RelevantAt(2, false), ElementsAre(1, 2));
}

TEST_F(Frames, AddZonesWithoutANoticeAndDeleteThemWithOne) {
  ShowBricks(2, 2, 2);
  Heard().clear();
  const std::vector<QelFieldDataType_e> types(4, FieldDataType_Double);
  EXPECT_TRUE(QelUtilDataSetAddZone("added", 8, 1, 0, ZoneType_FEBrick, types.data()));
  EXPECT_THAT(Heard(), IsEmpty());
  ASSERT_EQ(QelUtilDataSetGetNumZones(), 2);
  EXPECT_TRUE(QelUtilZoneIsActive(2));
  EXPECT_FALSE(QelUtilDataValueIsPassive(2, 1));
  EXPECT_EQ(QelUtilDataValueGetLocation(2, 1), ValueLocation_Nodal);
  EXPECT_TRUE(QelUtilDataValueIsPassive(2, 4));
  QelFieldData* const x = QelUtilDataValueGetWritableNativeRef(2, 1);
  ASSERT_NE(x, nullptr);

  QelSet* zones = QelUtilSetAlloc(false);
  EXPECT_FALSE(QelUtilDataSetDeleteZone(zones));
  QelUtilSetAddMember(zones, 2, false);
  QelUtilSetAddMember(zones, 1, false);
  EXPECT_FALSE(QelUtilDataSetDeleteZone(zones)) << "zone 1 came from a file";
  QelUtilSetDealloc(&zones);
  EXPECT_EQ(QelUtilDataValueGetCountByRef(x), 8) << "a refused deletion takes no reference away";
  zones = QelUtilSetAlloc(false);
  QelUtilSetAddMember(zones, 2, false);
  EXPECT_TRUE(QelUtilDataSetDeleteZone(zones));
  QelUtilSetDealloc(&zones);
  EXPECT_THAT(Heard(), ElementsAre("4"));
  EXPECT_EQ(QelUtilDataSetGetNumZones(), 1);
  EXPECT_EQ(QelUtilDataValueGetCountByRef(x), 0);
}

QelFieldData* kept = nullptr;

TEST_F(Frames, ReferencesIntoADeletedZoneAreRefusedWhileItsDeletionIsTold) {
  ShowBricks(2, 2, 2);
  QelUtilDataSetAddZone("added", 2, 2, 1, ZoneType_Ordered, nullptr);
  kept = QelUtilDataValueGetWritableNativeRef(2, 1);
  ASSERT_NE(kept, nullptr);
  static LgIndex_t count = -1;
  static const bool isHeard = [] {
    QelArgList* list = QelUtilArgListAlloc();
    const QelStateChangeCallback_pf callback = [](QelStateChange_t change) {
      if (change == StateChange_ZonesDeleted) count = QelUtilDataValueGetCountByRef(kept);
    };
    QelUtilArgListAppendFunction(list, SV_CALLBACKFUNCTION,
                                 reinterpret_cast<const void*>(callback));
    const bool isAdded = QelUtilStateChangeAddCallbackX(list);
    QelUtilArgListDealloc(&list);
    return isAdded;
  }();
  ASSERT_TRUE(isHeard);
  QelSet* zones = QelUtilSetAlloc(false);
  QelUtilSetAddMember(zones, 2, false);
  EXPECT_TRUE(QelUtilDataSetDeleteZone(zones));
  QelUtilSetDealloc(&zones);
  EXPECT_EQ(count, 0);
}

TEST_F(Frames, RefuseZonesThatCannotBe) {
  ShowBricks(2, 2, 2);
  constexpr LgIndex_t kMost = 2147483647;
  EXPECT_FALSE(QelUtilDataSetAddZone(nullptr, 2, 2, 2, ZoneType_Ordered, nullptr));
  EXPECT_FALSE(QelUtilDataSetAddZone("a", 0, 2, 2, ZoneType_Ordered, nullptr));
  EXPECT_FALSE(QelUtilDataSetAddZone("a", kMost, kMost, kMost, ZoneType_Ordered, nullptr));
  EXPECT_FALSE(QelUtilDataSetAddZone("a", 8, 1, 6, ZoneType_FEPolyhedron, nullptr));
  EXPECT_FALSE(QelUtilDataSetAddZone("a", 8, 0, 0, ZoneType_FEBrick, nullptr));
  EXPECT_FALSE(QelUtilCreateSphericalZone(1, 5, 0, 0, 0, 1, FieldDataType_Float));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(QelUtilCreateSphericalZone(5, 5, 0, 0, 0, nan, FieldDataType_Float));
  EXPECT_EQ(QelUtilDataSetGetNumZones(), 1);
  // It holds no point, but there is no harm in drawing it.
  EXPECT_TRUE(QelUtilCreateSphericalZone(5, 5, 0, 0, 0, -1, FieldDataType_Float));
}

TEST_F(Frames, MakeASphereAboveItsLowestPoint) {
  ShowBricks(2, 2, 2);
  Heard().clear();
  EXPECT_TRUE(QelUtilCreateSphericalZone(9, 5, 1, 2, 3, 2, FieldDataType_Double));
  EXPECT_THAT(Heard(), IsEmpty());
  EXPECT_EQ(QelUtilZoneGetType(2), ZoneType_FEQuad);
  LgIndex_t nodes = 0;
  LgIndex_t elements = 0;
  QelUtilZoneGetIJK(2, &nodes, &elements, nullptr);
  EXPECT_EQ(nodes, 45);
  EXPECT_EQ(elements, 32);
  QelFieldData* fields[3];
  for (LgIndex_t axis = 0; axis < 3; ++axis) {
    fields[axis] = QelUtilDataValueGetReadableNLRef(2, axis + 1);
  }
  for (LgIndex_t node = 1; node <= nodes; ++node) {
    const double dx = QelUtilDataValueGetByRef(fields[0], node) - 1;
    const double dy = QelUtilDataValueGetByRef(fields[1], node) - 2;
    const double dz = QelUtilDataValueGetByRef(fields[2], node) - 5;
    EXPECT_NEAR(dx * dx + dy * dy + dz * dz, 4, 1e-12) << node;
  }
  EXPECT_NEAR(QelUtilDataValueGetByRef(fields[2], 1), 3, 1e-12);
}

}  // namespace
}  // namespace qelhost
