#include "RangeKernels.h"

#include "PackedBits.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

#if defined(__x86_64__) && defined(__GNUC__)
#define QEL_HAS_AVX2_KERNELS
#include <immintrin.h>
#endif

namespace qelvane::qelutiltools {

namespace {

constexpr float kLargest = std::numeric_limits<float>::max();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// The largest float that is not above the value; what is no number stays so.
float RoundedDown(double value) {
  if (value > kLargest) return value > std::numeric_limits<double>::max() ? kInfinity : kLargest;
  if (value < -kLargest) return -kInfinity;
  const auto nearest = static_cast<float>(value);
  return nearest > value ? std::nextafter(nearest, -kInfinity) : nearest;
}

constexpr int kCount = 64;
constexpr int kAxes = 3;

template <class T>
std::uint64_t ValuesInRange(const T* values, const Range<T>& range) {
  unsigned char isIn[kCount];
  for (int n = 0; n < kCount; ++n) {
    isIn[n] = static_cast<unsigned char>(!(values[n] > range.high) & !(values[n] < range.low));
  }
  return PackedBits(isIn);
}

template <class T>
std::uint64_t PointsInRange(const T* values, const Ranges3<T>& ranges) {
  unsigned char isIn[kCount];
  for (int n = 0; n < kCount; ++n) {
    const T* const point = values + kAxes * n;
    isIn[n] = static_cast<unsigned char>(ranges[0].Has(point[0]) & ranges[1].Has(point[1]) &
                                         ranges[2].Has(point[2]));
  }
  return PackedBits(isIn);
}

constexpr RangeKernels kPlain = {ValuesInRange<float>, ValuesInRange<double>, PointsInRange<float>,
                                 PointsInRange<double>};

#ifdef QEL_HAS_AVX2_KERNELS

#define QEL_AVX2 __attribute__((target("avx2")))

/// A register of 256 bits, its comparisons as one bit a value. "Not above" and "not below" hold for
/// what is no number, as in Range.
struct FloatLanes {
  using Value = float;
  static constexpr int kLanes = 8;
  QEL_AVX2 static std::uint32_t InRange(const float* values, __m256 low, __m256 high) {
    const __m256 v = _mm256_loadu_ps(values);
    return static_cast<std::uint32_t>(_mm256_movemask_ps(
        _mm256_and_ps(_mm256_cmp_ps(v, high, _CMP_NGT_UQ), _mm256_cmp_ps(v, low, _CMP_NLT_UQ))));
  }
  QEL_AVX2 static __m256 Load(const float* values) { return _mm256_loadu_ps(values); }
};

struct DoubleLanes {
  using Value = double;
  static constexpr int kLanes = 4;
  QEL_AVX2 static std::uint32_t InRange(const double* values, __m256d low, __m256d high) {
    const __m256d v = _mm256_loadu_pd(values);
    return static_cast<std::uint32_t>(_mm256_movemask_pd(
        _mm256_and_pd(_mm256_cmp_pd(v, high, _CMP_NGT_UQ), _mm256_cmp_pd(v, low, _CMP_NLT_UQ))));
  }
  QEL_AVX2 static __m256d Load(const double* values) { return _mm256_loadu_pd(values); }
};

template <class Lanes, class T = typename Lanes::Value>
QEL_AVX2 std::uint64_t ValuesInRangeAvx2(const T* values, const Range<T>& range) {
  T lows[Lanes::kLanes];
  T highs[Lanes::kLanes];
  for (int lane = 0; lane < Lanes::kLanes; ++lane) {
    lows[lane] = range.low;
    highs[lane] = range.high;
  }
  const auto low = Lanes::Load(lows);
  const auto high = Lanes::Load(highs);
  std::uint64_t word = 0;
  for (int n = 0; n < kCount; n += Lanes::kLanes) {
    word |= std::uint64_t{Lanes::InRange(values + n, low, high)} << n;
  }
  // What comes after is built for 128 bits and would drag the upper halves along.
  _mm256_zeroupper();
  return word;
}

/// Every third bit, from the lowest on, moved together.
std::uint64_t EveryThirdBit(std::uint64_t bits) {
  bits &= 0x9249249249249249U;
  bits = (bits ^ (bits >> 2)) & 0x30c30c30c30c30c3U;
  bits = (bits ^ (bits >> 4)) & 0xf00f00f00f00f00fU;
  bits = (bits ^ (bits >> 8)) & 0x00ff0000ff0000ffU;
  bits = (bits ^ (bits >> 16)) & 0xffff00000000ffffU;
  return (bits ^ (bits >> 32)) & 0x00000000003fffffU;
}

/// From one bit a coordinate to one bit a point, which is in range with all three.
std::uint64_t BitsOfPoints(const std::uint64_t (&bits)[kAxes]) {
  const std::uint64_t first =
      bits[0] & (bits[0] >> 1 | bits[1] << 63) & (bits[0] >> 2 | bits[1] << 62);
  const std::uint64_t second =
      bits[1] & (bits[1] >> 1 | bits[2] << 63) & (bits[1] >> 2 | bits[2] << 62);
  const std::uint64_t third = bits[2] & bits[2] >> 1 & bits[2] >> 2;
  // Points begin at bits 0, 3, ... of all 192: in the second word at 2, in the third at 1.
  constexpr std::uint64_t kStarts = 0x9249249249249249U;
  if (((first & kStarts) | (second & kStarts << 2) | (third & kStarts << 1)) == 0) return 0;
  return EveryThirdBit(first) | EveryThirdBit(second >> 2) << 22 | EveryThirdBit(third >> 1) << 43;
}

/// The coordinates as they lie, each compared with the bounds of its axis, which come back after
/// three registers.
template <class Lanes, class T = typename Lanes::Value>
QEL_AVX2 std::uint64_t PointsInRangeAvx2(const T* values, const Ranges3<T>& ranges) {
  T lows[kAxes * Lanes::kLanes];
  T highs[kAxes * Lanes::kLanes];
  for (std::size_t n = 0; n < kAxes * Lanes::kLanes; ++n) {
    lows[n] = ranges[n % kAxes].low;
    highs[n] = ranges[n % kAxes].high;
  }
  const auto low0 = Lanes::Load(lows);
  const auto low1 = Lanes::Load(lows + Lanes::kLanes);
  const auto low2 = Lanes::Load(lows + 2 * Lanes::kLanes);
  const auto high0 = Lanes::Load(highs);
  const auto high1 = Lanes::Load(highs + Lanes::kLanes);
  const auto high2 = Lanes::Load(highs + 2 * Lanes::kLanes);

  constexpr int kStep = kAxes * Lanes::kLanes;
  std::uint32_t masks[kCount / Lanes::kLanes];
  for (int n = 0; n < kCount / Lanes::kLanes; ++n) {
    const T* const step = values + kStep * n;
    masks[n] = Lanes::InRange(step, low0, high0) |
               Lanes::InRange(step + Lanes::kLanes, low1, high1) << Lanes::kLanes |
               Lanes::InRange(step + 2 * Lanes::kLanes, low2, high2) << (2 * Lanes::kLanes);
  }
  _mm256_zeroupper();
  std::uint64_t bits[kAxes] = {};
  for (int n = 0; n < kCount / Lanes::kLanes; ++n) {
    const int at = kStep * n;
    bits[at / kCount] |= std::uint64_t{masks[n]} << (at % kCount);
    const int left = kCount - at % kCount;
    if (left < kStep) bits[at / kCount + 1] |= std::uint64_t{masks[n]} >> left;
  }
  return BitsOfPoints(bits);
}

constexpr RangeKernels kAvx2 = {ValuesInRangeAvx2<FloatLanes>, ValuesInRangeAvx2<DoubleLanes>,
                                PointsInRangeAvx2<FloatLanes>, PointsInRangeAvx2<DoubleLanes>};

#endif

}  // namespace

Range<float> FloatsIn(const Range<double>& range) {
  return {-RoundedDown(-range.low), RoundedDown(range.high)};
}

const RangeKernels& PlainRangeKernels() { return kPlain; }

const RangeKernels& BestRangeKernels() {
#ifdef QEL_HAS_AVX2_KERNELS
  static const bool hasAvx2 = __builtin_cpu_supports("avx2") != 0;
  if (hasAvx2) return kAvx2;
#endif
  return kPlain;
}

}  // namespace qelvane::qelutiltools
