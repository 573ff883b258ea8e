#pragma once

#include <array>
#include <string>

namespace qelhost {

using Colour = std::array<double, 3>;

constexpr Colour kInk = {0.13, 0.15, 0.19};
constexpr Colour kGrey = {0.78, 0.8, 0.83};
constexpr Colour kGeometryColour = {0.85, 0.1, 0.55};

}  // namespace qelhost
