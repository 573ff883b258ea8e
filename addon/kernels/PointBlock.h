#pragma once

#include <array>
#include <cstddef>

namespace qelvane::qelutiltools {

/// How many points a block has.
constexpr std::size_t kBlockPoints = 64;

/// One coordinate of them.
using Values64 = std::array<double, kBlockPoints>;

/// The points, or in a plane their first two coordinates.
struct PointBlock {
  std::array<Values64, 3> axes{};

  Values64& operator[](std::size_t axis) { return axes[axis]; }
  const Values64& operator[](std::size_t axis) const { return axes[axis]; }
};

}  // namespace qelvane::qelutiltools
