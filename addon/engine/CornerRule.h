#pragma once

#include "InsideSet.h"
#include "PickTypes.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// What decides a cell by its corners. For the ANY rules the first corner on the rule's side takes
/// the cell, for the ALL rules the first on the other side rejects it; without such a corner the
/// ALL rules take it.
struct CornerRule {
  bool decisiveSide;  ///< of the corner that decides: true is inside
  bool needsAll;

  explicit constexpr CornerRule(PickRule rule)
      : decisiveSide(TakesOutside(rule) == NeedsAllCorners(rule)),
        needsAll(NeedsAllCorners(rule)) {}
};

/// Decides one cell. anyCorner(test) visits the cell's corner nodes, counted from 0, in order until
/// the test holds for one, and answers whether it did. A node visited twice changes nothing.
template <class AnyCorner>
bool TakesCell(const CornerRule& rule, const InsideSet& inside, AnyCorner&& anyCorner) {
  const bool isDecided =
      anyCorner([&](std::int64_t node) { return inside.Contains(node) == rule.decisiveSide; });
  return isDecided != rule.needsAll;
}

/// Visits the nodes of a list in order until the test holds for one.
template <class NodeAt, class Test>
bool AnyOfCorners(std::int64_t cornerCount, NodeAt&& nodeAt, Test&& test) {
  for (std::int64_t corner = 0; corner < cornerCount; ++corner) {
    if (test(nodeAt(corner))) return true;
  }
  return false;
}

}  // namespace qelvane::qelutiltools
