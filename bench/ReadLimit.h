#pragma once

#include <cstdint>

namespace marquell::bench {

/// Reads all the bytes and does as little as can be with them: what a loop over them costs at
/// least. What it returns depends on every byte.
std::uint64_t ReadAll(const void* first, std::int64_t byteCount);

}  // namespace marquell::bench
