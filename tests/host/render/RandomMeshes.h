// Meshes of every kind of zone, and random sets of their cells.
#pragma once

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkSmartPointer.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "ValueBlanking.h"

namespace rendertests {

using Random = std::mt19937;

/// A point of a grid of unit steps, moved by up to 0.2 each way, the same for the same indices.
inline void AddGridPoints(vtkPoints* points, int nI, int nJ, int nK) {
  Random random(7);
  std::uniform_real_distribution<double> shift(-0.2, 0.2);
  for (int k = 0; k <= nK; ++k) {
    for (int j = 0; j <= nJ; ++j) {
      for (int i = 0; i <= nI; ++i) {
        const double z = nK == 0 ? 0.0 : k + shift(random);
        points->InsertNextPoint(i + shift(random), j + shift(random), z);
      }
    }
  }
}

/// The corners of brick (i, j, k) of such a grid.
inline std::vector<vtkIdType> BrickCorners(int nI, int nJ, int i, int j, int k) {
  const auto node = [=](int a, int b, int c) {
    return static_cast<vtkIdType>(a + (nI + 1) * (b + (nJ + 1) * c));
  };
  return {
      node(i, j, k),     node(i + 1, j, k),     node(i + 1, j + 1, k),     node(i, j + 1, k),
      node(i, j, k + 1), node(i + 1, j, k + 1), node(i + 1, j + 1, k + 1), node(i, j + 1, k + 1)};
}

using AddBrick = std::function<void(vtkUnstructuredGrid*, const std::vector<vtkIdType>&, int)>;

inline void Insert(vtkUnstructuredGrid* grid, int type, const std::vector<vtkIdType>& c,
                   const std::vector<int>& corners) {
  std::vector<vtkIdType> nodes;
  for (const int corner : corners) nodes.push_back(c[static_cast<std::size_t>(corner)]);
  grid->InsertNextCell(type, static_cast<vtkIdType>(nodes.size()), nodes.data());
}

inline vtkSmartPointer<vtkUnstructuredGrid> Volume(int n, const AddBrick& add) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  AddGridPoints(points, n, n, n);
  grid->SetPoints(points);
  for (int k = 0; k < n; ++k) {
    for (int j = 0; j < n; ++j) {
      for (int i = 0; i < n; ++i) add(grid, BrickCorners(n, n, i, j, k), i + j + k);
    }
  }
  return grid;
}

inline void AddAsBrick(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int) {
  Insert(grid, VTK_HEXAHEDRON, c, {0, 1, 2, 3, 4, 5, 6, 7});
}

/// Five tetrahedra, the other way around in every second brick so that their faces meet.
inline void AddAsTetrahedra(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int sum) {
  static const std::vector<std::vector<int>> kEven = {
      {0, 1, 2, 5}, {0, 2, 3, 7}, {0, 5, 7, 4}, {2, 7, 5, 6}, {0, 2, 7, 5}};
  static const std::vector<std::vector<int>> kOdd = {
      {1, 0, 4, 3}, {1, 2, 3, 6}, {1, 4, 5, 6}, {3, 4, 6, 7}, {1, 3, 4, 6}};
  for (const auto& corners : sum % 2 == 0 ? kEven : kOdd) {
    Insert(grid, VTK_TETRA, c, corners);
  }
}

inline void AddAsWedges(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int) {
  Insert(grid, VTK_WEDGE, c, {0, 1, 2, 4, 5, 6});
  Insert(grid, VTK_WEDGE, c, {0, 2, 3, 4, 6, 7});
}

/// Six pyramids around the middle of the brick.
inline void AddAsPyramids(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int) {
  double middle[3] = {0, 0, 0};
  for (const vtkIdType node : c) {
    for (int axis = 0; axis < 3; ++axis) middle[axis] += grid->GetPoint(node)[axis] / 8.0;
  }
  std::vector<vtkIdType> all = c;
  all.push_back(grid->GetPoints()->InsertNextPoint(middle));
  static const std::vector<std::vector<int>> kSides = {{0, 4, 7, 3, 8}, {1, 2, 6, 5, 8},
                                                       {0, 1, 5, 4, 8}, {3, 7, 6, 2, 8},
                                                       {0, 3, 2, 1, 8}, {4, 5, 6, 7, 8}};
  for (const auto& corners : kSides) Insert(grid, VTK_PYRAMID, all, corners);
}

/// Bricks, voxels and wedges layer by layer; their quadrilaterals meet.
inline void AddMixed(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int sum) {
  if (sum % 3 == 0) {
    AddAsBrick(grid, c, sum);
  } else if (sum % 3 == 1) {
    AddAsPyramids(grid, c, sum);
  } else {
    Insert(grid, VTK_VOXEL, c, {0, 1, 3, 2, 4, 5, 7, 6});
  }
}

inline void AddAsPolyhedron(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int sum) {
  if (sum % 3 == 0) {
    AddAsBrick(grid, c, sum);
    return;
  }
  static constexpr int kFaces[6][4] = {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4},
                                       {3, 7, 6, 2}, {0, 3, 2, 1}, {4, 5, 6, 7}};
  std::vector<vtkIdType> faces;
  for (const auto& face : kFaces) {
    faces.push_back(4);
    for (const int corner : face) faces.push_back(c[static_cast<std::size_t>(corner)]);
  }
  grid->InsertNextCell(VTK_POLYHEDRON, 8, c.data(), 6, faces.data());
}

/// Squares of a sheet: each as add makes of its four corners.
inline vtkSmartPointer<vtkUnstructuredGrid> Sheet(int n, const AddBrick& add) {
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  vtkNew<vtkPoints> points;
  AddGridPoints(points, n, n, 0);
  grid->SetPoints(points);
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) {
      std::vector<vtkIdType> corners = BrickCorners(n, n, i, j, 0);
      corners.resize(4);
      add(grid, corners, i + j);
    }
  }
  return grid;
}

inline void AddAsQuad(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int) {
  Insert(grid, VTK_QUAD, c, {0, 1, 2, 3});
}
inline void AddAsTriangles(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int) {
  Insert(grid, VTK_TRIANGLE, c, {0, 1, 2});
  Insert(grid, VTK_TRIANGLE, c, {0, 2, 3});
}
inline void AddMixedFlat(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int sum) {
  if (sum % 3 == 0) {
    AddAsTriangles(grid, c, sum);
  } else if (sum % 3 == 1) {
    AddAsQuad(grid, c, sum);
  } else {
    Insert(grid, VTK_PIXEL, c, {0, 1, 3, 2});
  }
}
inline void AddAsPolygon(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int sum) {
  if (sum % 4 == 0) {
    Insert(grid, VTK_PIXEL, c, {0, 1, 3, 2});
  } else {
    Insert(grid, VTK_POLYGON, c, {0, 1, 2, 3});
  }
}
inline void AddAsLines(vtkUnstructuredGrid* grid, const std::vector<vtkIdType>& c, int) {
  Insert(grid, VTK_LINE, c, {0, 1});
  Insert(grid, VTK_LINE, c, {0, 3});
}

inline vtkSmartPointer<vtkStructuredGrid> Structured(int nI, int nJ, int nK) {
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  vtkNew<vtkPoints> points;
  AddGridPoints(points, nI, nJ, nK);
  grid->SetDimensions(nI + 1, nJ + 1, nK + 1);
  grid->SetPoints(points);
  return grid;
}

inline vtkSmartPointer<vtkImageData> Image(int nI, int nJ, int nK) {
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(nI + 1, nJ + 1, nK + 1);
  return image;
}

struct NamedMesh {
  std::string name;
  vtkSmartPointer<vtkDataSet> mesh;
};

inline std::vector<NamedMesh> AllMeshes(int n) {
  return {{"bricks", Volume(n, AddAsBrick)},
          {"tetrahedra", Volume(n, AddAsTetrahedra)},
          {"wedges", Volume(n, AddAsWedges)},
          {"pyramids", Volume(n, AddAsPyramids)},
          {"mixed solids", Volume(n, AddMixed)},
          {"polyhedra", Volume(n, AddAsPolyhedron)},
          {"quadrilaterals", Sheet(n, AddAsQuad)},
          {"triangles", Sheet(n, AddAsTriangles)},
          {"mixed faces", Sheet(n, AddMixedFlat)},
          {"polygons", Sheet(n, AddAsPolygon)},
          {"lines", Sheet(n, AddAsLines)},
          {"structured volume", Structured(n, n + 1, n + 2)},
          {"structured sheet", Structured(n, n + 2, 0)},
          {"image", Image(n + 2, n, n + 1)},
          {"image on its side", Image(0, n, n + 1)}};
}

/// Each item with the chance given.
inline qelhost::ItemBits RandomBits(std::int64_t count, double chance, Random& random) {
  qelhost::ItemBits bits(count);
  std::bernoulli_distribution isIn(chance);
  for (std::int64_t item = 0; item < count; ++item) {
    if (isIn(random)) bits.Add(item);
  }
  return bits;
}

}  // namespace rendertests
