// A zone: one block of a data set as the interface sees it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Connectivity.h"
#include "FaceMaps.h"
#include "FieldData.h"
#include "qelvane/Types.h"

#include <vtkDataSet.h>
#include <vtkDataSetAttributes.h>
#include <vtkSmartPointer.h>

namespace qelhost {

/// What a block holds beside the zone's cells, and what of its cells a reader marked. Everything
/// counted here is written back as it came.
struct CarriedCounts {
  std::int64_t lowerDimensionCells = 0;  ///< lines beside surfaces, surfaces beside volumes
  std::int64_t vertices = 0;
  std::int64_t polylines = 0;
  std::int64_t strips = 0;
  std::int64_t otherCells = 0;   ///< empty cells and convex point sets
  std::int64_t ghostCells = 0;   ///< cells of the zone marked as another piece's
  std::int64_t hiddenCells = 0;  ///< cells of the zone marked hidden
};

/// One variable in one zone.
struct Field {
  QelValueLocation_e location = ValueLocation_Nodal;
  std::shared_ptr<Storage> storage;  ///< null: passive, or computed coordinates
  FieldView view;                    ///< where the variable lives; null when passive
  FieldView atNodes;                 ///< made at need: passive zeros or the node average
  FieldView atCells;                 ///< made at need: zeros of a passive cell-centred variable
  Range range;                       ///< valid when rangeStamp equals the storage's writes
  std::int64_t rangeStamp = -1;
  bool IsPassive() const { return view == nullptr; }
};

/// Never the same number twice.
std::int64_t NextZoneVersion();

/// The block's values of nodes or of cells.
vtkDataSetAttributes* AttributesAt(vtkDataSet* block, QelValueLocation_e location);

class Zone : public NodeAverageSource {
 public:
  /// Views a block of a file or one made here; throws DataError when it holds no mesh or is too
  /// large. fromFile: it is written back, and is never deleted.
  Zone(std::string name, vtkDataSet* block, bool fromFile);
  ~Zone() override;
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;

  std::string name;
  LgIndex_t strand = 0;
  double solutionTime = 0;
  bool active = true;

  bool IsFromFile() const { return m_fromFile; }
  QelZoneType_e Type() const { return m_type; }
  bool IsOrdered() const { return m_type == ZoneType_Ordered; }
  bool IsFaceBased() const {
    return m_type == ZoneType_FEPolygon || m_type == ZoneType_FEPolyhedron;
  }
  /// As QelUtilZoneGetIJK answers. Types 6 and 7: builds the face map.
  std::array<LgIndex_t, 3> IJK();
  LgIndex_t NodeCount() const { return m_nodeCount; }
  LgIndex_t CellCount() const { return m_cellCount; }
  const CarriedCounts& Carried() const { return m_carried; }
  vtkDataSet* Block() const { return m_block; }
  /// "image", "rectilinear grid" where the coordinates are computed; null where they are stored.
  const char* ComputedCoordinatesKind() const { return m_computedKind; }

  /// The block's cell behind a zone's cell, both from 0, and back (-1: the cell is carried).
  std::int64_t BlockCell(std::int64_t cell) const;
  std::int64_t CellOfBlockCell(std::int64_t blockCell) const;

  /// Nodes of a cell from 0, distinct or not as the type has them; any zone type.
  void CellNodes(std::int64_t cell, std::vector<std::int64_t>& nodes);
  /// A node's position.
  std::array<double, 3> Position(std::int64_t node) const;

  /// Null where the type has no such map. Built at first use, then kept.
  QelNodeMap* NodeMap();
  QelNodeMap* WritableNodeMap();
  const QelNodeToElemMap* NodeToElem();
  const QelFaceNeighbors* FaceNeighbors();
  const QelFaceMap* FaceMap();
  const QelElemToFaceMap* ElemToFace();
  /// After a change of connectivity.
  void DropDerivedMaps();
  /// Another number for every zone and, in one zone, after every change of connectivity.
  std::int64_t Version() const { return m_version; }

  double Average(const QelFieldData& cells, std::int64_t node) override;

  /// Fields by variable, from 0; as many as the data set has variables. The data set fills them.
  std::vector<Field> fields;
  /// Gives the field a storage (null: passive) and the views that go with it.
  void Bind(Field& field, std::shared_ptr<Storage> storage);
  void BindComputedCoordinate(Field& field, int axis);

 private:
  bool ViewStructured();
  void ChooseCells(const unsigned char* types, std::int64_t blockCells);
  void ViewLines(vtkCellArray* lines, std::int64_t vertexCount);
  void SetNodeMap(vtkCellArray* cells, std::int64_t arrayStart);
  bool ViewPolyData();
  bool ViewUnstructured();
  void CountMarkedCells();
  void CheckSizes() const;
  void CheckDimensions(const int (&dimensions)[3]) const;
  void BuildFaceMaps();
  double AverageOrdered(const QelFieldData& cells, std::int64_t node) const;

  vtkSmartPointer<vtkDataSet> m_block;
  std::int64_t m_version;
  bool m_fromFile = true;
  QelZoneType_e m_type = ZoneType_Ordered;
  LgIndex_t m_nodeCount = 0;
  LgIndex_t m_cellCount = 0;
  std::array<std::int64_t, 3> m_dimensions{1, 1, 1};
  std::int64_t m_firstCell = 0;         ///< of the block, when m_cellMap is empty
  std::vector<std::int64_t> m_cellMap;  ///< empty: cells are adjacent in the block
  CarriedCounts m_carried;
  const char* m_computedKind = nullptr;
  std::unique_ptr<QelNodeMap> m_nodeMap;
  std::unique_ptr<QelNodeToElemMap> m_nodeToElem;
  std::unique_ptr<QelFaceNeighbors> m_faceNeighbors;
  std::unique_ptr<QelFaceMap> m_faceMap;
  std::unique_ptr<QelElemToFaceMap> m_elemToFace;
};

}  // namespace qelhost
