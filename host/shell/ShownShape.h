#pragma once

#include "qelvane/Extensions.h"

#include <array>
#include <cstdint>

namespace qelhost {

/// A box or a sphere that the user drags, sizes and turns in the plot, as the add-on that shows it
/// said last or the user left it. A sphere's anchor is its centre and size[0] its radius.
struct ShownShape {
  bool isShown = false;
  QelShape_e kind = Shape_Box;
  std::array<double, 3> anchor{};
  std::array<double, 3> size{};
  std::array<double, 3> rotationDeg{};
  QelShapeChanged_pf changed = nullptr;
  /// Another number after every change that the user did not make in the plot.
  std::int64_t version = 0;
};

}  // namespace qelhost
