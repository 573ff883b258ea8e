#pragma once

#include <algorithm>
#include <cstdint>

namespace qelvane::qelutiltools {

/// Items are decided 64 at a time: bit b of word w is item 64 * w + b, counted from 0.
constexpr std::int64_t kBitsPerWord = 64;

constexpr std::int64_t WordsFor(std::int64_t itemCount) {
  return (itemCount + kBitsPerWord - 1) / kBitsPerWord;
}

/// How many items the word has, up to 64.
constexpr int ItemsInWord(std::int64_t word, std::int64_t itemCount) {
  return static_cast<int>(std::min(kBitsPerWord, itemCount - word * kBitsPerWord));
}

/// The lowest count bits; count from 1 to 64.
constexpr std::uint64_t LowestBits(int count) {
  return ~std::uint64_t{0} >> (kBitsPerWord - count);
}

/// The word of a decision made item by item. Asks only for items that exist.
template <class IsTaken>
std::uint64_t WordOf(std::int64_t word, std::int64_t itemCount, IsTaken&& isTaken) {
  const std::int64_t first = word * kBitsPerWord;
  const int count = ItemsInWord(word, itemCount);
  std::uint64_t taken = 0;
  for (int bit = 0; bit < count; ++bit) {
    taken |= std::uint64_t{isTaken(first + bit)} << bit;
  }
  return taken;
}

/// Calls visit(bit) for every bit that is set, the lowest first.
template <class Visit>
void VisitBits(std::uint64_t bits, Visit&& visit) {
  for (; bits != 0; bits &= bits - 1) visit(__builtin_ctzll(bits));
}

/// The bits for which the test holds, of those given.
template <class Test>
std::uint64_t BitsWhere(std::uint64_t bits, Test&& test) {
  std::uint64_t kept = 0;
  VisitBits(bits, [&](int bit) { kept |= std::uint64_t{test(bit)} << bit; });
  return kept;
}

}  // namespace qelvane::qelutiltools
