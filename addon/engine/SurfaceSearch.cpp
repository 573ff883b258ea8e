#include "SurfaceSearch.h"

#include "HostLock.h"
#include "OrderedCells.h"
#include "SurfaceWalk.h"

#include "qelvane/QelUtil.h"

#include <array>
#include <cstddef>

namespace qelvane::qelutiltools {

namespace {

using NodeIndex = std::array<std::int64_t, 3>;

/// The sides of an index block. A dimension of one node has both its sides at that node, so all
/// nodes of a flat or a thin zone are on the surface.
class OrderedSurface {
 public:
  using Cursor = std::int8_t;  ///< the next of the 27 places around a node

  explicit OrderedSurface(const NodeIndex& nodes) : m_nodes(nodes) {}

  bool IsOnSurface(std::int64_t node) const {
    const NodeIndex at = IndexOf(node);
    return IsAtEnd(at, 0) || IsAtEnd(at, 1) || IsAtEnd(at, 2);
  }

  bool Next(std::int64_t node, Cursor& cursor, std::int64_t& next) const {
    constexpr Cursor kPlaces = 27;
    const NodeIndex at = IndexOf(node);
    while (cursor < kPlaces) {
      const NodeIndex step{cursor % 3 - 1, cursor / 3 % 3 - 1, cursor / 9 - 1};
      ++cursor;
      if (!SharesSide(at, step)) continue;
      next = (at[2] + step[2]) * m_nodes[1] + at[1] + step[1];
      next = next * m_nodes[0] + at[0] + step[0];
      return true;
    }
    return false;
  }

 private:
  NodeIndex IndexOf(std::int64_t node) const {
    return {node % m_nodes[0], node / m_nodes[0] % m_nodes[1], node / m_nodes[0] / m_nodes[1]};
  }

  bool IsAtEnd(const NodeIndex& at, std::size_t axis) const {
    return at[axis] == 0 || at[axis] == m_nodes[axis] - 1;
  }

  /// Whether the node a step further exists and a cell face on one side of the block has both.
  bool SharesSide(const NodeIndex& at, const NodeIndex& step) const {
    bool sharesSide = false;
    for (std::size_t axis = 0; axis < at.size(); ++axis) {
      const std::int64_t there = at[axis] + step[axis];
      if (there < 0 || there >= m_nodes[axis]) return false;
      sharesSide = sharesSide || (step[axis] == 0 && IsAtEnd(at, axis));
    }
    return sharesSide;
  }

  NodeIndex m_nodes;
};

}  // namespace

bool SearchOrderedSurface(LgIndex_t zone, std::int64_t seed, InsideSet& inside) {
  LgIndex_t iMax = 0;
  LgIndex_t jMax = 0;
  LgIndex_t kMax = 0;
  QelUtilZoneGetIJK(zone, &iMax, &jMax, &kMax);
  const std::int64_t nodeCount = OrderedGrid{iMax, jMax, kMax}.NodeCount();
  // A host that has changed its mind about the zone must not lead past the end of the set.
  if (nodeCount < 1 || nodeCount != inside.NodeCount()) return false;
  OrderedSurface surface({iMax, jMax, kMax});
  if (!surface.IsOnSurface(seed)) return false;
  KeepReached(surface, seed, inside);
  return true;
}

bool SearchSurface(LgIndex_t zone, LgIndex_t seed, InsideSet& inside) {
  const HostLock lock;
  const std::int64_t seedNode = std::int64_t{seed} - 1;
  if (!inside.Contains(seedNode)) return false;
  switch (QelUtilZoneGetType(zone)) {
    case ZoneType_Ordered:
      return SearchOrderedSurface(zone, seedNode, inside);
    case ZoneType_FETriangle:
    case ZoneType_FEQuad:
    case ZoneType_FETetra:
    case ZoneType_FEBrick:
    case ZoneType_FELineSeg:
      return SearchElementSurface(zone, seedNode, inside);
    case ZoneType_FEPolygon:
    case ZoneType_FEPolyhedron:
      return SearchFaceMapSurface(zone, seedNode, inside);
    default:
      return false;
  }
}

}  // namespace qelvane::qelutiltools
