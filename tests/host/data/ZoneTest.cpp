#include <gmock/gmock.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDataSetAttributes.h>
#include <vtkImageData.h>
#include <vtkIntArray.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>

#include "DataSet.h"
#include "Meshes.h"
#include "Zone.h"

namespace {

using meshes::Bricks;
using meshes::Cell;
using meshes::Grid;
using qelhost::DataSet;
using qelhost::Zone;
using ::testing::ElementsAre;

struct TypeRow {
  const char* rule;
  std::vector<Cell> cells;
  QelZoneType_e type;
  LgIndex_t cellCount;
};

class TypeOfZone : public ::testing::TestWithParam<TypeRow> {};

TEST_P(TypeOfZone, FollowsRule) {
  Zone zone("z", Grid(20, GetParam().cells), true);
  EXPECT_EQ(zone.Type(), GetParam().type);
  EXPECT_EQ(zone.CellCount(), GetParam().cellCount);
  EXPECT_EQ(zone.NodeCount(), 20);
}

const Cell kTetra{VTK_TETRA, {0, 1, 2, 3}}, kWedge{VTK_WEDGE, {0, 1, 2, 3, 4, 5}},
    kTriangle{VTK_TRIANGLE, {0, 1, 2}}, kQuad{VTK_QUAD, {0, 1, 2, 3}}, kLine{VTK_LINE, {0, 1}},
    kVertex{VTK_VERTEX, {0}}, kPolygon{VTK_POLYGON, {0, 1, 2, 3, 4}},
    kVoxel{VTK_VOXEL, {0, 1, 2, 3, 4, 5, 6, 7}}, kPixel{VTK_PIXEL, {0, 1, 2, 3}},
    kPrism{VTK_HEXAGONAL_PRISM, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}},
    kPolyline{VTK_POLY_LINE, {0, 1, 2}}, kStrip{VTK_TRIANGLE_STRIP, {0, 1, 2, 3}};

INSTANTIATE_TEST_SUITE_P(
    Rules, TypeOfZone,
    ::testing::Values(TypeRow{"Tetrahedra", {kTetra, kTetra}, ZoneType_FETetra, 2},
                      TypeRow{"TetraAndWedgeMakeBricks", {kTetra, kWedge}, ZoneType_FEBrick, 2},
                      TypeRow{"VoxelsAreBricks", {kVoxel}, ZoneType_FEBrick, 1},
                      TypeRow{"PixelsAreQuads", {kPixel}, ZoneType_FEQuad, 1},
                      TypeRow{"Triangles", {kTriangle}, ZoneType_FETriangle, 1},
                      TypeRow{"TriangleAndQuadMakeQuads", {kTriangle, kQuad}, ZoneType_FEQuad, 2},
                      TypeRow{"AnyPolygonMakesPolygons", {kQuad, kPolygon}, ZoneType_FEPolygon, 2},
                      TypeRow{"AnyPrismMakesPolyhedra", {kTetra, kPrism}, ZoneType_FEPolyhedron, 2},
                      TypeRow{"Lines", {kLine, kLine}, ZoneType_FELineSeg, 2},
                      TypeRow{"HighestDimensionMakesTheZone",
                              {kVertex, kLine, kPolygon, kTetra},
                              ZoneType_FETetra,
                              1},
                      TypeRow{"PolylineAndStripAreNoCells",
                              {kTriangle, kPolyline, kStrip},
                              ZoneType_FETriangle,
                              1},
                      TypeRow{"NodesAloneHaveNoCells", {}, ZoneType_FELineSeg, 0},
                      TypeRow{"VerticesAloneMakeNoCells", {kVertex}, ZoneType_FELineSeg, 0}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(Zone, CountsWhatItCarriesAndMapsItsCells) {
  Zone zone("z", Grid(20, {kLine, kTetra, kVertex, kTriangle, kTetra, kPolyline, kStrip}), true);
  EXPECT_EQ(zone.CellCount(), 2);
  EXPECT_EQ(zone.BlockCell(0), 1);
  EXPECT_EQ(zone.BlockCell(1), 4);
  EXPECT_EQ(zone.CellOfBlockCell(4), 1);
  EXPECT_EQ(zone.CellOfBlockCell(3), -1);
  EXPECT_EQ(zone.Carried().lowerDimensionCells, 2);
  EXPECT_EQ(zone.Carried().vertices, 1);
  EXPECT_EQ(zone.Carried().polylines, 1);
  EXPECT_EQ(zone.Carried().strips, 1);
}

TEST(Zone, CellValuesSkipCarriedCells) {
  const auto grid = Grid(20, {kLine, kTetra, kTriangle, kTetra});
  vtkNew<vtkIntArray> id;
  id->SetName("id");
  for (int n = 0; n < 4; ++n) id->InsertNextValue(n);
  grid->GetCellData()->AddArray(id);
  DataSet data("t", {{"z", grid}}, nullptr);
  QelFieldData* ref = data.Writable(1, data.VariableNumber("id"));
  ASSERT_NE(ref, nullptr);
  EXPECT_EQ(ref->count, 2);
  EXPECT_EQ(ref->get(ref, 0), 1);
  EXPECT_EQ(ref->get(ref, 1), 3);
  ref->set(ref, 1, 33);
  EXPECT_EQ(id->GetValue(3), 33);
  EXPECT_EQ(id->GetValue(2), 2);
}

TEST(Zone, SurfaceCellsFollowItsVerticesAndLines) {
  vtkNew<vtkPolyData> surface;
  surface->SetPoints(Grid(6, {})->GetPoints());
  vtkNew<vtkCellArray> vertices, lines, polygons;
  vertices->InsertNextCell({0});
  lines->InsertNextCell({0, 1});
  lines->InsertNextCell({0, 1, 2});
  polygons->InsertNextCell({0, 1, 2});
  polygons->InsertNextCell({2, 3, 4, 5});
  surface->SetVerts(vertices);
  surface->SetLines(lines);
  surface->SetPolys(polygons);
  Zone zone("z", surface, true);
  EXPECT_EQ(zone.Type(), ZoneType_FEQuad);
  EXPECT_EQ(zone.BlockCell(0), 3);
  EXPECT_EQ(zone.Carried().vertices, 1);
  EXPECT_EQ(zone.Carried().lowerDimensionCells, 1);
  EXPECT_EQ(zone.Carried().polylines, 1);
  std::vector<std::int64_t> nodes;
  zone.CellNodes(0, nodes);
  EXPECT_THAT(nodes, ElementsAre(0, 1, 2, 2));
  zone.CellNodes(1, nodes);
  EXPECT_THAT(nodes, ElementsAre(2, 3, 4, 5));
}

TEST(Zone, SurfaceOfLinesAloneIsALineZone) {
  vtkNew<vtkPolyData> surface;
  surface->SetPoints(Grid(6, {})->GetPoints());
  vtkNew<vtkCellArray> vertices, lines;
  vertices->InsertNextCell({5});
  lines->InsertNextCell({0, 1, 2});
  lines->InsertNextCell({3, 4});
  surface->SetVerts(vertices);
  surface->SetLines(lines);
  Zone zone("z", surface, true);
  EXPECT_EQ(zone.Type(), ZoneType_FELineSeg);
  EXPECT_EQ(zone.CellCount(), 1);
  EXPECT_EQ(zone.BlockCell(0), 2);
  std::vector<std::int64_t> nodes;
  zone.CellNodes(0, nodes);
  EXPECT_THAT(nodes, ElementsAre(3, 4));
}

struct OrderedRow {
  std::array<int, 3> dimensions;
  LgIndex_t cells;
  std::vector<std::int64_t> lastCell;
};

class OrderedZone : public ::testing::TestWithParam<OrderedRow> {};

TEST_P(OrderedZone, HasTheCellsAndCornersOfItsDimensions) {
  const auto& [dimensions, cells, lastCell] = GetParam();
  vtkNew<vtkImageData> image;
  image->SetDimensions(dimensions.data());
  Zone zone("z", image, true);
  EXPECT_EQ(zone.Type(), ZoneType_Ordered);
  EXPECT_THAT(zone.IJK(), ElementsAre(dimensions[0], dimensions[1], dimensions[2]));
  EXPECT_EQ(zone.CellCount(), cells);
  std::vector<std::int64_t> nodes;
  zone.CellNodes(cells - 1, nodes);
  EXPECT_EQ(nodes, lastCell);
}

INSTANTIATE_TEST_SUITE_P(Dimensions, OrderedZone,
                         ::testing::Values(OrderedRow{{1, 1, 1}, 1, {0}},
                                           OrderedRow{{3, 1, 1}, 2, {1, 2}},
                                           OrderedRow{{1, 3, 1}, 2, {1, 2}},
                                           OrderedRow{{1, 1, 3}, 2, {1, 2}},
                                           OrderedRow{{3, 2, 1}, 2, {1, 2, 4, 5}},
                                           OrderedRow{{1, 2, 3}, 2, {2, 3, 4, 5}},
                                           OrderedRow{{2, 2, 2}, 1, {0, 1, 2, 3, 4, 5, 6, 7}}));

TEST(Zone, ComputedCoordinatesAreVtksAndCannotBeWritten) {
  vtkNew<vtkImageData> image;
  image->SetExtent(2, 4, -1, 1, 0, 3);
  image->SetOrigin(0.1, 0.2, 0.3);
  image->SetSpacing(0.3, 0.7, 1.1);
  image->SetDirectionMatrix(0, 1, 0, -1, 0, 0, 0, 0, 1);
  vtkNew<vtkRectilinearGrid> grid;
  grid->SetDimensions(2, 3, 2);
  for (int axis = 0; axis < 3; ++axis) {
    vtkNew<vtkIntArray> ticks;
    for (int n = 0; n < 3 - (axis != 1); ++n) ticks->InsertNextValue(n * n + axis);
    axis == 0   ? grid->SetXCoordinates(ticks)
    : axis == 1 ? grid->SetYCoordinates(ticks)
                : grid->SetZCoordinates(ticks);
  }
  DataSet data("t", {{"image", image}, {"grid", grid}}, nullptr);
  for (LgIndex_t zone = 1; zone <= 2; ++zone) {
    for (LgIndex_t axis = 1; axis <= 3; ++axis) {
      const QelFieldData* ref = data.Readable(zone, axis);
      EXPECT_EQ(data.Writable(zone, axis), nullptr);
      for (LgIndex_t node = 0; node < ref->count; ++node) {
        EXPECT_DOUBLE_EQ(ref->get(ref, node), data.FindZone(zone)->Position(node)[axis - 1]);
      }
    }
  }
  EXPECT_STREQ(data.FindZone(1)->ComputedCoordinatesKind(), "image");
  EXPECT_STREQ(data.FindZone(2)->ComputedCoordinatesKind(), "rectilinear grid");
}

TEST(Zone, MarkedCellsAreCountedAndStayCells) {
  const auto grid = Bricks(3, 1, 1);
  vtkNew<vtkUnsignedCharArray> marks;
  marks->SetName(vtkDataSetAttributes::GhostArrayName());
  for (const int mark : {0, 1, 32}) marks->InsertNextValue(static_cast<unsigned char>(mark));
  grid->GetCellData()->AddArray(marks);
  DataSet data("t", {{"z", grid}}, nullptr);
  EXPECT_EQ(data.FindZone(1)->CellCount(), 3);
  EXPECT_EQ(data.FindZone(1)->Carried().ghostCells, 1);
  EXPECT_EQ(data.FindZone(1)->Carried().hiddenCells, 1);
  EXPECT_EQ(data.VariableCount(), 3);
}

TEST(Zone, MoreNodesThanAnIndexCountsAreRefused) {
  vtkNew<vtkImageData> image;
  image->SetDimensions(70000, 70000, 1);
  EXPECT_THROW(Zone("z", image, true), qelhost::DataError);
}

vtkSmartPointer<vtkImageData> Image(int iMax, int jMax, int kMax) {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetExtent(0, iMax - 1, 0, jMax - 1, 0, kMax - 1);
  return image;
}

TEST(Zone, BlockWhoseSizeWrapsAroundIsRefused) {
  // Products of these do not fit: some come out as a few nodes and cells.
  for (const auto& [i, j, k] : {std::array{2147483647, 2147483647, 4},
                                {65536, 65536, 65536},
                                {2097152, 2097152, 2097153},
                                {46341, 46341, 1}}) {
    EXPECT_THROW(Zone("z", Image(i, j, k), true), qelhost::DataError) << i << ' ' << j << ' ' << k;
  }
}

TEST(Zone, BlockWithADirectionWithoutNodesIsRefused) {
  EXPECT_THROW(Zone("z", Image(-2, 6, 6), true), qelhost::DataError);
  EXPECT_THROW(Zone("z", Image(3, 0, 3), true), qelhost::DataError);
}

}  // namespace
