#pragma once

#include "FakeElements.h"
#include "FakeExtensions.h"
#include "FakeTopology.h"

#include "qelvane/Types.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace fakehost {

/// How values are stored; the last four have no code in the interface.
enum class StoredType { Float, Double, Int32, Int16, Byte, Int64, Int8, UInt16, UInt32, UInt64 };

/// The values of one variable in one zone, as typed bytes; zones that share it hold the same one.
struct Storage {
  Storage(StoredType storedType, std::int64_t valueCount, Layout valueLayout = {});
  /// One axis of points, whose coordinates lie side by side; the others' storages hold the same.
  Storage(StoredType storedType, std::int64_t valueCount, std::int64_t axis,
          std::shared_ptr<std::vector<unsigned char>> coordinates);
  Storage(const Storage& other);
  Storage& operator=(const Storage& other) = delete;
  double Get(std::int64_t index) const;        ///< from 0
  void Set(std::int64_t index, double value);  ///< from 0; rounds and clamps as the host does
  unsigned char* At(std::int64_t index);
  const unsigned char* At(std::int64_t index) const;
  std::int64_t Stride() const;  ///< in bytes
  bool AreGapsWhole() const;    ///< nothing was written between the values
  StoredType type;
  std::int64_t count;
  Layout layout;
  std::vector<unsigned char> bytes;  ///< none for points
  std::shared_ptr<std::vector<unsigned char>> points;
};

QelFieldDataType_e CodeOf(StoredType type);
StoredType StoredTypeOf(QelFieldDataType_e code);
std::size_t SizeOf(StoredType type);

struct Values {
  QelValueLocation_e location = ValueLocation_Nodal;
  std::shared_ptr<Storage> storage;  ///< null: passive
  StoredType typeWhenAllocated = StoredType::Double;
  bool isWritable = true;
};

struct Point {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

struct Face {
  std::vector<LgIndex_t> nodes;
  LgIndex_t left = 0;
  LgIndex_t right = 0;
};

/// One zone without its variables. Nodes and elements count from 1.
struct Mesh {
  QelZoneType_e type = ZoneType_Ordered;
  std::array<LgIndex_t, 3> ijk{1, 1, 1};  ///< ordered zones only
  std::vector<Point> points;
  ElementList elements;       ///< types 1 to 5
  StampedVector<Face> faces;  ///< types 6 and 7
  LgIndex_t faceBasedElementCount = 0;

  LgIndex_t NodeCount() const { return static_cast<LgIndex_t>(points.size()); }
  LgIndex_t CellCount() const;
  bool HasNodeMap() const { return type >= ZoneType_FETriangle && type <= ZoneType_FELineSeg; }
  bool IsFaceBased() const { return type == ZoneType_FEPolygon || type == ZoneType_FEPolyhedron; }
  /// The nodes of a cell, in corner order; of a face-based one, ascending and each once.
  std::vector<LgIndex_t> Corners(LgIndex_t cell) const;
  /// What follows from the connectivity as it stands; made anew only after a change.
  const Topology& Derived() const;

 private:
  mutable std::shared_ptr<const Topology> m_topology;
};

/// A lattice of nx x ny x nz cells over the unit steps, cut into cells of the type; absent
/// dimensions are 0. Tetrahedra of neighbouring cells fit face to face.
Mesh MakeLattice(QelZoneType_e type, LgIndex_t nx, LgIndex_t ny, LgIndex_t nz);

enum class Collapse { Wedge, Pyramid, Tetra };

/// A brick zone over such a lattice whose bricks have repeated nodes: two wedges, six pyramids
/// around an added middle node, or the five tetrahedra for each cell.
Mesh MakeCollapsedBricks(Collapse to, LgIndex_t nx, LgIndex_t ny, LgIndex_t nz);

enum class ZoneLayer { Edge, Mesh, Shade, Contour, Scatter, Vector };
constexpr std::size_t kZoneLayerCount = 6;

struct LayerStyle {
  bool isShown = false;
  LgIndex_t color = ColorIndex_Black;
  double lineThickness = 0.1;  ///< percent of the frame
};

/// How one zone is drawn. What a new map holds differs from what any user of it wants to set, so
/// that a setting left out is seen.
struct FieldMap {
  std::array<LayerStyle, kZoneLayerCount> layers{
      {{}, {}, {}, {true, 0, 0.1}, {true, 0, 0.1}, {true, 0, 0.1}}};
  bool usesValueBlanking = true;
  LgIndex_t surfacesToPlot = 1;
  bool showsSlices = true;
  bool showsIsosurfaces = true;
  bool showsStreamtraces = true;

  LayerStyle& Layer(ZoneLayer layer) { return layers[static_cast<std::size_t>(layer)]; }
};

struct Zone {
  QelUniqueID_t id = 0;  ///< stays when zones before it are deleted
  std::string name;
  Mesh mesh;
  std::vector<Values> vars;
  bool isActive = true;
  bool isFromFile = true;  ///< never deleted through the interface
  LgIndex_t strand = 0;
  double solutionTime = 0.0;
  FieldMap fieldMap;
};

struct DataSet {
  QelUniqueID_t id = 0;
  std::string title = "data";
  std::vector<std::string> varNames;
  std::vector<Zone> zones;
};

struct Geometry {
  QelGeomID_t id = 0;
  QelGeomType_e type = GeomType_Rectangle;
  Point anchor;
  double width = 0.0;  ///< also a square's side and a circle's radius
  double height = 0.0;
  std::vector<Point> points;  ///< a polyline's, relative to the anchor
  QelCoordSys_e coordSys = CoordSys_Grid;
};

struct PickedObject {
  QelPickObject_e type = PickObject_Geom;
  QelGeomID_t geometry = 0;
};

struct ViewState {
  double psi = 0.0;  ///< degrees
  double alpha = 0.0;
  double theta = 0.0;
  double magnification = 1.0;
  Point origin;
};

struct Constraint {
  bool include = false;
  LgIndex_t varA = 0;
  LgIndex_t varB = 0;
  LgIndex_t relOp = BlankRelOp_LessThanOrEqual;
  LgIndex_t op2Mode = ConstraintOp2Mode_UseVar;
  double cutoff = 0.0;
};

constexpr LgIndex_t kConstraintCount = 8;

struct Blanking {
  bool include = false;
  bool blankEntireCell = false;
  LgIndex_t cellMode = BlankCellMode_AllCorners;
  std::map<LgIndex_t, Constraint> constraints;  ///< by number, 1 to 8; absent: as it began
};

struct Frame {
  QelUniqueID_t id = 0;
  QelPlotType_e plotType = PlotType_Cartesian2D;
  std::shared_ptr<DataSet> dataSet;
  std::vector<Geometry> geometries;
  std::vector<PickedObject> pickList;
  ViewState view;
  Blanking blanking;
  std::array<LgIndex_t, 3> axisVars{1, 2, 3};  ///< assigned to X, Y and Z; 0: none
  LgIndex_t contourVar = 0;
  std::map<std::string, bool> layers;
};

}  // namespace fakehost
