// The shapes of VTK's cells as the zone types see them: which corner is which point of the cell,
// and the faces that bound it.
#pragma once

#include <array>

#include "qelvane/Types.h"

namespace qelhost {

enum class Shape {
  Carried,  ///< no cell of any zone: vertices, polylines, strips, empty cells
  Line,
  Triangle,
  Quad,
  Pixel,
  Polygon,
  Tetra,
  Pyramid,
  Wedge,
  Brick,
  Voxel,
  PentaPrism,
  HexaPrism,
  Polyhedron
};

/// Higher-order cells have the shape of their corners.
Shape ShapeOfVtkCell(int vtkCellType);
/// 0 for Carried, else 1 to 3.
int DimensionOf(Shape shape);
/// Corners of a shape with a fixed number of them; 0 for polygons, polyhedra and Carried.
int CornerCountOf(Shape shape);
/// A polygon of higher order lists its corners first, then as many points on its edges.
bool HasPointsOnEdges(int vtkCellType);

/// Nodes of a cell of the types 1 to 5; 0 for the other types.
int NodesPerElement(QelZoneType_e type);

/// For each corner of the zone's cell the point of a cell of that shape. Null when the shape has
/// no place in the type.
const std::array<signed char, 8>* CornerTable(QelZoneType_e type, Shape shape);

/// Local faces of the types 1 to 5, in the numbering of the face-neighbour function; corners
/// from 0, unused ones -1.
struct FaceTable {
  int faceCount = 0;
  int cornersPerFace = 0;
  std::array<std::array<signed char, 4>, 6> corners{};
};
const FaceTable& LocalFaces(QelZoneType_e type);

/// Faces of a 3D shape by its own points, in VTK's order; used where a block is wholly polyhedral.
struct SolidFaces {
  int faceCount = 0;
  std::array<std::array<signed char, 6>, 8> points{};  ///< -1 ends a face
};
const SolidFaces& FacesOf(Shape shape);

}  // namespace qelhost
