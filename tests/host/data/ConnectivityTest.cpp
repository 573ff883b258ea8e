#include <gmock/gmock.h>
#include <vtkCell.h>
#include <vtkGenericCell.h>
#include <vtkIdList.h>
#include <vtkPolyData.h>

#include <algorithm>
#include <numeric>
#include <set>

#include "Meshes.h"
#include "Zone.h"

namespace {

using meshes::Bricks;
using meshes::Cell;
using meshes::Grid;
using qelhost::Zone;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using NodeSet = std::set<std::int64_t>;

std::vector<vtkIdType> FirstNodes(int count) {
  std::vector<vtkIdType> nodes(static_cast<std::size_t>(count));
  std::iota(nodes.begin(), nodes.end(), 0);
  return nodes;
}

/// The faces of a block's cell as VTK has them.
std::multiset<NodeSet> VtkFaces(vtkDataSet* block, vtkIdType cell) {
  std::multiset<NodeSet> faces;
  vtkNew<vtkGenericCell> generic;
  block->GetCell(cell, generic);
  const bool solid = generic->GetCellDimension() == 3;
  const int count = solid ? generic->GetNumberOfFaces() : generic->GetNumberOfEdges();
  for (int f = 0; f < count; ++f) {
    vtkIdList* ids = (solid ? generic->GetFace(f) : generic->GetEdge(f))->GetPointIds();
    faces.insert(NodeSet(ids->begin(), ids->end()));
  }
  return faces;
}

/// The faces of a zone's cell that are not collapsed.
std::multiset<NodeSet> ZoneFaces(Zone& zone, std::int64_t cell) {
  std::multiset<NodeSet> faces;
  const qelhost::FaceTable& table = qelhost::LocalFaces(zone.Type());
  for (int f = 0; f < table.faceCount; ++f) {
    NodeSet nodes;
    for (int i = 0; i < table.cornersPerFace; ++i) {
      nodes.insert(zone.NodeMap()->Node(cell, table.corners[f][i]));
    }
    if (nodes.size() >= static_cast<std::size_t>(std::min(table.cornersPerFace, 3))) {
      faces.insert(nodes);
    }
  }
  return faces;
}

struct ShapeRow {
  const char* name;
  int vtkType;
  int nodes;
  int beside;  ///< a second cell's type, so that the zone is a mixed one; with nodes of its own
  int nodesBeside;
};

class CornersOfShape : public ::testing::TestWithParam<ShapeRow> {};

TEST_P(CornersOfShape, GiveTheFacesThatVtkGives) {
  const ShapeRow& row = GetParam();
  std::vector<vtkIdType> other = FirstNodes(row.nodesBeside);
  for (vtkIdType& node : other) node += row.nodes;
  const auto grid = Grid(row.nodes + row.nodesBeside,
                         {{row.vtkType, FirstNodes(row.nodes)}, {row.beside, other}});
  Zone zone("z", grid, true);
  EXPECT_EQ(ZoneFaces(zone, 0), VtkFaces(grid, 0));
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, CornersOfShape,
    ::testing::Values(ShapeRow{"TetraAsBrick", VTK_TETRA, 4, VTK_HEXAHEDRON, 8},
                      ShapeRow{"PyramidAsBrick", VTK_PYRAMID, 5, VTK_HEXAHEDRON, 8},
                      ShapeRow{"WedgeAsBrick", VTK_WEDGE, 6, VTK_HEXAHEDRON, 8},
                      ShapeRow{"VoxelAsBrick", VTK_VOXEL, 8, VTK_HEXAHEDRON, 8},
                      ShapeRow{"Brick", VTK_HEXAHEDRON, 8, VTK_WEDGE, 6},
                      ShapeRow{"Tetra", VTK_TETRA, 4, VTK_TETRA, 4},
                      ShapeRow{"TriangleAsQuad", VTK_TRIANGLE, 3, VTK_QUAD, 4},
                      ShapeRow{"PixelAsQuad", VTK_PIXEL, 4, VTK_QUAD, 4},
                      ShapeRow{"Triangle", VTK_TRIANGLE, 3, VTK_TRIANGLE, 3},
                      ShapeRow{"Quad", VTK_QUAD, 4, VTK_QUAD, 4}),
    [](const auto& row) { return std::string(row.param.name); });

struct SolidRow {
  const char* name;
  int vtkType;
  int nodes;
};

class FacesOfShape : public ::testing::TestWithParam<SolidRow> {};

/// A pentagonal prism beside it makes the zone wholly polyhedral.
TEST_P(FacesOfShape, AreVtksInAPolyhedralZone) {
  const SolidRow& row = GetParam();
  std::vector<vtkIdType> prism = FirstNodes(10);
  for (vtkIdType& node : prism) node += row.nodes;
  const auto grid =
      Grid(row.nodes + 10, {{row.vtkType, FirstNodes(row.nodes)}, {VTK_PENTAGONAL_PRISM, prism}});
  Zone zone("z", grid, true);
  ASSERT_EQ(zone.Type(), ZoneType_FEPolyhedron);
  std::multiset<NodeSet> faces;
  for (LgIndex_t f = 0; f < zone.ElemToFace()->FaceCount(0); ++f) {
    const LgIndex_t face = zone.ElemToFace()->Face(0, f);
    NodeSet nodes;
    for (LgIndex_t n = 0; n < zone.FaceMap()->NodeCount(face); ++n) {
      nodes.insert(zone.FaceMap()->Node(face, n));
    }
    faces.insert(nodes);
  }
  EXPECT_EQ(faces, VtkFaces(grid, 0));
}

INSTANTIATE_TEST_SUITE_P(Shapes, FacesOfShape,
                         ::testing::Values(SolidRow{"Tetra", VTK_TETRA, 4},
                                           SolidRow{"Pyramid", VTK_PYRAMID, 5},
                                           SolidRow{"Wedge", VTK_WEDGE, 6},
                                           SolidRow{"Brick", VTK_HEXAHEDRON, 8},
                                           SolidRow{"Voxel", VTK_VOXEL, 8},
                                           SolidRow{"PentaPrism", VTK_PENTAGONAL_PRISM, 10},
                                           SolidRow{"HexaPrism", VTK_HEXAGONAL_PRISM, 12}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(NodeMap, ReadsNarrowAndWideConnectivityAlike) {
  const auto grid = Bricks(2, 1, 1);
  Zone wide("z", grid, true);
  std::vector<std::int64_t> wideNodes, narrowNodes;
  wide.CellNodes(1, wideNodes);
  grid->GetCells()->ConvertTo32BitStorage();
  Zone narrow("z", grid, true);
  EXPECT_FALSE(narrow.NodeMap()->wide);
  narrow.CellNodes(1, narrowNodes);
  EXPECT_EQ(wideNodes, narrowNodes);
  EXPECT_THAT(wideNodes, ElementsAre(1, 2, 5, 4, 7, 8, 11, 10));
}

TEST(NodeMap, QuadraticCellCountsByItsCorners) {
  Zone zone("z", Grid(10, {{VTK_QUADRATIC_TETRA, {9, 8, 7, 6, 5, 4, 3, 2, 1, 0}}}), true);
  EXPECT_EQ(zone.Type(), ZoneType_FETetra);
  std::vector<std::int64_t> nodes;
  zone.CellNodes(0, nodes);
  EXPECT_THAT(nodes, ElementsAre(9, 8, 7, 6));
}

TEST(NodeMap, OfAFileIsNotWritable) {
  Zone fromFile("z", Bricks(1, 1, 1), true);
  EXPECT_EQ(fromFile.WritableNodeMap(), nullptr);
  EXPECT_FALSE(fromFile.NodeMap()->SetNode(0, 0, 3));
  Zone made("z", Bricks(1, 1, 1), false);
  ASSERT_NE(made.WritableNodeMap(), nullptr);
  EXPECT_TRUE(made.WritableNodeMap()->SetNode(0, 2, 3));
  EXPECT_EQ(made.NodeMap()->Node(0, 2), 3);
  EXPECT_FALSE(made.WritableNodeMap()->SetNode(0, 2, 8));
  EXPECT_FALSE(made.WritableNodeMap()->SetNode(1, 0, 0));
}

/// What the maps say, by brute force over the cells' nodes.
std::vector<LgIndex_t> ElementsAround(Zone& zone, std::int64_t node) {
  std::vector<LgIndex_t> result;
  std::vector<std::int64_t> nodes;
  for (LgIndex_t cell = 0; cell < zone.CellCount(); ++cell) {
    zone.CellNodes(cell, nodes);
    if (std::count(nodes.begin(), nodes.end(), node) > 0) result.push_back(cell);
  }
  return result;
}

const auto kMixed = std::vector<Cell>{{VTK_HEXAHEDRON, {0, 1, 2, 3, 4, 5, 6, 7}},
                                      {VTK_WEDGE, {1, 8, 2, 5, 9, 6}},
                                      {VTK_PYRAMID, {4, 5, 6, 7, 10}},
                                      {VTK_TETRA, {5, 9, 6, 10}},
                                      {VTK_TRIANGLE, {0, 1, 2}}};
const auto kSurface = std::vector<Cell>{{VTK_QUAD, {0, 1, 2, 3}},
                                        {VTK_TRIANGLE, {1, 4, 2}},
                                        {VTK_LINE, {0, 1}},
                                        {VTK_TRIANGLE, {3, 2, 5}}};
const auto kPolygons = std::vector<Cell>{{VTK_POLYGON, {0, 1, 2, 3, 4}}, {VTK_QUAD, {1, 5, 6, 2}}};
const auto kPrisms = std::vector<Cell>{{VTK_PENTAGONAL_PRISM, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
                                       {VTK_TETRA, {0, 1, 10, 11}}};

TEST(NodeToElem, ListsEachElementOnceAscending) {
  for (const auto& grid : {Bricks(3, 2, 2), Grid(11, kMixed), Grid(6, kSurface), Grid(7, kPolygons),
                           Grid(12, kPrisms)}) {
    Zone zone("z", grid, true);
    const QelNodeToElemMap& map = *zone.NodeToElem();
    ASSERT_EQ(map.NodeCount(), zone.NodeCount());
    for (LgIndex_t node = 0; node < zone.NodeCount(); ++node) {
      std::vector<LgIndex_t> elements;
      for (std::int64_t n = 0; n < map.Count(node); ++n) elements.push_back(map.Element(node, n));
      EXPECT_EQ(elements, ElementsAround(zone, node)) << "node " << node;
    }
  }
}

TEST(FaceNeighbors, AreTheElementsWithTheSameFace) {
  for (const auto& grid : {Bricks(3, 2, 2), Grid(11, kMixed), Grid(6, kSurface)}) {
    Zone zone("z", grid, true);
    const qelhost::FaceTable& table = qelhost::LocalFaces(zone.Type());
    for (LgIndex_t cell = 0; cell < zone.CellCount(); ++cell) {
      for (int f = 0; f < table.faceCount; ++f) {
        NodeSet nodes;
        for (int i = 0; i < table.cornersPerFace; ++i) {
          nodes.insert(zone.NodeMap()->Node(cell, table.corners[f][i]));
        }
        LgIndex_t expected = 0;
        for (LgIndex_t other = 0; other < zone.CellCount(); ++other) {
          if (other != cell && ZoneFaces(zone, other).count(nodes) > 0) ++expected;
        }
        const bool collapsed =
            nodes.size() < static_cast<std::size_t>(std::min(table.cornersPerFace, 3));
        EXPECT_EQ(zone.FaceNeighbors()->Count(cell, f), collapsed ? 1 : expected)
            << "cell " << cell << " face " << f;
      }
      EXPECT_EQ(zone.FaceNeighbors()->Count(cell, table.faceCount), 0);
    }
  }
}

TEST(FaceNeighbors, LineSegmentsMeetAtTheirEnds) {
  Zone zone("z", Grid(3, {{VTK_LINE, {0, 1}}, {VTK_LINE, {1, 2}}}), true);
  EXPECT_EQ(zone.FaceNeighbors()->Count(0, 0), 0);
  EXPECT_EQ(zone.FaceNeighbors()->Count(0, 1), 1);
  EXPECT_EQ(zone.FaceNeighbors()->Count(1, 0), 1);
}

TEST(FaceMap, SharedFaceStandsOnceBetweenItsTwoElements) {
  Zone zone("z", Grid(7, kPolygons), true);
  ASSERT_EQ(zone.Type(), ZoneType_FEPolygon);
  EXPECT_EQ(zone.FaceMap()->FaceCount(), 8);  // 5 + 4 edges, one of them in common
  EXPECT_EQ(zone.IJK()[2], 8);
  int between = 0;
  for (LgIndex_t face = 0; face < zone.FaceMap()->FaceCount(); ++face) {
    if (zone.FaceMap()->right[face] < 0) continue;
    ++between;
    EXPECT_EQ(zone.FaceMap()->left[face], 0);
    EXPECT_EQ(zone.FaceMap()->right[face], 1);
    EXPECT_EQ((NodeSet{zone.FaceMap()->Node(face, 0), zone.FaceMap()->Node(face, 1)}),
              (NodeSet{1, 2}));
  }
  EXPECT_EQ(between, 1);
}

TEST(FaceMap, PolyhedronKeepsItsOwnFaces) {
  auto grid = Grid(5, {{VTK_TETRA, {0, 1, 2, 3}}});
  const vtkIdType faces[] = {3, 0, 1, 2, 3, 0, 1, 4, 3, 1, 2, 4, 3, 2, 0, 4};
  grid->InsertNextCell(VTK_POLYHEDRON, 4, faces);
  Zone zone("z", grid, true);
  ASSERT_EQ(zone.Type(), ZoneType_FEPolyhedron);
  EXPECT_EQ(zone.ElemToFace()->FaceCount(1), 4);
  EXPECT_EQ(zone.FaceMap()->FaceCount(), 7);
  EXPECT_EQ(zone.NodeMap(), nullptr);
  EXPECT_EQ(zone.FaceNeighbors(), nullptr);
}

TEST(FaceMap, EdgeOfThreePolygonsAppearsForEachPair) {
  Zone zone(
      "z",
      Grid(8,
           {{VTK_POLYGON, {0, 1, 2, 3, 4}}, {VTK_TRIANGLE, {0, 1, 5}}, {VTK_TRIANGLE, {0, 1, 6}}}),
      true);
  int edges = 0;
  for (LgIndex_t face = 0; face < zone.FaceMap()->FaceCount(); ++face) {
    const NodeSet nodes{zone.FaceMap()->Node(face, 0), zone.FaceMap()->Node(face, 1)};
    if (nodes == NodeSet{0, 1}) ++edges;
  }
  EXPECT_EQ(edges, 2);
}

}  // namespace
