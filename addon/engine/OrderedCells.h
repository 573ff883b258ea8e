#pragma once

#include "CornerRule.h"
#include "InsideSet.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace qelvane::qelutiltools {

/// The node counts of an ordered zone and, from them, its cells: each dimension has one cell fewer
/// than nodes, but at least one. i runs fastest, then j, then k.
struct OrderedGrid {
  std::int64_t iNodes = 1;
  std::int64_t jNodes = 1;
  std::int64_t kNodes = 1;

  static constexpr std::int64_t CellsAlong(std::int64_t nodes) { return nodes > 1 ? nodes - 1 : 1; }

  /// 0 also for more nodes than a host can count, which is in 32 bits.
  std::int64_t NodeCount() const {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    if (iNodes < 1 || jNodes < 1 || kNodes < 1 || iNodes > kMost / jNodes) return 0;
    const std::int64_t inPlane = iNodes * jNodes;
    return inPlane > kMost / kNodes ? 0 : inPlane * kNodes;
  }
  std::int64_t CellCount() const {
    return CellsAlong(iNodes) * CellsAlong(jNodes) * CellsAlong(kNodes);
  }
};

/// Decides the cells of an ordered zone row by row. A cell's corners are its lowest node and the
/// next one along every dimension that has more than one node, so up to 64 cells of a row are
/// decided by shifting the words of the nodes over each other.
class OrderedCells {
 public:
  /// The inside set must have the grid's nodes; it is looked at when words are asked for.
  OrderedCells(const OrderedGrid& grid, const CornerRule& rule, const InsideSet& inside);

  /// The words from firstWord on; bits past the last cell are 0.
  void Words(std::int64_t firstWord, std::int64_t wordCount, std::uint64_t* words) const;

 private:
  struct Cell {
    std::int64_t i;
    std::int64_t j;
    std::int64_t k;
  };
  std::int64_t LowestNode(const Cell& cell) const;
  void NextRow(Cell& cell) const;
  template <std::size_t kCorners>
  std::uint64_t AnyDecisive(std::int64_t node, std::uint64_t needed) const;
  template <std::size_t kCorners>
  void WordsOf(std::int64_t firstWord, std::int64_t wordCount, std::uint64_t* words) const;

  // Dimensions of one node are left out, so that the rows are as long as can be.
  std::int64_t m_iNodes = 1;
  std::int64_t m_jNodes = 1;
  std::int64_t m_iCells = 1;
  std::int64_t m_jCells = 1;
  std::int64_t m_cellCount;
  std::array<std::int64_t, 8> m_cornerSteps{};  ///< from the lowest node to each corner
  std::size_t m_cornerCount = 1;
  std::uint64_t m_decisiveFlip;  ///< makes decisive corners ones
  std::uint64_t m_takenFlip;     ///< makes decided cells taken ones
  const InsideSet& m_inside;
};

}  // namespace qelvane::qelutiltools
