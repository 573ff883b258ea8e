// The sphere: what it holds, its zone, its command.
#include "BoundaryTest.h"

#include <cmath>

namespace {

using fakehost::AssertText;
using fakehost::Boundary3dTest;
using fakehost::ErrorOf;
using fakehost::MakeLattice;
using fakehost::Point;
using fakehost::Sphere;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::MacroEngine;
using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

using ClippingSphere = Boundary3dTest;

constexpr char kSphere[] = "PICKSPHERE ANCHORX=1 ANCHORY=1.5 ANCHORZ=2 RADIUS=0.5";

// Shape ----------------------------------------------------------------------------------------

TEST_F(ClippingSphere, HoldsThePointsOfItsSurface) {
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=1 ANCHORY=2 ANCHORZ=3 RADIUS=5"));
  EXPECT_TRUE(sphere.IsInside(6, 2, 3));
  EXPECT_TRUE(sphere.IsInside(1, -3, 3));
  EXPECT_TRUE(sphere.IsInside(1, 2, 8));
  EXPECT_TRUE(sphere.IsInside(4, 6, 3));
  EXPECT_FALSE(sphere.IsInside(4, 6, 3.0001));
  EXPECT_FALSE(sphere.IsInside(6.0001, 2, 3));
}

TEST_F(ClippingSphere, BoundingBoxReachesARadiusFromTheCentre) {
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=1 ANCHORY=2 ANCHORZ=3 RADIUS=5"));
  EXPECT_TRUE(sphere.IsGeometryValid());
  EXPECT_EQ(sphere.BoundingBox().min.x, -4.0);
  EXPECT_EQ(sphere.BoundingBox().max.x, 6.0);
  EXPECT_EQ(sphere.BoundingBox().min.y, -3.0);
  EXPECT_EQ(sphere.BoundingBox().max.y, 7.0);
  EXPECT_EQ(sphere.BoundingBox().min.z, -2.0);
  EXPECT_EQ(sphere.BoundingBox().max.z, 8.0);
}

TEST_F(ClippingSphere, NegativeRadiusTurnsTheBoundingBoxInsideOut) {
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=1 ANCHORY=1 ANCHORZ=1 RADIUS=-2"));
  EXPECT_EQ(sphere.BoundingBox().min.x, 3.0);
  EXPECT_EQ(sphere.BoundingBox().max.x, -1.0);
  qelvane::qelutiltools::InsideSet inside(60);
  sphere.MarkInside(1, 1, 2, 3, inside);
  EXPECT_EQ(inside.Word(0), 0u) << "nothing lies in it";
}

// Making the zone ------------------------------------------------------------------------------

TEST_F(ClippingSphere, NewSphereIsPlacedInTheMiddleOfTheData) {
  ASSERT_TRUE(sphere.Create());
  EXPECT_THAT(sphere.m_anchor.x, DoubleEq(1.0));
  EXPECT_THAT(sphere.m_anchor.y, DoubleEq(1.5));
  EXPECT_THAT(sphere.m_anchor.z, DoubleEq(2.0));
  const double h = 0.6 * std::sqrt(29.0);  // half the diagonal of 2.4, 3.6, 4.8
  EXPECT_THAT(sphere.m_shape[0], DoubleEq(h));
  EXPECT_THAT(sphere.m_shape[1], DoubleEq(h * h));
  EXPECT_THAT(sphere.m_step, DoubleEq(0.04 * h));
  EXPECT_THAT(sphere.BoundingBox().max.z, DoubleEq(2 + h));
}

TEST_F(ClippingSphere, NewSphereIsSmallerInAMagnifiedView) {
  host.ActiveFrame().view.magnification = 4;
  ASSERT_TRUE(sphere.Create());
  EXPECT_THAT(sphere.m_shape[0], DoubleEq(0.15 * std::sqrt(29.0)));
}

TEST_F(ClippingSphere, SphereAboveTheDataStaysAndOneBesideItIsPlacedAnew) {
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=1 ANCHORY=1 ANCHORZ=90 RADIUS=2"));
  ASSERT_TRUE(sphere.Create());
  EXPECT_EQ(sphere.m_anchor.z, 90.0);
  sphere.DeleteZone();
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=1 ANCHORY=90 ANCHORZ=1 RADIUS=2"));
  ASSERT_TRUE(sphere.Create());
  EXPECT_THAT(sphere.m_anchor.y, DoubleEq(1.5));
}

TEST_F(ClippingSphere, ZoneIsMadeStepByStep) {
  host.isRecording = true;
  ASSERT_TRUE(Take(sphere, kSphere));
  ASSERT_TRUE(sphere.Create());
  StartLog();
  ASSERT_TRUE(sphere.Create());
  const std::string id = std::to_string(host.ActiveFrame().id);
  EXPECT_THAT(
      CallsOf({"QelUtilVarGetMinMax", "QelUtilDataSetDeleteZone", "QelUtilFrameActivateByUniqueID",
               "QelUtilDataSetGetNumZones", "QelUtilCreateSphericalZone", "QelUtilStateChanged",
               "QelUtilZoneRename", "QelUtilZoneSetStrandID", "QelUtilZoneSetActive",
               "QelUtilRedraw"}),
      ElementsAre("VarGetMinMax(1)", "VarGetMinMax(2)", "VarGetMinMax(3)",
                  "DataSetDeleteZone(handle)", "FrameActivateByUniqueID(" + id + ")",
                  "DataSetGetNumZones()", "CreateSphericalZone(12, 12, 1, 1.5, 1.5, 0.5, 0)",
                  "StateChanged(3)", "ZoneRename(2, \"PICKING_SPHERE\")", "ZoneSetStrandID(2, 0)",
                  "ZoneSetActive(handle, 1)", "Redraw(true)"));
  EXPECT_EQ(host.ZoneAt(2)->name, "PICKING_SPHERE");
  EXPECT_EQ(host.ActiveData()->zones.size(), 2u);
  EXPECT_EQ(sphere.m_frameId, host.ActiveFrame().id);
}

TEST_F(ClippingSphere, EverybodyHearsOfTheZone) {
  ASSERT_TRUE(sphere.Create());
  int heard = 0;
  for (const fakehost::StateChangeNotice& notice : host.notices) {
    if (notice.change != StateChange_ZonesAdded) continue;
    ++heard;
    EXPECT_THAT(notice.zones, ElementsAre(2));
  }
  EXPECT_EQ(heard, 1);
}

TEST_F(ClippingSphere, ZoneIsStyledAsTheBoxIs) {
  ASSERT_TRUE(sphere.Create());
  ASSERT_FALSE(host.styleCalls.empty());
  EXPECT_EQ(host.styleCalls.front().setting, "ACTIVE");
  EXPECT_THAT(host.styleCalls.front().objects, ElementsAre(2));
  EXPECT_FALSE(host.ZoneAt(2)->fieldMap.usesValueBlanking);
}

TEST_F(ClippingSphere, PlotThatIsNot3DKeepsTheZoneAsItIs) {
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  EXPECT_FALSE(sphere.Create());
  EXPECT_EQ(host.ActiveData()->zones.size(), 1u);
  EXPECT_EQ(sphere.m_frameId, 0);
  host.ActiveFrame().plotType = PlotType_Cartesian3D;
  ASSERT_TRUE(sphere.Create());
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  EXPECT_FALSE(sphere.Create());
  EXPECT_EQ(host.ActiveData()->zones.size(), 2u);
}

// Updates --------------------------------------------------------------------------------------

TEST_F(ClippingSphere, SeveralUpdatesMakeTheZoneAnewOnceWhenTheHostIsIdle) {
  ASSERT_TRUE(Take(sphere, kSphere));
  ASSERT_TRUE(sphere.Create());
  const QelUniqueID_t before = host.ZoneAt(2)->id;
  sphere.m_step = 0.25;
  double value = 0.0;
  sphere.Nudge(3, true, value);
  sphere.Nudge(3, true, value);
  sphere.Nudge(0, false, value);
  EXPECT_EQ(host.ZoneAt(2)->id, before);
  EXPECT_EQ(host.idleQueue.size(), 1u);
  StartLog();
  host.RunIdleQueue();
  EXPECT_THAT(CallsOf({"QelUtilCreateSphericalZone"}),
              ElementsAre("CreateSphericalZone(12, 12, 0.75, 1.5, 1, 1, 0)"));
  EXPECT_NE(host.ZoneAt(2)->id, before);
  EXPECT_EQ(host.ActiveData()->zones.size(), 2u);
  sphere.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the next change is queued again";
}

TEST_F(ClippingSphere, ZoneMadeAnewGoesToTheEndAndIsFoundByItsName) {
  ASSERT_TRUE(sphere.Create());
  ASSERT_TRUE(cube.Create());
  ASSERT_EQ(sphere.GetZoneNum(), 2);
  sphere.Update();
  host.RunIdleQueue();
  EXPECT_EQ(sphere.GetZoneNum(), 3);
  EXPECT_EQ(cube.GetZoneNum(), 2);
  sphere.Update();
  host.RunIdleQueue();
  EXPECT_EQ(host.ActiveData()->zones.size(), 3u);
}

TEST_F(ClippingSphere, ZoneMadeAnewWhenIdleBelongsToNoFrame) {
  ASSERT_TRUE(sphere.Create());
  ASSERT_NE(sphere.m_frameId, 0);
  sphere.Update();
  host.RunIdleQueue();
  EXPECT_EQ(sphere.m_frameId, 0);
  // So it is looked for in the frame that is active, and stays where it is.
  host.AddFrame(PlotType_Cartesian3D);
  host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
  sphere.DeleteZone();
  EXPECT_EQ(host.frames[0].dataSet->zones.size(), 2u);
}

TEST_F(ClippingSphere, UpdateIsNotQueuedInAPlotThatIsNot3D) {
  host.ActiveFrame().plotType = PlotType_Cartesian2D;
  ASSERT_TRUE(Take(sphere, kSphere));
  sphere.m_shape[0] = 3.0;
  sphere.Update();
  EXPECT_THAT(host.idleQueue, IsEmpty());
  EXPECT_EQ(sphere.m_shape[1], 9.0) << "the shape follows all the same";
}

TEST_F(ClippingSphere, OneRenewalIsQueuedForAllSpheres) {
  Sphere other{[] { return true; }};
  sphere.Update();
  other.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u);
}

TEST_F(ClippingSphere, RenewalOfASphereThatIsNotInUseDoesNothing) {
  ASSERT_TRUE(sphere.Create());
  const QelUniqueID_t before = host.ZoneAt(2)->id;
  sphere.Update();
  isInUse = false;
  host.RunIdleQueue();
  EXPECT_EQ(host.ZoneAt(2)->id, before);
  isInUse = true;
  sphere.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the flag was cleared";
}

TEST_F(ClippingSphere, RenewalOfASphereThatIsGoneDoesNothing) {
  auto gone = std::make_unique<Sphere>([] { return true; });
  ASSERT_TRUE(gone->Create());
  const QelUniqueID_t before = host.ZoneAt(2)->id;
  gone->Update();
  gone.reset();
  host.RunIdleQueue();
  EXPECT_EQ(host.ZoneAt(2)->id, before);
  sphere.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the flag was cleared";
}

TEST_F(ClippingSphere, ErrorOfARenewalEndsInTheErrorBox) {
  sphere.Update();
  host.FailCall("QelUtilCreateSphericalZone", 1);
  host.RunIdleQueue();
  EXPECT_THAT(host.errorBoxes,
              ElementsAre("An error occured in the Marquell add-on. Please try again."));
  sphere.Update();
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the flag was cleared";
}

// Internal errors ------------------------------------------------------------------------------

struct SphereCallRow {
  const char* name;
  const char* function;
  const char* call;
};

void PrintTo(const SphereCallRow& row, std::ostream* out) { *out << row.name; }

class SphereError : public Boundary3dTest, public ::testing::WithParamInterface<SphereCallRow> {};

TEST_P(SphereError, NamesTheCallAndLeavesNoLock) {
  host.FailCall(GetParam().function, 1);
  EXPECT_THAT(ErrorOf([this] { sphere.Create(); }),
              MatchesRegex(AssertText(GetParam().call, "ClippingSphere")));
  EXPECT_EQ(host.LockDepth(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, SphereError,
    ::testing::Values(
        SphereCallRow{
            "CreateZone", "QelUtilCreateSphericalZone",
            "QelUtilCreateSphericalZone(12, 12, m_anchor.x, m_anchor.y, m_anchor.z - radius, "
            "radius, FieldDataType_Invalid)"},
        SphereCallRow{"ZoneSet", "QelUtilSetAlloc", "zoneSet = QelUtilSetAlloc(FALSE)"},
        SphereCallRow{"ZoneMember", "QelUtilSetAddMember",
                      "QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE)"},
        SphereCallRow{"Rename", "QelUtilZoneRename", "QelUtilZoneRename(zoneNum, SPHEREZONENAME)"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(ClippingSphere, RefusedUpdateIsAnInternalError) {
  // What was queued once is called at the end, so that nothing counts as pending.
  sphere.Update();
  const auto queued = host.idleQueue.at(0);
  isInUse = false;
  host.RunIdleQueue();
  host.FailCall("QelUtilOnIdleQueueAddCallback", 1);
  EXPECT_THAT(
      ErrorOf([this] { sphere.Update(); }),
      MatchesRegex(AssertText("QelUtilOnIdleQueueAddCallback(OnIdleUpdateSphere, clientData)",
                              "ClippingSphere")));
  EXPECT_EQ(host.LockDepth(), 0);
  queued.first(queued.second);
}

// The command ----------------------------------------------------------------------------------

TEST_F(ClippingSphere, CommandGivesTheRadiusUnderEitherName) {
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=2"));
  EXPECT_EQ(sphere.m_shape[0], 2.0);
  EXPECT_EQ(sphere.m_shape[1], 4.0);
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0 RADIUS=3 SIZEX=2"));
  EXPECT_EQ(sphere.m_shape[0], 2.0);
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=2 RADIUS=3"));
  EXPECT_EQ(sphere.m_shape[0], 3.0);
}

TEST_F(ClippingSphere, CommandWithoutACentreInYOrZHoldsItFarAway) {
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=1 ANCHORY=2 RADIUS=3"));
  EXPECT_EQ(sphere.m_anchor.z, -9.99e99);
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=1 RADIUS=3"));
  EXPECT_EQ(sphere.m_anchor.y, -9.99e99);
}

struct SphereFaultRow {
  const char* rule;
  const char* line;
  const char* message;
};

class SphereFault : public Boundary3dTest, public ::testing::WithParamInterface<SphereFaultRow> {};

TEST_P(SphereFault, IsReportedAndLeavesTheSphereAsItWas) {
  ASSERT_TRUE(Take(sphere, kSphere));
  const auto before = sphere.Definition();
  EXPECT_FALSE(Take(sphere, GetParam().line));
  EXPECT_EQ(MacroEngine.GlobalError(), GetParam().message);
  EXPECT_EQ(sphere.Definition(), before);
}

constexpr char kMissingOfSphere[] = "Missing parameter in PICKSPHERE macro";
constexpr char kBadSphere[] = "Bad value for parameter in PICKSPHERE macro";

INSTANTIATE_TEST_SUITE_P(
    Rules, SphereFault,
    ::testing::Values(
        SphereFaultRow{"NoRadius", "PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0", kMissingOfSphere},
        SphereFaultRow{"NoAnchorX", "PICKSPHERE ANCHORY=0 ANCHORZ=0 RADIUS=1", kMissingOfSphere},
        SphereFaultRow{"Nothing", "PICKSPHERE", kMissingOfSphere},
        SphereFaultRow{"SizeOfAnotherAxis", "PICKSPHERE ANCHORX=0 SIZEY=1 RADIUS=1", kBadSphere},
        SphereFaultRow{"Angle", "PICKSPHERE ANCHORX=0 RADIUS=1 ROTATEX=0", kBadSphere},
        SphereFaultRow{"StringForANumber", "PICKSPHERE ANCHORX=0 RADIUS=\"1\"", kBadSphere},
        SphereFaultRow{"StringForTheOtherName", "PICKSPHERE ANCHORX=0 SIZEX=\"1\"", kBadSphere},
        SphereFaultRow{"KeywordForANumber", "PICKSPHERE ANCHORZ=CUBE", kBadSphere}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(ClippingSphere, IsRecordedAsItsCommand) {
  host.isRecording = true;
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=0.5 ANCHORY=-1 ANCHORZ=1e20 SIZEX=-1.25"));
  const HostLock lock;
  MacroEngine.AddStringAttribute(qelvane::qelutiltools::Attribute_Variable, "left from before");
  sphere.RecordAsMacro();
  EXPECT_THAT(host.recordedLines,
              ElementsAre("Marquell PICKSPHERE ANCHORX=0.5 ANCHORY=-1 ANCHORZ=1e+20 RADIUS=-1.25"));
}

TEST_F(ClippingSphere, RecordedLineMakesTheSameSphere) {
  host.isRecording = true;
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=-0.125 ANCHORZ=2.5 RADIUS=0.375"));
  {
    const HostLock lock;
    sphere.RecordAsMacro();
  }
  Sphere played{[] { return true; }};
  const std::string line = host.recordedLines.at(0).substr(std::string("Marquell ").size());
  ASSERT_TRUE(Take(played, line)) << line;
  EXPECT_EQ(played.Definition(), sphere.Definition());
}

}  // namespace
