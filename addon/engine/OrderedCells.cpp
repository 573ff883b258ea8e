#include "OrderedCells.h"

#include "Bits.h"

#include <algorithm>

namespace qelvane::qelutiltools {

namespace {

constexpr std::uint64_t AllOnesIf(bool condition) { return condition ? ~std::uint64_t{0} : 0; }

}  // namespace

OrderedCells::OrderedCells(const OrderedGrid& grid, const CornerRule& rule, const InsideSet& inside)
    : m_cellCount(grid.CellCount()),
      m_decisiveFlip(AllOnesIf(!rule.decisiveSide)),
      m_takenFlip(AllOnesIf(rule.needsAll)),
      m_inside(inside) {
  std::array<std::int64_t, 3> lengths{1, 1, 1};
  std::size_t used = 0;
  std::int64_t step = 1;
  for (const std::int64_t nodes : {grid.iNodes, grid.jNodes, grid.kNodes}) {
    if (nodes <= 1) continue;
    lengths[used++] = nodes;
    for (std::size_t corner = 0; corner < m_cornerCount; ++corner) {
      m_cornerSteps[m_cornerCount + corner] = m_cornerSteps[corner] + step;
    }
    m_cornerCount *= 2;
    step *= nodes;
  }
  m_iNodes = lengths[0];
  m_jNodes = lengths[1];
  m_iCells = OrderedGrid::CellsAlong(m_iNodes);
  m_jCells = OrderedGrid::CellsAlong(m_jNodes);
}

std::int64_t OrderedCells::LowestNode(const Cell& cell) const {
  return (cell.k * m_jNodes + cell.j) * m_iNodes + cell.i;
}

void OrderedCells::NextRow(Cell& cell) const {
  cell.i = 0;
  if (++cell.j < m_jCells) return;
  cell.j = 0;
  ++cell.k;
}

/// For 64 lowest nodes from one on: whether any corner is decisive. Bits that are not needed say
/// nothing. Far from the boundary the lowest nodes alone often decide all.
template <std::size_t kCorners>
std::uint64_t OrderedCells::AnyDecisive(std::int64_t node, std::uint64_t needed) const {
  std::uint64_t decisive = m_inside.BitsFrom(node) ^ m_decisiveFlip;
  if ((decisive & needed) == needed) return decisive;
  for (std::size_t corner = 1; corner < kCorners; ++corner) {
    decisive |= m_inside.BitsFrom(node + m_cornerSteps[corner]) ^ m_decisiveFlip;
  }
  return decisive;
}

void OrderedCells::Words(std::int64_t firstWord, std::int64_t wordCount,
                         std::uint64_t* words) const {
  switch (m_cornerCount) {
    case 8:
      return WordsOf<8>(firstWord, wordCount, words);
    case 4:
      return WordsOf<4>(firstWord, wordCount, words);
    case 2:
      return WordsOf<2>(firstWord, wordCount, words);
    default:
      return WordsOf<1>(firstWord, wordCount, words);
  }
}

template <std::size_t kCorners>
void OrderedCells::WordsOf(std::int64_t firstWord, std::int64_t wordCount,
                           std::uint64_t* words) const {
  const std::int64_t firstCell = firstWord * kBitsPerWord;
  Cell cell{firstCell % m_iCells, firstCell / m_iCells % m_jCells, firstCell / m_iCells / m_jCells};
  for (std::int64_t word = 0; word < wordCount; ++word) {
    const int cellCount = ItemsInWord(firstWord + word, m_cellCount);
    std::uint64_t taken = 0;
    for (int done = 0; done < cellCount;) {
      const int count =
          static_cast<int>(std::min<std::int64_t>(m_iCells - cell.i, cellCount - done));
      const std::uint64_t needed = LowestBits(count);
      const std::uint64_t piece = AnyDecisive<kCorners>(LowestNode(cell), needed) ^ m_takenFlip;
      taken |= (piece & needed) << done;
      done += count;
      cell.i += count;
      if (cell.i == m_iCells) NextRow(cell);
    }
    words[word] = taken;
  }
}

}  // namespace qelvane::qelutiltools
