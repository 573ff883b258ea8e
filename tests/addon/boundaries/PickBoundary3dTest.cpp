// What the box and the sphere have in common.
#include "BoundaryTest.h"

#include <cmath>
#include <limits>

namespace {

using fakehost::AssertText;
using fakehost::Boundary3dTest;
using fakehost::Cube;
using fakehost::ErrorOf;
using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::StoredType;
using fakehost::StyleCall;
using qelvane::qelutiltools::Box3d;
using qelvane::qelutiltools::InsideSet;
using qelvane::qelutiltools::Point3d;
using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

using PickBoundary3d = Boundary3dTest;

TEST_F(PickBoundary3d, LiesFarOutsideAnyDataUntilItIsPlaced) {
  EXPECT_THAT(cube.Definition(), ElementsAre(1e150, 1e150, 1e150, 0, 0, 0, 0, 0, 0));
  EXPECT_EQ(cube.m_step, 1.0);
  EXPECT_EQ(cube.m_frameId, 0);
  EXPECT_FALSE(cube.IsGeometryValid());
  EXPECT_FALSE(cube.IsShadeShown());
}

// Extents --------------------------------------------------------------------------------------

TEST_F(PickBoundary3d, ExtentsAreTheDatasWidenedByATenthOnBothSides) {
  ASSERT_TRUE(cube.ReadExtents());
  EXPECT_THAT(cube.m_extents.min.x, DoubleEq(-0.2));
  EXPECT_THAT(cube.m_extents.max.x, DoubleEq(2.2));
  EXPECT_THAT(cube.m_extents.min.y, DoubleEq(-0.3));
  EXPECT_THAT(cube.m_extents.max.y, DoubleEq(3.3));
  EXPECT_THAT(cube.m_extents.min.z, DoubleEq(-0.4));
  EXPECT_THAT(cube.m_extents.max.z, DoubleEq(4.4));
}

TEST_F(PickBoundary3d, ExtentsOfAFlatAxisAreWidenedToo) {
  host.Reset();
  InitQelAddOn113();
  host.AddFrame(PlotType_Cartesian3D);
  Mesh mesh = MakeLattice(ZoneType_FEQuad, 2, 2, 0);
  for (fakehost::Point& point : mesh.points) point.z = 7.0;
  host.AddZone(mesh);
  ASSERT_TRUE(cube.ReadExtents());
  EXPECT_THAT(cube.m_extents.min.z, DoubleEq(6.9));
  EXPECT_THAT(cube.m_extents.max.z, DoubleEq(7.1));
}

TEST_F(PickBoundary3d, ExtentsFollowTheAxesOfTheFrame) {
  const LgIndex_t other =
      host.AddVariable("other", ValueLocation_Nodal, StoredType::Double,
                       [](LgIndex_t, LgIndex_t node) { return node == 1 ? 100.0 : 110.0; });
  host.ActiveFrame().axisVars = {3, other, 1};
  ASSERT_TRUE(sphere.ReadExtents());
  EXPECT_THAT(sphere.m_extents.max.x, DoubleEq(4.4));
  EXPECT_THAT(sphere.m_extents.min.y, DoubleEq(99.0));
  EXPECT_THAT(sphere.m_extents.max.y, DoubleEq(111.0));
  EXPECT_THAT(sphere.m_extents.max.z, DoubleEq(2.2));
}

TEST_F(PickBoundary3d, ExtentsStayInAPlotThatIsNot3D) {
  ASSERT_TRUE(cube.ReadExtents());
  host.ValuesAt(1, 1)->storage->Set(0, -50.0);
  for (const QelPlotType_e plotType :
       {PlotType_None, PlotType_Cartesian2D, PlotType_Line, PlotType_Polar, PlotType_Sketch}) {
    host.ActiveFrame().plotType = plotType;
    EXPECT_FALSE(cube.ReadExtents());
    EXPECT_THAT(cube.m_extents.min.x, DoubleEq(-0.2));
  }
  host.ActiveFrame().plotType = PlotType_Cartesian3D;
  ASSERT_TRUE(cube.ReadExtents());
  EXPECT_THAT(cube.m_extents.min.x, DoubleEq(-55.2));
}

struct OverlapRow {
  const char* rule;
  Box3d box;
  bool overlaps;
};

class BoundaryOverlap : public Boundary3dTest, public ::testing::WithParamInterface<OverlapRow> {};

TEST_P(BoundaryOverlap, CountsInXAndYAlone) {
  cube.m_extents = {{0, 10, 20}, {4, 14, 24}};
  cube.m_boundingBox = GetParam().box;
  EXPECT_EQ(cube.OverlapsExtents(), GetParam().overlaps);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, BoundaryOverlap,
    ::testing::Values(OverlapRow{"Within", {{1, 11, 21}, {2, 12, 22}}, true},
                      OverlapRow{"Around", {{-1, 9, 19}, {5, 15, 25}}, true},
                      OverlapRow{"FarAboveInZ", {{1, 11, 900}, {2, 12, 901}}, true},
                      OverlapRow{"FarBelowInZ", {{1, 11, -901}, {2, 12, -900}}, true},
                      OverlapRow{"TouchesLeft", {{-1, 11, 21}, {0, 12, 22}}, true},
                      OverlapRow{"TouchesRight", {{4, 11, 21}, {5, 12, 22}}, true},
                      OverlapRow{"TouchesFront", {{1, 9, 21}, {2, 10, 22}}, true},
                      OverlapRow{"TouchesBack", {{1, 14, 21}, {2, 15, 22}}, true},
                      OverlapRow{"Left", {{-1, 11, 21}, {-0.1, 12, 22}}, false},
                      OverlapRow{"Right", {{4.1, 11, 21}, {5, 12, 22}}, false},
                      OverlapRow{"Front", {{1, 9, 21}, {2, 9.9, 22}}, false},
                      OverlapRow{"Back", {{1, 14.1, 21}, {2, 15, 22}}, false}),
    [](const auto& row) { return std::string(row.param.rule); });

// Default size ---------------------------------------------------------------------------------

struct MagnificationRow {
  const char* rule;
  double magnification;
  double size;
};

class BoundaryDefaultSize : public Boundary3dTest,
                            public ::testing::WithParamInterface<MagnificationRow> {};

TEST_P(BoundaryDefaultSize, IsHalfTheDiagonalAsTheViewShowsIt) {
  cube.m_extents = {{1, -1, 10}, {3, 2, 16}};  // the diagonal is 7 long
  host.ActiveFrame().view.magnification = GetParam().magnification;
  Point3d centre;
  EXPECT_THAT(cube.DefaultSize(centre), DoubleEq(GetParam().size));
  EXPECT_THAT(cube.m_step, DoubleEq(0.04 * GetParam().size));
  EXPECT_EQ(centre.x, 2.0);
  EXPECT_EQ(centre.y, 0.5);
  EXPECT_EQ(centre.z, 13.0);
}

INSTANTIATE_TEST_SUITE_P(Rules, BoundaryDefaultSize,
                         ::testing::Values(MagnificationRow{"AsItFits", 1.0, 3.5},
                                           MagnificationRow{"FourTimesAsLarge", 4.0, 0.875},
                                           MagnificationRow{"SmallerCountsAsItFits", 0.25, 3.5},
                                           MagnificationRow{"NothingCountsAsItFits", 0.0, 3.5}),
                         [](const auto& row) { return std::string(row.param.rule); });

// Steps ----------------------------------------------------------------------------------------

struct NudgeRow {
  const char* rule;
  int parameter;
  bool increase;
  double before;
  double after;
};

class BoundaryNudge : public Boundary3dTest, public ::testing::WithParamInterface<NudgeRow> {};

TEST_P(BoundaryNudge, ChangesOneNumberByAStep) {
  const NudgeRow& row = GetParam();
  cube.m_anchor = {1, 1, 1};
  cube.m_step = 0.25;
  double* const numbers[] = {&cube.m_anchor.x, &cube.m_anchor.y, &cube.m_anchor.z,
                             &cube.m_shape[0], &cube.m_shape[1], &cube.m_shape[2],
                             &cube.m_shape[3], &cube.m_shape[4], &cube.m_shape[5]};
  *numbers[row.parameter] = row.before;
  auto expected = cube.Definition();
  expected[static_cast<std::size_t>(row.parameter)] = row.after;
  double value = -1.0;
  cube.Nudge(row.parameter, row.increase, value);
  EXPECT_EQ(value, row.after);
  EXPECT_EQ(cube.Definition(), expected);
  EXPECT_EQ(host.idleQueue.size(), 1u) << "the zone has to follow";
}

INSTANTIATE_TEST_SUITE_P(
    Rules, BoundaryNudge,
    ::testing::Values(
        NudgeRow{"AnchorX", 0, true, 2, 2.25}, NudgeRow{"AnchorXBack", 0, false, 2, 1.75},
        NudgeRow{"AnchorY", 1, true, 2, 2.25}, NudgeRow{"AnchorYBack", 1, false, 2, 1.75},
        NudgeRow{"AnchorZ", 2, true, 2, 2.25}, NudgeRow{"AnchorZBack", 2, false, 2, 1.75},
        NudgeRow{"SizeX", 3, true, 2, 2.25}, NudgeRow{"SizeXBelowZero", 3, false, 0, -0.25},
        NudgeRow{"SizeY", 4, true, 2, 2.25}, NudgeRow{"SizeYBack", 4, false, 2, 1.75},
        NudgeRow{"SizeZ", 5, true, 2, 2.25}, NudgeRow{"SizeZBack", 5, false, 2, 1.75},
        NudgeRow{"RotateX", 6, true, 10, 15}, NudgeRow{"RotateXOverAFullTurn", 6, true, 357, 2},
        NudgeRow{"RotateXBelowZeroKeepsItsSign", 6, false, 2, -3},
        NudgeRow{"RotateYToAFullTurnIsNone", 7, true, 355, 0},
        NudgeRow{"RotateYBack", 7, false, 10, 5}, NudgeRow{"RotateZFarBelow", 8, false, -357, -2},
        NudgeRow{"RotateZManyTurnsAway", 8, true, 1000, 285}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(PickBoundary3d, StepOfAParameterThatThereIsNotOnlyUpdates) {
  for (const int parameter : {9, 10, 1000}) {
    const auto before = cube.Definition();
    double value = -7.0;
    cube.Nudge(parameter, true, value);
    EXPECT_EQ(cube.Definition(), before);
    EXPECT_EQ(value, -7.0);
    EXPECT_EQ(host.idleQueue.size(), 1u);
    host.RunIdleQueue();
  }
}

TEST_F(PickBoundary3d, StepOfTheSpheresRadiusIsFollowedByItsGeometry) {
  ASSERT_TRUE(Take(sphere, "PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0 RADIUS=2"));
  sphere.m_step = 1.0;
  double value = 0.0;
  sphere.Nudge(3, true, value);
  EXPECT_EQ(value, 3.0);
  EXPECT_EQ(sphere.BoundingBox().max.x, 3.0);
  EXPECT_TRUE(sphere.IsInside(3, 0, 0));
  EXPECT_FALSE(sphere.IsInside(3.01, 0, 0));
}

// The zone's style -----------------------------------------------------------------------------

std::string TextOf(const StyleCall& call) {
  std::string text = call.setting + " " + std::to_string(call.iValue);
  if (call.setting == "EDGELAYER LINETHICKNESS") text = call.setting;
  for (const SetIndex_t object : call.objects) text += " of " + std::to_string(object);
  return text;
}

std::vector<std::string> StylesOf(const std::vector<StyleCall>& calls) {
  std::vector<std::string> texts;
  for (const StyleCall& call : calls) texts.push_back(TextOf(call));
  return texts;
}

TEST_F(PickBoundary3d, NewZoneIsStyledStepByStep) {
  const LgIndex_t zone = host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
  host.ZoneAt(1)->isActive = false;
  host.ZoneAt(zone)->isActive = false;
  cube.StyleZone(zone);
  EXPECT_THAT(StylesOf(host.styleCalls),
              ElementsAre("ACTIVE 1 of 2", "EDGELAYER SHOW 1 of 2", "EDGELAYER COLOR 8 of 2",
                          "EDGELAYER LINETHICKNESS of 2", "MESH SHOW 1 of 2", "MESH COLOR 8 of 2",
                          "SHADE SHOW 0 of 2", "SHADE COLOR 8 of 2", "SCATTER SHOW 0 of 2",
                          "CONTOUR SHOW 0 of 2", "VECTOR SHOW 0 of 2",
                          "FIELDMAP SURFACES SURFACESTOPLOT 0 of 2",
                          "FIELDMAP EFFECTS USEVALUEBLANKING 0 of 2",
                          "FIELDMAP VOLUMEMODE VOLUMEOBJECTSTOPLOT SHOWSLICES 0 of 2",
                          "FIELDMAP VOLUMEMODE VOLUMEOBJECTSTOPLOT SHOWISOSURFACES 0 of 2",
                          "FIELDMAP VOLUMEMODE VOLUMEOBJECTSTOPLOT SHOWSTREAMTRACES 0 of 2"));
  EXPECT_EQ(host.styleCalls[3].dValue, 0.4);
  EXPECT_TRUE(host.ZoneAt(zone)->isActive);
  EXPECT_FALSE(host.ZoneAt(1)->isActive) << "the other zones stay as they are";
  for (const StyleCall& call : host.styleCalls) EXPECT_NE(call.result, SetValueResult_SyntaxError);
}

TEST_F(PickBoundary3d, StyleIsGivenAsIntegerAndAsNumber) {
  ASSERT_TRUE(cube.Create());
  host.styleCalls.clear();
  cube.ShowShade(true);
  ASSERT_EQ(host.styleCalls.size(), 1u);
  EXPECT_EQ(host.styleCalls[0].iValue, 1);
  EXPECT_EQ(host.styleCalls[0].dValue, 1.0);
}

TEST_F(PickBoundary3d, ShadeIsShownNowAndWhenTheZoneIsMadeAnew) {
  ASSERT_TRUE(cube.Create());
  const LgIndex_t zone = cube.GetZoneNum();
  host.styleCalls.clear();
  cube.ShowShade(true);
  EXPECT_THAT(StylesOf(host.styleCalls), ElementsAre("FIELDMAP SHADE SHOW 1 of 2"));
  EXPECT_TRUE(host.ZoneAt(zone)->fieldMap.Layer(fakehost::ZoneLayer::Shade).isShown);
  EXPECT_TRUE(cube.IsShadeShown());
  ASSERT_TRUE(cube.Create());
  EXPECT_TRUE(host.ZoneAt(zone)->fieldMap.Layer(fakehost::ZoneLayer::Shade).isShown);
  cube.ShowShade(false);
  EXPECT_FALSE(host.ZoneAt(zone)->fieldMap.Layer(fakehost::ZoneLayer::Shade).isShown);
  EXPECT_FALSE(cube.IsShadeShown());
}

TEST_F(PickBoundary3d, ShadeOfAZoneThatThereIsNotIsNotKept) {
  cube.ShowShade(true);
  EXPECT_FALSE(cube.IsShadeShown());
  EXPECT_THAT(host.styleCalls, IsEmpty());
}

// Removing the zone ----------------------------------------------------------------------------

const std::vector<std::string> kRemoval = {"QelUtilFrameActivateByUniqueID",
                                           "QelUtilDataSetDeleteZone"};

TEST_F(PickBoundary3d, RemovingNoZoneOnlyActivatesTheActiveFrame) {
  const std::string id = std::to_string(host.ActiveFrame().id);
  cube.DeleteZone();
  EXPECT_THAT(CallsOf(kRemoval), ElementsAre("FrameActivateByUniqueID(" + id + ")"));
  EXPECT_EQ(host.ActiveData()->zones.size(), 1u);
}

TEST_F(PickBoundary3d, ZoneIsRemovedFromTheActiveFrame) {
  ASSERT_TRUE(cube.Create());
  ASSERT_EQ(cube.m_frameId, host.ActiveFrame().id);
  cube.DeleteZone();
  EXPECT_EQ(host.ActiveData()->zones.size(), 1u);
  EXPECT_EQ(cube.m_frameId, 0);
  EXPECT_EQ(cube.GetZoneNum(), 0);
}

class BoundaryInTwoFrames : public Boundary3dTest {
 protected:
  /// The cube's zone in the first frame, the second one active.
  void SetUp() override {
    ASSERT_TRUE(cube.Create());
    host.AddFrame(PlotType_Cartesian3D);
    host.AddZone(MakeLattice(ZoneType_FEBrick, 1, 1, 1));
    first = std::to_string(host.frames[0].id);
    second = std::to_string(host.frames[1].id);
    StartLog();
  }
  std::size_t ZoneCount(std::size_t frame) const {
    return host.frames[frame].dataSet->zones.size();
  }
  std::string first;
  std::string second;
};

TEST_F(BoundaryInTwoFrames, ZoneIsRemovedWhereItWasMadeAndTheActiveFrameStays) {
  cube.DeleteZone();
  EXPECT_THAT(CallsOf(kRemoval),
              ElementsAre("FrameActivateByUniqueID(" + first + ")", "DataSetDeleteZone(handle)",
                          "FrameActivateByUniqueID(" + second + ")"));
  EXPECT_EQ(ZoneCount(0), 1u);
  EXPECT_EQ(ZoneCount(1), 1u);
  EXPECT_EQ(host.activeFrame, 1u);
  EXPECT_EQ(cube.m_frameId, 0);
}

TEST_F(BoundaryInTwoFrames, ZoneOfAFrameThatIsGoneIsGivenUp) {
  host.FailCall("QelUtilFrameActivateByUniqueID", 1);
  cube.DeleteZone();
  EXPECT_EQ(ZoneCount(0), 2u);
  EXPECT_EQ(host.activeFrame, 1u);
  EXPECT_EQ(cube.m_frameId, 0);
}

TEST_F(BoundaryInTwoFrames, ZoneOfTheSameNameInTheActiveFrameStays) {
  host.ZoneAt(1)->name = "PICKING_CUBE";
  host.FailCall("QelUtilFrameActivateByUniqueID", 1);
  cube.DeleteZone();
  EXPECT_EQ(ZoneCount(1), 1u);
}

TEST_F(BoundaryInTwoFrames, FailedRemovalLeavesTheActiveFrameActive) {
  host.FailCall("QelUtilDataSetDeleteZone", 1);
  EXPECT_THAT(ErrorOf([this] { cube.DeleteZone(); }),
              MatchesRegex(AssertText("QelUtilDataSetDeleteZone(zoneSet)", "PickBoundary3d")));
  EXPECT_EQ(host.activeFrame, 1u);
}

// Internal errors ------------------------------------------------------------------------------

struct ShapeCallRow {
  const char* name;
  std::function<void(Cube&)> operation;
  const char* function;
  int nth;
  const char* call;
};

void PrintTo(const ShapeCallRow& row, std::ostream* out) { *out << row.name; }

class BoundaryError : public Boundary3dTest, public ::testing::WithParamInterface<ShapeCallRow> {};

TEST_P(BoundaryError, NamesTheCallAndLeavesNoLock) {
  ASSERT_TRUE(cube.Create());
  host.FailCall(GetParam().function, GetParam().nth);
  EXPECT_THAT(ErrorOf([this] { GetParam().operation(cube); }),
              MatchesRegex(AssertText(GetParam().call, "PickBoundary3d")));
  EXPECT_EQ(host.LockDepth(), 0);
}

void Delete(Cube& cube) { cube.DeleteZone(); }
void Size(Cube& cube) {
  Point3d centre;
  cube.DefaultSize(centre);
}
void Mark(Cube& cube) {
  InsideSet inside(60);
  cube.MarkInside(1, 1, 2, 3, inside);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, BoundaryError,
    ::testing::Values(
        ShapeCallRow{"ZoneSet", Delete, "QelUtilSetAlloc", 1, "zoneSet = QelUtilSetAlloc(FALSE)"},
        ShapeCallRow{"ZoneMember", Delete, "QelUtilSetAddMember", 1,
                     "QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE)"},
        ShapeCallRow{"DeleteZone", Delete, "QelUtilDataSetDeleteZone", 1,
                     "QelUtilDataSetDeleteZone(zoneSet)"},
        ShapeCallRow{"ActivateFrame", Delete, "QelUtilFrameActivateByUniqueID", 1,
                     "QelUtilFrameActivateByUniqueID(currentFrameId)"},
        ShapeCallRow{"Magnification", Size, "QelUtilViewGetMagnification", 1,
                     "QelUtilViewGetMagnification(&magnify)"},
        ShapeCallRow{"FieldX", Mark, "QelUtilDataValueGetReadableNLRef", 1,
                     "fieldX = QelUtilDataValueGetReadableNLRef(zoneNum, xVar)"},
        ShapeCallRow{"FieldY", Mark, "QelUtilDataValueGetReadableNLRef", 2,
                     "fieldY = QelUtilDataValueGetReadableNLRef(zoneNum, yVar)"},
        ShapeCallRow{"FieldZ", Mark, "QelUtilDataValueGetReadableNLRef", 3,
                     "fieldZ = QelUtilDataValueGetReadableNLRef(zoneNum, zVar)"},
        ShapeCallRow{"GetterX", Mark, "QelUtilDataValueRefGetGetFunc", 1,
                     "getXFunction = QelUtilDataValueRefGetGetFunc(fieldX)"},
        ShapeCallRow{"GetterY", Mark, "QelUtilDataValueRefGetGetFunc", 2,
                     "getYFunction = QelUtilDataValueRefGetGetFunc(fieldY)"},
        ShapeCallRow{"GetterZ", Mark, "QelUtilDataValueRefGetGetFunc", 3,
                     "getZFunction = QelUtilDataValueRefGetGetFunc(fieldZ)"}),
    [](const auto& row) { return std::string(row.param.name); });

// Marking the points inside --------------------------------------------------------------------

/// A shape whose own test is the opposite of what the box says, and counts what it is asked.
class Asked : public Cube {
 public:
  using Cube::Cube;
  bool IsInside(double x, double, double) const override {
    asked.push_back(x);
    return x != 0.5;
  }
  bool FillsItsBox() const override { return false; }
  std::uint64_t InsideOf(const qelvane::qelutiltools::PointBlock& points,
                         std::uint64_t wanted) const override {
    return CPickBoundary3d::InsideOf(points, wanted);
  }
  mutable std::vector<double> asked;
};

TEST_F(PickBoundary3d, OnlyPointsOfTheBoundingBoxAreTestedFurther) {
  host.Reset();
  InitQelAddOn113();
  host.AddFrame(PlotType_Cartesian3D);
  Mesh mesh = MakeLattice(ZoneType_FELineSeg, 9, 0, 0);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  mesh.points = {{0, 0, 0},   {1, 1, 1},   {0.5, 0.5, 0.5}, {-0.1, 0, 0}, {1.1, 0, 0},
                 {0, -.1, 0}, {0, 1.1, 0}, {0, 0, -.1},     {0, 0, 1.1},  {nan, 0.5, 0.5}};
  host.AddZone(mesh);
  Asked boundary{[] { return true; }};
  boundary.m_boundingBox = {{0, 0, 0}, {1, 1, 1}};
  InsideSet inside(10);
  boundary.MarkInside(1, 1, 2, 3, inside);
  std::vector<int> marked;
  for (int node = 0; node < 10; ++node) {
    if (inside.Contains(node)) marked.push_back(node);
  }
  EXPECT_THAT(marked, ElementsAre(0, 1, 9));
  // A coordinate that is no number lies on no side of the box: the shape's own test decides.
  ASSERT_EQ(boundary.asked.size(), 4u);
  EXPECT_TRUE(std::isnan(boundary.asked.back()));
}

}  // namespace
