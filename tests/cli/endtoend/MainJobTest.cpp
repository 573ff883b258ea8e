// The main job on files of each kind, judged by what VTK reads back.
#include "CompareData.h"
#include "DataFiles.h"
#include "EditOracle.h"
#include "Meshes.h"
#include "ProgramRun.h"

#include <functional>
#include <string>
#include <vector>

namespace clitest {

namespace {

struct AreaEdit {
  Area area;
  Rule rule;
  Target target;
  Modifier modifier;
};

/// One edit a shape, rule, place, stored type and operator at least. No corner lies on an edge.
std::vector<AreaEdit> AreaEdits() {
  const Area rectangle = RectangleArea(0.6, 0.6, 2.1, 1.6);
  const Area circle = CircleArea(2.2, 1.1, 1.3);
  const Area polygon = PolygonArea({{0.4, 0.3}, {3.6, 0.4}, {2.1, 1.2}, {3.4, 2.7}, {0.3, 2.6}});
  return {{rectangle, Rule::kAnyInside, {Place::kNodes, "T", 0, "T"}, {'*', 1.5}},
          {rectangle, Rule::kAllInside, {Place::kCells, "T", 0, "T (cell)"}, {'+', 10}},
          {rectangle, Rule::kAnyInside, {Place::kCells, "T", 0, "T (cell)"}, {'-', 0.3}},
          {circle, Rule::kAnyOutside, {Place::kCells, "S", 4, "S_4"}, {'-', 2.5}},
          {polygon, Rule::kAllOutside, {Place::kCells, "id", 0, "id"}, {'*', 1.5}},
          {polygon, Rule::kAnyInside, {Place::kNodes, "U", 1, "U_Y"}, {'=', 7.25}},
          {circle, Rule::kAllInside, {Place::kCells, "flag", 0, "flag"}, {'*', 30}},
          {circle, Rule::kAnyInside, {Place::kCells, "i8", 0, "i8"}, {'-', 200}},
          {polygon, Rule::kAnyInside, {Place::kCells, "i16", 0, "i16"}, {'*', 1000}},
          {polygon, Rule::kAnyOutside, {Place::kCells, "u16", 0, "u16"}, {'/', 3}},
          {rectangle, Rule::kAnyInside, {Place::kCells, "u32", 0, "u32"}, {'+', 0.5}},
          {rectangle, Rule::kAllOutside, {Place::kCells, "u64", 0, "u64"}, {'-', 1000}},
          {circle, Rule::kAnyOutside, {Place::kNodes, "count", 0, "count"}, {'/', 4}}};
}

const Target kElementTarget = {Place::kCells, "T", 0, "T (cell)"};
constexpr int kElement = 2;

struct Row {
  const char* name;
  const char* extension;
  DataPtr (*make)();
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

class MainJob : public ProgramTest, public ::testing::WithParamInterface<Row> {
 protected:
  std::string InputName() const { return std::string("in") + GetParam().extension; }
  std::string OutputName() const { return std::string("out") + GetParam().extension; }
  /// Flat data starts in a 2D frame, where areas are in X and Y; other data is looked at along Z.
  std::vector<std::string> Start(vtkDataObject* data) const {
    for (vtkDataSet* const block : BlocksOf(data)) {
      double bounds[6];
      block->GetBounds(bounds);
      if (bounds[4] == bounds[5]) continue;
      return {"$!VIEW PSI=0 ALPHA=0 THETA=0 ORIGINX=0 ORIGINY=0 ORIGINZ=0"};
    }
    return {};
  }
};

TEST_P(MainJob, WritesWhatTheEditsMakeOfTheDataAndNothingElse) {
  WriteData(Path(InputName()), GetParam().make());
  DataPtr expected = ReadData(Path(InputName()));
  std::vector<std::string> lines = Start(expected);
  for (const AreaEdit& edit : AreaEdits()) {
    AlterArea(expected, edit.area, edit.rule, edit.target, edit.modifier);
    const auto edited = LinesOf(edit.area, edit.rule, edit.target, edit.modifier);
    lines.insert(lines.end(), edited.begin(), edited.end());
  }
  AlterElement(BlocksOf(expected).front(), kElementTarget, {'=', -3.5}, kElement);
  lines.push_back(LineOfElement(kElementTarget, {'=', -3.5}, 1, kElement));
  WriteText("edits.journal", Journal(lines));

  const Outcome outcome = Run({"run", "edits.journal", InputName(), "-o", OutputName()});

  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(IsSameData(expected, ReadData(Path(OutputName()))));
}

DataPtr Volume() { return Curvilinear(5, 4, 3); }
DataPtr Sheet() { return Curvilinear(5, 4, 1); }
DataPtr Strand() { return Curvilinear(7, 1, 1); }

INSTANTIATE_TEST_SUITE_P(
    Kinds, MainJob,
    ::testing::Values(
        Row{"MixedCells", ".vtu", MixedVolume}, Row{"Bricks", ".vtu", Bricks},
        Row{"Voxels", ".vtu", Voxels}, Row{"Polyhedra", ".vtu", Polyhedra},
        Row{"QuadraticCells", ".vtu", QuadraticTets}, Row{"GhostCells", ".vtu", GhostBricks},
        Row{"Pixels", ".vtu", FlatPixels}, Row{"Triangles", ".vtp", FlatTriangles},
        Row{"MixedSurface", ".vtp", FlatMixed}, Row{"Polygons", ".vtp", FlatPolygons},
        Row{"LineSegments", ".vtp", LineSegments}, Row{"Ordered3D", ".vts", Volume},
        Row{"Ordered2D", ".vts", Sheet}, Row{"Ordered1D", ".vts", Strand},
        Row{"RectilinearGrid", ".vtr", Rectilinear}, Row{"Image", ".vti", Image},
        Row{"Blocks", ".vtm", Blocks}, Row{"LegacyMixedCells", ".vtk", MixedVolume},
        Row{"LegacyPolyData", ".vtk", FlatMixed}, Row{"LegacyOrdered", ".vtk", Volume},
        Row{"LegacyRectilinear", ".vtk", Rectilinear}, Row{"LegacyImage", ".vtk", Image}),
    [](const auto& row) { return std::string(row.param.name); });

class EditsInTime : public ProgramTest {
 protected:
  EditsInTime() {
    for (const char* const step : {"a", "b", "c"}) {
      WriteData(Path(std::string(step) + ".vtu"), Bricks());
    }
    WritePvd(Path("in.pvd"), {{"0", "0", "a.vtu"}, {"0.5", "0", "b.vtu"}, {"2", "0", "c.vtu"}});
  }
  /// The edit is seen in the step given and in no other.
  void ExpectEditIn(std::size_t step) const {
    const std::vector<PvdEntry> entries = ReadPvd(Path("out.pvd"));
    ASSERT_EQ(entries.size(), 3u);
    const char* const times[] = {"0", "0.5", "2"};
    for (std::size_t i = 0; i < entries.size(); ++i) {
      DataPtr expected = ReadData(Path("a.vtu"));
      if (i == step) AlterArea(expected, m_area, Rule::kAnyInside, m_target, {'*', 2});
      EXPECT_EQ(std::stod(entries[i].time), std::stod(times[i]));
      EXPECT_TRUE(IsSameData(expected, ReadData(Path(entries[i].file)))) << entries[i].file;
    }
  }
  std::vector<std::string> EditLines() const {
    auto lines = LinesOf(m_area, Rule::kAnyInside, m_target, {'*', 2});
    lines.insert(lines.begin(), "$!VIEW PSI=0 ALPHA=0 THETA=0 ORIGINX=0 ORIGINY=0 ORIGINZ=0");
    return lines;
  }

 private:
  Area m_area = CircleArea(2.2, 1.1, 1.3);
  Target m_target = {Place::kCells, "T", 0, "T (cell)"};
};

TEST_F(EditsInTime, TakeTheFirstStepWhenNoneIsChosen) {
  WriteText("edits.journal", Journal(EditLines()));
  const Outcome outcome = Run({"run", "edits.journal", "in.pvd", "-o", "out.pvd"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  ExpectEditIn(0);
}

TEST_F(EditsInTime, TakeTheStepOfTheTimeChosen) {
  auto lines = EditLines();
  lines.insert(lines.begin(), "$!TIME 0.5");
  WriteText("edits.journal", Journal(lines));
  const Outcome outcome = Run({"run", "edits.journal", "in.pvd", "-o", "out.pvd"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  ExpectEditIn(1);
}

using Coordinates = ProgramTest;

TEST_F(Coordinates, OfGridsThatStoreThemAreAlteredLikeAnyVariable) {
  WriteData(Path("in.vts"), Curvilinear(5, 4, 1));
  WriteText("edits.journal",
            Journal({"Marquell PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=1.5",
                     "Marquell ALTERAREA VARIABLE=\"Z\" MODIFIER=\"=2.5\" RULE=ANYINSIDE"}));
  const Outcome outcome = Run({"run", "edits.journal", "in.vts", "-o", "out.vts"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const DataPtr data = ReadData(Path("out.vts"));
  vtkDataSet* const block = BlocksOf(data).at(0);
  for (vtkIdType node = 0; node < block->GetNumberOfPoints(); ++node) {
    double at[3];
    block->GetPoint(node, at);
    EXPECT_EQ(at[2], at[1] < 0.5 ? 2.5 : 0.0) << node;
  }
}

}  // namespace

}  // namespace clitest
