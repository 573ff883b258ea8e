#pragma once

#include "InsideSet.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace qelvane::qelutiltools {

/// Walks a surface breadth first from the seed and leaves in the set the nodes that it reached.
///
/// surface.Next(node, cursor, next) gives the node's neighbours one after the other, in any order
/// and as often as it likes, and false after the last; a fresh cursor, Surface::Cursor(), starts.
///
/// Which nodes are reached does not depend on the order. Depth first, the way back to the seed
/// would become as long as the surface has nodes; the front is only as long as a line across it.
template <class Surface>
void KeepReached(Surface& surface, std::int64_t seed, InsideSet& inside) {
  InsideSet reached(inside.NodeCount());
  reached.Insert(seed);
  std::vector<std::int32_t> front(1, static_cast<std::int32_t>(seed));  // as wide as hosts count
  std::vector<std::int32_t> ahead;
  while (!front.empty()) {
    ahead.clear();
    for (const std::int32_t node : front) {
      typename Surface::Cursor cursor = {};
      for (std::int64_t next = 0; surface.Next(node, cursor, next);) {
        if (!inside.Contains(next) || reached.Contains(next)) continue;
        reached.Insert(next);
        ahead.push_back(static_cast<std::int32_t>(next));
      }
    }
    front.swap(ahead);
  }
  inside = std::move(reached);
}

}  // namespace qelvane::qelutiltools
