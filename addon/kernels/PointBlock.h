#pragma once

#include <array>
#include <cstddef>

namespace qelvane::qelutiltools {

/// 64 values of one coordinate.
using Values64 = std::array<double, 64>;

/// 64 points, or in a plane their first two coordinates.
struct PointBlock {
  std::array<Values64, 3> axes{};

  Values64& operator[](std::size_t axis) { return axes[axis]; }
  const Values64& operator[](std::size_t axis) const { return axes[axis]; }
};

}  // namespace qelvane::qelutiltools
