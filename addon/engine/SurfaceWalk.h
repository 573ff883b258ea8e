#pragma once

#include "InsideSet.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace qelvane::qelutiltools {

/// Walks a surface depth first from the seed and leaves in the set the nodes that it reached.
///
/// surface.Next(node, cursor, next) gives the node's neighbours one after the other, in any order
/// and as often as it likes, and false after the last; a fresh cursor, Surface::Cursor(), starts.
///
/// The nodes come in the order of the recursion "visit a node: for each neighbour in the set that
/// was not visited, visit it". The way back is kept here because on a large surface it is as long
/// as the surface has nodes, far more than a call stack holds.
template <class Surface>
void KeepReached(Surface& surface, std::int64_t seed, InsideSet& inside) {
  struct Visit {
    std::int32_t node;  ///< as wide as the host counts
    typename Surface::Cursor cursor;
  };
  InsideSet reached(inside.NodeCount());
  std::vector<Visit> way;
  const auto enter = [&](std::int64_t node) {
    reached.Insert(node);
    way.push_back({static_cast<std::int32_t>(node), typename Surface::Cursor()});
  };
  enter(seed);
  while (!way.empty()) {
    std::int64_t next = 0;
    if (!surface.Next(way.back().node, way.back().cursor, next)) {
      way.pop_back();
    } else if (inside.Contains(next) && !reached.Contains(next)) {
      enter(next);
    }
  }
  inside = std::move(reached);
}

}  // namespace qelvane::qelutiltools
