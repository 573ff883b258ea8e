#pragma once

#include "InsideSet.h"
#include "PickTypes.h"

#include "qelvane/Extensions.h"
#include "qelvane/Types.h"

#include <cstdint>
#include <functional>

namespace qelvane::qelutiltools {

/// How many nodes and cells a zone has.
struct ZoneSize {
  std::int64_t nodeCount = 0;
  std::int64_t cellCount = 0;
};

ZoneSize SizeOfZone(LgIndex_t zone);

/// The nodes or cells of one zone that a pick takes, decided 64 at a time when asked for: bit b of
/// word(w) is item 64 * w + b, counted from 0. Valid while the inside set it was made from lives.
struct TakenItems {
  std::int64_t count = 0;  ///< items of the zone, taken or not
  std::function<std::uint64_t(std::int64_t word)> word;
};

/// What lets the host show its memory, asked for once an operation; null where it does not.
const QelBulkAccess_s* BulkAccess();

/// The nodes on the rule's side of the boundary; ANY and ALL make no difference to a node.
/// With skipBlanked the nodes that blanking hides are left out.
TakenItems TakenNodes(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked,
                      const QelBulkAccess_s* bulk);

/// The cells that the rule takes by their corners. None in a zone of a type without cells.
TakenItems TakenCells(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked,
                      const QelBulkAccess_s* bulk);

}  // namespace qelvane::qelutiltools
