// Cells decided 64 at a time against one cell after the other by the corner rule.
#include "Bits.h"
#include "CornerRule.h"
#include "NodeSpanCells.h"
#include "OrderedCells.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace qelvane::qelutiltools;

constexpr PickRule kAllRules[] = {PickRule::AnyInside, PickRule::AnyOutside, PickRule::AllInside,
                                  PickRule::AllOutside};

/// Runs of nodes inside and outside, so that whole words of either kind and edges come up.
InsideSet SomeNodes(std::int64_t nodeCount, std::mt19937& engine) {
  InsideSet inside(nodeCount);
  const unsigned longest = 1 + engine() % 200;
  bool isInside = engine() % 2 == 0;
  for (std::int64_t node = 0; node < nodeCount; isInside = !isInside) {
    for (unsigned left = 1 + engine() % longest; left > 0 && node < nodeCount; --left, ++node) {
      if (isInside) inside.Insert(node);
    }
  }
  return inside;
}

std::uint64_t WordByCorners(std::int64_t word, const std::vector<std::vector<std::int64_t>>& cells,
                            PickRule rule, const InsideSet& inside) {
  return WordOf(word, static_cast<std::int64_t>(cells.size()), [&](std::int64_t cell) {
    const std::vector<std::int64_t>& corners = cells[static_cast<std::size_t>(cell)];
    return TakesCell(CornerRule(rule), inside, [&](auto&& test) {
      return AnyOfCorners(
          static_cast<std::int64_t>(corners.size()),
          [&](std::int64_t corner) { return corners[static_cast<std::size_t>(corner)]; }, test);
    });
  });
}

// Nodes in memory -----------------------------------------------------------------------------

template <class Index>
void CompareSpans(int base, std::size_t cornerCount) {
  constexpr std::int64_t kNodeCount = 333;
  constexpr std::size_t kCellCount = 64 * 4 + 21;
  std::mt19937 engine(static_cast<unsigned>(cornerCount));
  // Some nodes do not exist, on either side.
  const std::int64_t missing[] = {-1,         -base - 1,  kNodeCount, kNodeCount + 64,
                                  2000000000, -2000000000};
  std::vector<std::vector<std::int64_t>> cells(kCellCount);
  std::vector<Index> stored;
  for (std::vector<std::int64_t>& corners : cells) {
    const auto start = static_cast<std::int64_t>(engine() % kNodeCount);
    for (std::size_t corner = 0; corner < cornerCount; ++corner) {
      const std::int64_t node = engine() % 100 == 0
                                    ? missing[engine() % std::size(missing)]
                                    : (start + static_cast<std::int64_t>(corner)) % kNodeCount;
      corners.push_back(node);
      stored.push_back(static_cast<Index>(node + base));
    }
  }
  const QelNodeSpan_s span{stored.data(), sizeof(Index), base, static_cast<int>(cornerCount),
                           kCellCount};
  for (int round = 0; round < 10; ++round) {
    const InsideSet inside = SomeNodes(kNodeCount, engine);
    for (const PickRule rule : kAllRules) {
      std::vector<std::uint64_t> words(3, 7);
      DecideSpanCells(span, CornerRule(rule), inside, 2, 3, words.data());
      for (std::int64_t word = 0; word < 3; ++word) {
        EXPECT_EQ(words[static_cast<std::size_t>(word)],
                  WordByCorners(2 + word, cells, rule, inside))
            << cornerCount << " corners, rule " << static_cast<int>(rule);
      }
    }
  }
}

TEST(CellRule, NodesInMemoryDecideAsNodesAskedFor) {
  for (std::size_t cornerCount = 1; cornerCount <= 9; ++cornerCount) {
    for (const int base : {0, 1}) {
      CompareSpans<std::int32_t>(base, cornerCount);
      CompareSpans<std::int64_t>(base, cornerCount);
    }
  }
}

TEST(CellRule, TheLowestIndexOfAWideMapIsNoNode) {
  std::vector<std::int64_t> stored(8, std::numeric_limits<std::int64_t>::min());
  const QelNodeSpan_s span{stored.data(), 8, 1, 8, 1};
  InsideSet inside(1);
  inside.Insert(0);
  std::uint64_t word = 0;
  DecideSpanCells(span, CornerRule(PickRule::AllOutside), inside, 0, 1, &word);
  EXPECT_EQ(word, 1u);
}

// Ordered zones -------------------------------------------------------------------------------

/// The corners of each cell: its lowest node and the next one along every dimension that has more
/// than one node.
std::vector<std::vector<std::int64_t>> CornersOf(const OrderedGrid& grid) {
  std::vector<std::vector<std::int64_t>> cells;
  const auto last = [](std::int64_t nodes) { return nodes > 1 ? 1 : 0; };
  for (std::int64_t k = 0; k < OrderedGrid::CellsAlong(grid.kNodes); ++k) {
    for (std::int64_t j = 0; j < OrderedGrid::CellsAlong(grid.jNodes); ++j) {
      for (std::int64_t i = 0; i < OrderedGrid::CellsAlong(grid.iNodes); ++i) {
        std::vector<std::int64_t> corners;
        for (int dk = 0; dk <= last(grid.kNodes); ++dk) {
          for (int dj = 0; dj <= last(grid.jNodes); ++dj) {
            for (int di = 0; di <= last(grid.iNodes); ++di) {
              corners.push_back(((k + dk) * grid.jNodes + j + dj) * grid.iNodes + i + di);
            }
          }
        }
        cells.push_back(corners);
      }
    }
  }
  return cells;
}

TEST(CellRule, RowsOfOrderedCellsDecideAsTheirCorners) {
  std::mt19937 engine(4);
  std::vector<OrderedGrid> grids = {{1, 1, 1},   {2, 1, 1},   {1, 2, 1},   {1, 1, 2},  {65, 1, 1},
                                    {64, 1, 1},  {1, 130, 1}, {1, 1, 129}, {7, 1, 9},  {1, 7, 9},
                                    {7, 9, 1},   {2, 2, 2},   {66, 3, 2},  {64, 2, 3}, {3, 70, 2},
                                    {200, 3, 3}, {129, 5, 1}, {1, 129, 5}};
  for (int n = 0; n < 40; ++n) {
    const auto length = [&engine] { return static_cast<std::int64_t>(1 + engine() % 20); };
    grids.push_back({length(), length(), length()});
  }
  for (const OrderedGrid& grid : grids) {
    const std::vector<std::vector<std::int64_t>> cells = CornersOf(grid);
    ASSERT_EQ(static_cast<std::int64_t>(cells.size()), grid.CellCount());
    for (const PickRule rule : kAllRules) {
      const InsideSet inside = SomeNodes(grid.NodeCount(), engine);
      const OrderedCells ordered(grid, CornerRule(rule), inside);
      const std::int64_t wordCount = WordsFor(grid.CellCount());
      // From the start, and from any other word on.
      for (const std::int64_t first : {std::int64_t{0}, wordCount / 2, wordCount - 1}) {
        std::vector<std::uint64_t> words(static_cast<std::size_t>(wordCount - first));
        ordered.Words(first, wordCount - first, words.data());
        for (std::int64_t word = first; word < wordCount; ++word) {
          ASSERT_EQ(words[static_cast<std::size_t>(word - first)],
                    WordByCorners(word, cells, rule, inside))
              << grid.iNodes << " x " << grid.jNodes << " x " << grid.kNodes << ", rule "
              << static_cast<int>(rule) << ", word " << word;
        }
      }
    }
  }
}

}  // namespace
