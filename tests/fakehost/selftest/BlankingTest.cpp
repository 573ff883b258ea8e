#include "SelfTest.h"

#include <limits>

namespace {

using fakehost::Constraint;
using fakehost::MakeLattice;
using fakehost::StoredType;
using ::testing::ElementsAre;

/// Two quadrilaterals side by side (nodes 1 2 5 4 and 2 3 6 5), nodal "n" and cell-centred "c" of
/// which each is its index.
class Blank : public fakehost::SelfTest {
 protected:
  Blank() {
    host.AddFrame(PlotType_Cartesian2D);
    host.AddZone(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
    const auto index = [](LgIndex_t, LgIndex_t i) { return 1.0 * i; };
    n = host.AddVariable("n", ValueLocation_Nodal, StoredType::Double, index);
    c = host.AddVariable("c", ValueLocation_CellCentered, StoredType::Double, index);
    host.ActiveFrame().blanking.include = true;
  }

  void Constrain(LgIndex_t number, LgIndex_t var, LgIndex_t relOp, double cutoff) {
    host.ActiveFrame().blanking.constraints[number] = {
        true, var, 0, relOp, ConstraintOp2Mode_UseConstant, cutoff};
  }
  void SetCellMode(bool entireCell, LgIndex_t mode) {
    host.ActiveFrame().blanking.blankEntireCell = entireCell;
    host.ActiveFrame().blanking.cellMode = mode;
  }
  std::vector<bool> CellsShown() {
    return {QelUtilBlankingCheckFECell(1, 1), QelUtilBlankingCheckFECell(1, 2)};
  }
  std::vector<bool> NodesShown() {
    std::vector<bool> shown;
    for (LgIndex_t node = 1; node <= 6; ++node) {
      shown.push_back(QelUtilBlankingCheckDataPoint(1, node));
    }
    return shown;
  }

  LgIndex_t n = 0;
  LgIndex_t c = 0;
};

TEST_F(Blank, ComparesByEachOperator) {
  const std::vector<std::vector<bool>> shown = {{false, true}, {true, false}, {true, true},
                                                {true, false}, {false, true}, {true, false}};
  for (LgIndex_t relOp = 0; relOp <= 5; ++relOp) {
    Constrain(1, c, relOp, relOp == BlankRelOp_GreaterThanOrEqual ? 2 : 1);
    EXPECT_EQ(CellsShown(), shown[static_cast<std::size_t>(relOp)]) << relOp;
  }
}

TEST_F(Blank, IsOffWithoutIncludeAndHeedsTheEighthConstraintButNoNinth) {
  Constrain(8, c, BlankRelOp_EqualTo, 2);
  EXPECT_TRUE(QelUtilBlankingIsActive());
  EXPECT_THAT(CellsShown(), ElementsAre(true, false));
  host.ActiveFrame().blanking.constraints[8].include = false;
  EXPECT_THAT(CellsShown(), ElementsAre(true, true));
  Constrain(9, c, BlankRelOp_EqualTo, 2);
  EXPECT_THAT(CellsShown(), ElementsAre(true, true));
  Constrain(8, c, BlankRelOp_EqualTo, 2);
  host.ActiveFrame().blanking.include = false;
  EXPECT_FALSE(QelUtilBlankingIsActive());
  EXPECT_THAT(CellsShown(), ElementsAre(true, true));
}

TEST_F(Blank, IsDoneByAnyOneConstraint) {
  Constrain(1, c, BlankRelOp_EqualTo, 1);
  Constrain(2, n, BlankRelOp_EqualTo, 1);
  EXPECT_THAT(CellsShown(), ElementsAre(false, true));
  SetCellMode(true, BlankCellMode_AnyCorner);
  Constrain(2, n, BlankRelOp_EqualTo, 3);
  EXPECT_THAT(CellsShown(), ElementsAre(false, false));
}

TEST_F(Blank, TakesTheCellMode) {
  Constrain(1, n, BlankRelOp_LessThanOrEqual, 5);  // all corners of cell 1, three of cell 2
  EXPECT_THAT(CellsShown(), ElementsAre(false, true));
  SetCellMode(true, BlankCellMode_AnyCorner);
  EXPECT_THAT(CellsShown(), ElementsAre(false, false));
  Constrain(1, n, BlankRelOp_EqualTo, 2);  // the first corner of cell 2
  SetCellMode(true, BlankCellMode_PrimaryValue);
  EXPECT_THAT(CellsShown(), ElementsAre(true, false));
  SetCellMode(false, BlankCellMode_AnyCorner);  // counts as all corners
  EXPECT_THAT(CellsShown(), ElementsAre(true, true));
}

TEST_F(Blank, ComparesWithVariableB) {
  host.ActiveFrame().blanking.constraints[3] = {
      true, n, c, BlankRelOp_EqualTo, ConstraintOp2Mode_UseVar, 99.0};
  SetCellMode(true, BlankCellMode_AnyCorner);
  EXPECT_THAT(CellsShown(), ElementsAre(false, false));
  SetCellMode(true, BlankCellMode_PrimaryValue);
  host.ActiveFrame().blanking.constraints[3].relOp = BlankRelOp_GreaterThan;
  EXPECT_THAT(CellsShown(), ElementsAre(true, true));
  host.ActiveFrame().blanking.constraints[3].varB = 0;
  EXPECT_THAT(CellsShown(), ElementsAre(true, true));
}

TEST_F(Blank, HidesANodeByItsOwnValueOrAllCellsAroundIt) {
  Constrain(1, n, BlankRelOp_EqualTo, 4);
  EXPECT_THAT(NodesShown(), ElementsAre(true, true, true, false, true, true));
  Constrain(1, c, BlankRelOp_EqualTo, 1);
  EXPECT_THAT(NodesShown(), ElementsAre(false, true, true, false, true, true));
  Constrain(1, c, BlankRelOp_LessThan, 3);
  EXPECT_THAT(NodesShown(), ElementsAre(false, false, false, false, false, false));
}

TEST_F(Blank, NeverHidesALonelyNodeForACell) {
  fakehost::Mesh mesh = MakeLattice(ZoneType_FEQuad, 1, 1, 0);
  mesh.points.push_back({9, 9, 0});
  host.AddZone(mesh);
  Constrain(1, c, BlankRelOp_EqualTo, 0);  // passive there: reads as 0
  host.ValuesAt(2, c)->location = ValueLocation_CellCentered;
  EXPECT_FALSE(QelUtilBlankingCheckFECell(2, 1));
  EXPECT_FALSE(QelUtilBlankingCheckDataPoint(2, 1));
  EXPECT_TRUE(QelUtilBlankingCheckDataPoint(2, 5));
}

TEST_F(Blank, LeavesAFieldMapThatDoesNotUseIt) {
  Constrain(1, c, BlankRelOp_LessThan, 3);
  host.ZoneAt(1)->fieldMap.usesValueBlanking = false;
  EXPECT_THAT(CellsShown(), ElementsAre(true, true));
  EXPECT_TRUE(QelUtilBlankingCheckDataPoint(1, 1));
}

TEST_F(Blank, LetsNaNMeetNothingButUnequal) {
  host.ValuesAt(1, c)->storage->Set(0, std::numeric_limits<double>::quiet_NaN());
  Constrain(1, c, BlankRelOp_NotEqualTo, 2);
  EXPECT_THAT(CellsShown(), ElementsAre(false, true));
  Constrain(1, c, BlankRelOp_LessThanOrEqual, 9);
  EXPECT_THAT(CellsShown(), ElementsAre(true, false));
}

TEST_F(Blank, RefusesWhatThereIsNot) {
  EXPECT_FALSE(QelUtilBlankingCheckFECell(1, 0));
  EXPECT_FALSE(QelUtilBlankingCheckFECell(1, 3));
  EXPECT_FALSE(QelUtilBlankingCheckFECell(2, 1));
  EXPECT_FALSE(QelUtilBlankingCheckDataPoint(1, 7));
}

TEST_F(Blank, LooksAtOrderedCellsToo) {
  const LgIndex_t zone = host.AddZone(MakeLattice(ZoneType_Ordered, 2, 2, 1));
  Constrain(1, 1, BlankRelOp_LessThanOrEqual, 1);  // X: the cells of the first column
  EXPECT_FALSE(QelUtilBlankingCheckIJKCell(zone, 0, 1));
  EXPECT_TRUE(QelUtilBlankingCheckIJKCell(zone, 0, 2));
  EXPECT_FALSE(QelUtilBlankingCheckIJKCell(zone, 0, 3));
}

TEST_F(Blank, CanBeMadeToFail) {
  host.FailCall("QelUtilBlankingCheckFECell", 2);
  EXPECT_THAT(CellsShown(), ElementsAre(true, false));
  EXPECT_TRUE(host.WasFaultHit());
}

}  // namespace
