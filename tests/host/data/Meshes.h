// Small meshes for the tests of the data room.
#pragma once

#include "LatticeCells.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

#include <vector>

namespace meshes {

struct Cell {
  int type;
  std::vector<vtkIdType> nodes;
};

inline vtkSmartPointer<vtkUnstructuredGrid> Grid(int nodeCount, const std::vector<Cell>& cells) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  for (int n = 0; n < nodeCount; ++n) points->InsertNextPoint(n, n * n, n % 3);
  grid->SetPoints(points);
  for (const Cell& cell : cells) {
    grid->InsertNextCell(cell.type, static_cast<vtkIdType>(cell.nodes.size()), cell.nodes.data());
  }
  return grid;
}

/// nI x nJ x nK bricks.
inline vtkSmartPointer<vtkUnstructuredGrid> Bricks(int nI, int nJ, int nK) {
  std::vector<Cell> cells;
  const latticecells::Lattice lattice = {nI + 1, nJ + 1, nK + 1};
  lattice.ForEachBox([&](int i, int j, int k) {
    cells.push_back({VTK_HEXAHEDRON, lattice.Box(i, j, k)});
  });
  return Grid((nI + 1) * (nJ + 1) * (nK + 1), cells);
}

}  // namespace meshes
