// Three by three matrices, row after row.
#pragma once

#include <array>
#include <cstddef>

namespace qelhost {

using Matrix = std::array<double, 9>;

inline Matrix Product(const Matrix& a, const Matrix& b) {
  Matrix product{};
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      for (std::size_t i = 0; i < 3; ++i) {
        product[3 * row + column] += a[3 * row + i] * b[3 * i + column];
      }
    }
  }
  return product;
}

}  // namespace qelhost
