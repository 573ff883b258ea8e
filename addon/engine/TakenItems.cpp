#include "TakenItems.h"

#include "Bits.h"
#include "CornerRule.h"
#include "HostCheck.h"
#include "NodeSpanCells.h"
#include "OrderedCells.h"
#include "Parallel.h"

#include "qelvane/QelUtil.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
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

/// Cells decided one by one, for which the host is asked.
template <class TakesItem>
TakenItems CellByCell(std::int64_t cellCount, TakesItem takesItem) {
  const auto decide = [=](std::int64_t firstWord, std::int64_t wordCount, std::uint64_t* words) {
    for (std::int64_t n = 0; n < wordCount; ++n) {
      words[n] = WordOf(firstWord + n, cellCount, takesItem);
    }
  };
  return {cellCount, decide, true};
}

TakenItems NoItems() {
  return {0, [](std::int64_t, std::int64_t, std::uint64_t*) {}};
}

TakenItems CellsOfGrid(LgIndex_t zone, PickRule rule, const InsideSet& inside) {
  const OrderedGrid grid = GridOfZone(zone);
  // A host that has changed its mind about the zone must not lead past the end of the set.
  if (grid.NodeCount() != inside.NodeCount()) return NoItems();
  const OrderedCells cells(grid, CornerRule(rule), inside);
  return {grid.CellCount(),
          [cells](std::int64_t firstWord, std::int64_t wordCount, std::uint64_t* words) {
            cells.Words(firstWord, wordCount, words);
          }};
}

/// False unless the host shows the nodes of all the zone's elements.
bool HasNodeSpan(const QelBulkAccess_s* bulk, const QelNodeMap* nodeMap, const ZoneDims& dims,
                 QelNodeSpan_s& span) {
  return bulk != nullptr && bulk->nodeMapSpan(nodeMap, &span) && span.first != nullptr &&
         span.nodesPerElement == dims.k && span.count == dims.j &&
         (span.indexWidth == 4 || span.indexWidth == 8);
}

/// Cells whose nodes the host is asked for, one by one until one decides. The side is a constant
/// and what the set holds is looked up once: millions of calls leave little time between them.
template <bool kDecisiveSide>
TakenItems CellsAskedFor(const QelNodeMap* nodeMap, const ZoneDims& dims, const CornerRule& rule,
                         const InsideSet& inside) {
  const auto takesCell = [nodeMap, cornerCount = dims.k, needsAll = rule.needsAll,
                          words = inside.Words(),
                          nodeCount = inside.NodeCount()](std::int64_t cell) {
    const LgIndex_t element = HostIndex(cell);
    for (LgIndex_t corner = 0; corner < cornerCount; ++corner) {
      const auto node = static_cast<std::uint64_t>(
          std::int64_t{QelUtilDataNodeGetByRef(nodeMap, element, corner + 1)} - 1);
      const bool isInside = node < static_cast<std::uint64_t>(nodeCount) &&
                            ((words[node / 64] >> (node % 64)) & 1) != 0;
      if (isInside == kDecisiveSide) return !needsAll;
    }
    return needsAll;
  };
  return CellByCell(dims.j, takesCell);
}

TakenItems NodeMapCells(LgIndex_t zoneNum, PickRule rule, const InsideSet& inside,
                        const QelBulkAccess_s* bulk) {
  const ZoneDims dims = DimsOfZone(zoneNum);
  const QelNodeMap* nodeMap = nullptr;
  HOST_CHECK(nodeMap = QelUtilDataNodeGetReadableRef(zoneNum));
  const CornerRule cornerRule(rule);
  QelNodeSpan_s span{};
  if (HasNodeSpan(bulk, nodeMap, dims, span)) {
    return {dims.j, [span, cornerRule, &inside](std::int64_t firstWord, std::int64_t wordCount,
                                                std::uint64_t* words) {
              DecideSpanCells(span, cornerRule, inside, firstWord, wordCount, words);
            }};
  }
  return cornerRule.decisiveSide ? CellsAskedFor<true>(nodeMap, dims, cornerRule, inside)
                                 : CellsAskedFor<false>(nodeMap, dims, cornerRule, inside);
}

/// Visits the nodes of a cell's faces until the test holds for one. A node comes once for each face
/// that it is on, which the corner rule does not mind.
template <class Test>
bool AnyOfFaceNodes(const QelElemToFaceMap* elemToFaceMap, const QelFaceMap* faceMap,
                    LgIndex_t element, Test&& test) {
  const LgIndex_t faceCount = QelUtilDataElemGetNumFaces(elemToFaceMap, element);
  for (LgIndex_t n = 0; n < faceCount; ++n) {
    const LgIndex_t face = QelUtilDataElemGetFace(elemToFaceMap, element, n + 1);
    const LgIndex_t nodeCount = QelUtilDataFaceMapGetNFaceNodes(faceMap, face);
    for (LgIndex_t m = 0; m < nodeCount; ++m) {
      if (test(std::int64_t{QelUtilDataFaceMapGetFaceNode(faceMap, face, m + 1)} - 1)) return true;
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
  const CornerRule cornerRule(rule);
  return CellByCell(dims.j, [elemToFaceMap, faceMap, cornerRule, &inside](std::int64_t cell) {
    return TakesCell(cornerRule, inside, [&](auto&& test) {
      return AnyOfFaceNodes(elemToFaceMap, faceMap, HostIndex(cell), test);
    });
  });
}

using BlankedBits = bool (*)(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count);

using Words = std::vector<std::uint64_t>;

TakenItems Decided(std::int64_t count, std::shared_ptr<const Words> taken) {
  return {count, [taken = std::move(taken)](std::int64_t firstWord, std::int64_t wordCount,
                                            std::uint64_t* words) {
            std::copy_n(taken->begin() + firstWord, wordCount, words);
          }};
}

std::shared_ptr<Words> DecideAll(const TakenItems& taken, const QelParallel_s* parallel) {
  const std::int64_t wordCount = WordsFor(taken.count);
  auto words = std::make_shared<Words>(static_cast<std::size_t>(wordCount));
  ForWords(taken.callsHost ? nullptr : parallel, wordCount,
           [&](std::int64_t first, std::int64_t last) {
             taken.decide(first, last - first, words->data() + first);
           });
  return words;
}

/// Leaves out what blanking hides, and decides about every item now: what is about to be altered
/// may be what blanking goes by.
///
/// blankedBits the host's answer for all items at once; null where it gives none
/// isShown     asks the host about one item
template <class IsShown>
TakenItems Shown(const TakenItems& taken, LgIndex_t zone, const QelParallel_s* parallel,
                 BlankedBits blankedBits, IsShown isShown) {
  const std::uint64_t* blanked = nullptr;
  std::int64_t blankedCount = 0;
  const bool hasBits = blankedBits != nullptr && blankedBits(zone, &blanked, &blankedCount) &&
                       blanked != nullptr && blankedCount == taken.count;
  const std::shared_ptr<Words> shown = DecideAll(taken, parallel);
  std::int64_t word = 0;
  for (std::uint64_t& bits : *shown) {
    if (hasBits) {
      bits &= ~blanked[word];
    } else {
      const std::uint64_t existing = LowestBits(ItemsInWord(word, taken.count));
      bits =
          BitsWhere(bits & existing, [&](int bit) { return isShown(word * kBitsPerWord + bit); });
    }
    ++word;
  }
  return Decided(taken.count, shown);
}

TakenItems CellsOnSide(LgIndex_t zone, QelZoneType_e type, PickRule rule, const InsideSet& inside,
                       const QelBulkAccess_s* bulk) {
  switch (type) {
    case ZoneType_Ordered:
      return CellsOfGrid(zone, rule, inside);
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
      return NoItems();
  }
}

bool IsCellShown(LgIndex_t zone, bool isOrdered, std::int64_t cell) {
  constexpr LgIndex_t kVolumePlane = 0;
  return isOrdered ? QelUtilBlankingCheckIJKCell(zone, kVolumePlane, HostIndex(cell))
                   : QelUtilBlankingCheckFECell(zone, HostIndex(cell));
}

}  // namespace

ZoneSize SizeOfZone(LgIndex_t zone) {
  if (QelUtilZoneGetType(zone) == ZoneType_Ordered) {
    const OrderedGrid grid = GridOfZone(zone);
    // Ordered is also what a host answers that cannot tell; elements are no grid.
    if (grid.NodeCount() < 1 || QelUtilZoneIsFiniteElement(zone)) return {};
    return {grid.NodeCount(), grid.CellCount()};
  }
  const ZoneDims dims = DimsOfZone(zone);
  return {dims.i, dims.j};
}

TakenItems TakenNodes(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked,
                      const HostServices& services) {
  const std::uint64_t flip = TakesOutside(rule) ? ~std::uint64_t{0} : 0;
  TakenItems taken{
      inside.NodeCount(),
      [&inside, flip](std::int64_t firstWord, std::int64_t wordCount, std::uint64_t* words) {
        const std::uint64_t* const first = inside.Words() + firstWord;
        for (std::int64_t n = 0; n < wordCount; ++n) words[n] = first[n] ^ flip;
      }};
  if (!skipBlanked) return taken;
  return Shown(
      taken, zone, services.parallel,
      services.bulk == nullptr ? nullptr : services.bulk->blankedNodes,
      [zone](std::int64_t node) { return QelUtilBlankingCheckDataPoint(zone, HostIndex(node)); });
}

TakenItems TakenCells(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked,
                      const HostServices& services) {
  const QelZoneType_e type = QelUtilZoneGetType(zone);
  TakenItems taken = CellsOnSide(zone, type, rule, inside, services.bulk);
  if (!skipBlanked) return taken;
  const bool isOrdered = type == ZoneType_Ordered;
  return Shown(taken, zone, services.parallel,
               services.bulk == nullptr ? nullptr : services.bulk->blankedCells,
               [zone, isOrdered](std::int64_t cell) { return IsCellShown(zone, isOrdered, cell); });
}

}  // namespace qelvane::qelutiltools
