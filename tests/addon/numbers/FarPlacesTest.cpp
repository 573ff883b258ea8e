// Nodes and boundaries at places where arithmetic ends: far out, next to nothing, no numbers.
#include "EngineTest.h"
#include "NoNumbers.h"

#include <limits>
#include <ostream>
#include <string>

namespace {

using fakehost::Mesh;
using fakehost::Point;
using fakehost::StoredType;

struct PlaceRow {
  const char* name;
  const char* line;
  Point node;
  bool isInside;
};

void PrintTo(const PlaceRow& row, std::ostream* out) { *out << row.name; }

class FarPlaces : public fakehost::EngineTest, public ::testing::WithParamInterface<PlaceRow> {
 protected:
  /// One node of the zone is where the row says, for words of 64 nodes and what is left of them.
  void Load(QelPlotType_e plotType, LgIndex_t at) {
    Mesh mesh = fakehost::MakeLattice(ZoneType_Ordered, 69, 0, 0);
    for (Point& point : mesh.points) point = {0.5, 0.5, 0.5};
    mesh.points[static_cast<std::size_t>(at)] = GetParam().node;
    EngineTest::Load(mesh, plotType);
  }

  void ExpectTaken(QelPlotType_e plotType) {
    for (const LgIndex_t at : {3, 66}) {
      host.Reset();
      Load(plotType, at);
      PlayWell(GetParam().line);
      PlayWell("ALTERAREA VARIABLE=\"n\" MODIFIER=\"=-7\" RULE=ALLINSIDE");
      EXPECT_EQ(host.ValuesOf(1, n)[static_cast<std::size_t>(at)] == -7, GetParam().isInside) << at;
      PlayWell("ALTERAREA VARIABLE=\"n\" MODIFIER=\"=-9\" RULE=ALLOUTSIDE");
      EXPECT_EQ(host.ValuesOf(1, n)[static_cast<std::size_t>(at)] == -9, !GetParam().isInside)
          << at;
      host.Deliver(StateChange_NewLayout);
      host.RunIdleQueue();
    }
  }
};

class FarPlaces2d : public FarPlaces {};
class FarPlaces3d : public FarPlaces {};

TEST_P(FarPlaces2d, AreInsideOrOutsideByTheDefinition) { ExpectTaken(PlotType_Cartesian2D); }
TEST_P(FarPlaces3d, AreInsideOrOutsideByTheDefinition) { ExpectTaken(PlotType_Cartesian3D); }

constexpr char kRectangle[] = "PICKRECTANGLE ANCHORX=0 ANCHORY=0 SIZEX=1 SIZEY=1";
constexpr char kHalfPlane[] = "PICKRECTANGLE ANCHORX=0 ANCHORY=-1 SIZEX=1e999 SIZEY=2";
constexpr char kFlat[] = "PICKRECTANGLE ANCHORX=0 ANCHORY=0 SIZEX=0 SIZEY=5e-324";
constexpr char kCircle[] = "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=2";
constexpr char kVastCircle[] = "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=1e200";
constexpr char kPoint[] = "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=0";
constexpr char kNoCircle[] = "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=1e-200";
constexpr char kLeftTurn[] = "PICKPOLYGON CORNERS=\"0,0,1,0,1,1,0,1\"";
constexpr char kRightTurn[] = "PICKPOLYGON CORNERS=\"0,0,0,1,1,1,1,0\"";
constexpr char kVastPolygon[] =
    "PICKPOLYGON CORNERS=\"-1e150,-1e150,1e150,-1e150,1e150,1e150,-1e150,1e150\"";

INSTANTIATE_TEST_SUITE_P(
    Planes, FarPlaces2d,
    ::testing::Values(
        PlaceRow{"RectangleHoldsWhatIsNextToIts0", kRectangle, {5e-324, -0.0, 0}, true},
        PlaceRow{"RectangleEndsBefore0", kRectangle, {-5e-324, 0, 0}, false},
        PlaceRow{"RectangleIsNot1e150", kRectangle, {1e150, 0.5, 0}, false},
        PlaceRow{"RectangleIsNot1e308", kRectangle, {0.5, -1e308, 0}, false},
        PlaceRow{"RectangleIsNotInfinite", kRectangle, {kInfinity, 0.5, 0}, false},
        PlaceRow{"RectangleHoldsNoNumbers", kRectangle, {kNaN, kNaN, 0}, true},
        PlaceRow{"RectangleIsFiniteInY", kRectangle, {kNaN, kInfinity, 0}, false},
        PlaceRow{"HalfPlaneHolds1e308", kHalfPlane, {1e308, 0, 0}, true},
        PlaceRow{"HalfPlaneHoldsInfinity", kHalfPlane, {kInfinity, 0, 0}, true},
        PlaceRow{"HalfPlaneEndsAt0", kHalfPlane, {-1e-300, 0, 0}, false},
        PlaceRow{"FlatRectangleHoldsItsEnds", kFlat, {-0.0, 5e-324, 0}, true},
        PlaceRow{"FlatRectangleHoldsNoMore", kFlat, {0, 1e-323, 0}, false},
        PlaceRow{"CircleIsNot1e150", kCircle, {1e150, 0, 0}, false},
        PlaceRow{"CircleIsNot1e308", kCircle, {1e308, 1e308, 0}, false},
        PlaceRow{"CircleIsNotInfinite", kCircle, {0, -kInfinity, 0}, false},
        PlaceRow{"CircleHoldsNoNumbers", kCircle, {kNaN, 1, 0}, true},
        PlaceRow{"VastCircleIsItsBox", kVastCircle, {9e199, 9e199, 0}, true},
        PlaceRow{"VastCircleEndsWithItsBox", kVastCircle, {1.1e200, 0, 0}, false},
        PlaceRow{"CircleOf0HoldsItsCentre", kPoint, {-0.0, 0, 0}, true},
        PlaceRow{"CircleOf0HoldsNoMore", kPoint, {5e-324, 0, 0}, false},
        PlaceRow{"CircleTooSmallToSquareIsItsBox", kNoCircle, {9e-201, 9e-201, 0}, true},
        PlaceRow{"CircleTooSmallToSquareEndsThere", kNoCircle, {1.1e-200, 0, 0}, false},
        PlaceRow{"PolygonHoldsADenormal", kLeftTurn, {0.5, 1e-310, 0}, true},
        PlaceRow{"PolygonHoldsNothingThatRoundsToItsEdge", kLeftTurn, {0.5, 5e-324, 0}, false},
        PlaceRow{"PolygonHoldsNextToItsEdge", kLeftTurn, {0.5, 1e-15, 0}, true},
        PlaceRow{"PolygonIsNot1e308", kLeftTurn, {1e308, 0.5, 0}, false},
        PlaceRow{"PolygonIsNotInfinite", kRightTurn, {0.5, kInfinity, 0}, false},
        PlaceRow{"LeftTurningPolygonHoldsNumbersOnly", kLeftTurn, {kNaN, 0.5, 0}, false},
        PlaceRow{"RightTurningPolygonHoldsNoNumbers", kRightTurn, {kNaN, 0.5, 0}, true},
        PlaceRow{"VastPolygonHoldsSmallNodes", kVastPolygon, {1, -5e-324, 0}, true},
        PlaceRow{"VastPolygonHoldsLargeNodes", kVastPolygon, {9e149, -9e149, 0}, true},
        PlaceRow{"VastPolygonEnds", kVastPolygon, {1.1e150, 0, 0}, false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(FarPlaces2d, PolygonWhoseAreaIsTooSmallForANumberIsUndefined) {
  EngineTest::Load(fakehost::MakeLattice(ZoneType_Ordered, 2, 0, 0), PlotType_Cartesian2D);
  PlayWell("PICKPOLYGON CORNERS=\"0,0,1e-200,0,0,1e-200\"");
  EXPECT_EQ(PlayBadly("ALTERAREA VARIABLE=\"n\" MODIFIER=\"=0\""),
            "Pick boundary not properly defined for ALTER/BLANK AREA command");
}

constexpr char kBox[] = "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1";
constexpr char kTurned[] =
    "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1 ROTATEZ=-30";
constexpr char kNoAngle[] =
    "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1 ROTATEZ=1e999";
constexpr char kVastBox[] =
    "PICKCUBE ANCHORX=-1e308 ANCHORY=-1e308 ANCHORZ=-1e308 SIZEX=1e999 SIZEY=1e999 SIZEZ=1e999";
constexpr char kSphere[] = "PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0 RADIUS=1";
constexpr char kVastSphere[] = "PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0 RADIUS=1e200";

INSTANTIATE_TEST_SUITE_P(
    Solids, FarPlaces3d,
    ::testing::Values(PlaceRow{"BoxHoldsWhatIsNextToIts0", kBox, {5e-324, -0.0, 1}, true},
                      PlaceRow{"BoxIsNot1e150", kBox, {0.5, 0.5, 1e150}, false},
                      PlaceRow{"BoxIsNot1e308", kBox, {-1e308, 0.5, 0.5}, false},
                      PlaceRow{"BoxIsNotInfinite", kBox, {0.5, 0.5, kInfinity}, false},
                      PlaceRow{"BoxHoldsNoNumbers", kBox, {kNaN, 0.5, kNaN}, true},
                      PlaceRow{"TurnedBoxHoldsNumbersOnly", kTurned, {0.5, 0.5, kNaN}, false},
                      PlaceRow{"TurnedBoxIsNot1e308", kTurned, {1e308, 0.5, 0.5}, false},
                      PlaceRow{"BoxWithoutAnAngleHoldsNothing", kNoAngle, {0.5, 0.5, 0.5}, false},
                      PlaceRow{"VastBoxHolds1e308", kVastBox, {1e308, -1e308, 0}, true},
                      PlaceRow{"VastBoxHoldsInfinity", kVastBox, {kInfinity, 0, 0}, true},
                      PlaceRow{"VastBoxEnds", kVastBox, {-1.1e308, 0, 0}, false},
                      PlaceRow{"SphereIsNot1e150", kSphere, {0, 1e150, 0}, false},
                      PlaceRow{"SphereIsNot1e308", kSphere, {0, 0, -1e308}, false},
                      PlaceRow{"SphereIsNotInfinite", kSphere, {kInfinity, 0, 0}, false},
                      PlaceRow{"SphereHoldsNoNumbers", kSphere, {0, 0, kNaN}, true},
                      PlaceRow{"VastSphereIsItsBox", kVastSphere, {9e199, 9e199, 9e199}, true},
                      PlaceRow{"VastSphereEndsWithItsBox", kVastSphere, {0, 0, 1.1e200}, false},
                      PlaceRow{"PlaneIsNot1e308", kRectangle, {1e308, 0.5, 0.5}, false},
                      PlaceRow{"PlaneLooksThrough1e150", kRectangle, {0.5, 0.5, 1e150}, true}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
