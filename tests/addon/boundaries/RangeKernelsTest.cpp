// Ranges compared 64 values at a time, and in float, against one comparison after the other.
#include "RangeKernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace qelvane::qelutiltools;

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr float kLargestFloat = std::numeric_limits<float>::max();
constexpr float kSmallestFloat = std::numeric_limits<float>::denorm_min();

/// Bounds at, beside and between floats.
std::vector<double> Bounds() {
  std::vector<double> bounds = {kNoNumber, kInfinity, -kInfinity, 1e300, -1e300, 1e-300, -1e-300};
  for (const double value : {0.0, 1.0, 0.1, 1e30, double{kLargestFloat}, double{kSmallestFloat}}) {
    for (const double near : {value, std::nextafter(value, -kInfinity),
                              std::nextafter(value, kInfinity), value * (1 + 1e-9)}) {
      bounds.push_back(near);
      bounds.push_back(-near);
    }
  }
  return bounds;
}

/// Floats at and beside those bounds.
std::vector<float> Floats() {
  constexpr float kFloatInfinity = std::numeric_limits<float>::infinity();
  std::vector<float> floats = {std::numeric_limits<float>::quiet_NaN(), kFloatInfinity,
                               -kFloatInfinity};
  for (const float value : {0.0f, 1.0f, 0.1f, 1e30f, kLargestFloat, kSmallestFloat}) {
    for (const float near :
         {value, std::nextafter(value, -kFloatInfinity), std::nextafter(value, kFloatInfinity)}) {
      floats.push_back(near);
      floats.push_back(-near);
    }
  }
  return floats;
}

TEST(RangeKernels, AFloatIsInTheRangeOfFloatsWhenItIsInTheRangeOfDoubles) {
  for (const double low : Bounds()) {
    for (const double high : Bounds()) {
      const Range<double> range{low, high};
      const Range<float> floatRange = FloatsIn(range);
      for (const float value : Floats()) {
        ASSERT_EQ(floatRange.Has(value), range.Has(value))
            << value << " in " << low << " to " << high;
      }
    }
  }
}

template <class T>
class Values {
 public:
  /// Some are the bounds themselves, some no numbers or infinite.
  T Next() {
    constexpr T kSpecial[] = {T{0},
                              -T{0},
                              T{1},
                              std::numeric_limits<T>::quiet_NaN(),
                              std::numeric_limits<T>::infinity(),
                              -std::numeric_limits<T>::infinity(),
                              std::numeric_limits<T>::denorm_min(),
                              std::numeric_limits<T>::max()};
    const unsigned pick = m_engine() % 24;
    return pick < std::size(kSpecial) ? kSpecial[pick]
                                      : std::uniform_real_distribution<T>(-1, 2)(m_engine);
  }
  Range<T> NextRange() { return {Next(), Next()}; }

 private:
  std::mt19937 m_engine{7};
};

template <class T>
std::uint64_t OneByOne(const T* values, const Range<T>& range) {
  std::uint64_t bits = 0;
  for (int n = 0; n < 64; ++n) bits |= std::uint64_t{range.Has(values[n])} << n;
  return bits;
}

template <class T>
std::uint64_t OneByOne(const T* values, const Ranges3<T>& ranges) {
  std::uint64_t bits = 0;
  for (int n = 0; n < 64; ++n) {
    bool isIn = true;
    for (int axis = 0; axis < 3; ++axis) {
      isIn = isIn && ranges[static_cast<std::size_t>(axis)].Has(values[3 * n + axis]);
    }
    bits |= std::uint64_t{isIn} << n;
  }
  return bits;
}

template <class T, class Values64, class Points64>
void CompareWithOneByOne(Values64 ofValues, Points64 ofPoints) {
  Values<T> source;
  std::uint64_t seen = 0;
  for (int round = 0; round < 3000; ++round) {
    std::vector<T> values(192);
    for (T& value : values) value = source.Next();
    const Ranges3<T> ranges{source.NextRange(), source.NextRange(), source.NextRange()};
    const std::uint64_t points = OneByOne(values.data(), ranges);
    ASSERT_EQ(ofValues(values.data(), ranges[0]), OneByOne(values.data(), ranges[0]));
    ASSERT_EQ(ofPoints(values.data(), ranges), points);
    seen |= points;
  }
  EXPECT_EQ(seen, ~std::uint64_t{0}) << "some place never held a point in range";
}

class EitherKernels : public ::testing::TestWithParam<const RangeKernels*> {};

TEST_P(EitherKernels, AnswerAsOneComparisonAfterTheOther) {
  const RangeKernels& kernels = *GetParam();
  CompareWithOneByOne<float>(kernels.floats, kernels.floatPoints);
  CompareWithOneByOne<double>(kernels.doubles, kernels.doublePoints);
}

INSTANTIATE_TEST_SUITE_P(RangeKernels, EitherKernels,
                         ::testing::Values(&PlainRangeKernels(), &BestRangeKernels()),
                         [](const auto& kernels) { return kernels.index == 0 ? "Plain" : "Best"; });

}  // namespace
