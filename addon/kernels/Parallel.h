#pragma once

#include "qelvane/Extensions.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// Runs body(first, last) over all of `wordCount` words of 64 items: on the host's pool where it
/// pays, in pieces that are handed out as they are done, else at once, here. The body must not
/// throw, and on the pool it must not call the host.
///
/// parallel  null: here
template <class Body>
void ForWords(const QelParallel_s* parallel, std::int64_t wordCount, const Body& body) {
  // A piece is some ten microseconds of work, much more than it costs to hand out; less than this
  // many of them are done before the pool has woken up.
  constexpr std::int64_t kWordsPerPiece = 256;
  constexpr std::int64_t kPiecesThatPay = 16;
  if (parallel == nullptr || wordCount < kPiecesThatPay * kWordsPerPiece ||
      parallel->workers() < 2) {
    if (wordCount > 0) body(std::int64_t{0}, wordCount);
    return;
  }
  parallel->forRange(
      0, wordCount, kWordsPerPiece,
      [](std::int64_t first, std::int64_t last, void* context) {
        (*static_cast<const Body*>(context))(first, last);
      },
      const_cast<Body*>(&body));
}

}  // namespace qelvane::qelutiltools
