// Which nodes make a cell, which cells stand around a node, which faces have a neighbour: for
// zones of the types 1 to 5. Elements, corners, nodes and faces count from 0 here.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "CellShapes.h"
#include "qelvane/Types.h"

#include <vtkCellArray.h>
#include <vtkSmartPointer.h>

/// Reads VTK's own connectivity; nothing is copied. Corners of a cell that has fewer than its
/// zone's type repeat nodes, by the tables of CellShapes.h.
struct QelNodeMap {
  /// The node at a corner; element and corner must be in range.
  std::int64_t Node(std::int64_t element, int corner) const { return node(*this, element, corner); }
  /// Only for maps of zones that no file holds; false elsewhere or out of range.
  bool SetNode(std::int64_t element, int corner, std::int64_t newNode);

  LgIndex_t elementCount = 0;
  LgIndex_t nodeCount = 0;
  int nodesPerElement = 0;
  bool writable = false;
  std::int64_t (*node)(const QelNodeMap&, std::int64_t element, int corner) = nullptr;

  vtkSmartPointer<vtkCellArray> cells;
  const void* offsets = nullptr;  ///< of the width of the cell array
  void* nodes = nullptr;
  bool wide = true;  ///< 64-bit connectivity
  /// Every cell has exactly nodesPerElement nodes in corner order, without a map: one plain run.
  bool plain = false;
  std::int64_t firstBlockCell = 0;              ///< element 0's, when cellOfElement is null
  const std::int64_t* cellOfElement = nullptr;  ///< carried-through cells stand between
  std::int64_t arrayStart = 0;                  ///< the block's cell that stands first in `cells`
  const unsigned char* cellTypes = nullptr;     ///< null: the cell's shape follows from its size
  QelZoneType_e zoneType = ZoneType_FEBrick;
  std::array<const std::array<signed char, 8>*, 256> tables{};  ///< by VTK cell type
};

/// Elements around each node, ascending, each once.
struct QelNodeToElemMap {
  std::vector<std::int64_t> offsets;  ///< nodeCount + 1
  std::vector<LgIndex_t> elements;    ///< from 0
  std::int64_t Count(std::int64_t node) const { return offsets[node + 1] - offsets[node]; }
  LgIndex_t Element(std::int64_t node, std::int64_t n) const { return elements[offsets[node] + n]; }
  LgIndex_t NodeCount() const { return static_cast<LgIndex_t>(offsets.size()) - 1; }
};

/// Answers from the two maps above, which must outlive it.
struct QelFaceNeighbors {
  const QelNodeMap* nodes = nullptr;
  const QelNodeToElemMap* elements = nullptr;
  /// Elements that have this face too; at least 1 for a face collapsed to an edge or a point; 0
  /// for a face past the element's last.
  LgIndex_t Count(std::int64_t element, int face) const;
};

namespace qelhost {

/// Sets what follows from cells, zoneType, cellTypes, cellOfElement and the counts.
void ResolveNodeMap(QelNodeMap& map);

QelNodeToElemMap BuildNodeToElemMap(const QelNodeMap& map);

}  // namespace qelhost
