#pragma once

#include "InsideSet.h"
#include "PickTypes.h"

#include <array>
#include <cstdint>

namespace qelvane::qelutiltools {

/// Decides one cell. anyCorner(test) visits the cell's corner nodes, counted from 0, in order until
/// the test holds for one, and answers whether it did. For the ANY rules the first corner on the
/// rule's side takes the cell, for the ALL rules the first on the other side rejects it; without
/// such a corner the ALL rules take it. A node visited twice changes nothing.
template <class AnyCorner>
bool TakesCell(PickRule rule, const InsideSet& inside, AnyCorner&& anyCorner) {
  const bool needsAll = NeedsAllCorners(rule);
  const bool decisiveSide = TakesOutside(rule) == needsAll;
  const bool isDecided =
      anyCorner([&](std::int64_t node) { return inside.Contains(node) == decisiveSide; });
  return isDecided != needsAll;
}

/// Visits the nodes of a list in order until the test holds for one.
template <class NodeAt, class Test>
bool AnyOfCorners(std::int64_t cornerCount, NodeAt&& nodeAt, Test&& test) {
  for (std::int64_t corner = 0; corner < cornerCount; ++corner) {
    if (test(nodeAt(corner))) return true;
  }
  return false;
}

/// The node counts of an ordered zone and, from them, its cells: each dimension has one cell fewer
/// than nodes, but at least one. i runs fastest, then j, then k.
struct OrderedGrid {
  std::int64_t iNodes = 1;
  std::int64_t jNodes = 1;
  std::int64_t kNodes = 1;

  static constexpr std::int64_t CellsAlong(std::int64_t nodes) { return nodes > 1 ? nodes - 1 : 1; }

  std::int64_t NodeCount() const { return iNodes * jNodes * kNodes; }
  std::int64_t CellCount() const {
    return CellsAlong(iNodes) * CellsAlong(jNodes) * CellsAlong(kNodes);
  }
};

/// The corner nodes of one ordered cell.
struct OrderedCorners {
  std::array<std::int64_t, 8> nodes{};
  int count = 0;  ///< 1, 2, 4 or 8
};

/// Corners of the cell (both counted from 0): its lowest node and the next one along every
/// dimension that has more than one node.
inline OrderedCorners CornersOfOrderedCell(const OrderedGrid& grid, std::int64_t cell) {
  const std::int64_t iCells = OrderedGrid::CellsAlong(grid.iNodes);
  const std::int64_t jCells = OrderedGrid::CellsAlong(grid.jNodes);
  const std::int64_t i = cell % iCells;
  const std::int64_t j = cell / iCells % jCells;
  const std::int64_t k = cell / iCells / jCells;
  const std::int64_t jStep = grid.iNodes;
  const std::int64_t kStep = grid.iNodes * grid.jNodes;

  OrderedCorners corners;
  corners.nodes[0] = i + j * jStep + k * kStep;
  corners.count = 1;
  const auto spread = [&corners](std::int64_t nodes, std::int64_t step) {
    if (nodes <= 1) return;
    for (int c = 0; c < corners.count; ++c) {
      corners.nodes[static_cast<std::size_t>(corners.count + c)] =
          corners.nodes[static_cast<std::size_t>(c)] + step;
    }
    corners.count *= 2;
  };
  spread(grid.iNodes, 1);
  spread(grid.jNodes, jStep);
  spread(grid.kNodes, kStep);
  return corners;
}

/// Visits every taken item, lowest first. takenWord(w) answers 64 items at once, item 64 * w in the
/// lowest bit; bits past itemCount are ignored and a word of zeros costs one test. Returns how many
/// were visited.
template <class TakenWord, class Visit>
std::int64_t VisitTaken(std::int64_t itemCount, TakenWord&& takenWord, Visit&& visit) {
  std::int64_t visited = 0;
  for (std::int64_t first = 0; first < itemCount; first += InsideSet::kBitsPerWord) {
    std::uint64_t taken = takenWord(first / InsideSet::kBitsPerWord);
    const std::int64_t left = itemCount - first;
    if (left < InsideSet::kBitsPerWord) taken &= (std::uint64_t{1} << left) - 1;
    for (; taken != 0; taken &= taken - 1) {
      visit(first + __builtin_ctzll(taken));
      ++visited;
    }
  }
  return visited;
}

}  // namespace qelvane::qelutiltools
