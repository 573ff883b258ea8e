// Boxes between the nodes of a lattice, for meshes that tests make by VTK alone.
#pragma once

#include <vtkCellType.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

#include <cstddef>
#include <vector>

namespace latticecells {

using Corners = std::vector<vtkIdType>;

/// So many nodes along X, Y and Z, numbered along X first.
struct Lattice {
  int nX;
  int nY;
  int nZ;

  vtkIdType Node(int i, int j, int k) const { return i + vtkIdType{nX} * (j + vtkIdType{nY} * k); }
  /// The corners of a box as VTK counts them: around the bottom, then around the top.
  Corners Box(int i, int j, int k) const {
    return {
        Node(i, j, k),     Node(i + 1, j, k),     Node(i + 1, j + 1, k),     Node(i, j + 1, k),
        Node(i, j, k + 1), Node(i + 1, j, k + 1), Node(i + 1, j + 1, k + 1), Node(i, j + 1, k + 1)};
  }
  /// use(i, j, k) for each box.
  template <class Use>
  void ForEachBox(const Use& use) const {
    for (int k = 0; k + 1 < nZ; ++k) {
      for (int j = 0; j + 1 < nY; ++j) {
        for (int i = 0; i + 1 < nX; ++i) use(i, j, k);
      }
    }
  }
  /// The nodes at whole numbers, as floats.
  vtkSmartPointer<vtkPoints> UnitPoints() const {
    auto points = vtkSmartPointer<vtkPoints>::New();
    points->SetDataTypeToFloat();
    for (int k = 0; k < nZ; ++k) {
      for (int j = 0; j < nY; ++j) {
        for (int i = 0; i < nX; ++i) points->InsertNextPoint(i, j, k);
      }
    }
    return points;
  }
};

inline void InsertBrick(vtkUnstructuredGrid* grid, const Corners& c) {
  grid->InsertNextCell(VTK_HEXAHEDRON, 8, c.data());
}

/// A box as two wedges.
inline void InsertWedges(vtkUnstructuredGrid* grid, const Corners& c) {
  const vtkIdType first[6] = {c[0], c[1], c[2], c[4], c[5], c[6]};
  const vtkIdType second[6] = {c[0], c[2], c[3], c[4], c[6], c[7]};
  grid->InsertNextCell(VTK_WEDGE, 6, first);
  grid->InsertNextCell(VTK_WEDGE, 6, second);
}

/// A box as a polyhedron of six faces.
inline void InsertPolyhedron(vtkUnstructuredGrid* grid, const Corners& c) {
  static constexpr int kFaces[6][4] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                       {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
  vtkNew<vtkIdList> stream;
  stream->InsertNextId(6);
  for (const auto& face : kFaces) {
    stream->InsertNextId(4);
    for (const int corner : face) stream->InsertNextId(c[static_cast<std::size_t>(corner)]);
  }
  grid->InsertNextCell(VTK_POLYHEDRON, stream);
}

}  // namespace latticecells
