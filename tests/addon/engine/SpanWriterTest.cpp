// Values changed where they lie, against the accessors' conversions applied to one after the other.
#include "Bits.h"
#include "SpanWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace qelvane::qelutiltools;

/// What the contract says of a write, spelt out.
template <class T>
T AsStored(double value) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(value);
  } else {
    if (std::isnan(value)) return 0;
    const double rounded = std::round(value);
    if (rounded <= static_cast<double>(std::numeric_limits<T>::min())) {
      return std::numeric_limits<T>::min();
    }
    if (rounded >= static_cast<double>(std::numeric_limits<T>::max())) {
      return std::numeric_limits<T>::max();
    }
    return static_cast<T>(rounded);
  }
}

constexpr std::int64_t kCount = 64 * 6 + 9;

/// Nothing, everything, edges of words and single values.
std::vector<std::uint64_t> SomeWords(std::mt19937& engine) {
  const std::uint64_t random = std::uint64_t{engine()} << 32 | engine();
  constexpr std::uint64_t kAll = ~std::uint64_t{0};
  return {kAll,
          0,
          random,
          kAll << 63,
          kAll >> 1 & ~std::uint64_t{2},
          kAll,
          random & LowestBits(kCount % 64)};
}

template <class T>
std::vector<T> SomeValues(std::mt19937& engine) {
  std::vector<T> values;
  for (std::int64_t n = 0; n < kCount; ++n) {
    if constexpr (std::is_floating_point_v<T>) {
      const T special[] = {std::numeric_limits<T>::quiet_NaN(), std::numeric_limits<T>::infinity(),
                           std::numeric_limits<T>::max(), T{0}};
      const unsigned pick = engine() % 40;
      values.push_back(pick < 4 ? special[pick]
                                : std::uniform_real_distribution<T>(-50, 50)(engine));
    } else {
      values.push_back(static_cast<T>(std::uint64_t{engine()} << 32 | engine()));
    }
  }
  return values;
}

template <class T>
void Compare(QelFieldDataType_e type, std::size_t gap) {
  std::mt19937 engine(9);
  const std::size_t stride = sizeof(T) + gap;
  for (const double operand : {2.0, -1.5, 0.5, 0.3, 1e300, -7.0, 0.49999999999999994, 2.5}) {
    for (std::uint32_t op = ValueModifier::kAssign; op <= ValueModifier::kDivide; ++op) {
      const ValueModifier modifier{op, operand};
      const std::vector<T> values = SomeValues<T>(engine);
      std::vector<char> memory(stride * values.size(), 'x');
      for (std::size_t n = 0; n < values.size(); ++n) {
        std::memcpy(&memory[n * stride], &values[n], sizeof(T));
      }
      std::vector<char> expected = memory;
      const std::vector<std::uint64_t> words = SomeWords(engine);
      for (std::size_t n = 0; n < values.size(); ++n) {
        if (((words[n / 64] >> (n % 64)) & 1) == 0) continue;
        const T changed = AsStored<T>(ApplyModifier(modifier, static_cast<double>(values[n])));
        std::memcpy(&expected[n * stride], &changed, sizeof(T));
      }
      const SpanWriter writer({memory.data(), type, static_cast<std::int64_t>(stride), kCount},
                              modifier);
      ASSERT_TRUE(writer.CanWrite(kCount));
      writer.Alter(0, 2, words.data());
      writer.Alter(2, 5, words.data() + 2);
      ASSERT_EQ(memory, expected) << "type " << type << ", operator " << op << ", " << operand;
    }
  }
}

TEST(SpanWriter, WritesWhatTheAccessorsWould) {
  for (const std::size_t gap : {0, 1, 8}) {
    Compare<float>(FieldDataType_Float, gap);
    Compare<double>(FieldDataType_Double, gap);
    Compare<std::int32_t>(FieldDataType_Int32, gap);
    Compare<std::int16_t>(FieldDataType_Int16, gap);
    Compare<std::uint8_t>(FieldDataType_Byte, gap);
    Compare<std::int64_t>(FieldDataType_Int64, gap);
  }
}

TEST(SpanWriter, RoundsHalvesAwayFromZeroAndClamps) {
  struct Row {
    double value;
    std::int64_t stored;
  };
  constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
  for (const Row row :
       {Row{0.5, 1}, Row{-0.5, -1}, Row{1.5, 2}, Row{2.5, 3}, Row{-2.5, -3},
        Row{0.49999999999999994, 0}, Row{-0.49999999999999994, 0},
        Row{4503599627370495.5, 4503599627370496}, Row{9007199254740993.0, 9007199254740992},
        Row{9.3e18, kMax}, Row{-9.3e18, kMin}, Row{std::ldexp(1, 63), kMax},
        Row{-std::ldexp(1, 63), kMin}, Row{std::numeric_limits<double>::infinity(), kMax},
        Row{std::numeric_limits<double>::quiet_NaN(), 0}}) {
    std::int64_t stored = 77;
    const SpanWriter writer({&stored, FieldDataType_Int64, 8, 1},
                            {ValueModifier::kAssign, row.value});
    const std::uint64_t word = 1;
    writer.Alter(0, 1, &word);
    EXPECT_EQ(stored, row.stored) << row.value;
  }
}

TEST(SpanWriter, LeavesToTheAccessorsWhatItCannotWrite) {
  double values[4] = {};
  const auto canWrite = [&](QelFieldDataType_e type, std::int64_t stride, std::int64_t count) {
    return SpanWriter({values, type, stride, count}, {ValueModifier::kAdd, 1}).CanWrite(4);
  };
  EXPECT_TRUE(canWrite(FieldDataType_Double, 8, 4));
  EXPECT_FALSE(canWrite(FieldDataType_Double, 8, 3));
  EXPECT_FALSE(canWrite(FieldDataType_Invalid, 8, 4));
  EXPECT_FALSE(canWrite(FieldDataType_Double, 0, 4)) << "all values are the same one";
  EXPECT_FALSE(canWrite(FieldDataType_Double, 4, 4)) << "values overlap";
  const SpanWriter nowhere({nullptr, FieldDataType_Double, 8, 4}, {ValueModifier::kAdd, 1});
  EXPECT_FALSE(nowhere.CanWrite(4));
}

}  // namespace
