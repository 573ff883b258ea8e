// Small meshes for the tests of the data room.
#pragma once

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
  const auto node = [=](int i, int j, int k) {
    return static_cast<vtkIdType>(i + (nI + 1) * (j + (nJ + 1) * k));
  };
  for (int k = 0; k < nK; ++k) {
    for (int j = 0; j < nJ; ++j) {
      for (int i = 0; i < nI; ++i) {
        cells.push_back({VTK_HEXAHEDRON,
                         {node(i, j, k), node(i + 1, j, k), node(i + 1, j + 1, k),
                          node(i, j + 1, k), node(i, j, k + 1), node(i + 1, j, k + 1),
                          node(i + 1, j + 1, k + 1), node(i, j + 1, k + 1)}});
      }
    }
  }
  return Grid((nI + 1) * (nJ + 1) * (nK + 1), cells);
}

}  // namespace meshes
