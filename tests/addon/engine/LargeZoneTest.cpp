// Zones with as many nodes as a host can count: no index wraps, whatever is picked with. Values are
// computed where they are asked for, and memory that nobody writes to costs nothing.
#include "Bits.h"
#include "FieldColumn.h"
#include "InsideSet.h"
#include "NodeSpanCells.h"
#include "OrderedCells.h"
#include "PointColumns.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <array>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

namespace {

using namespace qelvane::qelutiltools;

constexpr std::int64_t kMostNodes = std::numeric_limits<LgIndex_t>::max();
constexpr std::int64_t kLastWord = WordsFor(kMostNodes) - 1;

// The last nodes of a zone
// -------------------------------------------------------------------------

/// The place of a node is its number.
double NumberOf(const QelFieldData*, LgIndex_t offset) { return offset; }
double NoPlace(const QelFieldData*, LgIndex_t) { return 0.0; }

PointBox BoxFrom(double low, double high) {
  return PointBox({{{low, high}, {-1.0, 1.0}, {-1.0, 1.0}}});
}

class LastNodes : public ::testing::Test {
 protected:
  const FieldColumn m_numbers{nullptr, NumberOf};
  const FieldColumn m_nowhere{nullptr, NoPlace};
  const PointColumns m_columns{m_numbers, m_nowhere, m_nowhere, kMostNodes};
  PointBlock m_scratch{};
};

TEST_F(LastNodes, AreInABoxThatEndsWithThem) {
  // The last word has 63 nodes.
  ASSERT_EQ(ItemsInWord(kLastWord, kMostNodes), 63);
  const double last = static_cast<double>(kMostNodes - 1);
  EXPECT_EQ(m_columns.InBox(kLastWord, BoxFrom(last, last), m_scratch), std::uint64_t{1} << 62);
  EXPECT_EQ(m_columns.InBox(kLastWord, BoxFrom(last - 62, last + 9), m_scratch), LowestBits(63));
  EXPECT_EQ(m_columns.InBox(kLastWord, BoxFrom(last + 1, 1e300), m_scratch), 0U);
  EXPECT_EQ(m_columns.InBox(kLastWord - 1, BoxFrom(last - 62, last), m_scratch), 0U);
  EXPECT_EQ(m_columns.InBox(kLastWord - 1, BoxFrom(0, last - 63), m_scratch), ~std::uint64_t{0});
}

TEST_F(LastNodes, AreHandedToAShape) {
  const auto isEven = [](const PointBlock& points, std::uint64_t wanted) {
    return BitsWhere(wanted, [&](int bit) {
      return static_cast<std::int64_t>(points[0][static_cast<std::size_t>(bit)]) % 2 == 0;
    });
  };
  const std::uint64_t even = m_columns.InShape(kLastWord, BoxFrom(0, 1e300), m_scratch, isEven);
  EXPECT_EQ(even, 0x5555555555555555U & LowestBits(63));
}

// Cells of ordered zones
// ---------------------------------------------------------------------------

struct GridRow {
  const char* name;
  OrderedGrid grid;
};

void PrintTo(const GridRow& row, std::ostream* out) { *out << row.name; }

class LargeGrid : public ::testing::TestWithParam<GridRow> {};

TEST_P(LargeGrid, TakesTheLastCellByItsLastNode) {
  const OrderedGrid& grid = GetParam().grid;
  ASSERT_GT(grid.NodeCount(), kMostNodes - 1000000);
  ASSERT_GT(grid.CellCount(), std::int64_t{1} << 30);
  InsideSet inside(grid.NodeCount());
  inside.Insert(grid.NodeCount() - 1);
  const OrderedCells cells(grid, CornerRule(PickRule::AnyInside), inside);
  const std::int64_t last = WordsFor(grid.CellCount()) - 1;
  std::array<std::uint64_t, 2> words{~std::uint64_t{0}, ~std::uint64_t{0}};
  cells.Words(last - 1, 2, words.data());
  EXPECT_EQ(words[0], 0U);
  EXPECT_EQ(words[1], std::uint64_t{1} << ((grid.CellCount() - 1) % kBitsPerWord));
  const OrderedCells others(grid, CornerRule(PickRule::AllOutside), inside);
  others.Words(last, 1, words.data());
  const std::uint64_t all = LowestBits(ItemsInWord(last, grid.CellCount()));
  EXPECT_EQ(words[0], all & ~words[1]);
}

INSTANTIATE_TEST_SUITE_P(Shapes, LargeGrid,
                         ::testing::Values(GridRow{"Line", {kMostNodes, 1, 1}},
                                           GridRow{"Column", {1, 1, kMostNodes}},
                                           GridRow{"Plane", {46340, 46341, 1}},
                                           GridRow{"Block", {1290, 1290, 1290}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(OrderedGridSize, IsNoneForMoreNodesThanAHostCounts) {
  EXPECT_EQ((OrderedGrid{kMostNodes, 1, 1}).NodeCount(), kMostNodes);
  EXPECT_EQ((OrderedGrid{46341, 46341, 1}).NodeCount(), 0);
  EXPECT_EQ((OrderedGrid{1291, 1291, 1291}).NodeCount(), 0);
  EXPECT_EQ((OrderedGrid{kMostNodes, kMostNodes, kMostNodes}).NodeCount(), 0);
  EXPECT_EQ((OrderedGrid{0, 5, 5}).NodeCount(), 0);
  EXPECT_EQ((OrderedGrid{-1, -1, 5}).NodeCount(), 0);
}

// Cells by their nodes
// -----------------------------------------------------------------------------

/// Node numbers of which only those that are written to take up memory.
template <class Index>
class SparseNodes {
 public:
  explicit SparseNodes(std::int64_t count)
      : m_bytes(static_cast<std::size_t>(count) * sizeof(Index)) {
    void* const memory = mmap(nullptr, m_bytes, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) throw std::runtime_error("no room for the nodes");
    m_first = static_cast<Index*>(memory);
  }
  ~SparseNodes() { munmap(m_first, m_bytes); }
  SparseNodes(const SparseNodes&) = delete;
  SparseNodes& operator=(const SparseNodes&) = delete;
  Index& operator[](std::int64_t at) { return m_first[at]; }
  void* First() { return m_first; }

 private:
  std::size_t m_bytes;
  Index* m_first = nullptr;
};

template <class Index>
void ExpectLastBrickIsTaken() {
  constexpr std::int64_t kCells = (std::int64_t{1} << 30) + 5;
  constexpr std::int64_t kCorners = 8;
  SparseNodes<Index> nodes(kCells * kCorners);
  // All others stand on node 0, which no zone has that counts from 1.
  nodes[kCells * kCorners - 1] = static_cast<Index>(kMostNodes);
  InsideSet inside(kMostNodes);
  inside.Insert(kMostNodes - 1);
  const QelNodeSpan_s span{nodes.First(), sizeof(Index), 1, kCorners, kCells};
  const std::int64_t last = WordsFor(kCells) - 1;
  std::array<std::uint64_t, 2> words{};
  DecideSpanCells(span, CornerRule(PickRule::AnyInside), inside, last - 1, 2, words.data());
  EXPECT_EQ(words[0], 0U);
  EXPECT_EQ(words[1], std::uint64_t{1} << 4);
}

TEST(LargeZone, TakesTheLastBrickByNarrowNumbers) { ExpectLastBrickIsTaken<std::int32_t>(); }
TEST(LargeZone, TakesTheLastBrickByWideNumbers) { ExpectLastBrickIsTaken<std::int64_t>(); }

TEST(LargeZone, LooksForNodesFarOutsideInVain) {
  InsideSet inside(kMostNodes);
  inside.Insert(0);
  inside.Insert(kMostNodes - 1);
  EXPECT_TRUE(inside.Contains(kMostNodes - 1));
  for (const std::int64_t node :
       {kMostNodes, kMostNodes + 1, std::int64_t{1} << 32, std::int64_t{-1},
        std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
    EXPECT_FALSE(inside.Contains(node)) << node;
  }
  EXPECT_EQ(inside.BitsFrom(kMostNodes - 1), 1U);
}

}  // namespace
