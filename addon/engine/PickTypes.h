#pragma once

#include <cstdint>

namespace qelvane::qelutiltools {

/// What the user picks with. The numbers are those of the keyword map.
enum class PickKind : std::int32_t {
  None = 0,
  Element = 1,
  Rectangle = 2,
  Polygon = 3,
  Circle = 4,
  Cube = 5,
  Sphere = 6
};

/// Which cells a boundary takes: side (0 inside, 1 outside) + 2 x (0 any corner, 1 all corners).
enum class PickRule : std::int32_t { AnyInside = 0, AnyOutside = 1, AllInside = 2, AllOutside = 3 };

constexpr bool TakesOutside(PickRule rule) { return (static_cast<std::int32_t>(rule) & 1) != 0; }
constexpr bool NeedsAllCorners(PickRule rule) { return (static_cast<std::int32_t>(rule) & 2) != 0; }

/// The views that the view commands ask for.
enum class StandardView : std::int32_t { XY = 0, XZ = 1, YZ = 2, ThreeD = 3 };

}  // namespace qelvane::qelutiltools
