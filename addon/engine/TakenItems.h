#pragma once

#include "HostServices.h"
#include "InsideSet.h"
#include "PickTypes.h"

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

/// The nodes or cells of a zone that a pick decides about.
struct ZoneTarget {
  LgIndex_t zone = 0;
  bool isCellCentred = false;
  std::int64_t nodeCount = 0;  ///< of the zone
};

/// Decides 64 items a word: wordCount words from firstWord on. Bits past the last item are ignored.
using DecideWords =
    std::function<void(std::int64_t firstWord, std::int64_t wordCount, std::uint64_t* words)>;

/// The nodes or cells of one zone that a pick takes, decided when asked for: bit b of word w is
/// item 64 * w + b, counted from 0. Valid while the inside set it was made from lives.
struct TakenItems {
  std::int64_t count = 0;  ///< items of the zone, taken or not
  DecideWords decide;
  bool callsHost = false;  ///< deciding does, so it is for one thread alone
};

/// The nodes on the rule's side of the boundary; ANY and ALL make no difference to a node.
/// With skipBlanked the nodes that blanking hides are left out.
TakenItems TakenNodes(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked,
                      const HostServices& services);

/// The cells that the rule takes by their corners. None in a zone of a type without cells.
TakenItems TakenCells(LgIndex_t zone, PickRule rule, const InsideSet& inside, bool skipBlanked,
                      const HostServices& services);

}  // namespace qelvane::qelutiltools
