// Rules of value blanking by hand, and what a cache of it evaluates again.
#include "ValueBlanking.h"

#include <gtest/gtest.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkPointData.h>

#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "Meshes.h"

namespace qelhost {
namespace {

// ---- single rules, by hand ----

/// Two bricks side by side: nodes 0 to 11, 1 4 7 10 between them.
DataSetPtr TwoBricks(const std::vector<double>& p, const std::vector<double>& c) {
  const auto grid = meshes::Bricks(2, 1, 1);
  const auto add = [](vtkDataSetAttributes* to, const char* name, const std::vector<double>& from) {
    vtkNew<vtkDoubleArray> array;
    array->SetName(name);
    for (const double value : from) array->InsertNextValue(value);
    to->AddArray(array);
  };
  add(grid->GetPointData(), "p", p);
  add(grid->GetCellData(), "c", c);
  return std::make_shared<DataSet>("test", std::vector<BlockEntry>{{"z", grid}}, nullptr);
}

ValueBlanking One(LgIndex_t varA, QelBlankRelOp_e relOp, double cutoff) {
  ValueBlanking settings;
  settings.constraints[7] = {true, varA, 0, relOp, ConstraintOp2Mode_UseConstant, cutoff};
  return settings;
}

std::vector<double> Steps(double first, int count) {
  std::vector<double> steps;
  for (int n = 0; n < count; ++n) steps.push_back(first + n);
  return steps;
}

TEST(ValueBlanking, ComparisonsWithNanFailButForNotEqual) {
  const DataSetPtr data = TwoBricks(Steps(0, 12), {std::numeric_limits<double>::quiet_NaN(), 1.0});
  const LgIndex_t c = data->VariableNumber("c");
  for (int relOp = BlankRelOp_LessThanOrEqual; relOp <= BlankRelOp_NotEqualTo; ++relOp) {
    const BlankedItems items =
        EvaluateBlanking(*data, 1, One(c, static_cast<QelBlankRelOp_e>(relOp), 5.0));
    EXPECT_EQ(items.cells.Has(0), relOp == BlankRelOp_NotEqualTo) << relOp;
  }
}

TEST(ValueBlanking, NodesBetweenAHiddenAndAShownCellStay) {
  const DataSetPtr data = TwoBricks(Steps(0, 12), {1.0, 0.0});
  const BlankedItems items =
      EvaluateBlanking(*data, 1, One(data->VariableNumber("c"), BlankRelOp_EqualTo, 1.0));
  EXPECT_TRUE(items.cells.Has(0));
  EXPECT_FALSE(items.cells.Has(1));
  for (std::int64_t node = 0; node < 12; ++node) {
    EXPECT_EQ(items.nodes.Has(node), node % 3 == 0) << node;
  }
}

TEST(ValueBlanking, PartOfACellIsNotEnoughUntilEntireCellsAreAskedFor) {
  const DataSetPtr data = TwoBricks({0, 1, 1, 0, 1, 1, 0, 1, 1, 0, 1, 1}, {0, 0});
  ValueBlanking settings = One(data->VariableNumber("p"), BlankRelOp_EqualTo, 0.0);
  settings.cellMode = BlankCellMode_AnyCorner;
  EXPECT_FALSE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
  settings.blankEntireCell = true;
  EXPECT_TRUE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
  EXPECT_FALSE(EvaluateBlanking(*data, 1, settings).cells.Has(1));
  settings.cellMode = BlankCellMode_PrimaryValue;
  EXPECT_TRUE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
  settings.cellMode = BlankCellMode_AllCorners;
  EXPECT_FALSE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
}

TEST(ValueBlanking, IsEvaluatedWhetherItIsSwitchedOnOrNot) {
  const DataSetPtr data = TwoBricks(Steps(0, 12), {1.0, 0.0});
  ValueBlanking settings = One(data->VariableNumber("c"), BlankRelOp_EqualTo, 1.0);
  EXPECT_TRUE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
  settings.include = true;
  EXPECT_TRUE(EvaluateBlanking(*data, 1, settings).cells.Has(0));
}

// ---- the cache ----

class CachedBlanking : public ::testing::Test {
 protected:
  CachedBlanking() : data(TwoBricks(Steps(0, 12), {1.0, 0.0})) {
    settings = One(data->VariableNumber("c"), BlankRelOp_EqualTo, 1.0);
    Ask();
  }
  const BlankedItems& Ask() { return cache.Of(*data, 1, settings); }
  /// How many evaluations it takes to answer once more.
  std::int64_t Again() {
    const std::int64_t before = cache.EvaluationCount();
    Ask();
    return cache.EvaluationCount() - before;
  }
  void Write(const char* variable, LgIndex_t offset, double value) {
    QelFieldData* const field = data->Writable(1, data->VariableNumber(variable));
    field->set(field, offset, value);
  }

  DataSetPtr data;
  ValueBlanking settings;
  BlankingCache cache;
};

TEST_F(CachedBlanking, EvaluatesOnce) {
  EXPECT_EQ(cache.EvaluationCount(), 1);
  EXPECT_EQ(Again(), 0);
  cache.Clear();
  EXPECT_EQ(Again(), 1);
}

TEST_F(CachedBlanking, EvaluatesAgainAfterAWriteToItsVariableAlone) {
  Write("p", 3, 100);
  EXPECT_EQ(Again(), 0);
  Write("c", 1, 1);
  EXPECT_EQ(Again(), 1);
  EXPECT_TRUE(Ask().cells.Has(1));
  settings.constraints[7].op2Mode = ConstraintOp2Mode_UseVar;
  settings.constraints[7].varB = data->VariableNumber("p");
  EXPECT_EQ(Again(), 1);
  Write("p", 3, 1);
  EXPECT_EQ(Again(), 1);
  EXPECT_EQ(Again(), 0);
}

TEST_F(CachedBlanking, EvaluatesAgainAfterChangesOfSettingsThatMatter) {
  BlankConstraint& constraint = settings.constraints[7];
  const std::vector<std::pair<const char*, std::function<void()>>> changes = {
      {"relation", [&] { constraint.relOp = BlankRelOp_LessThan; }},
      {"number", [&] { constraint.cutoff = 0.5; }},
      {"variable", [&] { constraint.varA = data->VariableNumber("p"); }},
      {"cell mode", [&] { settings.cellMode = BlankCellMode_AnyCorner; }},
      {"entire cells", [&] { settings.blankEntireCell = true; }},
      {"second constraint", [&] { settings.constraints[0] = constraint; }},
      {"first constraint off", [&] { constraint.include = false; }}};
  for (const auto& [name, change] : changes) {
    change();
    const BlankedItems expected = EvaluateBlanking(*data, 1, settings);
    EXPECT_EQ(Again(), 1) << name;
    EXPECT_EQ(Ask().cells.words, expected.cells.words) << name;
    EXPECT_EQ(Ask().nodes.words, expected.nodes.words) << name;
    EXPECT_EQ(Again(), 0) << name;
  }
}

TEST_F(CachedBlanking, KeepsItsAnswerWhenOnlyWhatDoesNotMatterChanges) {
  settings.constraints[3] = {
      false, data->VariableNumber("p"), 1, BlankRelOp_GreaterThan, ConstraintOp2Mode_UseConstant,
      3.0};
  EXPECT_EQ(Again(), 0) << "a constraint that is off";
  settings.constraints[3].cutoff = 4.0;
  EXPECT_EQ(Again(), 0) << "and set otherwise";
  settings.constraints[7].varB = data->VariableNumber("p");
  EXPECT_EQ(Again(), 0) << "the variable that a comparison with a number does not read";
  settings.constraints[7].isAddOns = true;
  settings.isCellModeAddOns = true;
  EXPECT_EQ(Again(), 0) << "who set it";
  settings.include = true;
  EXPECT_EQ(Again(), 0) << "whether it is switched on";
}

TEST_F(CachedBlanking, EvaluatesAgainWhenAMissingVariableComes) {
  settings.constraints[7].varA = data->VariableCount() + 1;
  EXPECT_EQ(Again(), 1);
  EXPECT_FALSE(Ask().cells.Has(0));
  const LgIndex_t added =
      data->AddVariable("v", {{FieldDataType_Byte, ValueLocation_CellCentered}}, true);
  ASSERT_EQ(added, settings.constraints[7].varA);
  EXPECT_EQ(Again(), 1);
  ASSERT_TRUE(data->AllocateValues(1, added));
  EXPECT_EQ(Again(), 1) << "allocated values";
  Write("v", 1, 1);
  EXPECT_EQ(Again(), 1);
  EXPECT_TRUE(Ask().cells.Has(1));
}

TEST_F(CachedBlanking, FollowsValuesThatAreSharedAndTakenApart) {
  const auto first = meshes::Bricks(1, 1, 1);
  const auto second = meshes::Bricks(1, 1, 1);
  vtkNew<vtkDoubleArray> shared;
  shared->SetName("c");
  shared->InsertNextValue(0.0);
  first->GetCellData()->AddArray(shared);
  second->GetCellData()->AddArray(shared);
  data =
      std::make_shared<DataSet>("t", std::vector<BlockEntry>{{"a", first}, {"b", second}}, nullptr);
  settings.constraints[7].varA = data->VariableNumber("c");
  ASSERT_EQ(data->ShareCount(2, settings.constraints[7].varA), 2);
  EXPECT_FALSE(Ask().cells.Has(0));
  EXPECT_FALSE(cache.Of(*data, 2, settings).cells.Has(0));
  Write("c", 0, 1.0);
  EXPECT_TRUE(cache.Of(*data, 2, settings).cells.Has(0)) << "written through the other zone";
  EXPECT_TRUE(Ask().cells.Has(0));
  ASSERT_TRUE(data->BranchShared(1, settings.constraints[7].varA));
  EXPECT_EQ(Again(), 1) << "unshared values";
  Write("c", 0, 0.0);
  EXPECT_FALSE(Ask().cells.Has(0));
  EXPECT_TRUE(cache.Of(*data, 2, settings).cells.Has(0)) << "kept its own";
}

TEST_F(CachedBlanking, EvaluatesAgainAfterAChangeOfConnectivity) {
  const LgIndex_t zone = data->AddZone("made", 4, 2, 0, ZoneType_FELineSeg, nullptr);
  ASSERT_EQ(zone, 2);
  ASSERT_TRUE(data->AllocateValues(zone, data->VariableNumber("p")));
  QelFieldData* const p = data->Writable(zone, data->VariableNumber("p"));
  for (LgIndex_t node = 0; node < 4; ++node) p->set(p, node, node);
  settings = One(data->VariableNumber("p"), BlankRelOp_GreaterThan, 1.5);
  QelNodeMap* const nodes = data->FindZone(zone)->WritableNodeMap();
  const auto connect = [&](std::int64_t element, std::int64_t a, std::int64_t b) {
    nodes->SetNode(element, 0, a);
    nodes->SetNode(element, 1, b);
    data->FindZone(zone)->DropDerivedMaps();
  };
  connect(0, 0, 1);
  connect(1, 1, 2);
  EXPECT_FALSE(cache.Of(*data, zone, settings).cells.Has(1));
  const std::int64_t before = cache.EvaluationCount();
  connect(1, 2, 3);
  EXPECT_TRUE(cache.Of(*data, zone, settings).cells.Has(1));
  EXPECT_EQ(cache.EvaluationCount(), before + 1);
}

TEST_F(CachedBlanking, DoesNotTakeANewZoneForADeletedOne) {
  ASSERT_EQ(data->AddZone("first", 2, 1, 0, ZoneType_FELineSeg, nullptr), 2);
  settings = One(data->VariableNumber("p"), BlankRelOp_EqualTo, 0.0);
  EXPECT_TRUE(cache.Of(*data, 2, settings).nodes.Has(1));
  ASSERT_TRUE(data->DeleteZones({2}));
  ASSERT_EQ(data->AddZone("second", 5, 3, 0, ZoneType_FELineSeg, nullptr), 2);
  EXPECT_EQ(cache.Of(*data, 2, settings).nodes.count, 5);
  EXPECT_EQ(cache.Of(*data, 2, settings).cells.count, 3);
}

}  // namespace
}  // namespace qelhost
