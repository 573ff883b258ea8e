#pragma once

#include "ZoneSurface.h"

namespace qelhost {

/// How roughly a surface is shown, and which part of it. Like all of it by default.
struct RoughDetail {
  double side = 0.0;                          ///< of the cubes within which corners become one
  std::array<double, 2> low{-1e300, -1e300};  ///< of X and Y, what lies outside is left out
  std::array<double, 2> high{1e300, 1e300};

  bool operator==(const RoughDetail& other) const {
    return side == other.side && low == other.low && high == other.high;
  }
};

/// Fewer faces that look alike from afar, by nodes of the zone. What is left of a face keeps its
/// cell.
FaceList RoughFaces(const ZoneSurface& surface, const RoughDetail& detail);

}  // namespace qelhost
