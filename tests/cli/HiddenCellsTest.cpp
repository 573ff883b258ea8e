// Cells hidden by picks, from journal to file: marked as ghosts, left out, and left alone by later
// picks. What has to come out is computed here, from the meshes alone.
#include "Meshes.h"
#include "Program.h"

#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSetAttributes.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkUnsignedCharArray.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace clitests {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr char kHide[] =
    "$!VIEW PSI=0 ALPHA=0 THETA=0 ORIGINX=0 ORIGINY=0 ORIGINZ=0\n"
    "Marquell PICKRECTANGLE ANCHORX=-0.1 ANCHORY=-0.1 SIZEX=2.35 SIZEY=1.6\n"
    "Marquell BLANKAREA RULE=ALLINSIDE\n";
constexpr char kInclude[] = "$!BLANKING VALUE{INCLUDE = YES\n";
constexpr char kAlter[] =
    "Marquell PICKRECTANGLE ANCHORX=-0.1 ANCHORY=-0.1 SIZEX=1.35 SIZEY=1.6\n"
    "Marquell ALTERAREA VARIABLE=\"c\" MODIFIER=\"+100\" RULE=ANYINSIDE\n"
    "Marquell ALTERAREA VARIABLE=\"p\" MODIFIER=\"+1000\" RULE=ALLINSIDE\n";

using Position = std::array<double, 3>;

Position PositionOf(vtkDataSet* mesh, vtkIdType point) {
  Position position;
  mesh->GetPoint(point, position.data());
  return position;
}

bool IsHiddenArea(const Position& at) { return at[0] < 2.25 && at[1] < 1.5; }
bool IsAlteredArea(const Position& at) { return at[0] < 1.25 && at[1] < 1.5; }

/// How many corners of a cell lie in an area.
vtkIdType CornersIn(vtkDataSet* mesh, vtkIdType cell, bool (*area)(const Position&)) {
  vtkIdList* const corners = mesh->GetCell(cell)->GetPointIds();
  return std::count_if(corners->begin(), corners->end(),
                       [&](vtkIdType point) { return area(PositionOf(mesh, point)); });
}

bool IsVolume(vtkDataSet* mesh, vtkIdType cell) {
  return mesh->GetCell(cell)->GetCellDimension() == 3;
}

std::vector<bool> HiddenCellsOf(vtkDataSet* mesh) {
  std::vector<bool> hidden;
  for (vtkIdType cell = 0; cell < mesh->GetNumberOfCells(); ++cell) {
    hidden.push_back(IsVolume(mesh, cell) && CornersIn(mesh, cell, IsHiddenArea) ==
                                                 mesh->GetCell(cell)->GetNumberOfPoints());
  }
  return hidden;
}

/// Nodes whose cells are all hidden.
std::set<vtkIdType> HiddenNodesOf(vtkDataSet* mesh, const std::vector<bool>& hidden) {
  std::set<vtkIdType> nodes;
  std::set<vtkIdType> shown;
  for (vtkIdType cell = 0; cell < mesh->GetNumberOfCells(); ++cell) {
    if (!IsVolume(mesh, cell)) continue;
    vtkIdList* const corners = mesh->GetCell(cell)->GetPointIds();
    auto& found = hidden[static_cast<std::size_t>(cell)] ? nodes : shown;
    found.insert(corners->begin(), corners->end());
  }
  for (const vtkIdType node : shown) nodes.erase(node);
  return nodes;
}

void AddBytes(vtkDataSet* mesh, const char* name, const std::vector<bool>& hidden,
              unsigned char value) {
  vtkNew<vtkUnsignedCharArray> bytes;
  bytes->SetName(name);
  for (const bool isHidden : hidden) bytes->InsertNextValue(isHidden ? value : 0);
  mesh->GetCellData()->AddArray(bytes);
}

/// What kHide makes of a mesh.
void Hide(vtkDataSet* mesh) { AddBytes(mesh, "PICK_BLANK", HiddenCellsOf(mesh), 1); }

void Mark(vtkDataSet* mesh) {
  AddBytes(mesh, vtkDataSetAttributes::GhostArrayName(), HiddenCellsOf(mesh),
           vtkDataSetAttributes::HIDDENCELL);
}

/// What kAlter makes of it, with the hidden ones or without.
void Alter(vtkDataSet* mesh, bool hiddenToo) {
  std::vector<bool> hidden = HiddenCellsOf(mesh);
  if (hiddenToo) hidden.assign(hidden.size(), false);
  const std::set<vtkIdType> hiddenNodes = HiddenNodesOf(mesh, hidden);
  vtkDataArray* const c = mesh->GetCellData()->GetArray("c");
  for (vtkIdType cell = 0; cell < mesh->GetNumberOfCells(); ++cell) {
    const bool isTaken = IsVolume(mesh, cell) && !hidden[static_cast<std::size_t>(cell)] &&
                         CornersIn(mesh, cell, IsAlteredArea) > 0;
    if (isTaken) c->SetTuple1(cell, c->GetTuple1(cell) + 100);
  }
  vtkDataArray* const p = mesh->GetPointData()->GetArray("p");
  for (vtkIdType node = 0; node < mesh->GetNumberOfPoints(); ++node) {
    const bool isTaken = IsAlteredArea(PositionOf(mesh, node)) && hiddenNodes.count(node) == 0;
    if (isTaken) p->SetTuple1(node, p->GetTuple1(node) + 1000);
  }
}

std::vector<double> Numbers(vtkDataArray* array) {
  std::vector<double> numbers;
  for (vtkIdType i = 0; array != nullptr && i < array->GetNumberOfTuples(); ++i) {
    numbers.push_back(array->GetTuple1(i));
  }
  return numbers;
}

/// A mesh from which the hidden cells were left out has the others, in their order, with their
/// values and those of their nodes.
void ExpectShownPart(vtkDataSet* whole, vtkDataSet* actual) {
  const std::vector<bool> hidden = HiddenCellsOf(whole);
  std::map<Position, double> pAt;
  for (vtkIdType node = 0; node < whole->GetNumberOfPoints(); ++node) {
    pAt[PositionOf(whole, node)] = whole->GetPointData()->GetArray("p")->GetTuple1(node);
  }
  std::vector<double> ids;
  std::vector<double> cs;
  std::vector<std::vector<Position>> corners;
  std::set<Position> used;
  for (vtkIdType cell = 0; cell < whole->GetNumberOfCells(); ++cell) {
    if (hidden[static_cast<std::size_t>(cell)]) continue;
    ids.push_back(whole->GetCellData()->GetArray("id")->GetTuple1(cell));
    cs.push_back(whole->GetCellData()->GetArray("c")->GetTuple1(cell));
    corners.emplace_back();
    for (const vtkIdType point : *whole->GetCell(cell)->GetPointIds()) {
      corners.back().push_back(PositionOf(whole, point));
      used.insert(corners.back().back());
    }
  }
  EXPECT_LT(ids.size(), hidden.size());
  EXPECT_EQ(Numbers(actual->GetCellData()->GetArray("id")), ids);
  EXPECT_EQ(Numbers(actual->GetCellData()->GetArray("c")), cs);
  EXPECT_EQ(Numbers(actual->GetCellData()->GetArray("PICK_BLANK")),
            std::vector<double>(ids.size(), 0.0));
  ASSERT_EQ(actual->GetNumberOfPoints(), static_cast<vtkIdType>(used.size()));
  ASSERT_EQ(actual->GetNumberOfCells(), static_cast<vtkIdType>(ids.size()));
  for (vtkIdType cell = 0; cell < actual->GetNumberOfCells(); ++cell) {
    std::vector<Position> found;
    for (const vtkIdType point : *actual->GetCell(cell)->GetPointIds()) {
      found.push_back(PositionOf(actual, point));
    }
    ASSERT_EQ(found, corners[static_cast<std::size_t>(cell)]) << cell;
  }
  for (vtkIdType point = 0; point < actual->GetNumberOfPoints(); ++point) {
    ASSERT_EQ(actual->GetPointData()->GetArray("p")->GetTuple1(point),
              pAt.at(PositionOf(actual, point)));
  }
  EXPECT_EQ(actual->GetFieldData()->GetNumberOfArrays(), 1);
}

struct Kind {
  const char* name;
  MeshKind mesh;
  const char* extension;
  bool isStructured;
};

const Kind kKinds[] = {{"Image", MeshKind::kImage, "vti", true},
                       {"Rectilinear", MeshKind::kRectilinear, "vtr", true},
                       {"Structured", MeshKind::kStructured, "vts", true},
                       {"Bricks", MeshKind::kBricks, "vtu", false},
                       {"Mixed", MeshKind::kMixed, "vtu", false},
                       {"Blocks", MeshKind::kBlocks, "vtm", false}};

class HiddenByPick : public testing::TestWithParam<Kind> {
 protected:
  HiddenByPick() : input(File("in")), output(File("out")) {
    WriteMesh(MakeMesh(GetParam().mesh), input);
  }
  std::string File(const std::string& stem) const {
    return folder.Path(stem + '.' + GetParam().extension);
  }
  Outcome Play(const std::string& journal, const std::string& to, const std::string& option) {
    std::vector<std::string> arguments = {"run", folder.Write("j.journal", journal), input, "-o",
                                          to};
    if (!option.empty()) arguments.push_back(option);
    return RunProgram(arguments);
  }
  void ExpectOutput(const vtkSmartPointer<vtkDataObject>& expected) const {
    const auto actual = ReadMesh(output);
    ASSERT_EQ(Leaves(actual).size(), Leaves(expected).size());
    for (std::size_t n = 0; n < Leaves(expected).size(); ++n) {
      EXPECT_EQ(Difference(Leaves(expected)[n], Leaves(actual)[n]), "") << n;
    }
  }

  TestFolder folder;
  std::string input;
  std::string output;
};

INSTANTIATE_TEST_SUITE_P(Kinds, HiddenByPick, testing::ValuesIn(kKinds),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(HiddenByPick, IsMarkedAsGhostsWhenAskedForAlone) {
  const auto expected = ReadMesh(input);
  for (vtkDataSet* leaf : Leaves(expected)) Hide(leaf);
  const Outcome plain = Play(kHide, output, "");
  ASSERT_EQ(plain.exitCode, 0) << plain.err;
  ExpectOutput(expected);

  std::filesystem::remove_all(output);
  for (vtkDataSet* leaf : Leaves(expected)) Mark(leaf);
  const Outcome marked = Play(kHide, output, "--ghost-cells");
  ASSERT_EQ(marked.exitCode, 0) << marked.err;
  ExpectOutput(expected);
}

TEST_P(HiddenByPick, IsLeftAloneByLaterPicksWhileBlankingIsOn) {
  for (const bool isOn : {false, true}) {
    const auto expected = ReadMesh(input);
    for (vtkDataSet* leaf : Leaves(expected)) {
      Hide(leaf);
      Alter(leaf, !isOn);
      Mark(leaf);
    }
    std::filesystem::remove_all(output);
    const Outcome outcome =
        Play(std::string(kHide) + (isOn ? kInclude : "") + kAlter, output, "--ghost-cells");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    ExpectOutput(expected);
  }
}

TEST_P(HiddenByPick, IsLeftOutWhateverTheStateOfBlankingIs) {
  const std::string target = GetParam().isStructured ? folder.Path("out.vtu") : output;
  for (const bool isOn : {false, true}) {
    const auto whole = ReadMesh(input);
    for (vtkDataSet* leaf : Leaves(whole)) Alter(leaf, !isOn);
    std::filesystem::remove_all(target);
    const Outcome outcome =
        Play(std::string(kHide) + (isOn ? kInclude : "") + kAlter, target, "--drop-blanked");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const auto actual = ReadMesh(target);
    ASSERT_EQ(Leaves(actual).size(), Leaves(whole).size());
    for (std::size_t n = 0; n < Leaves(whole).size(); ++n) {
      ASSERT_STREQ(Leaves(actual)[n]->GetClassName(), "vtkUnstructuredGrid");
      ExpectShownPart(Leaves(whole)[n], Leaves(actual)[n]);
    }
  }
}

class HiddenCells : public testing::Test {
 protected:
  std::string Save(const std::string& name, MeshKind kind = MeshKind::kBricks) const {
    WriteMesh(MakeMesh(kind), folder.Path(name));
    return folder.Path(name);
  }
  vtkSmartPointer<vtkDataSet> Load(const std::string& name) const {
    return Leaves(ReadMesh(folder.Path(name)))[0];
  }
  std::string Journal(const std::string& text) const { return folder.Write("j.journal", text); }

  TestFolder folder;
};

TEST_F(HiddenCells, CannotBothBeMarkedAndLeftOut) {
  const Outcome outcome = RunProgram({"run", Journal(kHide), Save("in.vtu"), "-o",
                                      folder.Path("out.vtu"), "--ghost-cells", "--drop-blanked"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--ghost-cells"));
  EXPECT_THAT(outcome.err, HasSubstr("--drop-blanked"));
  EXPECT_THAT(folder.Names(), ElementsAre("in.vtu", "j.journal"));
}

TEST_F(HiddenCells, AreNotLeftOutOfFilesForStructuredMeshes) {
  for (const Kind& kind : kKinds) {
    if (!kind.isStructured) continue;
    const std::string input = Save(std::string("in.") + kind.extension, kind.mesh);
    const std::string output = folder.Path(std::string("out.") + kind.extension);
    const Outcome outcome =
        RunProgram({"run", Journal(kHide), input, "-o", output, "--drop-blanked"});
    EXPECT_EQ(outcome.exitCode, 3) << kind.name;
    EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
    EXPECT_THAT(outcome.err,
                HasSubstr("cannot hold a mesh with cells left out; write a .vtu file"));
    EXPECT_FALSE(std::filesystem::exists(output)) << kind.name;
  }
}

TEST_F(HiddenCells, AreTreatedInTheFilesThatHaveSome) {
  const std::string first = Save("first.vtu");
  const std::string second = Save("second.vtu", MeshKind::kMixed);
  const std::string journal = Journal(std::string("$!FRAME 2\n") + kHide);
  const Outcome marked =
      RunProgram({"run", journal, first, second, "-o", folder.Path("marked"), "--ghost-cells"});
  ASSERT_EQ(marked.exitCode, 0) << marked.err;
  EXPECT_EQ(Difference(Load("first.vtu"), Load("marked/first.vtu")), "");
  const auto expected = Load("second.vtu");
  Hide(expected);
  Mark(expected);
  EXPECT_EQ(Difference(expected, Load("marked/second.vtu")), "");

  const Outcome dropped =
      RunProgram({"run", journal, first, second, "-o", folder.Path("dropped"), "--drop-blanked"});
  ASSERT_EQ(dropped.exitCode, 0) << dropped.err;
  EXPECT_EQ(Difference(Load("first.vtu"), Load("dropped/first.vtu")), "");
  ExpectShownPart(Load("second.vtu"), Load("dropped/second.vtu"));
}

TEST_F(HiddenCells, AreTreatedInTheTimeStepsThatHaveSome) {
  Save("a.vtu");
  Save("b.vts", MeshKind::kStructured);
  const std::string series = folder.Write(
      "in.pvd",
      "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n<Collection>\n"
      "<DataSet timestep=\"1\" group=\"\" part=\"0\" file=\"a.vtu\"/>\n"
      "<DataSet timestep=\"2\" group=\"\" part=\"0\" file=\"b.vts\"/>\n"
      "</Collection>\n</VTKFile>\n");
  const std::string journal = Journal(std::string("$!TIME 2\n") + kHide);
  const Outcome marked =
      RunProgram({"run", journal, series, "-o", folder.Path("marked.pvd"), "--ghost-cells"});
  ASSERT_EQ(marked.exitCode, 0) << marked.err;
  EXPECT_EQ(Difference(Load("a.vtu"), Load("marked/marked_0.vtu")), "");
  const auto expected = Load("b.vts");
  Hide(expected);
  Mark(expected);
  EXPECT_EQ(Difference(expected, Load("marked/marked_1.vts")), "");

  const Outcome dropped =
      RunProgram({"run", journal, series, "-o", folder.Path("dropped.pvd"), "--drop-blanked"});
  ASSERT_EQ(dropped.exitCode, 0) << dropped.err;
  EXPECT_EQ(Difference(Load("a.vtu"), Load("dropped/dropped_0.vtu")), "");
  ExpectShownPart(Load("b.vts"), Load("dropped/dropped_1.vtu"));
  EXPECT_THAT(ReadText(folder.Path("dropped.pvd")), HasSubstr("dropped/dropped_1.vtu"));
}

TEST_F(HiddenCells, AreNoneAfterTheHidingWasUndone) {
  const std::string input = Save("in.vtu");
  const std::string output = folder.Path("out.vtu");
  const Outcome outcome = RunProgram({"run", Journal(std::string(kHide) + "Marquell UNDOBLANK\n"),
                                      input, "-o", output, "--ghost-cells"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto expected = Load("in.vtu");
  AddBytes(expected, "PICK_BLANK",
           std::vector<bool>(static_cast<std::size_t>(expected->GetNumberOfCells()), false), 1);
  EXPECT_EQ(Difference(expected, Load("out.vtu")), "");
}

TEST_F(HiddenCells, OfAnEarlierRunAreLeftOutByALaterOne) {
  const std::string input = Save("in.vtu", MeshKind::kMixed);
  ASSERT_EQ(RunProgram({"run", Journal(kHide), input, "-o", folder.Path("hidden.vtu")}).exitCode,
            0);
  const Outcome outcome = RunProgram({"run", Journal("$!TIME 0\n"), folder.Path("hidden.vtu"), "-o",
                                      folder.Path("out.vtu"), "--drop-blanked"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  ExpectShownPart(Load("in.vtu"), Load("out.vtu"));
}

}  // namespace
}  // namespace clitests
