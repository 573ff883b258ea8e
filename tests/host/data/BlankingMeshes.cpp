#include "BlankingMeshes.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>

namespace blankingtesting {

using qelhost::BlockEntry;
using qelhost::DataSet;
using qelhost::DataSetPtr;

int Pick(Random& random, int first, int last) {
  return std::uniform_int_distribution<int>(first, last)(random);
}

namespace {

vtkSmartPointer<vtkPoints> SomePoints(Random& random, vtkIdType count) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  for (vtkIdType n = 0; n < count; ++n) {
    points->InsertNextPoint(Pick(random, 0, 3), Pick(random, 0, 3), Pick(random, 0, 3));
  }
  return points;
}

constexpr int kPointCount = 40;

std::vector<vtkIdType> SomeNodes(Random& random, int count) {
  // The last ones stay without a cell.
  std::vector<vtkIdType> nodes(kPointCount - 3);
  for (std::size_t n = 0; n < nodes.size(); ++n) nodes[n] = static_cast<vtkIdType>(n);
  std::shuffle(nodes.begin(), nodes.end(), random);
  nodes.resize(static_cast<std::size_t>(count));
  return nodes;
}

struct CellKind {
  int type;
  int nodeCount;
};

void AddPolyhedron(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& n) {
  vtkNew<vtkIdList> stream;
  stream->InsertNextId(5);
  for (const std::vector<int>& face :
       std::vector<std::vector<int>>{{0, 3, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}}) {
    stream->InsertNextId(static_cast<vtkIdType>(face.size()));
    for (const int corner : face) stream->InsertNextId(n[static_cast<std::size_t>(corner)]);
  }
  grid->InsertNextCell(VTK_POLYHEDRON, stream);
}

vtkSmartPointer<vtkDataSet> Mixed(Random& random, const std::vector<CellKind>& kinds) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(SomePoints(random, kPointCount));
  for (int cell = 0; cell < 70; ++cell) {
    const CellKind& kind =
        kinds[cell < static_cast<int>(kinds.size())
                  ? static_cast<std::size_t>(cell)
                  : static_cast<std::size_t>(Pick(random, 0, static_cast<int>(kinds.size()) - 1))];
    const std::vector<vtkIdType> nodes = SomeNodes(random, kind.nodeCount);
    if (kind.type == VTK_POLYHEDRON) {
      AddPolyhedron(grid, nodes);
    } else {
      grid->InsertNextCell(kind.type, kind.nodeCount, nodes.data());
    }
  }
  return grid;
}

vtkSmartPointer<vtkDataSet> Ordered(Random& random, int nI, int nJ, int nK) {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(nI, nJ, nK);
  grid->SetPoints(SomePoints(random, vtkIdType{nI} * nJ * nK));
  return grid;
}

vtkSmartPointer<vtkDataSet> SomeImage(Random& /*random*/) {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(4, 3, 3);
  return image;
}

vtkSmartPointer<vtkDataSet> Surface(Random& random) {
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  surface->SetPoints(SomePoints(random, kPointCount));
  const auto cells = [&random](const std::vector<int>& sizes) {
    auto array = vtkSmartPointer<vtkCellArray>::New();
    for (const int size : sizes) {
      const std::vector<vtkIdType> nodes = SomeNodes(random, size);
      array->InsertNextCell(size, nodes.data());
    }
    return array;
  };
  surface->SetVerts(cells({1, 1}));
  surface->SetLines(cells({2, 2, 3}));
  surface->SetPolys(cells({3, 4, 5, 6, 3, 4, 5, 3, 3}));
  return surface;
}

template <class Array>
void AddValues(Random& random, vtkDataSetAttributes* to, const char* name, vtkIdType count) {
  vtkNew<Array> array;
  array->SetName(name);
  for (vtkIdType n = 0; n < count; ++n) {
    array->InsertNextValue(Pick(random, 0, 9) == 0 ? kNan : Pick(random, 0, 3));
  }
  to->AddArray(array);
}

}  // namespace

const std::vector<MeshKind>& MeshKinds() {
  static const std::vector<MeshKind> kMeshKinds = {
      {"OrderedLine", ZoneType_Ordered, [](Random& r) { return Ordered(r, 9, 1, 1); }},
      {"OrderedPlane", ZoneType_Ordered, [](Random& r) { return Ordered(r, 5, 4, 1); }},
      {"OrderedUprightPlane", ZoneType_Ordered, [](Random& r) { return Ordered(r, 1, 4, 5); }},
      {"OrderedVolume", ZoneType_Ordered, [](Random& r) { return Ordered(r, 4, 3, 3); }},
      {"Image", ZoneType_Ordered, SomeImage},
      {"Lines", ZoneType_FELineSeg,
       [](Random& r) {
         return Mixed(r, {{VTK_LINE, 2}});
       }},
      {"Triangles", ZoneType_FETriangle,
       [](Random& r) {
         return Mixed(r, {{VTK_TRIANGLE, 3}});
       }},
      {"Quads", ZoneType_FEQuad,
       [](Random& r) {
         return Mixed(r, {{VTK_QUAD, 4}, {VTK_TRIANGLE, 3}, {VTK_PIXEL, 4}});
       }},
      {"Tets", ZoneType_FETetra,
       [](Random& r) {
         return Mixed(r, {{VTK_TETRA, 4}});
       }},
      {"Bricks", ZoneType_FEBrick,
       [](Random& r) {
         return Mixed(r, {{VTK_HEXAHEDRON, 8},
                          {VTK_WEDGE, 6},
                          {VTK_PYRAMID, 5},
                          {VTK_TETRA, 4},
                          {VTK_VOXEL, 8}});
       }},
      {"BricksAmongLowerCells", ZoneType_FEBrick,
       [](Random& r) {
         return Mixed(
             r,
             {{VTK_HEXAHEDRON, 8}, {VTK_QUAD, 4}, {VTK_WEDGE, 6}, {VTK_LINE, 2}, {VTK_VERTEX, 1}});
       }},
      {"Polygons", ZoneType_FEPolygon,
       [](Random& r) {
         return Mixed(r, {{VTK_POLYGON, 5}, {VTK_POLYGON, 7}, {VTK_TRIANGLE, 3}, {VTK_QUAD, 4}});
       }},
      {"Surface", ZoneType_FEPolygon, Surface},
      {"Polyhedra", ZoneType_FEPolyhedron,
       [](Random& r) {
         return Mixed(r, {{VTK_POLYHEDRON, 5}, {VTK_HEXAHEDRON, 8}, {VTK_TETRA, 4}});
       }},
  };
  return kMeshKinds;
}

void AddVariables(Random& random, vtkDataSet* block) {
  AddValues<vtkDoubleArray>(random, block->GetPointData(), "p", block->GetNumberOfPoints());
  AddValues<vtkFloatArray>(random, block->GetPointData(), "q", block->GetNumberOfPoints());
  AddValues<vtkDoubleArray>(random, block->GetCellData(), "c", block->GetNumberOfCells());
  AddValues<vtkFloatArray>(random, block->GetCellData(), "d", block->GetNumberOfCells());
}

DataSetPtr WithPassiveVariables(Random& random, vtkDataSet* block) {
  const vtkSmartPointer<vtkDataSet> other = Ordered(random, 2, 2, 2);
  AddValues<vtkDoubleArray>(random, other->GetPointData(), "onlyNodes", 8);
  AddValues<vtkDoubleArray>(random, other->GetCellData(), "onlyCells", 1);
  return std::make_shared<DataSet>("test", std::vector<BlockEntry>{{"a", block}, {"b", other}},
                                   nullptr);
}

}  // namespace blankingtesting
