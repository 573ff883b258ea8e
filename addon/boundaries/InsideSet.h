#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace qelvane::qelutiltools {

/// One bit per node of a zone, set when the node lies inside the pick boundary. Nodes count from 0.
class InsideSet {
 public:
  explicit InsideSet(std::int64_t nodeCount)
      : m_nodeCount(nodeCount), m_words(static_cast<std::size_t>(WordCount(nodeCount)), 0) {}

  static constexpr std::int64_t kBitsPerWord = 64;
  static constexpr std::int64_t WordCount(std::int64_t bitCount) {
    return (bitCount + kBitsPerWord - 1) / kBitsPerWord;
  }

  std::int64_t NodeCount() const { return m_nodeCount; }

  /// Takes 64 nodes at once, as Word gives them; bits past the last node must be 0.
  void SetWord(std::int64_t index, std::uint64_t bits) {
    m_words[static_cast<std::size_t>(index)] = bits;
  }

  /// The node must be one of the zone's.
  void Insert(std::int64_t node) {
    m_words[static_cast<std::size_t>(node / kBitsPerWord)] |= std::uint64_t{1}
                                                              << (node % kBitsPerWord);
  }

  /// A node that the zone does not have is not inside: connectivity read from a file may name one.
  bool Contains(std::int64_t node) const {
    return static_cast<std::uint64_t>(node) < static_cast<std::uint64_t>(m_nodeCount) &&
           ((Word(node / kBitsPerWord) >> (node % kBitsPerWord)) & 1) != 0;
  }

  /// Nodes 64 * index and up, the lowest bit first; bits past the last node are 0.
  std::uint64_t Word(std::int64_t index) const { return m_words[static_cast<std::size_t>(index)]; }

 private:
  std::int64_t m_nodeCount;
  std::vector<std::uint64_t> m_words;
};

/// The word of a decision made item by item. Asks only for items that exist.
template <class IsTaken>
std::uint64_t WordOf(std::int64_t word, std::int64_t itemCount, IsTaken&& isTaken) {
  const std::int64_t first = word * InsideSet::kBitsPerWord;
  const std::int64_t count = std::min(InsideSet::kBitsPerWord, itemCount - first);
  std::uint64_t taken = 0;
  for (std::int64_t bit = 0; bit < count; ++bit) {
    taken |= std::uint64_t{isTaken(first + bit)} << bit;
  }
  return taken;
}

/// Fills the set with the nodes for which the test holds.
template <class IsInside>
void MarkNodes(InsideSet& inside, IsInside&& isInside) {
  const std::int64_t nodeCount = inside.NodeCount();
  for (std::int64_t word = 0; word < InsideSet::WordCount(nodeCount); ++word) {
    inside.SetWord(word, WordOf(word, nodeCount, isInside));
  }
}

}  // namespace qelvane::qelutiltools
