#include "HiddenCellMeshes.h"

#include <vtkCell.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkIdList.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <cstddef>
#include <functional>
#include <random>
#include <vector>

namespace hiddencells {

namespace {

constexpr int kNodes[3] = {5, 4, 4};

double At(int axis, int n) { return (axis + 1) / 3.0 + n * (axis + 7) / 10.0; }

/// Where a float holds the positions too.
double RoundAt(int axis, int n) { return axis + n * (axis + 7) / 8.0; }

vtkSmartPointer<vtkPoints> BoxPoints(int kMax) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetDataTypeToDouble();
  for (int k = 0; k < kMax; ++k) {
    for (int j = 0; j < kNodes[1]; ++j) {
      for (int i = 0; i < kNodes[0]; ++i) {
        points->InsertNextPoint(At(0, i), At(1, j), At(2, k));
      }
    }
  }
  return points;
}

vtkIdType Node(int i, int j, int k) { return i + kNodes[0] * (j + kNodes[1] * k); }

using Corners = std::array<vtkIdType, 8>;

void ForEachBox(const std::function<void(const Corners&)>& use) {
  for (int k = 0; k + 1 < kNodes[2]; ++k) {
    for (int j = 0; j + 1 < kNodes[1]; ++j) {
      for (int i = 0; i + 1 < kNodes[0]; ++i) {
        use({Node(i, j, k), Node(i + 1, j, k), Node(i + 1, j + 1, k), Node(i, j + 1, k),
             Node(i, j, k + 1), Node(i + 1, j, k + 1), Node(i + 1, j + 1, k + 1),
             Node(i, j + 1, k + 1)});
      }
    }
  }
}

}  // namespace

vtkSmartPointer<vtkDataSet> Bricks() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(BoxPoints(kNodes[2]));
  ForEachBox([&](const Corners& c) { grid->InsertNextCell(VTK_HEXAHEDRON, 8, c.data()); });
  return grid;
}

vtkSmartPointer<vtkDataSet> MixedCells() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(BoxPoints(kNodes[2]));
  // A node that no cell has.
  grid->GetPoints()->InsertNextPoint(100, 0, 0);
  int box = 0;
  ForEachBox([&](const Corners& c) {
    if (box++ % 2 == 0) {
      grid->InsertNextCell(VTK_HEXAHEDRON, 8, c.data());
      grid->InsertNextCell(VTK_QUAD, 4, c.data());
      return;
    }
    const vtkIdType first[6] = {c[0], c[1], c[2], c[4], c[5], c[6]};
    const vtkIdType second[6] = {c[0], c[2], c[3], c[4], c[6], c[7]};
    grid->InsertNextCell(VTK_WEDGE, 6, first);
    grid->InsertNextCell(VTK_WEDGE, 6, second);
    grid->InsertNextCell(VTK_LINE, 2, c.data());
    grid->InsertNextCell(VTK_VERTEX, 1, c.data());
  });
  return grid;
}

vtkSmartPointer<vtkDataSet> Polyhedra() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(BoxPoints(kNodes[2]));
  static constexpr int kFaces[6][4] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                       {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
  ForEachBox([&](const Corners& c) {
    vtkNew<vtkIdList> stream;
    stream->InsertNextId(6);
    for (const auto& face : kFaces) {
      stream->InsertNextId(4);
      for (const int corner : face) stream->InsertNextId(c[static_cast<std::size_t>(corner)]);
    }
    grid->InsertNextCell(VTK_POLYHEDRON, stream);
  });
  return grid;
}
namespace {

/// Cells in the plane of the lowest nodes: a quadrilateral, or two triangles, or a pentagon with a
/// repeatedly used row of nodes.
template <class Use>
void ForEachFlatCell(const Use& use) {
  for (int j = 0; j + 1 < kNodes[1]; ++j) {
    use({Node(0, j, 0), Node(1, j, 0), Node(1, j + 1, 0), Node(0, j + 1, 0)});
    use({Node(1, j, 0), Node(2, j, 0), Node(2, j + 1, 0)});
    use({Node(1, j, 0), Node(2, j + 1, 0), Node(1, j + 1, 0)});
    use({Node(2, j, 0), Node(3, j, 0), Node(4, j, 0), Node(4, j + 1, 0), Node(2, j + 1, 0)});
  }
}

using NodeList = std::vector<vtkIdType>;

}  // namespace

vtkSmartPointer<vtkDataSet> Polygons() {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(BoxPoints(1));
  ForEachFlatCell([&](const NodeList& n) {
    grid->InsertNextCell(VTK_POLYGON, static_cast<vtkIdType>(n.size()), n.data());
  });
  return grid;
}

vtkSmartPointer<vtkDataSet> Surface() {
  auto surface = vtkSmartPointer<vtkPolyData>::New();
  surface->SetPoints(BoxPoints(1));
  const auto cells = [](const std::vector<NodeList>& lists) {
    auto array = vtkSmartPointer<vtkCellArray>::New();
    for (const NodeList& list : lists) {
      array->InsertNextCell(static_cast<vtkIdType>(list.size()), list.data());
    }
    return array;
  };
  surface->SetVerts(cells({{0}, {19}}));
  surface->SetLines(cells({{0, 1}, {1, 2, 3}}));
  std::vector<NodeList> polygons;
  ForEachFlatCell([&](const NodeList& n) { polygons.push_back(n); });
  surface->SetPolys(cells(polygons));
  surface->SetStrips(cells({{15, 16, 10, 11}}));
  return surface;
}

vtkSmartPointer<vtkDataSet> Structured() {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(kNodes[0], kNodes[1], kNodes[2]);
  grid->SetPoints(BoxPoints(kNodes[2]));
  return grid;
}

vtkSmartPointer<vtkDataSet> Rectilinear() {
  auto grid = vtkSmartPointer<vtkRectilinearGrid>::New();
  grid->SetDimensions(kNodes[0], kNodes[1], kNodes[2]);
  std::array<vtkSmartPointer<vtkDoubleArray>, 3> axes;
  for (int axis = 0; axis < 3; ++axis) {
    axes[axis] = vtkSmartPointer<vtkDoubleArray>::New();
    axes[axis]->SetName(axis == 0 ? "x" : axis == 1 ? "y" : "z");
    for (int n = 0; n < kNodes[axis]; ++n) axes[axis]->InsertNextValue(RoundAt(axis, n));
  }
  grid->SetXCoordinates(axes[0]);
  grid->SetYCoordinates(axes[1]);
  grid->SetZCoordinates(axes[2]);
  return grid;
}

vtkSmartPointer<vtkDataSet> ImageOfBoxes() {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(kNodes[0], kNodes[1], kNodes[2]);
  image->SetSpacing(0.125, 0.25, 0.75);
  image->SetOrigin(1.5, 2, 3);
  return image;
}

void AddHiding(vtkDataSet* block, unsigned seed) {
  std::mt19937 random(seed);
  vtkNew<vtkUnsignedCharArray> hiding;
  hiding->SetName(kHiding);
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    const bool isPickable = block->GetCell(cell)->GetCellDimension() > 1 &&
                            block->GetCellType(cell) != VTK_TRIANGLE_STRIP;
    const bool isHidden = isPickable && random() % 3 == 0;
    hiding->InsertNextValue(isHidden ? 1 : 0);
  }
  block->GetCellData()->AddArray(hiding);
}

void AddGhosts(vtkDataSet* block, bool isStructured) {
  vtkNew<vtkUnsignedCharArray> ghosts;
  ghosts->SetName(vtkDataSetAttributes::GhostArrayName());
  for (vtkIdType cell = 0; cell < block->GetNumberOfCells(); ++cell) {
    ghosts->InsertNextValue(cell % 5 == 0                    ? vtkDataSetAttributes::DUPLICATECELL
                            : !isStructured && cell % 5 == 1 ? vtkDataSetAttributes::REFINEDCELL
                            : !isStructured && cell == 2     ? vtkDataSetAttributes::HIDDENCELL
                                                             : 0);
  }
  block->GetCellData()->AddArray(ghosts);
}

bool IsHidden(vtkDataSet* block, vtkIdType cell) {
  vtkDataArray* const hiding = block->GetCellData()->GetArray(kHiding);
  return hiding != nullptr && hiding->GetComponent(cell, 0) == 1.0;
}

Position PositionOf(vtkDataSet* mesh, vtkIdType point) {
  Position position;
  mesh->GetPoint(point, position.data());
  return position;
}

}  // namespace hiddencells
