#include "DataSet.h"

#include <gmock/gmock.h>
#include <vtkCellData.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkPointData.h>
#include <vtkStringArray.h>
#include <vtkStructuredGrid.h>

#include <cmath>
#include <ctime>

#include "Meshes.h"

namespace {

using meshes::Bricks;
using qelhost::DataSet;
using qelhost::NewField;
using ::testing::ElementsAre;

template <class Array = vtkDoubleArray>
vtkSmartPointer<Array> Values(const char* name, int components, vtkIdType tuples) {
  auto array = vtkSmartPointer<Array>::New();
  array->SetName(name);
  array->SetNumberOfComponents(components);
  array->SetNumberOfTuples(tuples);
  for (vtkIdType n = 0; n < tuples * components; ++n) array->SetValue(n, static_cast<double>(n));
  return array;
}

std::vector<std::string> NamesOf(const DataSet& data) {
  std::vector<std::string> names;
  for (LgIndex_t var = 1; var <= data.VariableCount(); ++var) {
    names.push_back(data.FindVariable(var)->name);
  }
  return names;
}

TEST(DataSetVariables, AreNamedByComponentsAndLocation) {
  const auto grid = Bricks(1, 1, 1);
  vtkPointData* points = grid->GetPointData();
  points->AddArray(Values("p", 1, 8));
  points->AddArray(Values("U", 3, 8));
  points->AddArray(Values("uv", 2, 8));
  points->AddArray(Values("X", 1, 8));
  points->AddArray(Values("U_X", 1, 8));
  points->AddArray(Values("say \"hi\"", 1, 8));
  vtkNew<vtkStringArray> notes;
  notes->SetName("notes");
  notes->SetNumberOfValues(8);
  points->AddArray(notes);
  grid->GetCellData()->AddArray(Values("p", 1, 1));
  grid->GetCellData()->AddArray(Values("U", 3, 1));
  DataSet data("t", {{"z", grid}}, nullptr);
  EXPECT_THAT(NamesOf(data), ElementsAre("X", "Y", "Z", "p", "U_X", "U_Y", "U_Z", "uv_0", "uv_1",
                                         "X (2)", "U_X (2)", "say 'hi'", "p (cell)", "U_X (cell)",
                                         "U_Y (cell)", "U_Z (cell)"));
}

TEST(DataSetVariables, NameUsedAtNodesHereAndCellsThereGivesTwoInAllZones) {
  const auto first = Bricks(1, 1, 1), second = Bricks(1, 1, 1);
  first->GetPointData()->AddArray(Values("T", 1, 8));
  second->GetCellData()->AddArray(Values("T", 1, 1));
  DataSet data("t", {{"a", first}, {"b", second}}, nullptr);
  EXPECT_THAT(NamesOf(data), ElementsAre("X", "Y", "Z", "T", "T (cell)"));
  EXPECT_FALSE(data.FindField(1, 4)->IsPassive());
  EXPECT_TRUE(data.FindField(2, 4)->IsPassive());
  EXPECT_TRUE(data.FindField(1, 5)->IsPassive());
  EXPECT_EQ(data.FindField(1, 5)->location, ValueLocation_CellCentered);
}

TEST(DataSetVariables, SameNamesAreNumberedInTheirOrder) {
  const auto mesh = Bricks(1, 1, 1);
  for (const char* name : {"a\"", "a'", "a' (2)"}) {
    mesh->GetCellData()->AddArray(Values(name, 1, 1));
  }
  const DataSet data("names", {{"zone", mesh}}, nullptr);
  EXPECT_THAT(NamesOf(data), ElementsAre("X", "Y", "Z", "a'", "a' (2)", "a' (2) (2)"));
}

/// A short file may have them; the time for them must not grow with their square.
TEST(DataSetVariables, MayBeVeryMany) {
  constexpr int kMany = 300000;
  const auto mesh = Bricks(1, 1, 1);
  mesh->GetCellData()->AddArray(Values("a", kMany, 1));
  const std::clock_t start = std::clock();
  const DataSet data("many", {{"zone", mesh}}, nullptr);
  EXPECT_EQ(data.VariableCount(), 3 + kMany);
  EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 20.0);
}

TEST(DataSetVariables, OfManyZonesAreNotMoreThanCanBeKept) {
  constexpr int kMany = 1 << 18;
  constexpr std::size_t kZones = 65;
  const auto mesh = Bricks(1, 1, 1);
  mesh->GetCellData()->AddArray(Values("a", kMany, 1));
  const std::vector<qelhost::BlockEntry> blocks(kZones, {"zone", mesh});
  EXPECT_THROW(DataSet("many", blocks, nullptr), qelhost::DataError);
}

TEST(DataSetVariables, ArrayOfAnotherLengthIsRefused) {
  const auto grid = Bricks(1, 1, 1);
  grid->GetPointData()->AddArray(Values("p", 1, 5));
  EXPECT_THROW(DataSet("t", {{"z", grid}}, nullptr), qelhost::DataError);
}

TEST(DataSetVariables, BlockWithoutNodesMakesNoZone) {
  vtkNew<vtkUnstructuredGrid> empty;
  DataSet data("t", {{"none", empty}, {"null", nullptr}, {"z", Bricks(1, 1, 1)}}, nullptr);
  ASSERT_EQ(data.ZoneCount(), 1);
  EXPECT_EQ(data.FindZone(1)->name, "z");
  EXPECT_THROW(DataSet("t", {{"none", empty}}, nullptr), qelhost::DataError);
}

TEST(DataSetVariables, IdsAreNeverReused) {
  QelUniqueID_t before = 0;
  for (int n = 0; n < 3; ++n) {
    DataSet data("t", {{"z", Bricks(1, 1, 1)}}, nullptr);
    EXPECT_GT(data.Id(), before);
    before = data.Id();
  }
}

TEST(DataSetValues, BadNumbersAreRefused) {
  DataSet data("t", {{"z", Bricks(1, 1, 1)}}, nullptr);
  for (const LgIndex_t bad : {-1, 0, 99}) {
    EXPECT_EQ(data.Readable(bad, 1), nullptr);
    EXPECT_EQ(data.Writable(1, bad), nullptr);
    EXPECT_EQ(data.ReadableAtNodes(1, bad), nullptr);
    EXPECT_EQ(data.FindZone(bad), nullptr);
    EXPECT_FALSE(data.AllocateValues(1, bad));
    EXPECT_FALSE(data.BranchShared(bad, 1));
    EXPECT_EQ(data.ShareCount(bad, 1), 0);
  }
}

TEST(DataSetValues, CellCentredVariableIsAveragedAtNodesAndNeverStale) {
  const auto bricks = Bricks(2, 1, 1);
  bricks->GetCellData()->AddArray(Values("c", 1, 2));
  vtkNew<vtkStructuredGrid> ordered;
  ordered->SetDimensions(3, 2, 2);
  ordered->SetPoints(bricks->GetPoints());
  ordered->GetCellData()->AddArray(Values("c", 1, 2));
  DataSet data("t", {{"fe", bricks}, {"ijk", ordered}}, nullptr);
  const LgIndex_t var = data.VariableNumber("c");
  for (LgIndex_t zone = 1; zone <= 2; ++zone) {
    const QelFieldData* nodes = data.ReadableAtNodes(zone, var);
    EXPECT_EQ(nodes->set, nullptr);
    ASSERT_EQ(nodes->count, 12);
    EXPECT_EQ(nodes->get(nodes, 0), 0);
    EXPECT_EQ(nodes->get(nodes, 1), 0.5);
    EXPECT_EQ(nodes->get(nodes, 2), 1);
    QelFieldData* cells = data.Writable(zone, var);
    cells->set(cells, 1, 5);
    EXPECT_EQ(nodes->get(nodes, 1), 2.5);
  }
}

TEST(DataSetValues, PassiveVariableReadsAsZeroUntilItIsAllocated) {
  DataSet data("t", {{"a", Bricks(1, 1, 1)}, {"b", Bricks(1, 1, 1)}}, nullptr);
  const std::vector<NewField> fields{{FieldDataType_Int16, ValueLocation_CellCentered},
                                     {FieldDataType_Double, ValueLocation_CellCentered}};
  const LgIndex_t var = data.AddVariable("mark", fields, /*deferred=*/true);
  ASSERT_GT(var, 3);
  EXPECT_EQ(data.Writable(1, var), nullptr);
  EXPECT_EQ(data.Readable(1, var)->count, 1);
  EXPECT_EQ(data.ReadableAtNodes(1, var)->count, 8);
  EXPECT_FALSE(data.VariableRange(var).hasValues);
  EXPECT_TRUE(data.AllocateValues(1, var));
  EXPECT_TRUE(data.AllocateValues(1, var));
  EXPECT_EQ(data.Writable(1, var)->type, FieldDataType_Int16);
  EXPECT_TRUE(data.FindField(2, var)->IsPassive());
  EXPECT_NE(data.FindZone(1)->Block()->GetCellData()->GetArray("mark"), nullptr);
  EXPECT_EQ(data.AddVariable("mark", fields, true), 0);
  EXPECT_EQ(data.AddVariable("other", {NewField{}}, true), 0);
}

TEST(DataSetValues, SharedArrayCountsOnceAndBranches) {
  const auto first = Bricks(1, 1, 1), second = Bricks(1, 1, 1);
  const auto shared = Values<vtkFloatArray>("U", 3, 8);
  first->GetPointData()->AddArray(shared);
  second->GetPointData()->AddArray(shared);
  second->GetPointData()->SetActiveVectors("U");
  second->SetPoints(first->GetPoints());
  DataSet data("t", {{"a", first}, {"b", second}}, nullptr);
  const LgIndex_t var = data.VariableNumber("U_Y");
  EXPECT_EQ(data.ShareCount(1, var), 2);
  EXPECT_EQ(data.ShareCount(1, 1), 2);
  QelFieldData* ref = data.Writable(1, var);
  ref->set(ref, 0, 42);
  EXPECT_EQ(data.Readable(2, var)->get(data.Readable(2, var), 0), 42);
  EXPECT_EQ(data.Writes().changed, 1);
  EXPECT_EQ(data.ZoneWrites(2, var).writes, 1);

  ASSERT_TRUE(data.BranchShared(2, var));
  ASSERT_TRUE(data.BranchShared(2, 1));
  EXPECT_EQ(data.ShareCount(1, var), 1);
  EXPECT_EQ(data.ShareCount(2, data.VariableNumber("U_Z")), 1);
  EXPECT_EQ(data.ShareCount(2, 3), 1);
  QelFieldData* own = data.Writable(2, var);
  EXPECT_EQ(own->get(own, 0), 42);
  own->set(own, 0, 7);
  EXPECT_EQ(ref->get(ref, 0), 42);
  EXPECT_EQ(second->GetPointData()->GetArray("U")->GetComponent(0, 1), 7);
  EXPECT_STREQ(second->GetPointData()->GetVectors()->GetName(), "U");
}

TEST(DataSetValues, RangeFollowsWritesAndLeavesNaNOut) {
  const auto grid = Bricks(1, 1, 1);
  grid->GetPointData()->AddArray(Values("p", 1, 8));
  DataSet data("t", {{"a", grid}, {"b", Bricks(1, 1, 1)}}, nullptr);
  const LgIndex_t var = data.VariableNumber("p");
  EXPECT_EQ(data.VariableRange(var).max, 7);
  QelFieldData* ref = data.Writable(1, var);
  ref->set(ref, 7, std::nan(""));
  ref->set(ref, 0, -2);
  EXPECT_EQ(data.VariableRange(var).max, 6);
  EXPECT_EQ(data.VariableRange(var).min, -2);
  EXPECT_FALSE(data.ZoneRange(2, var).hasValues);
}

TEST(DataSetZones, AddedZoneHasCoordinatesAndPassiveVariables) {
  const auto grid = Bricks(1, 1, 1);
  grid->GetPointData()->AddArray(Values("p", 1, 8));
  DataSet data("t", {{"a", grid}}, nullptr);
  ASSERT_EQ(data.AddZone("box", 8, 2, 0, ZoneType_FEBrick, nullptr), 2);
  EXPECT_THAT(data.FindZone(2)->IJK(), ElementsAre(8, 2, 8));
  EXPECT_FALSE(data.FindZone(2)->IsFromFile());
  EXPECT_NE(data.Writable(2, 1), nullptr);
  EXPECT_TRUE(data.FindField(2, 4)->IsPassive());
  EXPECT_TRUE(data.AllocateValues(2, 4));
  EXPECT_EQ(data.Writable(2, 4)->type, FieldDataType_Double);
  QelNodeMap* map = data.FindZone(2)->WritableNodeMap();
  ASSERT_NE(map, nullptr);
  EXPECT_TRUE(map->SetNode(1, 7, 5));
  EXPECT_EQ(map->Node(1, 7), 5);
  ASSERT_EQ(data.AddZone("grid", 3, 2, 1, ZoneType_Ordered, nullptr), 3);
  EXPECT_THAT(data.FindZone(3)->IJK(), ElementsAre(3, 2, 1));
}

TEST(DataSetZones, ImpossibleZoneIsRefused) {
  DataSet data("t", {{"a", Bricks(1, 1, 1)}}, nullptr);
  EXPECT_EQ(data.AddZone("z", 0, 1, 1, ZoneType_FEBrick, nullptr), 0);
  EXPECT_EQ(data.AddZone("z", 8, 1, 1, ZoneType_FEPolyhedron, nullptr), 0);
  EXPECT_EQ(data.AddZone("z", 70000, 70000, 1, ZoneType_Ordered, nullptr), 0);
  EXPECT_EQ(data.AddZone("", 8, 1, 1, ZoneType_FEBrick, nullptr), 0);
  EXPECT_EQ(data.ZoneCount(), 1);
}

TEST(DataSetZones, OnlyMadeZonesAreDeletedAllOrNone) {
  DataSet data("t", {{"a", Bricks(1, 1, 1)}}, nullptr);
  data.AddZone("b", 2, 1, 0, ZoneType_FELineSeg, nullptr);
  data.AddZone("c", 3, 1, 0, ZoneType_FETriangle, nullptr);
  EXPECT_FALSE(data.DeleteZones({1, 2}));
  EXPECT_FALSE(data.DeleteZones({9}));
  EXPECT_EQ(data.ZoneCount(), 3);
  EXPECT_TRUE(data.DeleteZones({2}));
  ASSERT_EQ(data.ZoneCount(), 2);
  EXPECT_EQ(data.FindZone(2)->name, "c");
}

}  // namespace
