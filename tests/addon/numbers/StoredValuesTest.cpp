// What an alteration, and its undo, leave of values that a variable's type cannot hold. All results
// are worked out by hand: double arithmetic, then one rounding to the stored type.
#include "FakeHostTest.h"
#include "NoNumbers.h"
#include "ValueModifier.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <ostream>
#include <string>

namespace {

using fakehost::StoredType;

constexpr double kLargestFloat = std::numeric_limits<float>::max();
constexpr double kSmallestFloat = std::numeric_limits<float>::denorm_min();
constexpr std::optional<double> kRefused = std::nullopt;

struct ValueRow {
  StoredType type;
  double before;
  const char* modifier;
  double after;
  std::optional<double> undone;  ///< nothing: undo is refused, and changes nothing
};

void PrintTo(const ValueRow& row, std::ostream* out) { *out << row.before << ' ' << row.modifier; }

/// Numbers that are equal to the last bit and the sign of 0, or both no numbers.
bool IsSame(double a, double b) {
  return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

class StoredValues : public fakehost::FakeHostTest, public ::testing::WithParamInterface<ValueRow> {
 protected:
  /// Nodes for one word of 64 items and part of another, so that values are changed by the word
  /// and one by one.
  void Load(StoredType type, double value) {
    host.AddFrame(PlotType_Cartesian2D);
    host.AddZone(fakehost::MakeLattice(ZoneType_Ordered, 69, 0, 0));
    var = host.AddVariable("v", ValueLocation_Nodal, type,
                           [value](LgIndex_t, LgIndex_t) { return value; });
    InitQelAddOn113();
  }

  void ExpectAll(double expected, const char* when) {
    for (const double value : host.ValuesOf(1, var)) {
      ASSERT_TRUE(IsSame(value, expected)) << when << ": " << value << ", not " << expected;
    }
  }

  void UndoGives(const std::optional<double>& expected, double otherwise) {
    EXPECT_EQ(host.Play("UNDOALTER").isDone, expected.has_value());
    ExpectAll(expected.value_or(otherwise), "undone");
  }

  LgIndex_t var = 0;
};

constexpr char kWholePlane[] = "PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=99 SIZEY=9";

TEST_P(StoredValues, OfAnAreaAreRoundedOnce) {
  const ValueRow& row = GetParam();
  Load(row.type, row.before);
  PlayWell(kWholePlane);
  PlayWell(std::string("ALTERAREA VARIABLE=\"v\" MODIFIER=\"") + row.modifier + "\"");
  ExpectAll(row.after, "altered");
  UndoGives(row.undone, row.after);
}

TEST_P(StoredValues, OfEachNodeAreRoundedAlike) {
  const ValueRow& row = GetParam();
  Load(row.type, row.before);
  PlayWell(std::string("ALTERELEMENT VARIABLE=\"v\" ZONE=1 ELEMENT=70 MODIFIER=\"") + row.modifier +
           "\"");
  EXPECT_TRUE(IsSame(host.ValuesOf(1, var).back(), row.after));
  EXPECT_EQ(host.Play("UNDOALTER").isDone, row.undone.has_value());
  EXPECT_TRUE(IsSame(host.ValuesOf(1, var).back(), row.undone.value_or(row.after)));
  EXPECT_TRUE(IsSame(host.ValuesOf(1, var).front(), row.before));
}

INSTANTIATE_TEST_SUITE_P(
    Integers, StoredValues,
    ::testing::Values(ValueRow{StoredType::Byte, 250, "+10", 255, 245},
                      ValueRow{StoredType::Byte, 3, "-5", 0, 5},
                      ValueRow{StoredType::Byte, 5, "*0.5", 3, 6},
                      ValueRow{StoredType::Byte, 255, "*1e300", 255, 0},
                      ValueRow{StoredType::Byte, 200, "=-1", 0, kRefused},
                      ValueRow{StoredType::Byte, 9, "=+nan", 0, kRefused},
                      ValueRow{StoredType::Byte, 0, "*1e999", 0, 0},
                      ValueRow{StoredType::Byte, 9, "*1e999", 255, 0},
                      ValueRow{StoredType::Byte, 9, "=1e-310", 0, kRefused},
                      ValueRow{StoredType::Int8, 127, "+1", 127, 126},
                      ValueRow{StoredType::Int8, -100, "*2", -128, -64},
                      ValueRow{StoredType::Int16, 32767, "+1", 32767, 32766},
                      ValueRow{StoredType::Int16, -32768, "-1", -32768, -32767},
                      ValueRow{StoredType::Int16, 3, "*-0.5", -2, 4},
                      ValueRow{StoredType::Int16, 3, "=32767.4", 32767, kRefused},
                      ValueRow{StoredType::UInt16, 0, "-1", 0, 1},
                      ValueRow{StoredType::Int32, 2147483647, "+1", 2147483647, 2147483646},
                      ValueRow{StoredType::Int32, -3, "/2", -2, -4},
                      ValueRow{StoredType::Int32, 1, "=-1e999", -2147483648.0, kRefused},
                      // The sum is 5.5 before anything is stored.
                      ValueRow{StoredType::Int32, 5, "+0.49999999999999994", 6, 6},
                      ValueRow{StoredType::Int32, 0, "/1e999", 0, 0},
                      ValueRow{StoredType::UInt32, 4294967295.0, "*2", 4294967295.0, 2147483648.0},
                      // 2^53 + 1 is no double.
                      ValueRow{StoredType::Int64, 9007199254740992.0, "+1", 9007199254740992.0,
                               9007199254740991.0},
                      ValueRow{StoredType::Int64, 9223372036854774784.0, "+1000",
                               9223372036854775808.0, 9223372036854774784.0},
                      ValueRow{StoredType::UInt64, 0, "-5", 0, 5},
                      ValueRow{StoredType::UInt64, 1, "=1e30", 18446744073709551616.0, kRefused}));

INSTANTIATE_TEST_SUITE_P(
    Floats, StoredValues,
    ::testing::Values(
        ValueRow{StoredType::Float, 1e38F, "*10", kInfinity, kInfinity},
        ValueRow{StoredType::Float, -1e38F, "*10", -kInfinity, -kInfinity},
        ValueRow{StoredType::Float, kInfinity, "+-1e999", kNaN, kNaN},
        ValueRow{StoredType::Float, kNaN, "*0", kNaN, kRefused},
        ValueRow{StoredType::Float, kNaN, "=2", 2, kRefused},
        ValueRow{StoredType::Float, kNaN, "+2", kNaN, kNaN},
        ValueRow{StoredType::Float, 16777216, "+1", 16777216, 16777215},
        ValueRow{StoredType::Float, kSmallestFloat, "/2", 0, 0},
        ValueRow{StoredType::Float, kSmallestFloat, "*3", 3 * kSmallestFloat, kSmallestFloat},
        // Half a step above the largest, then all but that.
        ValueRow{StoredType::Float, 1, "=3.4028235677973366e38", kInfinity, kRefused},
        ValueRow{StoredType::Float, 1, "=3.4028235677973362e38", kLargestFloat, kRefused},
        ValueRow{StoredType::Float, 0, "*-1", -0.0, 0},
        ValueRow{StoredType::Float, -0.0, "+0", 0, 0},
        ValueRow{StoredType::Float, -0.0, "*1", -0.0, -0.0},
        ValueRow{StoredType::Float, 1, "=-0", -0.0, kRefused}));

INSTANTIATE_TEST_SUITE_P(
    Doubles, StoredValues,
    ::testing::Values(ValueRow{StoredType::Double, 1e308, "*10", kInfinity, kInfinity},
                      ValueRow{StoredType::Double, 5e-324, "/2", 0, 0},
                      ValueRow{StoredType::Double, 2e-323, "*0.5", 1e-323, 2e-323},
                      ValueRow{StoredType::Double, 1, "/5e-324", kInfinity, kInfinity},
                      ValueRow{StoredType::Double, 1, "/1e999", 0, kNaN},
                      ValueRow{StoredType::Double, 0, "*1e999", kNaN, kNaN},
                      ValueRow{StoredType::Double, kInfinity, "+1e999", kInfinity, kNaN},
                      ValueRow{StoredType::Double, 1e16, "+1", 1e16, 9999999999999999.0},
                      ValueRow{StoredType::Double, 0.1, "+0.2", 0.30000000000000004,
                               0.10000000000000003},
                      ValueRow{StoredType::Double, -0.0, "-0", 0, 0},
                      ValueRow{StoredType::Double, 7, "*-0", -0.0, kRefused}));

class LongIntegers : public StoredValues {};

TEST_F(LongIntegers, LoseTheDigitsThatADoubleDoesNotHoldEvenByAdding0) {
  Load(StoredType::Int64, 0);
  constexpr std::int64_t kNoDouble = 9007199254740993;
  fakehost::Storage& values = *host.ValuesAt(1, var)->storage;
  for (std::int64_t node = 0; node < values.count; ++node) {
    std::memcpy(values.At(node), &kNoDouble, sizeof kNoDouble);
  }
  PlayWell("ALTERELEMENT VARIABLE=\"v\" ZONE=1 ELEMENT=1 MODIFIER=\"+0\"");
  std::int64_t touched = 0;
  std::memcpy(&touched, values.At(0), sizeof touched);
  std::int64_t untouched = 0;
  std::memcpy(&untouched, values.At(1), sizeof untouched);
  EXPECT_EQ(touched, kNoDouble - 1);
  EXPECT_EQ(untouched, kNoDouble);
}

// The numbers of modifiers ---------------------------------------------------------------------

struct TextRow {
  const char* text;
  const char* recorded;  ///< null: refused
};

class ModifierText : public ::testing::TestWithParam<TextRow> {};

TEST_P(ModifierText, IsReadAsTheLibraryReadsNumbers) {
  using namespace qelvane::qelutiltools;
  const std::optional<ValueModifier> modifier = ParseModifierText(GetParam().text);
  ASSERT_EQ(modifier.has_value(), GetParam().recorded != nullptr);
  if (!modifier) return;
  EXPECT_EQ(FormatModifier(*modifier), GetParam().recorded);
}

INSTANTIATE_TEST_SUITE_P(Texts, ModifierText,
                         ::testing::Values(TextRow{"=1e999", "=inf"}, TextRow{"*-1e999", "*-inf"},
                                           TextRow{"=+nan", "=nan"}, TextRow{"=-inf", "=-inf"},
                                           // A word without a sign does not begin like a number, so
                                           // what is recorded of these cannot be played.
                                           TextRow{"=inf", nullptr}, TextRow{"=nan", nullptr},
                                           TextRow{"/1e-400", nullptr}, TextRow{"/-.0", nullptr},
                                           TextRow{"/5e-324", "/4.94066e-324"},
                                           TextRow{"=-0", "=-0"}, TextRow{"-0", "-0"},
                                           TextRow{"=1e", "=1"}, TextRow{"=1e+", "=1"},
                                           TextRow{"=123456789", "=1.23457e+08"}));

}  // namespace
