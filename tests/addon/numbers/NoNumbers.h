// Values that no arithmetic gets back from.
#pragma once

#include <limits>

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
