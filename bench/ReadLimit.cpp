#include "ReadLimit.h"

#include "Clones.h"

namespace marquell::bench {

QEL_CLONES std::uint64_t ReadAll(const void* first, std::int64_t byteCount) {
  const auto* const words = static_cast<const std::uint64_t*>(first);
  const std::int64_t wordCount = byteCount / static_cast<std::int64_t>(sizeof *words);
  // Several words at a time, so that no addition waits for the one before.
  constexpr std::int64_t kLanes = 32;
  std::uint64_t lanes[kLanes] = {};
  std::int64_t word = 0;
  for (; word + kLanes <= wordCount; word += kLanes) {
    for (std::int64_t lane = 0; lane < kLanes; ++lane) lanes[lane] |= words[word + lane];
  }
  std::uint64_t all = 0;
  for (const std::uint64_t lane : lanes) all |= lane;
  for (; word < wordCount; ++word) all |= words[word];
  return all;
}

}  // namespace marquell::bench
