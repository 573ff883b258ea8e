// Zones of no cell and of one, and cells that enclose nothing: repeated corners, no volume, inside
// out, no corners at all. What counts are a cell's corners, whatever they enclose.
#include "FakeHostTest.h"
#include "PickReference.h"

#include <array>
#include <string>
#include <vector>

namespace {

using namespace reference;
using fakehost::Face;
using fakehost::MakeLattice;
using fakehost::Mesh;
using fakehost::Point;
using fakehost::StoredType;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kEverywhere[] = "PICKRECTANGLE ANCHORX=-9 ANCHORY=-9 SIZEX=99 SIZEY=99";

class OddCells : public fakehost::FakeHostTest, public ::testing::WithParamInterface<int> {
 protected:
  QelZoneType_e Type() const { return static_cast<QelZoneType_e>(GetParam()); }
  bool IsFaceBased() const { return Type() >= ZoneType_FEPolygon; }

  void Load(const Mesh& mesh, QelPlotType_e plotType = PlotType_Cartesian2D) {
    host.AddFrame(plotType);
    host.AddZone(mesh);
    n = host.AddVariable("n", ValueLocation_Nodal, StoredType::Double,
                         [](LgIndex_t, LgIndex_t node) { return 1.0 * node; });
    c = host.AddVariable("c", ValueLocation_CellCentered, StoredType::Float,
                         [](LgIndex_t, LgIndex_t cell) { return 10.0 * cell; });
    InitQelAddOn113();
  }

  /// Of the zone's type.
  Mesh Lattice(LgIndex_t cells) const {
    const bool isFlat =
        Type() == ZoneType_FETriangle || Type() == ZoneType_FEQuad || Type() == ZoneType_FEPolygon;
    const bool isLine = Type() == ZoneType_FELineSeg;
    return MakeLattice(Type(), cells, isLine ? 0 : cells, isLine || isFlat ? 0 : cells);
  }

  LgIndex_t n = 0;
  LgIndex_t c = 0;
};

// No cell, one cell ----------------------------------------------------------------------------

/// A node of an ordered zone is a cell.
class NoCells : public OddCells {};

TEST_P(NoCells, AreLeftOutAndNodesCanBeAlteredOneByOne) {
  Mesh mesh;
  mesh.type = Type();
  mesh.points = {{0, 0, 0}, {1, 0, 0}};
  Load(mesh);
  PlayWell(kEverywhere);
  PlayWell("ALTERAREA VARIABLE=\"n\" MODIFIER=\"=5\"");
  PlayWell("ALTERAREA VARIABLE=\"c\" MODIFIER=\"=5\"");
  PlayWell("ALTERSURFACE VARIABLE=\"n\" ZONE=1 SEEDPOINT=1");
  PlayWell("BLANKAREA");
  EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(1, 2));
  PlayWell("ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"=5\" ZONE=1 ELEMENT=2");
  EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(1, 5));
  PlayBadly("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"=5\" ZONE=1 ELEMENT=1");
  PlayBadly("BLANKELEMENT ZONE=1 ELEMENT=1");
  PlayWell("UNDOBLANK");
}

TEST_P(OddCells, AreNoneInAZoneWithoutNodes) {
  Mesh mesh;
  mesh.type = Type();
  mesh.ijk = {0, 1, 1};
  Load(mesh, PlotType_Cartesian3D);
  for (const char* boundary : {kEverywhere, "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=9",
                               "PICKCUBE ANCHORX=0 ANCHORY=0 ANCHORZ=0 SIZEX=1 SIZEY=1 SIZEZ=1",
                               "PICKSPHERE ANCHORX=0 ANCHORY=0 ANCHORZ=0 RADIUS=1"}) {
    PlayWell(boundary);
    PlayWell("ALTERAREA VARIABLE=\"n\" MODIFIER=\"=5\"");
    PlayWell("BLANKAREA");
    PlayWell("UNDOBLANK");
  }
  PlayWell(kEverywhere);
  PlayWell("ALTERSURFACE VARIABLE=\"n\" ZONE=1 SEEDPOINT=1");
  PlayWell("BLANKSURFACE ZONE=1 SEEDPOINT=1");
  PlayBadly("ALTERELEMENT VARIABLE=\"n\" ZONE=1 ELEMENT=1");
  // An ordered zone has a cell, whatever its nodes.
  if (Type() != ZoneType_Ordered) PlayBadly("BLANKELEMENT ZONE=1 ELEMENT=1");
  EXPECT_THAT(host.ValuesOf(1, n), IsEmpty());
}

/// A lattice's first cell alone, with the nodes of the others.
Mesh FirstCellOf(const Mesh& lattice) {
  Mesh mesh = lattice;
  if (!mesh.HasNodeMap()) return mesh;
  mesh.elements = {lattice.elements.front()};
  return mesh;
}

TEST_P(OddCells, AloneInAZoneIsPickedByItsCorners) {
  // The node at the origin is inside; corner or not, others are not.
  constexpr char kOrigin[] = "PICKRECTANGLE ANCHORX=-0.5 ANCHORY=-0.5 SIZEX=1 SIZEY=1";
  Boundary boundary;
  boundary.anchor = {-0.5, -0.5, 0};
  boundary.size = {1, 1, 0};
  for (int rule = 0; rule < 4; ++rule) {
    host.Reset();
    const Mesh mesh = FirstCellOf(Lattice(1));
    Load(mesh);
    ASSERT_EQ(mesh.CellCount(), 1);
    PlayWell(kOrigin);
    PlayWell(std::string("ALTERAREA VARIABLE=\"c\" MODIFIER=\"=-1\" RULE=") + kRules[rule]);
    const bool isTaken = Takes(rule, mesh.Corners(1), NodesInside(boundary, 1));
    EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(isTaken ? -1 : 10)) << kRules[rule];
    host.Deliver(StateChange_NewLayout);
    host.RunIdleQueue();
  }
}

// Cells that enclose nothing -------------------------------------------------------------------

/// Any nodes as corners: the same ones again and again, or those of a lattice turned inside out.
void MixCorners(Random& random, Mesh& mesh) {
  const auto corners = mesh.elements.CornerCount();
  for (std::size_t element = 0; element < mesh.elements.size(); ++element) {
    const auto before = mesh.elements.NodesOf(element);
    const int how = random.Below(4);
    for (std::size_t corner = 0; corner < corners; ++corner) {
      const LgIndex_t node = how == 0   ? 1 + random.Below(mesh.NodeCount())
                             : how == 1 ? before[0]
                             : how == 2 ? before[corners - 1 - corner]
                                        : before[corner / 2];
      mesh.elements.SetNode(element, corner, node);
    }
  }
}

/// Faces of any nodes between any cells, a cell on both sides at times; some cells have no face.
void MixFaces(Random& random, Mesh& mesh) {
  for (Face& face : mesh.faces) {
    const LgIndex_t elements = mesh.faceBasedElementCount;
    if (random.Below(3) == 0) face.left = random.Below(elements + 1);
    if (random.Below(3) == 0) face.right = face.left;
    for (LgIndex_t& node : face.nodes) {
      if (random.Below(3) == 0) node = face.nodes.front();
      if (random.Below(4) == 0) node = 1 + random.Below(mesh.NodeCount());
    }
  }
  mesh.faceBasedElementCount += 3;
}

/// Flat, or all nodes in one place but a few; no node is where a boundary may have an edge.
void Flatten(Random& random, Mesh& mesh) {
  const int how = random.Below(3);
  for (Point& point : mesh.points) {
    if (how == 0) point.y = 0.25;
    if (how == 1) point.z = 0;
    if (how == 2 && random.Below(4) != 0) point = {0.25, 0.25, 0.25};
    point.x += 0.0123;
    point.y += 0.0171;
  }
}

TEST_P(OddCells, ArePickedByTheirCorners) {
  int changing = 0;
  for (unsigned seed = 1; seed <= 150 && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed * 8 + static_cast<unsigned>(Type()));
    host.Reset();
    Mesh mesh = Lattice(1 + random.Below(4));
    if (mesh.HasNodeMap()) MixCorners(random, mesh);
    if (mesh.IsFaceBased()) MixFaces(random, mesh);
    Flatten(random, mesh);
    Load(mesh, random.Flip() ? PlotType_Cartesian2D : PlotType_Cartesian3D);
    const Boundary boundary = RandomBoundary(random, false);
    const Modifier& modifier = RandomModifier(random);
    const int rule = random.Below(4);
    const Bytes before = BytesOf(1, c);
    const Bytes expected = Altered(1, c, rule, NodesInside(boundary, 1), modifier);
    PlayWell(boundary.Line());
    PlayWell(std::string("ALTERAREA VARIABLE=\"c\" MODIFIER=\"") + modifier.text +
             "\" RULE=" + kRules[rule]);
    EXPECT_EQ(BytesOf(1, c), expected) << boundary.Line();
    changing += expected != before ? 1 : 0;
    host.Deliver(StateChange_NewLayout);
    host.RunIdleQueue();
  }
  EXPECT_GT(changing, 40) << "the zones show too little";
}

// A cell that there is not --------------------------------------------------------------------

class ElementUndo : public OddCells {};

TEST_F(ElementUndo, IsRefusedWhereTheVariableOfASurfacePickHasFewerValues) {
  Load(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  PlayWell(kEverywhere);
  PlayWell("ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"+1\" ZONE=1 ELEMENT=4");
  PlayWell("ALTERSURFACE VARIABLE=\"c\" ZONE=1 SEEDPOINT=1 RULE=ANYINSIDE");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11));
  PlayBadly("UNDOALTER");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(11));
}

INSTANTIATE_TEST_SUITE_P(ZoneTypes, OddCells, ::testing::Range(0, 8));
INSTANTIATE_TEST_SUITE_P(ZoneTypes, NoCells, ::testing::Range(1, 8));

}  // namespace
