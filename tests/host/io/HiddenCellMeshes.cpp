#include "HiddenCellMeshes.h"

#include "LatticeCells.h"

#include <vtkCell.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <cstddef>
#include <random>
#include <vector>

namespace hiddencells {

namespace {

using latticecells::Corners;
using latticecells::InsertBrick;
using latticecells::InsertPolyhedron;
using latticecells::InsertWedges;
using latticecells::Lattice;

constexpr int kNodes[3] = {5, 4, 4};
constexpr Lattice kLattice = {kNodes[0], kNodes[1], kNodes[2]};

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

vtkIdType Node(int i, int j, int k) { return kLattice.Node(i, j, k); }

/// A grid of what insert(grid, corners) makes of each box.
template <class Insert>
vtkSmartPointer<vtkUnstructuredGrid> GridOf(const Insert& insert) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(BoxPoints(kNodes[2]));
  kLattice.ForEachBox([&](int i, int j, int k) { insert(grid, kLattice.Box(i, j, k)); });
  return grid;
}

}  // namespace

vtkSmartPointer<vtkDataSet> Bricks() { return GridOf(InsertBrick); }

vtkSmartPointer<vtkDataSet> MixedCells() {
  int box = 0;
  const auto grid = GridOf([&box](vtkUnstructuredGrid* mixed, const Corners& c) {
    if (box++ % 2 == 0) {
      InsertBrick(mixed, c);
      mixed->InsertNextCell(VTK_QUAD, 4, c.data());
      return;
    }
    InsertWedges(mixed, c);
    mixed->InsertNextCell(VTK_LINE, 2, c.data());
    mixed->InsertNextCell(VTK_VERTEX, 1, c.data());
  });
  // A node that no cell has.
  grid->GetPoints()->InsertNextPoint(100, 0, 0);
  return grid;
}

vtkSmartPointer<vtkDataSet> Polyhedra() { return GridOf(InsertPolyhedron); }

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
