// Small data of every kind. Nodes lie at whole numbers, 0 to 4 in X, 0 to 3 in Y, 0 to 2 in Z.
#pragma once

#include "DataFiles.h"

namespace clitest {

/// Every mesh but the bare ones carries, at nodes: T (double), U (float, 3 components), count
/// (int64); at cells: T (float), S (double, 9 components), id (int32), flag (uint8), and one array
/// of every other integer type; as field data: a string and two numbers.
void AddArrays(vtkDataObject* data);

DataPtr MixedVolume();  ///< bricks, tetrahedra, wedges, a pyramid; quadrilaterals and lines between
DataPtr Bricks();       ///< bricks alone
DataPtr Voxels();       ///< voxels alone
DataPtr Polyhedra();    ///< polyhedra and one brick
DataPtr QuadraticTets();  ///< tetrahedra with nodes on their edges
DataPtr GhostBricks();    ///< bricks, some marked as another piece's
DataPtr FlatPixels();     ///< an unstructured grid of pixels at Z = 0
DataPtr FlatTriangles();  ///< polygonal data, triangles alone
DataPtr
FlatMixed();  ///< polygonal data of triangles and quadrilaterals, a line and a vertex beside
DataPtr FlatPolygons();  ///< polygonal data with a pentagon and hexagons
DataPtr LineSegments();  ///< polygonal data of two-node lines
DataPtr Curvilinear(int nx, int ny, int nz);
DataPtr Rectilinear();
DataPtr Image();
DataPtr Blocks();       ///< bricks, an image, an empty grid, no block at all, triangles; nested
DataPtr EmptyGrid();    ///< no nodes, no cells
DataPtr LargeVolume();  ///< an image that takes a while to write

}  // namespace clitest
