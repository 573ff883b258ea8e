// Value blanking through the C functions: checks, bits, and what makes them evaluate again.
#include "ApiTesting.h"

#include "Host.h"

#include "qelvane/Extensions.h"
#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Path = std::vector<const char*>;

QelSetValueResult_e SetStyle(const Path& path, ArbParam_t integer, double real = 0.0,
                             LgIndex_t constraint = 0, bool ofZone = false) {
  const char* const names[] = {SV_P1, SV_P2, SV_P3, SV_P4, SV_P5, SV_P6, SV_P7};
  QelArgList* list = QelUtilArgListAlloc();
  for (std::size_t i = 0; i < path.size(); ++i) {
    QelUtilArgListAppendString(list, names[i], path[i]);
  }
  QelSet* zones = QelUtilSetAlloc(false);
  QelUtilSetAddMember(zones, 1, false);
  if (constraint != 0) QelUtilArgListAppendInt(list, SV_OFFSET1, constraint);
  if (ofZone) QelUtilArgListAppendSet(list, SV_OBJECTSET, zones);
  QelUtilArgListAppendArbParam(list, SV_IVALUE, integer);
  if (path.back() == std::string(SV_VALUECUTOFF)) {
    QelUtilArgListAppendDouble(list, SV_DVALUE, real);
  }
  const QelSetValueResult_e result = QelUtilStyleSetLowLevelX(list);
  QelUtilArgListDealloc(&list);
  QelUtilSetDealloc(&zones);
  return result;
}

void SetConstraint(const char* setting, ArbParam_t integer, double real = 0.0, LgIndex_t n = 1) {
  const QelSetValueResult_e result =
      SetStyle({SV_BLANKING, SV_VALUE, SV_CONSTRAINT, setting}, integer, real, n);
  EXPECT_TRUE(result == SetValueResult_Ok || result == SetValueResult_Duplicate) << setting;
}

void Include(bool on) {
  EXPECT_NE(SetStyle({SV_BLANKING, SV_VALUE, SV_INCLUDE}, on ? 1 : 0), SetValueResult_ValueError);
}

void UseInZone(bool on) {
  EXPECT_EQ(SetStyle({SV_FIELDMAP, SV_EFFECTS, SV_USEVALUEBLANKING}, on ? 1 : 0, 0, 0, true),
            SetValueResult_Ok);
}

/// Hides what is below a value of a variable.
void HideBelow(LgIndex_t variable, double cutoff) {
  SetConstraint(SV_VARA, variable);
  SetConstraint(SV_RELOP, BlankRelOp_LessThan);
  SetConstraint(SV_CONSTRAINTOP2MODE, ConstraintOp2Mode_UseConstant);
  SetConstraint(SV_VALUECUTOFF, 0, cutoff);
  SetConstraint(SV_INCLUDE, 1);
}

using Check = bool (*)(LgIndex_t zone, LgIndex_t item);

std::vector<LgIndex_t> Hidden(Check check, LgIndex_t count) {
  std::vector<LgIndex_t> hidden;
  for (LgIndex_t item = 1; item <= count; ++item) {
    if (!check(1, item)) hidden.push_back(item);
  }
  return hidden;
}

bool CheckOrderedCell(LgIndex_t zone, LgIndex_t cell) {
  return QelUtilBlankingCheckIJKCell(zone, 0, cell);
}

const QelBulkAccess_s& BulkAccess() {
  return *static_cast<const QelBulkAccess_s*>(QelUtilExtensionGet(QEL_EXTENSION_BULK_ACCESS));
}

using BitsOf = bool (*)(LgIndex_t zone, const uint64_t** bits, int64_t* count);

/// The items whose bit is set; {-1} when the host gives no bits, {-2} for another count.
std::vector<LgIndex_t> Bits(BitsOf bitsOf, LgIndex_t count) {
  const std::uint64_t* bits = nullptr;
  std::int64_t bitCount = 0;
  if (!bitsOf(1, &bits, &bitCount)) return {-1};
  if (bitCount != count) return {-2};
  std::vector<LgIndex_t> set;
  for (LgIndex_t item = 0; item < (count + 63) / 64 * 64; ++item) {
    if (((bits[item / 64] >> (item % 64)) & 1) != 0) set.push_back(item + 1);
  }
  return set;
}

std::int64_t Evaluations() { return Host::Instance().frames.Active()->BlankingEvaluations(); }

class Blanking : public ::testing::Test {
 protected:
  void SetUp() override { CloseEverything(); }
  void TearDown() override { CloseEverything(); }
};

TEST_F(Blanking, ChecksAreTrueForWhatIsShown) {
  ShowBricks(3, 3, 3);
  HideBelow(4, 10.0);
  Include(true);
  // Brick 1 has the nodes 0 1 3 4 9 10 12 13, of which 10, 12 and 13 stay.
  EXPECT_THAT(Hidden(QelUtilBlankingCheckDataPoint, 27),
              ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
  EXPECT_THAT(Hidden(QelUtilBlankingCheckFECell, 8), IsEmpty());
  SetStyle({SV_BLANKING, SV_VALUE, SV_BLANKENTIRECELL}, 1);
  SetStyle({SV_BLANKING, SV_VALUE, SV_VALUEBLANKCELLMODE}, BlankCellMode_AnyCorner);
  EXPECT_THAT(Hidden(QelUtilBlankingCheckFECell, 8), ElementsAre(1, 2, 3, 4, 5));
  SetStyle({SV_BLANKING, SV_VALUE, SV_VALUEBLANKCELLMODE}, BlankCellMode_PrimaryValue);
  EXPECT_THAT(Hidden(QelUtilBlankingCheckFECell, 8), ElementsAre(1, 2, 3, 4, 5));
  SetConstraint(SV_VALUECUTOFF, 0, 14.0);
  SetStyle({SV_BLANKING, SV_VALUE, SV_VALUEBLANKCELLMODE}, BlankCellMode_AllCorners);
  EXPECT_THAT(Hidden(QelUtilBlankingCheckFECell, 8), ElementsAre(1));
}

TEST_F(Blanking, ChecksOfOrderedZonesKnowTheVolumePlaneAlone) {
  ShowOrdered(4, 3, 2);
  HideBelow(4, 18.0);  // cell 1 has nodes up to 17, cell 2 one of 18
  Include(true);
  EXPECT_THAT(Hidden(CheckOrderedCell, 6), ElementsAre(1));
  for (const LgIndex_t plane : {-1, 1, 2, 3}) {
    EXPECT_FALSE(QelUtilBlankingCheckIJKCell(1, plane, 6)) << plane;
  }
  EXPECT_TRUE(QelUtilBlankingCheckIJKCell(1, 0, 6));
}

TEST_F(Blanking, HidesNothingUntilItIsSwitchedOnOrWhereTheZonesMapDoesNotUseIt) {
  ShowBricks(3, 3, 3);
  HideBelow(4, 100.0);
  EXPECT_THAT(Hidden(QelUtilBlankingCheckFECell, 8), IsEmpty());
  EXPECT_THAT(Hidden(QelUtilBlankingCheckDataPoint, 27), IsEmpty());
  Include(true);
  EXPECT_EQ(Hidden(QelUtilBlankingCheckFECell, 8).size(), 8U);
  EXPECT_EQ(Hidden(QelUtilBlankingCheckDataPoint, 27).size(), 27U);
  UseInZone(false);
  EXPECT_TRUE(QelUtilBlankingIsActive());
  EXPECT_THAT(Hidden(QelUtilBlankingCheckFECell, 8), IsEmpty());
  EXPECT_THAT(Hidden(QelUtilBlankingCheckDataPoint, 27), IsEmpty());
  UseInZone(true);
  EXPECT_EQ(Hidden(QelUtilBlankingCheckFECell, 8).size(), 8U);
  SetConstraint(SV_INCLUDE, 0);
  EXPECT_THAT(Hidden(QelUtilBlankingCheckFECell, 8), IsEmpty());
}

TEST_F(Blanking, AnswersFalseForWhatThereIsNot) {
  EXPECT_FALSE(QelUtilBlankingCheckFECell(1, 1));
  EXPECT_FALSE(QelUtilBlankingCheckDataPoint(1, 1));
  EXPECT_FALSE(QelUtilBlankingCheckIJKCell(1, 0, 1));
  ShowBricks(3, 3, 3);
  HideBelow(4, 0.0);  // hides nothing
  for (const bool isOn : {false, true}) {
    Include(isOn);
    for (const LgIndex_t zone : {-1, 0, 2}) {
      EXPECT_FALSE(QelUtilBlankingCheckFECell(zone, 1)) << zone;
      EXPECT_FALSE(QelUtilBlankingCheckDataPoint(zone, 1)) << zone;
    }
    for (const LgIndex_t item : {-2147483647, -1, 0, 9, 2147483647}) {
      EXPECT_FALSE(QelUtilBlankingCheckFECell(1, item)) << item;
    }
    for (const LgIndex_t item : {-2147483647, -1, 0, 28, 2147483647}) {
      EXPECT_FALSE(QelUtilBlankingCheckDataPoint(1, item)) << item;
    }
    EXPECT_TRUE(QelUtilBlankingCheckFECell(1, 8));
    EXPECT_TRUE(QelUtilBlankingCheckDataPoint(1, 27));
  }
}

TEST_F(Blanking, BitsAgreeWithTheChecks) {
  ShowBricks(5, 5, 5);
  Include(true);
  SetStyle({SV_BLANKING, SV_VALUE, SV_BLANKENTIRECELL}, 1);
  for (int mode = BlankCellMode_AllCorners; mode <= BlankCellMode_PrimaryValue; ++mode) {
    SetStyle({SV_BLANKING, SV_VALUE, SV_VALUEBLANKCELLMODE}, mode);
    for (const double cutoff : {0.0, 40.5, 77.0, 124.5, 1000.0}) {
      HideBelow(4, cutoff);
      EXPECT_EQ(Bits(BulkAccess().blankedCells, 64), Hidden(QelUtilBlankingCheckFECell, 64))
          << mode << ' ' << cutoff;
      EXPECT_EQ(Bits(BulkAccess().blankedNodes, 125), Hidden(QelUtilBlankingCheckDataPoint, 125))
          << mode << ' ' << cutoff;
    }
  }
}

TEST_F(Blanking, BitsAgreeWithTheChecksOfOtherZones) {
  ShowOrdered(4, 3, 2);
  HideBelow(4, 19.0);
  Include(true);
  EXPECT_THAT(Bits(BulkAccess().blankedCells, 6), ElementsAre(1, 2));
  EXPECT_EQ(Bits(BulkAccess().blankedCells, 6), Hidden(CheckOrderedCell, 6));
  ShowElements();
  HideBelow(4, 15.0);
  Include(true);
  EXPECT_THAT(Bits(BulkAccess().blankedCells, 2), ElementsAre(1));
  EXPECT_THAT(Bits(BulkAccess().blankedNodes, 4), ElementsAre(2)) << "the node of cell 1 alone";
  EXPECT_EQ(Bits(BulkAccess().blankedNodes, 4), Hidden(QelUtilBlankingCheckDataPoint, 4));
  ShowPolyhedron();
  HideBelow(1, 0.5);
  Include(true);
  EXPECT_EQ(Bits(BulkAccess().blankedNodes, 8), Hidden(QelUtilBlankingCheckDataPoint, 8));
  EXPECT_EQ(Bits(BulkAccess().blankedCells, 1), Hidden(QelUtilBlankingCheckFECell, 1));
}

TEST_F(Blanking, BitsAreRefusedWhereEverythingIsShown) {
  const std::vector<LgIndex_t> refused = {-1};
  EXPECT_EQ(Bits(BulkAccess().blankedCells, 8), refused) << "no frame";
  ShowBricks(3, 3, 3);
  HideBelow(4, 5.0);
  EXPECT_EQ(Bits(BulkAccess().blankedCells, 8), refused) << "off";
  EXPECT_EQ(Bits(BulkAccess().blankedNodes, 27), refused);
  Include(true);
  EXPECT_NE(Bits(BulkAccess().blankedNodes, 27), refused);
  const std::uint64_t* bits = nullptr;
  std::int64_t count = 0;
  for (const LgIndex_t zone : {-1, 0, 2}) {
    EXPECT_FALSE(BulkAccess().blankedCells(zone, &bits, &count)) << zone;
    EXPECT_FALSE(BulkAccess().blankedNodes(zone, &bits, &count)) << zone;
  }
  EXPECT_FALSE(BulkAccess().blankedCells(1, nullptr, &count));
  EXPECT_FALSE(BulkAccess().blankedCells(1, &bits, nullptr));
  UseInZone(false);
  EXPECT_EQ(Bits(BulkAccess().blankedCells, 8), refused) << "not used in the zone";
  EXPECT_EQ(Bits(BulkAccess().blankedNodes, 27), refused);
}

TEST_F(Blanking, IsEvaluatedAgainOnlyWhenItsAnswerMayDiffer) {
  ShowBricks(3, 3, 3);
  HideBelow(4, 10.0);
  EXPECT_EQ(Evaluations(), 0) << "nobody has asked";
  Include(true);
  Hidden(QelUtilBlankingCheckFECell, 8);
  Hidden(QelUtilBlankingCheckDataPoint, 27);
  Bits(BulkAccess().blankedCells, 8);
  EXPECT_EQ(Evaluations(), 1);

  QelFieldData* const x = QelUtilDataValueGetWritableNativeRef(1, 1);
  QelUtilDataValueSetByRef(x, 1, 100.0);
  QelUtilBlankingCheckFECell(1, 1);
  EXPECT_EQ(Evaluations(), 1) << "a variable that no constraint is about";
  QelFieldData* const p = QelUtilDataValueGetWritableNativeRef(1, 4);
  QelUtilDataValueSetByRef(p, 1, 100.0);
  EXPECT_TRUE(QelUtilBlankingCheckDataPoint(1, 1)) << "not hidden any more";
  EXPECT_EQ(Evaluations(), 2);

  Include(false);
  QelUtilBlankingCheckFECell(1, 1);
  Include(true);
  QelUtilBlankingCheckFECell(1, 1);
  EXPECT_EQ(Evaluations(), 2) << "switched off and on";
  SetConstraint(SV_VALUECUTOFF, 0, 3.0, 2);
  QelUtilBlankingCheckFECell(1, 1);
  EXPECT_EQ(Evaluations(), 2) << "a constraint that is off";
  SetConstraint(SV_RELOP, BlankRelOp_GreaterThan);
  EXPECT_FALSE(QelUtilBlankingCheckDataPoint(1, 1));
  EXPECT_EQ(Evaluations(), 3);
}

TEST_F(Blanking, BelongsToItsFrame) {
  ShowBricks(3, 3, 3);
  HideBelow(4, 100.0);
  Include(true);
  EXPECT_FALSE(QelUtilBlankingCheckFECell(1, 1));
  ShowBricks(3, 3, 3);
  EXPECT_FALSE(QelUtilBlankingIsActive());
  EXPECT_TRUE(QelUtilBlankingCheckFECell(1, 1));
  Include(true);
  EXPECT_TRUE(QelUtilBlankingCheckFECell(1, 1)) << "the other frame's constraint";
}

}  // namespace
}  // namespace qelhost
