// What the search over a surface reaches, by zone type, on meshes small enough to see it; and that
// a surface of millions of nodes is walked on a small stack.
#include "SurfaceSearch.h"

#include "EngineTest.h"
#include "HeapMeter.h"

#include <pthread.h>

#include <functional>

namespace {

using fakehost::Collapse;
using fakehost::EngineTest;
using fakehost::Face;
using fakehost::MakeCollapsedBricks;
using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::Point;
using fakehost::StoredType;
using qelvane::qelutiltools::HostLock;
using qelvane::qelutiltools::InsideSet;
using qelvane::qelutiltools::SearchSurface;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

using Nodes = std::vector<LgIndex_t>;

class SurfaceSearch : public EngineTest {
 protected:
  void Show(const Mesh& mesh) {
    host.Reset();
    host.AddFrame(PlotType_Cartesian3D);
    host.AddZone(mesh, StoredType::Float);
    InitQelAddOn113();
  }
  void Show(QelZoneType_e type, LgIndex_t nodeCount, std::initializer_list<Nodes> elements) {
    Mesh mesh;
    mesh.type = type;
    mesh.points.resize(static_cast<std::size_t>(nodeCount));
    for (const Nodes& element : elements) mesh.elements.push_back(element);
    Show(mesh);
  }

  LgIndex_t NodeCount() { return host.ZoneAt(1)->mesh.NodeCount(); }
  Nodes All() {
    Nodes all;
    for (LgIndex_t node = 1; node <= NodeCount(); ++node) all.push_back(node);
    return all;
  }

  struct Answer {
    bool isDone = false;
    Nodes left;  ///< in the set
  };
  Answer Search(LgIndex_t seed, const Nodes& among) {
    InsideSet inside(NodeCount());
    for (const LgIndex_t node : among) inside.Insert(node - 1);
    Answer answer;
    answer.isDone = SearchSurface(1, seed, inside);
    for (LgIndex_t node = 1; node <= NodeCount(); ++node) {
      if (inside.Contains(node - 1)) answer.left.push_back(node);
    }
    return answer;
  }
  Nodes Reached(LgIndex_t seed, const Nodes& among) {
    const Answer answer = Search(seed, among);
    EXPECT_TRUE(answer.isDone) << "seed " << seed;
    return answer.left;
  }
  Nodes Reached(LgIndex_t seed) { return Reached(seed, All()); }
  /// The search refuses the seed and leaves the set as it was.
  void ExpectRefused(LgIndex_t seed, const Nodes& among) {
    const Answer answer = Search(seed, among);
    EXPECT_FALSE(answer.isDone) << "seed " << seed;
    EXPECT_EQ(answer.left, among);
  }
};

// Triangles and quadrilaterals -----------------------------------------------------------------

TEST_F(SurfaceSearch, TrianglesJoinedByTheirLastCornersAreNotReached) {
  Show(ZoneType_FETriangle, 5, {{1, 2, 3}, {4, 5, 3}});
  EXPECT_THAT(Reached(1), ElementsAre(1, 2));
  EXPECT_THAT(Reached(4), ElementsAre(4, 5));
  EXPECT_THAT(Reached(3), ElementsAre(1, 2, 3, 4, 5)) << "a seed is in both";
}

TEST_F(SurfaceSearch, TrianglesJoinedByAnyOtherCornerAreReached) {
  Show(ZoneType_FETriangle, 5, {{1, 2, 3}, {4, 2, 5}});
  EXPECT_THAT(Reached(1), ElementsAre(1, 2, 4));
  Show(ZoneType_FETriangle, 5, {{1, 2, 3}, {4, 5, 1}});
  EXPECT_THAT(Reached(2), ElementsAre(1, 2, 4, 5)) << "entered by its last corner, left by others";
}

TEST_F(SurfaceSearch, QuadrilateralsJoinedByTheirLastCornersAreNotReached) {
  Show(ZoneType_FEQuad, 7, {{1, 2, 3, 4}, {5, 6, 7, 4}});
  EXPECT_THAT(Reached(2), ElementsAre(1, 2, 3));
  EXPECT_THAT(Reached(4), ElementsAre(1, 2, 3, 4, 5, 6, 7));
}

TEST_F(SurfaceSearch, ElementEnteredOnceIsNotEnteredAgain) {
  // 2 is not inside when the element is entered from 1, so 3 comes by another way or not at all.
  Show(ZoneType_FEQuad, 4, {{1, 2, 3, 4}});
  EXPECT_THAT(Reached(1, {1, 3, 4}), ElementsAre(1, 3));
}

TEST_F(SurfaceSearch, PatchApartFromTheSeedsIsNotReached) {
  Show(MakeLattice(ZoneType_FEQuad, 4, 1, 0));
  // Two columns of nodes on either side of a gap.
  EXPECT_THAT(Reached(1, {1, 2, 6, 7, 4, 5, 9, 10}), ElementsAre(1, 2, 7));
  EXPECT_THAT(Reached(4, {1, 2, 6, 7, 4, 5, 9, 10}), ElementsAre(4, 5, 9, 10))
      << "9 is no last corner of the element in the gap";
}

// Tetrahedra -----------------------------------------------------------------------------------

/// Three tetrahedra around the edge 1-2. Node 1 is the first corner of each, and what it has of the
/// surface are their third faces.
const std::initializer_list<Nodes> kAroundEdge = {{1, 2, 3, 4}, {1, 2, 4, 5}, {1, 2, 5, 3}};

TEST_F(SurfaceSearch, FirstCornerOfATetrahedronNeverSeesTheThirdFace) {
  Show(ZoneType_FETetra, 5, kAroundEdge);
  ExpectRefused(1, All());
  for (const LgIndex_t seed : {2, 3, 4, 5}) {
    EXPECT_THAT(Reached(seed), ElementsAre(1, 2, 3, 4, 5)) << "seed " << seed;
  }
  // What is reached as a first corner is a dead end.
  EXPECT_THAT(Reached(3, {1, 3}), ElementsAre(1, 3));
  Show(ZoneType_FETetra, 9,
       {{1, 2, 3, 4}, {1, 2, 4, 5}, {1, 2, 5, 3}, {1, 6, 7, 8}, {1, 6, 8, 9}, {1, 6, 9, 7}});
  EXPECT_THAT(Reached(3), ElementsAre(1, 2, 3, 4, 5));
  EXPECT_THAT(Reached(7), ElementsAre(1, 6, 7, 8, 9));
}

TEST_F(SurfaceSearch, OtherCornersOfATetrahedronSeeAllTheirFaces) {
  Show(ZoneType_FETetra, 4, {{1, 2, 3, 4}});
  for (const LgIndex_t seed : {1, 2, 3, 4}) {
    EXPECT_THAT(Reached(seed), ElementsAre(1, 2, 3, 4)) << "seed " << seed;
    for (const LgIndex_t other : {1, 2, 3, 4}) {
      if (other == seed) continue;
      EXPECT_THAT(Reached(seed, {seed, other}), ::testing::UnorderedElementsAre(seed, other));
    }
  }
}

TEST_F(SurfaceSearch, NodeInsideTetrahedraIsNotOnTheSurface) {
  // Node 5 in the middle of one tetrahedron cut into four; its faces all have neighbours.
  Show(ZoneType_FETetra, 5, {{1, 2, 3, 5}, {1, 2, 4, 5}, {1, 3, 4, 5}, {2, 3, 4, 5}});
  ExpectRefused(5, All());
  EXPECT_THAT(Reached(2), ElementsAre(1, 2, 3, 4));
}

// Bricks ---------------------------------------------------------------------------------------

/// The nodes on the outside of a cube of 4 x 4 x 4 nodes.
Nodes OutsideOfCube() {
  Nodes outside;
  for (LgIndex_t node = 1; node <= 64; ++node) {
    const LgIndex_t i = (node - 1) % 4;
    const LgIndex_t j = (node - 1) / 4 % 4;
    const LgIndex_t k = (node - 1) / 16;
    if (i % 3 == 0 || j % 3 == 0 || k % 3 == 0) outside.push_back(node);
  }
  return outside;
}

class SolidSearch : public SurfaceSearch, public ::testing::WithParamInterface<QelZoneType_e> {
 protected:
  void SetUp() override { Show(MakeLattice(GetParam(), 3, 3, 3)); }
};

TEST_P(SolidSearch, ReachesTheWholeOutsideAndNothingWithin) {
  for (const LgIndex_t seed : {1, 6, 20, 64}) {
    EXPECT_THAT(Reached(seed), ElementsAreArray(OutsideOfCube())) << "seed " << seed;
  }
}

TEST_P(SolidSearch, RefusesASeedWithinAndOneThatIsNotInTheSet) {
  for (const LgIndex_t within : {22, 23, 43}) ExpectRefused(within, All());
  ExpectRefused(1, {2, 3, 4});
  ExpectRefused(0, All());
  ExpectRefused(-1, All());
  ExpectRefused(65, All());
}

TEST_P(SolidSearch, DoesNotTunnelToTheOtherSide) {
  // A block of 2 x 2 nodes in the middle of every plane: a square hole through the cube.
  const Nodes hole = {6, 7, 10, 11, 22, 23, 26, 27, 38, 39, 42, 43, 54, 55, 58, 59};
  EXPECT_THAT(Reached(6, hole), ElementsAre(6, 7, 10, 11));
  EXPECT_THAT(Reached(59, hole), ElementsAre(54, 55, 58, 59));
}

TEST_P(SolidSearch, GoesOverAFaceDiagonalButNotThroughTheCell) {
  EXPECT_THAT(Reached(6, {6, 11}), ElementsAre(6, 11));
  // All three are of the first cell, and no face of it on the outside has 21 together with another.
  EXPECT_THAT(Reached(2, {2, 18, 21}), ElementsAre(2, 18));
  EXPECT_THAT(Reached(21, {2, 18, 21}), ElementsAre(21));
}

INSTANTIATE_TEST_SUITE_P(Types, SolidSearch,
                         ::testing::Values(ZoneType_Ordered, ZoneType_FEBrick,
                                           ZoneType_FEPolyhedron));

TEST_F(SurfaceSearch, CollapsedBrickLooksAtEveryCornerThatHasTheNode) {
  // Node 3 is the third and the fourth corner; 4 lies with it on face 1 alone, which only the
  // fourth corner has.
  Show(ZoneType_FEBrick, 6, {{1, 2, 3, 3, 4, 5, 6, 6}});
  EXPECT_THAT(Reached(3, {3, 4}), ElementsAre(3, 4));
  EXPECT_THAT(Reached(3, {3, 5}), ElementsAre(3, 5));
  EXPECT_THAT(Reached(1, {1, 5}), ElementsAre(1, 5));
  EXPECT_THAT(Reached(1), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(SurfaceSearch, CollapsedFacesAreNoWayOn) {
  // A pyramid's top is a point, so its face 6 has no extent and node 5 is reached by the sides.
  Show(ZoneType_FEBrick, 5, {{1, 2, 3, 4, 5, 5, 5, 5}});
  EXPECT_THAT(Reached(5), ElementsAre(1, 2, 3, 4, 5));
  for (const Collapse to : {Collapse::Wedge, Collapse::Pyramid, Collapse::Tetra}) {
    Show(MakeCollapsedBricks(to, 3, 3, 3));
    EXPECT_THAT(Reached(1), ElementsAreArray(OutsideOfCube()));
    ExpectRefused(22, All());
  }
}

// Line segments --------------------------------------------------------------------------------

TEST_F(SurfaceSearch, LineSegmentsAreWalkedByTheTetrahedronsTable) {
  Show(MakeLattice(ZoneType_FELineSeg, 5, 0, 0));
  // The free ends are boundaries; between them each second corner has a fourth face, which is none.
  EXPECT_THAT(Reached(1), ElementsAre(1, 2));
  EXPECT_THAT(Reached(2), ElementsAre(1, 2));
  EXPECT_THAT(Reached(3), ElementsAre(3));
  EXPECT_THAT(Reached(4), ElementsAre(4));
  EXPECT_THAT(Reached(5), ElementsAre(5, 6));
  EXPECT_THAT(Reached(6), ElementsAre(5, 6));
}

TEST_F(SurfaceSearch, FirstCornersOfLineSegmentsWithNeighboursAreNotOnTheSurface) {
  // All segments start at 2, and all go on at their far ends.
  Show(ZoneType_FELineSeg, 5, {{2, 1}, {2, 3}, {1, 4}, {3, 5}});
  ExpectRefused(2, All());
}

// Ordered zones --------------------------------------------------------------------------------

TEST_F(SurfaceSearch, FlatAndThinOrderedZonesAreAllSurface) {
  const std::array<LgIndex_t, 3> shapes[] = {{4, 3, 0}, {4, 0, 3}, {0, 4, 3}, {5, 0, 0},
                                             {0, 5, 0}, {0, 0, 5}, {0, 0, 0}, {4, 3, 1}};
  for (const auto& cells : shapes) {
    Show(MakeLattice(ZoneType_Ordered, cells[0], cells[1], cells[2]));
    for (const LgIndex_t seed : All()) EXPECT_EQ(Reached(seed), All());
  }
}

TEST_F(SurfaceSearch, NodesOfAFlatOrderedZoneMeetInItsCells) {
  Show(MakeLattice(ZoneType_Ordered, 4, 2, 0));
  EXPECT_THAT(Reached(7, {7, 13, 15}), ElementsAre(7, 13)) << "a diagonal, and a gap";
}

TEST_F(SurfaceSearch, SidesOfAThinBlockMeetAtItsRimAlone) {
  Show(MakeLattice(ZoneType_Ordered, 2, 2, 1));
  // The middles of the two sides are a step apart, and no face on the outside has both.
  EXPECT_THAT(Reached(5, {5, 14}), ElementsAre(5));
  EXPECT_THAT(Reached(4, {4, 13}), ElementsAre(4, 13)) << "on the rim one has";
}

// Polygons and polyhedra -----------------------------------------------------------------------

TEST_F(SurfaceSearch, PolygonsAreWalkedAlongAllEdgesFromASeedOnTheRim) {
  Show(MakeLattice(ZoneType_FEPolygon, 3, 3, 0));
  for (const LgIndex_t seed : {1, 2, 8, 16}) EXPECT_EQ(Reached(seed), All());
  for (const LgIndex_t within : {6, 7, 10, 11}) ExpectRefused(within, All());
  EXPECT_THAT(Reached(2, {2, 6, 7, 11, 1}), ElementsAre(1, 2, 6, 7, 11));
  EXPECT_THAT(Reached(1, {1, 6, 16}), ElementsAre(1)) << "a diagonal is no edge";
}

TEST_F(SurfaceSearch, RimOfAPolygonZoneIsWhereAnElementLacksOnEitherSide) {
  // The lattice leaves the right side empty; here it is the left one.
  Mesh mesh = MakeLattice(ZoneType_FEPolygon, 1, 1, 0);
  for (Face& face : mesh.faces) std::swap(face.left, face.right);
  Show(mesh);
  EXPECT_EQ(Reached(3), All());
}

TEST_F(SurfaceSearch, PolyhedraMeetingInAnEdgeAreReachedOverIt) {
  // Two cubes of which only an edge is common.
  Mesh mesh = MakeLattice(ZoneType_FEPolyhedron, 2, 2, 1);
  Mesh kept = mesh;
  kept.faces.clear();
  for (Face face : static_cast<const Mesh&>(mesh).faces) {
    const auto keepsOnly = [](LgIndex_t element) {
      return element == 1 || element == 4 ? element : 0;
    };
    face.left = keepsOnly(face.left);
    face.right = keepsOnly(face.right);
    if (face.left != 0 || face.right != 0) kept.faces.push_back(face);
  }
  Show(kept);
  EXPECT_THAT(Reached(1), SizeIs(14)) << "all but the four nodes of neither";
}

// What may lack --------------------------------------------------------------------------------

struct MapRow {
  const char* name;
  QelZoneType_e type;
  const char* function;
};

class MissingMap : public SurfaceSearch, public ::testing::WithParamInterface<MapRow> {};

TEST_P(MissingMap, RefusesTheSeedAndKeepsTheSet) {
  const bool isFlat = GetParam().type == ZoneType_FETriangle ||
                      GetParam().type == ZoneType_FEQuad || GetParam().type == ZoneType_FEPolygon;
  Show(MakeLattice(GetParam().type, 2, 2, isFlat ? 0 : 2));
  EXPECT_TRUE(Search(1, All()).isDone);
  host.FailCall(GetParam().function, 1);
  ExpectRefused(1, All());
  EXPECT_TRUE(host.WasFaultHit());
}

constexpr char kNodeMap[] = "QelUtilDataNodeGetReadableRef";
constexpr char kElementMap[] = "QelUtilDataNodeToElemMapGetReadableRef";
constexpr char kNeighbours[] = "QelUtilDataFaceNbrGetReadableRef";
constexpr char kElementFaces[] = "QelUtilDataElemGetReadableRef";
constexpr char kFaceMap[] = "QelUtilDataFaceMapGetReadableRef";

INSTANTIATE_TEST_SUITE_P(
    Maps, MissingMap,
    ::testing::Values(MapRow{"TriangleNodes", ZoneType_FETriangle, kNodeMap},
                      MapRow{"TriangleElements", ZoneType_FETriangle, kElementMap},
                      MapRow{"TriangleNeighbours", ZoneType_FETriangle, kNeighbours},
                      MapRow{"QuadNodes", ZoneType_FEQuad, kNodeMap},
                      MapRow{"QuadElements", ZoneType_FEQuad, kElementMap},
                      MapRow{"QuadNeighbours", ZoneType_FEQuad, kNeighbours},
                      MapRow{"TetraNodes", ZoneType_FETetra, kNodeMap},
                      MapRow{"TetraElements", ZoneType_FETetra, kElementMap},
                      MapRow{"TetraNeighbours", ZoneType_FETetra, kNeighbours},
                      MapRow{"BrickNodes", ZoneType_FEBrick, kNodeMap},
                      MapRow{"BrickElements", ZoneType_FEBrick, kElementMap},
                      MapRow{"BrickNeighbours", ZoneType_FEBrick, kNeighbours},
                      MapRow{"PolygonElements", ZoneType_FEPolygon, kElementMap},
                      MapRow{"PolygonFaces", ZoneType_FEPolygon, kElementFaces},
                      MapRow{"PolygonFaceNodes", ZoneType_FEPolygon, kFaceMap},
                      MapRow{"PolyhedronElements", ZoneType_FEPolyhedron, kElementMap},
                      MapRow{"PolyhedronFaces", ZoneType_FEPolyhedron, kElementFaces},
                      MapRow{"PolyhedronFaceNodes", ZoneType_FEPolyhedron, kFaceMap}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(SurfaceSearch, UnknownZoneTypeHasNoSurface) {
  Show(MakeLattice(ZoneType_FEQuad, 2, 2, 0));
  host.ZoneAt(1)->mesh.type = static_cast<QelZoneType_e>(8);
  ExpectRefused(1, {1, 2, 3});
}

// Cost -----------------------------------------------------------------------------------------

TEST_F(SurfaceSearch, LooksAtEachFaceOfAReachedNodeOnce) {
  Show(MakeLattice(ZoneType_FEBrick, 6, 6, 6));
  const Nodes reached = Reached(1);
  ASSERT_THAT(reached, SizeIs(7 * 7 * 7 - 5 * 5 * 5));
  int facesAtNodes = 0;
  for (const LgIndex_t node : reached) {
    facesAtNodes += 3 * host.ZoneAt(1)->mesh.Derived().cellsAroundNodes.CountOf(node);
  }
  constexpr int kToSeeTheSeed = 3;
  EXPECT_LE(host.CallCount("QelUtilDataFaceNbrGetNumNByRef"), facesAtNodes + kToSeeTheSeed);
}

TEST_F(SurfaceSearch, EntersEachElementOnce) {
  Show(MakeLattice(ZoneType_FEQuad, 8, 8, 0));
  ASSERT_THAT(Reached(1), SizeIs(80));
  constexpr int kCornersLookedAt = 3;
  EXPECT_LE(host.CallCount("QelUtilDataNodeGetByRef"), 64 * kCornersLookedAt);
}

constexpr std::size_t kSmallStack = std::size_t{256} * 1024;

void* CallFunction(void* function) {
  (*static_cast<const std::function<void()>*>(function))();
  return nullptr;
}

/// Runs it where a call for every node reached would never end well.
void OnASmallStack(const std::function<void()>& function) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStack), 0);
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, CallFunction,
                           const_cast<std::function<void()>*>(&function)),
            0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

struct LargeSurfaceRow {
  const char* name;
  QelZoneType_e type;
  std::array<LgIndex_t, 3> cells;
  LgIndex_t nodesReached;
};

class LargeSurface : public SurfaceSearch, public ::testing::WithParamInterface<LargeSurfaceRow> {};

TEST_P(LargeSurface, IsWalkedOnASmallStackInBoundedMemory) {
  const auto& cells = GetParam().cells;
  Show(MakeLattice(GetParam().type, cells[0], cells[1], cells[2]));
  host.keepsCalls = false;
  const LgIndex_t nodeCount = NodeCount();
  host.ZoneAt(1)->mesh.Derived();

  InsideSet inside(nodeCount);
  qelvane::qelutiltools::MarkNodes(inside, [](std::int64_t) { return true; });
  const support::HeapMeter meter;
  bool isDone = false;
  OnASmallStack([&] { isDone = SearchSurface(1, 1, inside); });
  ASSERT_TRUE(isDone);
  const std::int64_t peak = meter.PeakBytes();
  LgIndex_t reachedCount = 0;
  for (std::int64_t node = 0; node < nodeCount; ++node) reachedCount += inside.Contains(node);
  EXPECT_EQ(reachedCount, GetParam().nodesReached);
  constexpr std::int64_t kBytesPerNode = 64;
  EXPECT_LT(peak, kBytesPerNode * nodeCount);
}

// Under sanitizers everything takes ten times as long, and a shorter way fills the small stack too.
#ifdef __SANITIZE_ADDRESS__
constexpr LgIndex_t kEdge = 600;
#else
constexpr LgIndex_t kEdge = 2000;
#endif
constexpr LgIndex_t kSquare = (kEdge + 1) * (kEdge + 1);

// Of the quadrilaterals, the one node is not reached that is only ever a last corner.
INSTANTIATE_TEST_SUITE_P(
    Types, LargeSurface,
    ::testing::Values(LargeSurfaceRow{"Ordered", ZoneType_Ordered, {kEdge, kEdge, 0}, kSquare},
                      LargeSurfaceRow{"Quads", ZoneType_FEQuad, {kEdge, kEdge, 0}, kSquare - 1},
                      LargeSurfaceRow{"Bricks",
                                      ZoneType_FEBrick,
                                      {kEdge / 2, kEdge / 4, 1},
                                      (kEdge / 2 + 1) * (kEdge / 4 + 1) * 2},
                      LargeSurfaceRow{"Tetrahedra", ZoneType_FETetra, {400, 100, 1}, 401 * 101 * 2},
                      LargeSurfaceRow{
                          "Polyhedra", ZoneType_FEPolyhedron, {200, 100, 1}, 201 * 101 * 2},
                      LargeSurfaceRow{"Polygons", ZoneType_FEPolygon, {300, 300, 0}, 301 * 301}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
