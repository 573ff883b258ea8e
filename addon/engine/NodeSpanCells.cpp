#include "NodeSpanCells.h"

#include "Bits.h"

#include <type_traits>

namespace qelvane::qelutiltools {

namespace {

struct Nodes {
  const void* first;
  std::int64_t cornerCount;  ///< of each cell
  std::int64_t base;
};

constexpr std::int64_t kAnyCount = 0;

/// The cells of one word that have a corner on the decisive side, looked at up to the first such
/// corner. The corner count and the side are constants, so nothing but nodes and bits is read.
/// Going over all corners without branches, by bits or by a byte a node, was slower on the whole:
/// most cells are decided by their first corner, and neighbours alike.
template <class Index, std::int64_t kCorners, bool kDecisiveSide>
std::uint64_t DecidedCells(const Nodes& nodes, std::int64_t firstCell, int cellCount,
                           const InsideSet& inside) {
  using Unsigned = std::make_unsigned_t<Index>;
  const std::int64_t corners = kCorners == kAnyCount ? nodes.cornerCount : kCorners;
  const auto* corner = static_cast<const Index*>(nodes.first) + firstCell * corners;
  const std::uint64_t* const words = inside.Words();
  const auto base = static_cast<Unsigned>(nodes.base);
  const auto nodeCount = static_cast<Unsigned>(inside.NodeCount());
  const auto isDecisive = [&](Index index) {
    // Without a sign, as wide as the host counts, below 0 is past the last node too.
    const Unsigned node = static_cast<Unsigned>(index) - base;
    const bool isInside = node < nodeCount && ((words[node / 64] >> (node % 64)) & 1) != 0;
    return isInside == kDecisiveSide;
  };
  std::uint64_t decided = 0;
  for (int bit = 0; bit < cellCount; ++bit, corner += corners) {
    bool isDecided = false;
    for (std::int64_t n = 0; n < corners; ++n) {
      if (isDecisive(corner[n])) {
        isDecided = true;
        break;
      }
    }
    decided |= std::uint64_t{isDecided} << bit;
  }
  return decided;
}

using DecideWord = std::uint64_t (*)(const Nodes&, std::int64_t, int, const InsideSet&);

template <class Index, std::int64_t kCorners>
DecideWord WithSide(bool decisiveSide) {
  return decisiveSide ? DecidedCells<Index, kCorners, true> : DecidedCells<Index, kCorners, false>;
}

template <class Index>
DecideWord WithCorners(std::int64_t cornerCount, bool decisiveSide) {
  switch (cornerCount) {
    case 2:
      return WithSide<Index, 2>(decisiveSide);
    case 3:
      return WithSide<Index, 3>(decisiveSide);
    case 4:
      return WithSide<Index, 4>(decisiveSide);
    case 8:
      return WithSide<Index, 8>(decisiveSide);
    default:
      return WithSide<Index, kAnyCount>(decisiveSide);
  }
}

}  // namespace

void DecideSpanCells(const QelNodeSpan_s& span, const CornerRule& rule, const InsideSet& inside,
                     std::int64_t firstWord, std::int64_t wordCount, std::uint64_t* words) {
  const Nodes nodes{span.first, span.nodesPerElement, span.indexBase};
  const DecideWord decide = span.indexWidth == 8
                                ? WithCorners<std::int64_t>(nodes.cornerCount, rule.decisiveSide)
                                : WithCorners<std::int32_t>(nodes.cornerCount, rule.decisiveSide);
  for (std::int64_t n = 0; n < wordCount; ++n) {
    const std::int64_t word = firstWord + n;
    const int cellCount = ItemsInWord(word, span.count);
    const std::uint64_t decided = decide(nodes, word * kBitsPerWord, cellCount, inside);
    words[n] = rule.needsAll ? ~decided & LowestBits(cellCount) : decided;
  }
}

}  // namespace qelvane::qelutiltools
