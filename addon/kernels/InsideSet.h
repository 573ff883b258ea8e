#pragma once

#include "Bits.h"

#include <cstdint>
#include <vector>

namespace qelvane::qelutiltools {

/// One bit per node of a zone, set when the node lies inside the pick boundary. Nodes count from 0.
class InsideSet {
 public:
  explicit InsideSet(std::int64_t nodeCount)
      : m_nodeCount(nodeCount), m_words(static_cast<std::size_t>(WordCount(nodeCount)) + 1, 0) {}

  static constexpr std::int64_t kBitsPerWord = qelutiltools::kBitsPerWord;
  static constexpr std::int64_t WordCount(std::int64_t bitCount) { return WordsFor(bitCount); }

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

  /// Nodes first, first + 1, ..., the lowest bit first; first must be one of the zone's.
  std::uint64_t BitsFrom(std::int64_t first) const {
    const auto word = static_cast<std::size_t>(first / kBitsPerWord);
    const auto shift = static_cast<int>(first % kBitsPerWord);
    return m_words[word] >> shift | m_words[word + 1] << 1 << (kBitsPerWord - 1 - shift);
  }

  /// All of them, WordCount(NodeCount()) words.
  const std::uint64_t* Words() const { return m_words.data(); }

 private:
  std::int64_t m_nodeCount;
  std::vector<std::uint64_t> m_words;  ///< and a word of zeros after the last
};

/// Fills the set with the nodes for which the test holds, asked in order.
template <class IsInside>
void MarkNodes(InsideSet& inside, IsInside&& isInside) {
  const std::int64_t nodeCount = inside.NodeCount();
  for (std::int64_t word = 0; word < InsideSet::WordCount(nodeCount); ++word) {
    inside.SetWord(word, WordOf(word, nodeCount, isInside));
  }
}

}  // namespace qelvane::qelutiltools
