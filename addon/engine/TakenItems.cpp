#include "TakenItems.h"

#include "CornerRule.h"
#include "HostCheck.h"

#include "qelvane/Extensions.h"
#include "qelvane/QelUtil.h"

#include <memory>
#include <vector>

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

/// Cells decided one by one.
template <class TakesItem>
TakenItems CellByCell(std::int64_t cellCount, TakesItem takesItem) {
  return {cellCount, [=](std::int64_t word) { return WordOf(word, cellCount, takesItem); }};
}

TakenItems OrderedCells(LgIndex_t zone, PickRule rule, const InsideSet& inside) {
  const OrderedGrid grid = GridOfZone(zone);
  return CellByCell(grid.CellCount(), [grid, rule, &inside](std::int64_t cell) {
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
TakenItems CornerCells(const ZoneDims& dims, PickRule rule, const InsideSet& inside,
                       NodeAt nodeAt) {
  return CellByCell(dims.j, [nodeAt, rule, &inside, cornerCount = dims.k](std::int64_t cell) {
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
bool HasNodeSpan(const QelBulkAccess_s* bulk, const QelNodeMap* nodeMap, const ZoneDims& dims,
                 QelNodeSpan_s& span) {
  return bulk != nullptr && bulk->nodeMapSpan(nodeMap, &span) && span.nodesPerElement == dims.k &&
         span.count == dims.j && (span.indexWidth == 4 || span.indexWidth == 8);
}

TakenItems NodeMapCells(LgIndex_t zoneNum, PickRule rule, const InsideSet& inside,
                        const QelBulkAccess_s* bulk) {
  const ZoneDims dims = DimsOfZone(zoneNum);
  const QelNodeMap* nodeMap = nullptr;
  HOST_CHECK(nodeMap = QelUtilDataNodeGetReadableRef(zoneNum));
  QelNodeSpan_s span{};
  if (!HasNodeSpan(bulk, nodeMap, dims, span)) {
    return CornerCells(dims, rule, inside, [nodeMap](std::int64_t cell, std::int64_t corner) {
      return std::int64_t{QelUtilDataNodeGetByRef(nodeMap, HostIndex(cell), HostIndex(corner))} - 1;
    });
  }
  return span.indexWidth == 8 ? CornerCells(dims, rule, inside, NodesOf<std::int64_t>(span))
                              : CornerCells(dims, rule, inside, NodesOf<std::int32_t>(span));
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

TakenItems FaceBasedCells(LgIndex_t zoneNum, PickRule rule, const InsideSet& inside) {
  const ZoneDims dims = DimsOfZone(zoneNum);
  const QelElemToFaceMap* elemToFaceMap = nullptr;
  const QelFaceMap* faceMap = nullptr;
  HOST_CHECK(elemToFaceMap = QelUtilDataElemGetReadableRef(zoneNum));
  HOST_CHECK(faceMap = QelUtilDataFaceMapGetReadableRef(zoneNum));
  return CellByCell(dims.j, [elemToFaceMap, faceMap, rule, &inside](std::int64_t cell) {
    return TakesCell(rule, inside, [&](auto&& test) {
      return AnyOfFaceNodes(elemToFaceMap, faceMap, HostIndex(cell), test);
    });
  });
}

using BlankedBits = bool (*)(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count);

/// Leaves out what blanking hides, and decides about every item now: what is about to be altered
/// may be what blanking goes by.
///
/// isShown     asks the host about one item
/// blankedBits the host's answer for all of them at once; null where it gives none
template <class IsShown>
TakenItems Shown(const TakenItems& taken, LgIndex_t zone, BlankedBits blankedBits,
                 IsShown isShown) {
  const std::uint64_t* blanked = nullptr;
  std::int64_t blankedCount = 0;
  const bool hasBits = blankedBits != nullptr && blankedBits(zone, &blanked, &blankedCount) &&
                       blankedCount == taken.count;
  auto shown = std::make_shared<std::vector<std::uint64_t>>();
  const std::int64_t wordCount = InsideSet::WordCount(taken.count);
  shown->reserve(static_cast<std::size_t>(wordCount));
  for (std::int64_t word = 0; word < wordCount; ++word) {
    std::uint64_t bits = taken.word(word);
    if (hasBits) {
      bits &= ~blanked[word];
    } else if (bits != 0) {
      bits &= WordOf(word, taken.count, [&](std::int64_t item) {
        const bool isTaken = ((bits >> (item % InsideSet::kBitsPerWord)) & 1) != 0;
        return isTaken && isShown(item);
      });
    }
    shown->push_back(bits);
  }
  return {taken.count,
          [shown](std::int64_t word) { return (*shown)[static_cast<std::size_t>(word)]; }};
}

TakenItems CellsOnSide(LgIndex_t zone, PickRule rule, const InsideSet& inside,
                       const QelBulkAccess_s* bulk) {
  switch (QelUtilZoneGetType(zone)) {
    case ZoneType_Ordered:
      return OrderedCells(zone, rule, inside);
    case ZoneType_FETriangle:
    case ZoneType_FEQuad:
    case ZoneType_FETetra:
    case ZoneType_FEBrick:
    case ZoneType_FELineSeg:
      return NodeMapCells(zone, rule, inside, bulk);
    case ZoneType_FEPolygon:
    case ZoneType_FEPolyhedron:
      return FaceBasedCells(zone, rule, inside);
    default:
      return {0, [](std::int64_t) { return std::uint64_t{0}; }};
  }
}

bool IsCellShown(LgIndex_t zone, bool isOrdered, std::int64_t cell) {
  constexpr LgIndex_t kVolumePlane = 0;
  return isOrdered ? QelUtilBlankingCheckIJKCell(zone, kVolumePlane, HostIndex(cell))
                   : QelUtilBlankingCheckFECell(zone, HostIndex(cell));
}

}  // namespace

const QelBulkAccess_s* BulkAccess() {
  if (QelUtilExtensionGet == nullptr) return nullptr;
  return static_cast<const QelBulkAccess_s*>(QelUtilExtensionGet(QEL_EXTENSION_BULK_ACCESS));
}

ZoneSize SizeOfZone(LgIndex_t zone) {
  if (QelUtilZoneGetType(zone) == ZoneType_Ordered) {
    const OrderedGrid grid = GridOfZone(zone);
    if (grid.NodeCount() < 1) return {};
    return {grid.NodeCount(), grid.CellCount()};
  }
  const ZoneDims dims = DimsOfZone(zone);
  return {dims.i, dims.j};
}

TakenItems TakenNodes(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked,
                      const QelBulkAccess_s* bulk) {
  const std::uint64_t flip = TakesOutside(rule) ? ~std::uint64_t{0} : 0;
  const TakenItems taken{inside.NodeCount(),
                         [&inside, flip](std::int64_t word) { return inside.Word(word) ^ flip; }};
  if (!skipBlanked) return taken;
  return Shown(
      taken, zone, bulk == nullptr ? nullptr : bulk->blankedNodes,
      [zone](std::int64_t node) { return QelUtilBlankingCheckDataPoint(zone, HostIndex(node)); });
}

TakenItems TakenCells(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked,
                      const QelBulkAccess_s* bulk) {
  const TakenItems taken = CellsOnSide(zone, rule, inside, bulk);
  if (!skipBlanked) return taken;
  const bool isOrdered = QelUtilZoneGetType(zone) == ZoneType_Ordered;
  return Shown(taken, zone, bulk == nullptr ? nullptr : bulk->blankedCells,
               [zone, isOrdered](std::int64_t cell) { return IsCellShown(zone, isOrdered, cell); });
}

}  // namespace qelvane::qelutiltools
