#pragma once

#include "Clones.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// One bit for each of 64 bytes that are 0 or 1, the first in the lowest: compilers turn
/// comparisons into bytes well, into bits badly.
QEL_INLINED std::uint64_t PackedBits(const unsigned char (&bytes)[64]) {
  // Eight bytes times this have their bits in the highest byte, in order.
  constexpr std::uint64_t kGather = 0x0102040810204080U;
  std::uint64_t bits = 0;
  for (int group = 0; group < 8; ++group) {
    std::uint64_t eight = 0;
    for (int n = 0; n < 8; ++n) eight |= std::uint64_t{bytes[8 * group + n]} << (8 * n);
    bits |= (eight * kGather >> 56) << (8 * group);
  }
  return bits;
}

}  // namespace qelvane::qelutiltools
