#include "SelfTest.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using fakehost::MakeLattice;
using fakehost::StoredType;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Data : public fakehost::SelfTest {
 protected:
  Data() {
    host.AddFrame(PlotType_Cartesian3D);
    host.AddZone(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
    n = host.AddVariable("n", ValueLocation_Nodal, StoredType::Double,
                         [](LgIndex_t, LgIndex_t i) { return 1.0 * i; });
  }

  static bool AddVar(const char* name, const std::vector<QelFieldDataType_e>& types,
                     const std::vector<QelValueLocation_e>& locations, LgIndex_t deferred) {
    qelvane::toolbox::ArgList args;
    QelUtilArgListAppendString(args.getRef(), SV_NAME, name);
    QelUtilArgListAppendArray(args.getRef(), SV_VARDATATYPE, types.data());
    QelUtilArgListAppendArray(args.getRef(), SV_VALUELOCATION, locations.data());
    QelUtilArgListAppendInt(args.getRef(), SV_DEFERVARCREATION, deferred);
    return QelUtilDataSetAddVarX(args.getRef());
  }

  LgIndex_t n = 0;
};

TEST_F(Data, HoldsADeferredVariableBackUntilItIsAllocated) {
  ASSERT_TRUE(AddVar("b", {FieldDataType_Byte}, {ValueLocation_CellCentered}, 1));
  const LgIndex_t b = QelUtilVarGetNumByName("b");
  EXPECT_EQ(b, n + 1);
  EXPECT_TRUE(QelUtilDataValueIsPassive(1, b));
  EXPECT_EQ(QelUtilDataValueGetLocation(1, b), ValueLocation_CellCentered);
  EXPECT_EQ(QelUtilDataValueGetWritableNativeRef(1, b), nullptr);
  ASSERT_TRUE(QelUtilDataValueAlloc(1, b));
  EXPECT_FALSE(QelUtilDataValueIsPassive(1, b));
  EXPECT_THAT(host.ValuesOf(1, b), ElementsAre(0, 0));
  EXPECT_EQ(host.ValuesAt(1, b)->storage->type, StoredType::Byte);
  EXPECT_THAT(host.notices, IsEmpty());
}

TEST_F(Data, MakesAVariableThatIsNotDeferredAtOnce) {
  host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  ASSERT_TRUE(AddVar("v", {FieldDataType_Int16, FieldDataType_Float},
                     {ValueLocation_Nodal, ValueLocation_CellCentered}, 0));
  EXPECT_THAT(host.ValuesOf(1, n + 1), ElementsAre(0, 0, 0, 0, 0, 0));
  EXPECT_THAT(host.ValuesOf(2, n + 1), ElementsAre(0));
  EXPECT_EQ(host.ValuesAt(1, n + 1)->storage->type, StoredType::Int16);
}

TEST_F(Data, RefusesAVariableOfNoKnownType) {
  EXPECT_FALSE(AddVar("v", {static_cast<QelFieldDataType_e>(7)}, {ValueLocation_Nodal}, 0));
  EXPECT_EQ(QelUtilDataSetGetNumVars(), n);
  host.FailCall("QelUtilDataSetAddVarX", 1);
  EXPECT_FALSE(AddVar("v", {FieldDataType_Byte}, {ValueLocation_Nodal}, 0));
}

TEST_F(Data, SetsAnArrayInTheStoredType) {
  ASSERT_TRUE(AddVar("s", {FieldDataType_Int16}, {ValueLocation_Nodal}, 0));
  QelFieldData* const ref = QelUtilDataValueGetWritableNativeRef(1, n + 1);
  const std::int16_t values[] = {-7, 300};
  EXPECT_EQ(QelUtilDataValueGetCountByRef(ref), 6);
  QelUtilDataValueArraySetByRef(ref, 2, 2, values);
  EXPECT_THAT(host.ValuesOf(1, n + 1), ElementsAre(0, -7, 300, 0, 0, 0));
}

TEST_F(Data, AddsABrickZoneForWriting) {
  ASSERT_TRUE(QelUtilDataSetAddZone("PICKING_CUBE", 8, 1, 1, ZoneType_FEBrick, nullptr));
  EXPECT_EQ(host.ZoneNamed("PICKING_CUBE"), 2);
  EXPECT_TRUE(QelUtilZoneIsActive(2));
  LgIndex_t i = 0;
  LgIndex_t j = 0;
  LgIndex_t k = 0;
  QelUtilZoneGetIJK(2, &i, &j, &k);
  EXPECT_THAT((std::vector<LgIndex_t>{i, j, k}), ElementsAre(8, 1, 8));
  for (LgIndex_t axis = 1; axis <= 3; ++axis) {
    EXPECT_EQ(QelUtilDataValueGetLocation(2, axis), ValueLocation_Nodal);
    QelFieldData* const ref = QelUtilDataValueGetWritableNativeRef(2, axis);
    ASSERT_NE(ref, nullptr);
    QelUtilDataValueSetByRef(ref, 8, 2.5);
    EXPECT_EQ(QelUtilDataValueGetByRef(ref, 8), 2.5);
  }
  EXPECT_TRUE(QelUtilDataValueIsPassive(2, n));
  QelNodeMap* const nodes = QelUtilDataNodeGetWritableRef(2);
  for (LgIndex_t corner = 1; corner <= 8; ++corner) {
    QelUtilDataNodeSetByRef(nodes, 1, corner, 9 - corner);
  }
  EXPECT_THAT(host.ZoneAt(2)->mesh.Corners(1), ElementsAre(8, 7, 6, 5, 4, 3, 2, 1));
  EXPECT_THAT(host.notices, IsEmpty());
  EXPECT_FALSE(QelUtilDataSetAddZone("", 8, 1, 1, ZoneType_FEBrick, nullptr));
  EXPECT_FALSE(QelUtilDataSetAddZone("x", 0, 1, 1, ZoneType_FEBrick, nullptr));
  EXPECT_FALSE(QelUtilDataSetAddZone("x", 70000, 70000, 1, ZoneType_Ordered, nullptr));
}

TEST_F(Data, PutsASphereOnItsLowestPoint) {
  ASSERT_TRUE(QelUtilCreateSphericalZone(12, 7, 1.0, 2.0, 3.0, 0.5, FieldDataType_Invalid));
  EXPECT_EQ(QelUtilZoneGetType(2), ZoneType_FEQuad);
  LgIndex_t nodes = 0;
  LgIndex_t elements = 0;
  QelUtilZoneGetIJK(2, &nodes, &elements, nullptr);
  EXPECT_EQ(nodes, 12 * 7);
  EXPECT_EQ(elements, 11 * 6);
  double lowest = 9;
  for (LgIndex_t node = 0; node < nodes; ++node) {
    const double x = host.ValuesAt(2, 1)->storage->Get(node) - 1.0;
    const double y = host.ValuesAt(2, 2)->storage->Get(node) - 2.0;
    const double z = host.ValuesAt(2, 3)->storage->Get(node);
    EXPECT_NEAR(std::sqrt(x * x + y * y + (z - 3.5) * (z - 3.5)), 0.5, 1e-12);
    lowest = std::min(lowest, z);
  }
  EXPECT_NEAR(lowest, 3.0, 1e-12);
  EXPECT_TRUE(QelUtilZoneRename(2, "PICKING_SPHERE"));
  EXPECT_EQ(host.ZoneNamed("PICKING_SPHERE"), 2);
  EXPECT_FALSE(QelUtilCreateSphericalZone(1, 7, 0, 0, 0, 1, FieldDataType_Float));
}

TEST_F(Data, DeletesItsOwnZonesAndNoneOfAFile) {
  QelUtilDataSetAddZone("a", 8, 1, 1, ZoneType_FEBrick, nullptr);
  QelUtilDataSetAddZone("b", 8, 1, 1, ZoneType_FEBrick, nullptr);
  host.ZoneAt(3)->fieldMap.surfacesToPlot = 7;
  EXPECT_FALSE(Delete({1, 2}));
  EXPECT_FALSE(Delete({4}));
  EXPECT_FALSE(Delete({}));
  EXPECT_EQ(QelUtilDataSetGetNumZones(), 3);
  EXPECT_THAT(host.notices, IsEmpty());
  QelFieldData* const kept = QelUtilDataValueGetWritableNativeRef(3, 1);
  const QelNodeMap* const keptNodes = QelUtilDataNodeGetReadableRef(3);
  ASSERT_TRUE(Delete({2}));
  EXPECT_EQ(host.ZoneNamed("b"), 2);
  EXPECT_EQ(host.ZoneAt(2)->fieldMap.surfacesToPlot, 7);
  ASSERT_THAT(Notices(), ElementsAre(StateChange_ZonesDeleted));
  QelUtilDataValueSetByRef(kept, 1, 4.0);
  EXPECT_EQ(host.ValuesOf(2, 1)[0], 4.0);
  EXPECT_EQ(QelUtilDataNodeGetByRef(keptNodes, 1, 1), 1);
}

TEST_F(Data, ReportsReferencesToADeletedZone) {
  QelUtilDataSetAddZone("a", 8, 1, 1, ZoneType_FEBrick, nullptr);
  const QelFieldData* const ref = QelUtilDataValueGetReadableNLRef(2, 1);
  const QelNodeMap* const nodes = QelUtilDataNodeGetReadableRef(2);
  ASSERT_TRUE(Delete({2}));
  EXPECT_EQ(QelUtilDataValueGetByRef(ref, 1), 0.0);
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 1, 1), 0);
  EXPECT_EQ(host.Misuse().size(), 2U);
  host.Reset();
  QelUtilLockOn();
}

TEST_F(Data, RangesOverAllZonesWithoutNaN) {
  host.AddZone(MakeLattice(ZoneType_FEQuad, 4, 1, 0));
  host.ValuesAt(1, 1)->storage->Set(0, std::numeric_limits<double>::quiet_NaN());
  host.ValuesAt(1, 1)->storage->Set(1, -3.0);
  double min = 9;
  double max = 9;
  QelUtilVarGetMinMax(1, &min, &max);
  EXPECT_EQ(min, -3.0);
  EXPECT_EQ(max, 4.0);
  host.MakePassive(1, n);
  QelUtilVarGetMinMax(n, &min, &max);
  EXPECT_EQ(min, 0.0);
  EXPECT_EQ(max, 0.0);
}

TEST_F(Data, SendsTheSetOfTheKindThatTheNoticeIsAbout) {
  const qelvane::toolbox::Set set = SetOf({1});
  QelUtilStateChanged(StateChange_VarsAdded, reinterpret_cast<ArbParam_t>(set.getRef()));
  QelUtilStateChanged(StateChange_ZonesAdded, reinterpret_cast<ArbParam_t>(set.getRef()));
  EXPECT_THAT(host.notices[0].vars, ElementsAre(1));
  EXPECT_THAT(host.notices[0].zones, IsEmpty());
  EXPECT_THAT(host.notices[1].zones, ElementsAre(1));
}

}  // namespace
