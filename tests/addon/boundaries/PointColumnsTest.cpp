// Nodes read where they lie or through an accessor, and shapes decided 64 nodes at a time, against
// one node after the other.
#include "Bits.h"
#include "PointColumns.h"
#include "ShapeKernels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace qelvane::qelutiltools;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// A field that lies in memory as some type, some bytes apart, and its values as doubles.
class StoredField {
 public:
  StoredField(QelFieldDataType_e type, std::int64_t gap, std::int64_t count, std::mt19937& engine)
      : m_type(type), m_count(count) {
    for (std::int64_t n = 0; n < count; ++n) {
      switch (type) {
        case FieldDataType_Float:
          Append(static_cast<float>(NextReal(engine)), gap);
          break;
        case FieldDataType_Double:
          Append(NextReal(engine), gap);
          break;
        case FieldDataType_Int32:
          Append(static_cast<std::int32_t>(engine()), gap);
          break;
        case FieldDataType_Int16:
          Append(static_cast<std::int16_t>(engine()), gap);
          break;
        case FieldDataType_Byte:
          Append(static_cast<std::uint8_t>(engine()), gap);
          break;
        default:
          Append(static_cast<std::int64_t>(std::uint64_t{engine()} << 32 | engine()), gap);
          break;
      }
    }
  }

  QelFieldSpan_s Span() { return {m_bytes.data(), m_type, m_stride, m_count}; }
  double At(std::int64_t item) const { return m_values[static_cast<std::size_t>(item)]; }

 private:
  static double NextReal(std::mt19937& engine) {
    return engine() % 16 == 0 ? kNan : std::uniform_real_distribution<double>(-2, 2)(engine);
  }

  template <class T>
  void Append(T value, std::int64_t gap) {
    m_stride = static_cast<std::int64_t>(sizeof(T)) + gap;
    const std::size_t at = m_bytes.size();
    m_bytes.resize(at + static_cast<std::size_t>(m_stride));
    std::memcpy(&m_bytes[at], &value, sizeof value);
    m_values.push_back(static_cast<double>(value));
  }

  QelFieldDataType_e m_type;
  std::int64_t m_count;
  std::int64_t m_stride = 0;
  std::vector<char> m_bytes;
  std::vector<double> m_values;
};

FieldColumn ColumnOf(StoredField& field, std::int64_t count) {
  FieldColumn column;
  EXPECT_TRUE(column.UseSpan(field.Span(), count));
  return column;
}

Range<double> RangeOf(QelFieldDataType_e type) {
  switch (type) {
    case FieldDataType_Int32:
      return {-1.5e9, 1.2e9};
    case FieldDataType_Int16:
      return {-20000.5, 15000};
    case FieldDataType_Byte:
      return {10, 200.25};
    case FieldDataType_Int64:
      return {-5e18, 7e18};
    default:
      return {-1.2345678, 1.5};
  }
}

class ColumnTypes : public ::testing::TestWithParam<std::tuple<QelFieldDataType_e, int>> {};

TEST_P(ColumnTypes, AreReadWhereTheyLieAtAnyDistanceToTheLastItem) {
  const auto [type, gap] = GetParam();
  std::mt19937 engine(3);
  for (const std::int64_t count : {1, 63, 64, 65, 200}) {
    StoredField x(type, gap, count, engine);
    StoredField y(FieldDataType_Float, 0, count, engine);
    StoredField z(FieldDataType_Double, gap, count, engine);
    const PointColumns columns(ColumnOf(x, count), ColumnOf(y, count), ColumnOf(z, count), count);
    EXPECT_FALSE(columns.CallsHost());
    const Ranges3<double> ranges{RangeOf(type), Range<double>{-1, 1}, Range<double>{-1.5, 1.9}};
    const PointBox box(ranges);
    PointBlock scratch;
    for (std::int64_t word = 0; word < WordsFor(count); ++word) {
      const auto isIn = [&](std::int64_t item) {
        return ranges[0].Has(x.At(item)) && ranges[1].Has(y.At(item)) && ranges[2].Has(z.At(item));
      };
      const std::uint64_t expected = WordOf(word, count, isIn);
      EXPECT_EQ(columns.InBox(word, box, scratch), expected);
      const auto isKept = [&](double a, double b, double c) { return std::isnan(b) || a + b < c; };
      const auto inside = [&](const PointBlock& points, std::uint64_t wanted) {
        EXPECT_EQ(wanted, expected);
        return BitsWhere(~std::uint64_t{0}, [&](int bit) {
          const auto n = static_cast<std::size_t>(bit);
          return isKept(points[0][n], points[1][n], points[2][n]);
        });
      };
      EXPECT_EQ(columns.InShape(word, box, scratch, inside),
                WordOf(word, count, [&](std::int64_t item) {
                  return isIn(item) && isKept(x.At(item), y.At(item), z.At(item));
                }));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    PointColumns, ColumnTypes,
    ::testing::Combine(::testing::Values(FieldDataType_Float, FieldDataType_Double,
                                         FieldDataType_Int32, FieldDataType_Int16,
                                         FieldDataType_Byte, FieldDataType_Int64),
                       ::testing::Values(0, 3, 8)));

template <class T>
void CompareInterleaved(QelFieldDataType_e type) {
  constexpr std::int64_t kCount = 64 * 3 + 17;
  std::mt19937 engine(5);
  std::vector<T> values;
  for (std::int64_t n = 0; n < 3 * kCount; ++n) {
    values.push_back(engine() % 20 == 0 ? std::numeric_limits<T>::quiet_NaN()
                                        : std::uniform_real_distribution<T>(-2, 2)(engine));
  }
  std::vector<FieldColumn> axes(3);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const QelFieldSpan_s span{&values[axis], type, 3 * sizeof(T), kCount};
    ASSERT_TRUE(axes[axis].UseSpan(span, kCount));
  }
  ASSERT_TRUE(axes[0].IsFirstOfPoints(axes[1], axes[2]));
  EXPECT_FALSE(axes[0].IsFirstOfPoints(axes[2], axes[1]));
  const PointColumns columns(axes[0], axes[1], axes[2], kCount);
  const Ranges3<double> ranges{Range<double>{-1.1, 1.3}, Range<double>{-1, 1.9},
                               Range<double>{-1.7, 0.9}};
  const PointBox box(ranges);
  PointBlock scratch;
  for (std::int64_t word = 0; word < WordsFor(kCount); ++word) {
    EXPECT_EQ(columns.InBox(word, box, scratch), WordOf(word, kCount, [&](std::int64_t item) {
                bool isIn = true;
                for (std::size_t axis = 0; axis < 3; ++axis) {
                  isIn =
                      isIn && ranges[axis].Has(values[3 * static_cast<std::size_t>(item) + axis]);
                }
                return isIn;
              }));
  }
}

TEST(PointColumns, PointsThatLieAsTheyAreDrawnAreComparedAsTheyLie) {
  CompareInterleaved<float>(FieldDataType_Float);
  CompareInterleaved<double>(FieldDataType_Double);
}

/// What a host's accessor was asked for.
std::vector<LgIndex_t> asked;
double Ask(const QelFieldData*, LgIndex_t offset) {
  asked.push_back(offset);
  return offset;
}
double Count(const QelFieldData*, LgIndex_t offset) { return offset; }

TEST(PointColumns, AnAccessorIsAskedInOrderAndOnlyForWhatIsNotRuledOut) {
  const PointColumns columns(FieldColumn(nullptr, Count), FieldColumn(nullptr, Ask),
                             FieldColumn(nullptr, Count), 70);
  EXPECT_TRUE(columns.CallsHost());
  const PointBox box({{{66, 68}, {67, 99}, {0, 67}}});
  PointBlock scratch;
  asked.clear();
  EXPECT_EQ(columns.InBox(0, box, scratch), 0u);
  EXPECT_TRUE(asked.empty());
  EXPECT_EQ(columns.InBox(1, box, scratch), 0b1000u);
  EXPECT_THAT(asked, ::testing::ElementsAre(66, 67, 68));
}

TEST(PointColumns, ASpanThatIsShortOrOfNoKnownTypeIsNotUsed) {
  double values[3] = {};
  FieldColumn column(nullptr, Count);
  EXPECT_FALSE(column.UseSpan({values, FieldDataType_Double, 8, 3}, 4));
  EXPECT_FALSE(column.UseSpan({values, FieldDataType_Invalid, 8, 3}, 3));
  EXPECT_FALSE(column.UseSpan({nullptr, FieldDataType_Double, 8, 3}, 3));
  EXPECT_TRUE(column.CallsHost());
  EXPECT_TRUE(column.UseSpan({values, FieldDataType_Double, 8, 3}, 3));
  EXPECT_FALSE(column.CallsHost());
}

TEST(PointColumns, APassiveCoordinateIs0) {
  const PointColumns columns(FieldColumn(), FieldColumn(), 3);
  PointBlock scratch;
  for (double& value : scratch[0]) value = 7;
  EXPECT_EQ(columns.InBox(0, PointBox({{{0, 1}, {-1, 0}, {5, 5}}}), scratch), 0b111u);
  EXPECT_EQ(columns.InBox(0, PointBox({{{0, 1}, {1, 2}, {5, 5}}}), scratch), 0u);
}

// Shapes ------------------------------------------------------------------------------------------

PointBlock SomePoints(std::mt19937& engine) {
  PointBlock points;
  for (Values64& axis : points.axes) {
    for (double& value : axis) {
      value = engine() % 30 == 0 ? kNan : std::uniform_real_distribution<double>(-1, 1)(engine);
    }
  }
  return points;
}

template <class IsInside>
std::uint64_t OneByOne(const PointBlock& points, IsInside isInside) {
  return BitsWhere(~std::uint64_t{0}, [&](int bit) {
    const auto n = static_cast<std::size_t>(bit);
    return isInside(points[0][n], points[1][n], points[2][n]);
  });
}

double Moved(const MatrixRow& row, double x, double y, double z) {
  return row[0] * x + row[1] * y + row[2] * z + row[3];
}

TEST(ShapeKernels, AnswerAsOnePointAfterTheOther) {
  std::mt19937 engine(11);
  const std::array<MatrixRow, 3> rows{{{0.8, -0.6, 0.1, 0.2}, {0.6, 0.8, 0, -0.1}, {0, 0.3, 1, 0}}};
  const Ranges3<double> box{Range<double>{-0.7, 0.9}, Range<double>{-1, 0.8},
                            Range<double>{-0.9, 0.9}};
  for (int round = 0; round < 500; ++round) {
    PointBlock points = SomePoints(engine);
    EXPECT_EQ(PointsInSphere(points, {0.1, 0.2, -0.1}, 0.9),
              OneByOne(points, [](double x, double y, double z) {
                const double dx = x - 0.1;
                const double dy = y - 0.2;
                const double dz = z + 0.1;
                return !(dy * dy + dx * dx + dz * dz > 0.9);
              }));
    EXPECT_EQ(PointsInCircle(points, {0.1, 0.2}, 0.5),
              OneByOne(points, [](double x, double y, double) {
                const double dx = x - 0.1;
                const double dy = y - 0.2;
                return !(dy * dy + dx * dx > 0.5);
              }));
    EXPECT_EQ(PointsInTurnedBox(points, rows, box),
              OneByOne(points, [&](double x, double y, double z) {
                bool isInside = true;
                for (std::size_t axis = 0; axis < 3; ++axis) {
                  const double moved = Moved(rows[axis], x, y, z);
                  isInside = isInside && moved >= box[axis].low && moved <= box[axis].high;
                }
                return isInside;
              }));
    const PointBlock before = points;
    MoveToPlane(points, rows[0], rows[1]);
    for (std::size_t n = 0; n < 64; ++n) {
      for (std::size_t axis = 0; axis < 2; ++axis) {
        const double moved = Moved(rows[axis], before[0][n], before[1][n], before[2][n]);
        EXPECT_TRUE(points[axis][n] == moved || (std::isnan(moved) && std::isnan(points[axis][n])));
      }
    }
  }
}

}  // namespace
