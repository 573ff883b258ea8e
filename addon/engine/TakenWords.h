#pragma once

#include "Bits.h"
#include "TakenItems.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace qelvane::qelutiltools {

/// Decides about words first to last and hands them on, some at a time: use(firstWord, wordCount,
/// words). Bits past valueCount are 0 there. Returns how many bits were set.
template <class Use>
std::int64_t VisitTakenWords(const TakenItems& taken, std::int64_t valueCount, std::int64_t first,
                             std::int64_t last, const Use& use) {
  constexpr std::int64_t kWordsAtOnce = 256;
  std::array<std::uint64_t, kWordsAtOnce> words{};
  std::int64_t takenCount = 0;
  for (std::int64_t word = first; word < last; word += kWordsAtOnce) {
    const std::int64_t wordCount = std::min(kWordsAtOnce, last - word);
    taken.decide(word, wordCount, words.data());
    const std::int64_t end = word + wordCount;
    if (end == WordsFor(valueCount)) {
      words[static_cast<std::size_t>(wordCount - 1)] &=
          LowestBits(ItemsInWord(end - 1, valueCount));
    }
    for (std::int64_t n = 0; n < wordCount; ++n) {
      takenCount += __builtin_popcountll(words[static_cast<std::size_t>(n)]);
    }
    use(word, wordCount, words.data());
  }
  return takenCount;
}

}  // namespace qelvane::qelutiltools
