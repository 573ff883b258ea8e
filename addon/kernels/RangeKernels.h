#pragma once

#include <array>
#include <cstdint>

namespace qelvane::qelutiltools {

/// Ends included. A value that is no number is in every range: it is neither above nor below.
template <class T>
struct Range {
  T low{};
  T high{};

  bool Has(T value) const { return !(value > high) && !(value < low); }
};

/// The floats of a range of doubles: a float is in one exactly when it is in the other.
Range<float> FloatsIn(const Range<double>& range);

/// The three coordinates' ranges.
template <class T>
using Ranges3 = std::array<Range<T>, 3>;

/// Which of 64 values, or of 64 points, are in range; the first in the lowest bit.
struct RangeKernels {
  std::uint64_t (*floats)(const float* values, const Range<float>& range);
  std::uint64_t (*doubles)(const double* values, const Range<double>& range);
  /// Points as x, y, z, x, y, z, ...
  std::uint64_t (*floatPoints)(const float* values, const Ranges3<float>& ranges);
  std::uint64_t (*doublePoints)(const double* values, const Ranges3<double>& ranges);
};

/// Those that every machine runs.
const RangeKernels& PlainRangeKernels();

/// The best that this machine runs.
const RangeKernels& BestRangeKernels();

}  // namespace qelvane::qelutiltools
