#include "CellShapes.h"

#include <vtkCellType.h>

#include <map>
#include <utility>

namespace qelhost {
namespace {

using Corners = std::array<signed char, 8>;

Shape HigherOrderShape(int vtkCellType) {
  switch (vtkCellType) {
    case VTK_QUADRATIC_EDGE:
    case VTK_CUBIC_LINE:
    case VTK_LAGRANGE_CURVE:
    case VTK_BEZIER_CURVE:
    case VTK_HIGHER_ORDER_EDGE:
      return Shape::Line;
    case VTK_QUADRATIC_TRIANGLE:
    case VTK_BIQUADRATIC_TRIANGLE:
    case VTK_LAGRANGE_TRIANGLE:
    case VTK_BEZIER_TRIANGLE:
    case VTK_HIGHER_ORDER_TRIANGLE:
      return Shape::Triangle;
    case VTK_QUADRATIC_QUAD:
    case VTK_BIQUADRATIC_QUAD:
    case VTK_QUADRATIC_LINEAR_QUAD:
    case VTK_LAGRANGE_QUADRILATERAL:
    case VTK_BEZIER_QUADRILATERAL:
    case VTK_HIGHER_ORDER_QUAD:
      return Shape::Quad;
    case VTK_QUADRATIC_POLYGON:
      return Shape::Polygon;
    case VTK_QUADRATIC_TETRA:
    case VTK_LAGRANGE_TETRAHEDRON:
    case VTK_BEZIER_TETRAHEDRON:
    case VTK_HIGHER_ORDER_TETRAHEDRON:
      return Shape::Tetra;
    case VTK_QUADRATIC_PYRAMID:
    case VTK_TRIQUADRATIC_PYRAMID:
    case VTK_LAGRANGE_PYRAMID:
    case VTK_BEZIER_PYRAMID:
    case VTK_HIGHER_ORDER_PYRAMID:
      return Shape::Pyramid;
    case VTK_QUADRATIC_WEDGE:
    case VTK_QUADRATIC_LINEAR_WEDGE:
    case VTK_BIQUADRATIC_QUADRATIC_WEDGE:
    case VTK_LAGRANGE_WEDGE:
    case VTK_BEZIER_WEDGE:
    case VTK_HIGHER_ORDER_WEDGE:
      return Shape::Wedge;
    case VTK_QUADRATIC_HEXAHEDRON:
    case VTK_TRIQUADRATIC_HEXAHEDRON:
    case VTK_BIQUADRATIC_QUADRATIC_HEXAHEDRON:
    case VTK_LAGRANGE_HEXAHEDRON:
    case VTK_BEZIER_HEXAHEDRON:
    case VTK_HIGHER_ORDER_HEXAHEDRON:
      return Shape::Brick;
    default:
      return Shape::Carried;
  }
}

}  // namespace

Shape ShapeOfVtkCell(int vtkCellType) {
  switch (vtkCellType) {
    case VTK_LINE:
      return Shape::Line;
    case VTK_TRIANGLE:
      return Shape::Triangle;
    case VTK_QUAD:
      return Shape::Quad;
    case VTK_PIXEL:
      return Shape::Pixel;
    case VTK_POLYGON:
      return Shape::Polygon;
    case VTK_TETRA:
      return Shape::Tetra;
    case VTK_PYRAMID:
      return Shape::Pyramid;
    case VTK_WEDGE:
      return Shape::Wedge;
    case VTK_HEXAHEDRON:
      return Shape::Brick;
    case VTK_VOXEL:
      return Shape::Voxel;
    case VTK_PENTAGONAL_PRISM:
      return Shape::PentaPrism;
    case VTK_HEXAGONAL_PRISM:
      return Shape::HexaPrism;
    case VTK_POLYHEDRON:
      return Shape::Polyhedron;
    default:
      return HigherOrderShape(vtkCellType);
  }
}

int DimensionOf(Shape shape) {
  if (shape == Shape::Carried) return 0;
  if (shape == Shape::Line) return 1;
  return shape <= Shape::Polygon ? 2 : 3;
}

int CornerCountOf(Shape shape) {
  switch (shape) {
    case Shape::Line:
      return 2;
    case Shape::Triangle:
      return 3;
    case Shape::Quad:
    case Shape::Pixel:
    case Shape::Tetra:
      return 4;
    case Shape::Pyramid:
      return 5;
    case Shape::Wedge:
      return 6;
    case Shape::Brick:
    case Shape::Voxel:
      return 8;
    case Shape::PentaPrism:
      return 10;
    case Shape::HexaPrism:
      return 12;
    default:
      return 0;
  }
}

bool HasPointsOnEdges(int vtkCellType) { return vtkCellType == VTK_QUADRATIC_POLYGON; }

int NodesPerElement(QelZoneType_e type) {
  switch (type) {
    case ZoneType_FELineSeg:
      return 2;
    case ZoneType_FETriangle:
      return 3;
    case ZoneType_FEQuad:
    case ZoneType_FETetra:
      return 4;
    case ZoneType_FEBrick:
      return 8;
    default:
      return 0;
  }
}

const std::array<signed char, 8>* CornerTable(QelZoneType_e type, Shape shape) {
  static const std::map<std::pair<QelZoneType_e, Shape>, Corners> kTables = {
      {{ZoneType_FELineSeg, Shape::Line}, {0, 1}},
      {{ZoneType_FETriangle, Shape::Triangle}, {0, 1, 2}},
      {{ZoneType_FEQuad, Shape::Triangle}, {0, 1, 2, 2}},
      {{ZoneType_FEQuad, Shape::Quad}, {0, 1, 2, 3}},
      {{ZoneType_FEQuad, Shape::Pixel}, {0, 1, 3, 2}},
      {{ZoneType_FETetra, Shape::Tetra}, {0, 1, 2, 3}},
      {{ZoneType_FEBrick, Shape::Tetra}, {0, 1, 2, 2, 3, 3, 3, 3}},
      {{ZoneType_FEBrick, Shape::Pyramid}, {0, 1, 2, 3, 4, 4, 4, 4}},
      {{ZoneType_FEBrick, Shape::Wedge}, {0, 1, 2, 2, 3, 4, 5, 5}},
      {{ZoneType_FEBrick, Shape::Brick}, {0, 1, 2, 3, 4, 5, 6, 7}},
      {{ZoneType_FEBrick, Shape::Voxel}, {0, 1, 3, 2, 4, 5, 7, 6}},
  };
  const auto found = kTables.find({type, shape});
  return found == kTables.end() ? nullptr : &found->second;
}

const FaceTable& LocalFaces(QelZoneType_e type) {
  static const FaceTable kNone{};
  static const std::map<QelZoneType_e, FaceTable> kTables = {
      {ZoneType_FELineSeg, {2, 1, {{{0, -1, -1, -1}, {1, -1, -1, -1}}}}},
      {ZoneType_FETriangle, {3, 2, {{{0, 1, -1, -1}, {1, 2, -1, -1}, {2, 0, -1, -1}}}}},
      {ZoneType_FEQuad, {4, 2, {{{0, 1, -1, -1}, {1, 2, -1, -1}, {2, 3, -1, -1}, {3, 0, -1, -1}}}}},
      {ZoneType_FETetra, {4, 3, {{{0, 1, 2, -1}, {0, 1, 3, -1}, {0, 2, 3, -1}, {1, 2, 3, -1}}}}},
      {ZoneType_FEBrick,
       {6,
        4,
        {{{0, 3, 4, 7}, {1, 2, 5, 6}, {0, 1, 4, 5}, {2, 3, 6, 7}, {0, 1, 2, 3}, {4, 5, 6, 7}}}}},
  };
  const auto found = kTables.find(type);
  return found == kTables.end() ? kNone : found->second;
}

const SolidFaces& FacesOf(Shape shape) {
  static const SolidFaces kNone{};
  constexpr signed char e = -1;  // ends a face
  static const std::map<Shape, SolidFaces> kTables = {
      {Shape::Tetra, {4, {{{0, 1, 3, e}, {1, 2, 3, e}, {2, 0, 3, e}, {0, 2, 1, e}}}}},
      {Shape::Pyramid,
       {5, {{{0, 3, 2, 1, e}, {0, 1, 4, e}, {1, 2, 4, e}, {2, 3, 4, e}, {3, 0, 4, e}}}}},
      {Shape::Wedge,
       {5, {{{0, 1, 2, e}, {3, 5, 4, e}, {0, 3, 4, 1, e}, {1, 4, 5, 2, e}, {2, 5, 3, 0, e}}}}},
      {Shape::Brick,
       {6,
        {{{0, 4, 7, 3, e},
          {1, 2, 6, 5, e},
          {0, 1, 5, 4, e},
          {3, 7, 6, 2, e},
          {0, 3, 2, 1, e},
          {4, 5, 6, 7, e}}}}},
      {Shape::Voxel,
       {6,
        {{{0, 4, 6, 2, e},
          {1, 3, 7, 5, e},
          {0, 1, 5, 4, e},
          {2, 6, 7, 3, e},
          {0, 2, 3, 1, e},
          {4, 5, 7, 6, e}}}}},
      {Shape::PentaPrism,
       {7,
        {{{0, 4, 3, 2, 1, e},
          {5, 6, 7, 8, 9, e},
          {0, 1, 6, 5, e},
          {1, 2, 7, 6, e},
          {2, 3, 8, 7, e},
          {3, 4, 9, 8, e},
          {4, 0, 5, 9, e}}}}},
      {Shape::HexaPrism,
       {8,
        {{{0, 5, 4, 3, 2, 1},
          {6, 7, 8, 9, 10, 11},
          {0, 1, 7, 6, e},
          {1, 2, 8, 7, e},
          {2, 3, 9, 8, e},
          {3, 4, 10, 9, e},
          {4, 5, 11, 10, e},
          {5, 0, 6, 11, e}}}}},
  };
  const auto found = kTables.find(shape);
  return found == kTables.end() ? kNone : found->second;
}

}  // namespace qelhost
