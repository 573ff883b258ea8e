// Picks in boxes and spheres, hidden cells and surfaces, from journal to file, on every kind of
// mesh. What has to come out is computed here, from the meshes alone.
#include "Meshes.h"
#include "Program.h"

#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkPointData.h>
#include <vtkUnsignedCharArray.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace clitests {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

using Inside3d = std::function<bool(const double* at)>;

constexpr char kBox[] =
    "$!PLOTTYPE CARTESIAN3D\n"
    "Marquell PICKCUBE ANCHORX=0.5 ANCHORY=-1 ANCHORZ=-1 SIZEX=2.6 SIZEY=2.2 SIZEZ=3.5\n";
bool IsInBox(const double* at) {
  return at[0] >= 0.5 && at[0] <= 3.1 && at[1] >= -1.0 && at[1] <= 1.2 && at[2] >= -1.0 &&
         at[2] <= 2.5;
}

constexpr char kBall[] =
    "$!PLOTTYPE CARTESIAN3D\n"
    "Marquell PICKSPHERE ANCHORX=1 ANCHORY=1 ANCHORZ=1 RADIUS=1.5\n";
bool IsInBall(const double* at) {
  const double dx = at[0] - 1.0;
  const double dy = at[1] - 1.0;
  const double dz = at[2] - 1.0;
  return std::sqrt(dx * dx + dy * dy + dz * dz) <= 1.5;
}

struct Rule {
  const char* name;
  bool outside;
  bool all;
};
constexpr Rule kRules[] = {{"ANYINSIDE", false, false},
                           {"ANYOUTSIDE", true, false},
                           {"ALLINSIDE", false, true},
                           {"ALLOUTSIDE", true, true}};

/// Cells of lower dimension are carried through and never picked.
bool IsTaken(vtkDataSet* mesh, vtkIdType cell, const Inside3d& inside, const Rule& rule) {
  if (mesh->GetCell(cell)->GetCellDimension() < 3) return false;
  vtkIdList* const corners = mesh->GetCell(cell)->GetPointIds();
  vtkIdType onSide = 0;
  for (vtkIdType corner = 0; corner < corners->GetNumberOfIds(); ++corner) {
    double at[3];
    mesh->GetPoint(corners->GetId(corner), at);
    onSide += inside(at) != rule.outside ? 1 : 0;
  }
  return rule.all ? onSide == corners->GetNumberOfIds() : onSide > 0;
}

std::vector<double> NumbersOf(vtkDataArray* array) {
  std::vector<double> numbers;
  for (vtkIdType i = 0; array != nullptr && i < array->GetNumberOfTuples(); ++i) {
    numbers.push_back(array->GetTuple1(i));
  }
  return numbers;
}

class VolumePick : public testing::TestWithParam<MeshKind> {
 protected:
  VolumePick()
      : input(folder.Path(GetParam() == MeshKind::kBlocks ? "in.vtm" : Extension("in"))),
        output(folder.Path(GetParam() == MeshKind::kBlocks ? "out.vtm" : Extension("out"))) {
    WriteMesh(MakeMesh(GetParam()), input);
  }

  static std::string Extension(const std::string& name) {
    switch (GetParam()) {
      case MeshKind::kImage:
        return name + ".vti";
      case MeshKind::kRectilinear:
        return name + ".vtr";
      case MeshKind::kStructured:
        return name + ".vts";
      default:
        return name + ".vtu";
    }
  }

  /// Plays the lines and reads the data sets that come out.
  void Play(const std::string& journal) {
    const Outcome outcome =
        RunProgram({"run", folder.Write("j.journal", journal), input, "-o", output, "--force"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    m_before = ReadMesh(input);
    m_after = ReadMesh(output);
    before = Leaves(m_before);
    after = Leaves(m_after);
    ASSERT_EQ(after.size(), before.size()) << "zones that were drawn are not written";
  }

  void ExpectHidden(const Inside3d& inside, const Rule& rule) {
    for (std::size_t leaf = 0; leaf < before.size(); ++leaf) {
      std::vector<double> expected;
      for (vtkIdType cell = 0; cell < before[leaf]->GetNumberOfCells(); ++cell) {
        expected.push_back(IsTaken(before[leaf], cell, inside, rule) ? 1.0 : 0.0);
      }
      vtkDataArray* const blank = after[leaf]->GetCellData()->GetArray("PICK_BLANK");
      ASSERT_NE(blank, nullptr);
      EXPECT_NE(vtkUnsignedCharArray::SafeDownCast(blank), nullptr) << "one byte a cell";
      EXPECT_EQ(NumbersOf(blank), expected);
    }
  }

  TestFolder folder;
  std::string input;
  std::string output;
  std::vector<vtkDataSet*> before;
  std::vector<vtkDataSet*> after;

 private:
  vtkSmartPointer<vtkDataObject> m_before;
  vtkSmartPointer<vtkDataObject> m_after;
};

TEST_P(VolumePick, AltersTheNodesInABox) {
  for (const Rule& rule : kRules) {
    Play(std::string(kBox) +
         "Marquell ALTERAREA VARIABLE=\"p\" MODIFIER=\"+1000\" RULE=" + rule.name + "\n");
    for (std::size_t leaf = 0; leaf < before.size(); ++leaf) {
      std::vector<double> expected = NumbersOf(before[leaf]->GetPointData()->GetArray("p"));
      for (std::size_t node = 0; node < expected.size(); ++node) {
        double at[3];
        before[leaf]->GetPoint(static_cast<vtkIdType>(node), at);
        if (IsInBox(at) != rule.outside) expected[node] += 1000.0;
      }
      EXPECT_EQ(NumbersOf(after[leaf]->GetPointData()->GetArray("p")), expected) << rule.name;
    }
  }
}

TEST_P(VolumePick, AltersTheCellsInASphere) {
  for (const Rule& rule : kRules) {
    Play(std::string(kBall) +
         "Marquell ALTERAREA VARIABLE=\"c\" MODIFIER=\"=77\" RULE=" + rule.name + "\n");
    for (std::size_t leaf = 0; leaf < before.size(); ++leaf) {
      std::vector<double> expected = NumbersOf(before[leaf]->GetCellData()->GetArray("c"));
      for (std::size_t cell = 0; cell < expected.size(); ++cell) {
        if (IsTaken(before[leaf], static_cast<vtkIdType>(cell), IsInBall, rule)) {
          expected[cell] = 77.0;
        }
      }
      EXPECT_EQ(NumbersOf(after[leaf]->GetCellData()->GetArray("c")), expected) << rule.name;
    }
  }
}

TEST_P(VolumePick, HidesCells) {
  for (const Rule& rule : kRules) {
    Play(std::string(kBox) + "Marquell BLANKAREA RULE=" + rule.name + "\n");
    ExpectHidden(IsInBox, rule);
  }
}

TEST_P(VolumePick, HidesInTheViewPlaneToo) {
  Play(
      "$!PLOTTYPE CARTESIAN3D\n$!VIEW PSI=0 ALPHA=0 THETA=0 ORIGINX=0 ORIGINY=0 ORIGINZ=0\n"
      "Marquell PICKCIRCLE ANCHORX=2 ANCHORY=1 RADIUS=1.5\n"
      "Marquell BLANKAREA RULE=ANYINSIDE\n");
  ExpectHidden([](const double* at) { return std::hypot(at[0] - 2.0, at[1] - 1.0) <= 1.5; },
               kRules[0]);
}

TEST_P(VolumePick, ShowsAllCellsAgain) {
  Play(std::string(kBox) + "Marquell BLANKAREA RULE=ANYINSIDE\nMarquell UNDOBLANK\n");
  ExpectHidden([](const double*) { return false; }, kRules[0]);
}

TEST_P(VolumePick, ReachesTheSurfaceFromOneNode) {
  Play(
      "$!PLOTTYPE CARTESIAN3D\n$!VIEW PSI=0 ALPHA=0 THETA=0 ORIGINX=0 ORIGINY=0 ORIGINZ=0\n"
      "Marquell PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=9 SIZEY=9\n"
      "Marquell ALTERSURFACE ZONE=1 SEEDPOINT=1 VARIABLE=\"p\" MODIFIER=\"=-1\" RULE=ANYINSIDE\n");
  std::vector<double> expected = NumbersOf(before[0]->GetPointData()->GetArray("p"));
  double box[6];
  before[0]->GetBounds(box);
  for (std::size_t node = 0; node < expected.size(); ++node) {
    double at[3];
    before[0]->GetPoint(static_cast<vtkIdType>(node), at);
    bool isOnSurface = false;
    for (int axis = 0; axis < 3; ++axis) {
      isOnSurface = isOnSurface || at[axis] == box[2 * axis] || at[axis] == box[2 * axis + 1];
    }
    if (isOnSurface) expected[node] = -1.0;
  }
  EXPECT_EQ(NumbersOf(after[0]->GetPointData()->GetArray("p")), expected);
}

std::string NameOf(const testing::TestParamInfo<MeshKind>& kind) {
  static const char* const names[] = {"Image",  "Rectilinear", "Structured",
                                      "Bricks", "Mixed",       "Blocks"};
  return names[static_cast<int>(kind.param)];
}

INSTANTIATE_TEST_SUITE_P(Meshes, VolumePick,
                         testing::Values(MeshKind::kImage, MeshKind::kRectilinear,
                                         MeshKind::kStructured, MeshKind::kBricks, MeshKind::kMixed,
                                         MeshKind::kBlocks),
                         NameOf);

/// Two files of bricks, a frame each.
class TwoFrames : public testing::Test {
 protected:
  TwoFrames() {
    WriteMesh(MakeMesh(MeshKind::kBricks), folder.Path("a.vtu"));
    WriteMesh(MakeMesh(MeshKind::kStructured), folder.Path("b.vts"));
  }

  /// How many cells of the file are hidden.
  double HiddenIn(const std::string& file) const {
    const auto mesh = ReadMesh(folder.Path(file));
    double hidden = 0.0;
    for (const double value : NumbersOf(Leaves(mesh)[0]->GetCellData()->GetArray("PICK_BLANK"))) {
      hidden += value;
    }
    return hidden;
  }

  TestFolder folder;
};

TEST_F(TwoFrames, KeepABoxAndASphereOfTheirOwn) {
  const std::string lines = std::string(kBox) + "$!FRAME 2\n" + kBall +
                            "Marquell BLANKAREA RULE=ALLINSIDE\n"
                            "$!FRAME 1\n"
                            "Marquell BLANKAREA RULE=ALLINSIDE\n";
  const Outcome outcome = RunProgram({"run", folder.Write("j.journal", lines), folder.Path("a.vtu"),
                                      folder.Path("b.vts"), "-o", folder.Path("out"), "--summary"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");

  double inBox = 0.0;
  double inBall = 0.0;
  const auto a = ReadMesh(folder.Path("a.vtu"));
  for (vtkIdType cell = 0; cell < Leaves(a)[0]->GetNumberOfCells(); ++cell) {
    inBox += IsTaken(Leaves(a)[0], cell, IsInBox, kRules[2]) ? 1.0 : 0.0;
    inBall += IsTaken(Leaves(a)[0], cell, IsInBall, kRules[2]) ? 1.0 : 0.0;
  }
  ASSERT_NE(inBox, inBall);
  EXPECT_EQ(HiddenIn("out/a.vtu"), inBox);
  EXPECT_EQ(HiddenIn("out/b.vts"), inBall);
}

TEST_F(TwoFrames, OpenedByTheJournalAreNotWrittenAndItIsSaid) {
  const std::string second = folder.Path("b.vts");
  const std::string lines =
      "$!OPEN \"" + second + "\"\n" + kBall + "Marquell BLANKAREA RULE=ALLINSIDE\n";
  const Outcome outcome = RunProgram({"run", folder.Write("j.journal", lines), folder.Path("a.vtu"),
                                      "-o", folder.Path("out.vtu")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr(second + ": was altered and is not written"));
  EXPECT_THAT(folder.Names(), ElementsAre("a.vtu", "b.vts", "j.journal", "out.vtu"));
}

}  // namespace
}  // namespace clitests
