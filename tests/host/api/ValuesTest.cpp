#include "ApiTesting.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace qelhost {
namespace {

class Values : public ::testing::Test {
 protected:
  void SetUp() override { CloseEverything(); }
  void TearDown() override { CloseEverything(); }
};

/// Adds a variable to the data set's one zone; answers its number.
LgIndex_t AddVariable(const char* name, QelFieldDataType_e type, QelValueLocation_e location,
                      bool isDeferred) {
  QelArgList* list = QelUtilArgListAlloc();
  QelUtilArgListAppendString(list, SV_NAME, name);
  QelUtilArgListAppendArray(list, SV_VARDATATYPE, &type);
  QelUtilArgListAppendArray(list, SV_VALUELOCATION, &location);
  QelUtilArgListAppendInt(list, SV_DEFERVARCREATION, isDeferred ? 1 : 0);
  const bool isAdded = QelUtilDataSetAddVarX(list);
  QelUtilArgListDealloc(&list);
  return isAdded ? QelUtilDataSetGetNumVars() : 0;
}

TEST_F(Values, AreReadAndWrittenByIndexFromOneAndByOffsetFromZero) {
  ShowBricks(2, 2, 2);
  QelFieldData* const p = QelUtilDataValueGetWritableNativeRef(1, 4);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(QelUtilDataValueGetCountByRef(p), 8);
  EXPECT_EQ(QelUtilDataValueGetByRef(p, 8), 7);
  QelUtilDataValueSetByRef(p, 8, 0.5);
  EXPECT_EQ(QelUtilDataValueRefGetGetFunc(p)(p, 7), 0.5);
  QelUtilDataValueRefGetSetFunc(p)(p, 0, -1);
  EXPECT_EQ(QelUtilDataValueGetByRef(p, 1), -1);
  for (const LgIndex_t index : {0, -1, 9, std::numeric_limits<LgIndex_t>::max()}) {
    QelUtilDataValueSetByRef(p, index, 99);
    EXPECT_EQ(QelUtilDataValueGetByRef(p, index), 0) << index;
  }
  double min = 0.0;
  double max = 0.0;
  QelUtilVarGetMinMax(4, &min, &max);
  EXPECT_EQ(min, -1);
  EXPECT_EQ(max, 6);
}

TEST_F(Values, AreWrittenInRunsOfTheStoredType) {
  ShowBricks(2, 2, 2);
  QelFieldData* const p = QelUtilDataValueGetWritableNativeRef(1, 4);
  const float source[3] = {10, 20, 30};
  QelUtilDataValueArraySetByRef(p, 6, 3, source);
  QelUtilDataValueArraySetByRef(p, 7, 3, source);
  QelUtilDataValueArraySetByRef(p, 1, -1, source);
  QelUtilDataValueArraySetByRef(p, 1, 3, nullptr);
  EXPECT_EQ(QelUtilDataValueGetByRef(p, 1), 0);
  EXPECT_EQ(QelUtilDataValueGetByRef(p, 6), 10);
  EXPECT_EQ(QelUtilDataValueGetByRef(p, 8), 30);
}

struct ConversionRow {
  const char* rule;
  QelFieldDataType_e type;
  double written;
  double stored;
};

class Conversion : public ::testing::TestWithParam<ConversionRow> {};

TEST_P(Conversion, FollowsRule) {
  ShowBricks(2, 2, 2);
  const LgIndex_t var = AddVariable("v", GetParam().type, ValueLocation_Nodal, false);
  QelFieldData* const field = QelUtilDataValueGetWritableNativeRef(1, var);
  ASSERT_NE(field, nullptr);
  QelUtilDataValueSetByRef(field, 1, GetParam().written);
  EXPECT_EQ(QelUtilDataValueGetByRef(field, 1), GetParam().stored);
  CloseEverything();
}

INSTANTIATE_TEST_SUITE_P(
    Rules, Conversion,
    ::testing::Values(ConversionRow{"HalvesAwayFromZero", FieldDataType_Int16, 2.5, 3},
                      ConversionRow{"NegativeHalvesAwayFromZero", FieldDataType_Int32, -2.5, -3},
                      ConversionRow{"ClampedAbove", FieldDataType_Byte, 300, 255},
                      ConversionRow{"ClampedBelow", FieldDataType_Byte, -1, 0},
                      ConversionRow{"ClampedInfinity", FieldDataType_Int16, HUGE_VAL, 32767},
                      ConversionRow{"NanIsZero", FieldDataType_Int32, NAN, 0},
                      ConversionRow{"LargeInt64", FieldDataType_Int64, 1e15, 1e15},
                      ConversionRow{"FloatIsRounded", FieldDataType_Float, 0.1,
                                    static_cast<double>(0.1F)},
                      ConversionRow{"DoubleIsKept", FieldDataType_Double, 0.1, 0.1}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST_F(Values, APassiveVariableReadsAsZeroUntilItIsAllocated) {
  ShowBricks(2, 2, 2);
  const LgIndex_t var = AddVariable("v", FieldDataType_Double, ValueLocation_Nodal, true);
  ASSERT_EQ(var, 5);
  EXPECT_TRUE(QelUtilDataValueIsPassive(1, var));
  EXPECT_EQ(QelUtilDataValueGetWritableNativeRef(1, var), nullptr);
  QelFieldData* const zeros = QelUtilDataValueGetReadableNLRef(1, var);
  ASSERT_NE(zeros, nullptr);
  EXPECT_EQ(QelUtilDataValueGetByRef(zeros, 3), 0);
  EXPECT_EQ(QelUtilDataValueRefGetSetFunc(zeros), nullptr);
  EXPECT_TRUE(QelUtilDataValueAlloc(1, var));
  EXPECT_FALSE(QelUtilDataValueIsPassive(1, var));
  EXPECT_EQ(QelUtilDataValueGetByRef(zeros, 3), 0) << "stale, and yet safe to ask";
  EXPECT_NE(QelUtilDataValueGetWritableNativeRef(1, var), nullptr);
}

TEST_F(Values, AVariableNeedsANewNameAndKnownTypes) {
  ShowBricks(2, 2, 2);
  EXPECT_EQ(AddVariable("p", FieldDataType_Float, ValueLocation_Nodal, false), 0);
  EXPECT_EQ(AddVariable("", FieldDataType_Float, ValueLocation_Nodal, false), 0);
  EXPECT_EQ(AddVariable("v", FieldDataType_Invalid, ValueLocation_Nodal, false), 0);
  EXPECT_EQ(AddVariable("v", static_cast<QelFieldDataType_e>(7), ValueLocation_Nodal, false), 0);
  EXPECT_EQ(QelUtilDataSetGetNumVars(), 4);
}

TEST_F(Values, AtCellsAreAveragedToNodesAndWrittenAtCells) {
  ShowElements();
  EXPECT_EQ(QelUtilDataValueGetLocation(1, 4), ValueLocation_CellCentered);
  QelFieldData* const atNodes = QelUtilDataValueGetReadableNLRef(1, 4);
  QelFieldData* const atCells = QelUtilDataValueGetWritableNativeRef(1, 4);
  ASSERT_NE(atNodes, nullptr);
  ASSERT_NE(atCells, nullptr);
  EXPECT_EQ(QelUtilDataValueGetCountByRef(atNodes), 4);
  EXPECT_EQ(QelUtilDataValueGetCountByRef(atCells), 2);
  const double expected[4] = {15, 10, 15, 20};
  for (LgIndex_t node = 1; node <= 4; ++node) {
    EXPECT_EQ(QelUtilDataValueGetByRef(atNodes, node), expected[node - 1]);
  }
  QelUtilDataValueSetByRef(atNodes, 1, 99);
  EXPECT_EQ(QelUtilDataValueGetByRef(atNodes, 1), 15);
  QelUtilDataValueSetByRef(atCells, 1, 30);
  EXPECT_EQ(QelUtilDataValueGetByRef(atNodes, 1), 25);
}

TEST_F(Values, SharedOnesAreTheSameUntilTheyAreBranched) {
  ShowTimeSteps();
  EXPECT_EQ(QelUtilDataValueGetShareCount(1, 4), 2);
  QelFieldData* const first = QelUtilDataValueGetWritableNativeRef(1, 4);
  QelUtilDataValueSetByRef(first, 1, 5);
  EXPECT_EQ(QelUtilDataValueGetByRef(QelUtilDataValueGetReadableNLRef(2, 4), 1), 5);
  EXPECT_TRUE(QelUtilDataValueBranchShared(1, 4));
  EXPECT_EQ(QelUtilDataValueGetShareCount(1, 4), 1);
  QelUtilDataValueGetByRef(first, 1);  // stale, and yet safe to ask
  QelUtilDataValueSetByRef(QelUtilDataValueGetWritableNativeRef(1, 4), 1, 6);
  EXPECT_EQ(QelUtilDataValueGetByRef(QelUtilDataValueGetReadableNLRef(2, 4), 1), 5);
}

TEST_F(Values, ComputedCoordinatesAreReadableAndNotWritable) {
  ShowImage();
  EXPECT_EQ(QelUtilDataValueGetByRef(QelUtilDataValueGetReadableNLRef(1, 1), 2), 1);
  EXPECT_EQ(QelUtilDataValueGetWritableNativeRef(1, 1), nullptr);
  EXPECT_NE(QelUtilDataValueGetWritableNativeRef(1, 4), nullptr);
}

TEST_F(Values, OfADataSetThatIsGoneAreRefused) {
  ShowBricks(2, 2, 2);
  QelFieldData* const p = QelUtilDataValueGetWritableNativeRef(1, 4);
  const QelNodeMap* const nodes = QelUtilDataNodeGetReadableRef(1);
  CloseEverything();
  EXPECT_EQ(QelUtilDataValueGetCountByRef(p), 0);
  EXPECT_EQ(QelUtilDataValueGetByRef(p, 1), 0);
  QelUtilDataValueSetByRef(p, 1, 1);
  EXPECT_EQ(QelUtilDataValueRefGetGetFunc(p), nullptr);
  EXPECT_EQ(QelUtilDataNodeGetByRef(nodes, 1, 1), 0);
}

TEST_F(Values, WithoutAnAnswerAreZero) {
  ShowBricks(2, 2, 2);
  double min = 1.0;
  double max = 1.0;
  QelUtilVarGetMinMax(9, &min, &max);
  EXPECT_EQ(min, 0);
  EXPECT_EQ(max, 0);
  EXPECT_EQ(QelUtilDataValueGetShareCount(2, 4), 0);
  EXPECT_EQ(QelUtilDataValueGetLocation(2, 4), ValueLocation_CellCentered);
  QelUtilDataLoadBegin();
  QelUtilDataLoadBegin();
  QelUtilDataLoadEnd();
  QelUtilDataLoadEnd();
}

}  // namespace
}  // namespace qelhost
