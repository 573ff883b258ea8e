#include "TakenItems.h"

#include "CornerRule.h"
#include "HostCheck.h"

#include "qelvane/Extensions.h"
#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

namespace {

struct ZoneDims {
  LgIndex_t i = 0;
  LgIndex_t j = 0;
  LgIndex_t k = 0;
};

ZoneDims DimsOfZone(LgIndex_t zone) {
  ZoneDims dims;
  QelUtilZoneGetIJK(zone, &dims.i, &dims.j, &dims.k);
  return dims;
}

OrderedGrid GridOfZone(LgIndex_t zone) {
  const ZoneDims dims = DimsOfZone(zone);
  return {dims.i, dims.j, dims.k};
}

/// The host counts from 1, and in 32 bits.
LgIndex_t HostIndex(std::int64_t index) { return static_cast<LgIndex_t>(index + 1); }

/// Cells decided one by one, hidden ones left out.
template <class IsShown, class TakesItem>
TakenItems CellByCell(std::int64_t cellCount, bool skipBlanked, IsShown isShown,
                      TakesItem takesItem) {
  return {cellCount, [=](std::int64_t word) {
            return WordOf(word, cellCount, [&](std::int64_t cell) {
              return (!skipBlanked || isShown(cell)) && takesItem(cell);
            });
          }};
}

TakenItems OrderedCells(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked) {
  constexpr LgIndex_t kVolumePlane = 0;
  const OrderedGrid grid = GridOfZone(zone);
  return CellByCell(
      grid.CellCount(), skipBlanked,
      [zone](std::int64_t cell) {
        return QelUtilBlankingCheckIJKCell(zone, kVolumePlane, HostIndex(cell));
      },
      [grid, rule, &inside](std::int64_t cell) {
        const OrderedCorners corners = CornersOfOrderedCell(grid, cell);
        return TakesCell(rule, inside, [&corners](auto&& test) {
          return AnyOfCorners(
              corners.count,
              [&corners](std::int64_t corner) {
                return corners.nodes[static_cast<std::size_t>(corner)];
              },
              test);
        });
      });
}

/// Cells with a fixed number of corners; nodeAt(cell, corner) answers a node, all from 0.
template <class NodeAt>
TakenItems CornerCells(LgIndex_t zoneNum, const ZoneDims& dims, PickRule rule,
                       const InsideSet& inside, bool skipBlanked, NodeAt nodeAt) {
  return CellByCell(
      dims.j, skipBlanked,
      [zoneNum](std::int64_t cell) { return QelUtilBlankingCheckFECell(zoneNum, HostIndex(cell)); },
      [nodeAt, rule, &inside, cornerCount = dims.k](std::int64_t cell) {
        return TakesCell(rule, inside, [&](auto&& test) {
          return AnyOfCorners(
              cornerCount, [&](std::int64_t corner) { return nodeAt(cell, corner); }, test);
        });
      });
}

/// The nodes of elements where the host keeps them.
template <class Index>
auto NodesOf(const QelNodeSpan_s& span) {
  return
      [first = static_cast<const Index*>(span.first), base = std::int64_t{span.indexBase},
       cornerCount = std::int64_t{span.nodesPerElement}](std::int64_t cell, std::int64_t corner) {
        return std::int64_t{first[cell * cornerCount + corner]} - base;
      };
}

/// False unless the host shows the nodes of all the zone's elements.
bool HasNodeSpan(const QelNodeMap* nodeMap, const ZoneDims& dims, QelNodeSpan_s& span) {
  if (QelUtilExtensionGet == nullptr) return false;
  const auto* const bulk =
      static_cast<const QelBulkAccess_s*>(QelUtilExtensionGet(QEL_EXTENSION_BULK_ACCESS));
  return bulk != nullptr && bulk->nodeMapSpan(nodeMap, &span) && span.nodesPerElement == dims.k &&
         span.count == dims.j && (span.indexWidth == 4 || span.indexWidth == 8);
}

TakenItems NodeMapCells(LgIndex_t zoneNum, PickRule rule, const InsideSet& inside,
                        bool skipBlanked) {
  const ZoneDims dims = DimsOfZone(zoneNum);
  const QelNodeMap* nodeMap = nullptr;
  HOST_CHECK(nodeMap = QelUtilDataNodeGetReadableRef(zoneNum));
  QelNodeSpan_s span{};
  if (!HasNodeSpan(nodeMap, dims, span)) {
    return CornerCells(zoneNum, dims, rule, inside, skipBlanked,
                       [nodeMap](std::int64_t cell, std::int64_t corner) {
                         return std::int64_t{QelUtilDataNodeGetByRef(nodeMap, HostIndex(cell),
                                                                     HostIndex(corner))} -
                                1;
                       });
  }
  return span.indexWidth == 8
             ? CornerCells(zoneNum, dims, rule, inside, skipBlanked, NodesOf<std::int64_t>(span))
             : CornerCells(zoneNum, dims, rule, inside, skipBlanked, NodesOf<std::int32_t>(span));
}

/// Visits the nodes of a cell's faces until the test holds for one. A node comes once for each face
/// that it is on, which the corner rule does not mind.
template <class Test>
bool AnyOfFaceNodes(const QelElemToFaceMap* elemToFaceMap, const QelFaceMap* faceMap,
                    LgIndex_t element, Test&& test) {
  const LgIndex_t faceCount = QelUtilDataElemGetNumFaces(elemToFaceMap, element);
  for (LgIndex_t n = 1; n <= faceCount; ++n) {
    const LgIndex_t face = QelUtilDataElemGetFace(elemToFaceMap, element, n);
    const LgIndex_t nodeCount = QelUtilDataFaceMapGetNFaceNodes(faceMap, face);
    for (LgIndex_t m = 1; m <= nodeCount; ++m) {
      if (test(std::int64_t{QelUtilDataFaceMapGetFaceNode(faceMap, face, m)} - 1)) return true;
    }
  }
  return false;
}

TakenItems FaceBasedCells(LgIndex_t zoneNum, PickRule rule, const InsideSet& inside,
                          bool skipBlanked) {
  const ZoneDims dims = DimsOfZone(zoneNum);
  const QelElemToFaceMap* elemToFaceMap = nullptr;
  const QelFaceMap* faceMap = nullptr;
  HOST_CHECK(elemToFaceMap = QelUtilDataElemGetReadableRef(zoneNum));
  HOST_CHECK(faceMap = QelUtilDataFaceMapGetReadableRef(zoneNum));
  return CellByCell(
      dims.j, skipBlanked,
      [zoneNum](std::int64_t cell) { return QelUtilBlankingCheckFECell(zoneNum, HostIndex(cell)); },
      [elemToFaceMap, faceMap, rule, &inside](std::int64_t cell) {
        return TakesCell(rule, inside, [&](auto&& test) {
          return AnyOfFaceNodes(elemToFaceMap, faceMap, HostIndex(cell), test);
        });
      });
}

}  // namespace

ZoneSize SizeOfZone(LgIndex_t zone) {
  if (QelUtilZoneGetType(zone) == ZoneType_Ordered) {
    const OrderedGrid grid = GridOfZone(zone);
    if (grid.NodeCount() < 1) return {};
    return {grid.NodeCount(), grid.CellCount()};
  }
  const ZoneDims dims = DimsOfZone(zone);
  return {dims.i, dims.j};
}

TakenItems TakenNodes(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked) {
  const std::uint64_t flip = TakesOutside(rule) ? ~std::uint64_t{0} : 0;
  const std::int64_t nodeCount = inside.NodeCount();
  if (!skipBlanked) {
    return {nodeCount, [&inside, flip](std::int64_t word) { return inside.Word(word) ^ flip; }};
  }
  return {nodeCount, [&inside, flip, zone, nodeCount](std::int64_t word) {
            const std::uint64_t onSide = inside.Word(word) ^ flip;
            if (onSide == 0) return onSide;
            return WordOf(word, nodeCount, [=](std::int64_t node) {
              const bool isOnSide = ((onSide >> (node % InsideSet::kBitsPerWord)) & 1) != 0;
              return isOnSide && QelUtilBlankingCheckDataPoint(zone, HostIndex(node));
            });
          }};
}

TakenItems TakenCells(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked) {
  switch (QelUtilZoneGetType(zone)) {
    case ZoneType_Ordered:
      return OrderedCells(zone, rule, inside, skipBlanked);
    case ZoneType_FETriangle:
    case ZoneType_FEQuad:
    case ZoneType_FETetra:
    case ZoneType_FEBrick:
    case ZoneType_FELineSeg:
      return NodeMapCells(zone, rule, inside, skipBlanked);
    case ZoneType_FEPolygon:
    case ZoneType_FEPolyhedron:
      return FaceBasedCells(zone, rule, inside, skipBlanked);
    default:
      return {0, [](std::int64_t) { return std::uint64_t{0}; }};
  }
}

}  // namespace qelvane::qelutiltools
