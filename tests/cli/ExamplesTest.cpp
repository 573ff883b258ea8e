// The example journals on the example data, against values worked out from VTK's points and cells.
#include "Meshes.h"
#include "Program.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkUnsignedCharArray.h>

#include <gtest/gtest.h>

namespace clitests {

namespace {

const std::string kExamples = MARQUELL_EXAMPLES;

/// Adds the variable that hides the cells with all corners inside.
void AddHidden(vtkDataSet* mesh, const Inside& inside) {
  vtkNew<vtkUnsignedCharArray> hidden;
  hidden->SetName("PICK_BLANK");
  hidden->SetNumberOfValues(mesh->GetNumberOfCells());
  hidden->FillValue(0);
  mesh->GetCellData()->AddArray(hidden);
  ChangeAtCells(mesh, "PICK_BLANK", inside, true, [](double) { return 1.0; });
}

}  // namespace

TEST(Examples, EditsOfTheFlowChangeWhatTheySay) {
  const TestFolder folder;
  const std::string input = kExamples + "/pitzDaily/pitzDaily.vtm";
  const std::string output = folder.Path("edited.vtm");
  const Outcome outcome =
      RunProgram({"run", kExamples + "/pitzDaily/edits.journal", input, "-o", output});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;

  const auto expected = ReadMesh(input);
  const auto actual = ReadMesh(output);
  const std::vector<vtkDataSet*> before = Leaves(expected);
  const std::vector<vtkDataSet*> after = Leaves(actual);
  ASSERT_EQ(before.size(), 6u);
  ASSERT_EQ(after.size(), 6u);
  const Inside inlet = [](double x, double y) {
    return x > -0.0253 && x < -0.0005 && y > -0.001 && y < 0.027;
  };
  const Inside outlet = [](double x, double y) {
    const double half = 0.03 - 0.01 * (x - 0.2047) / 0.09;
    return x > 0.2047 && x < 0.2947 && y > -half && y < half;
  };
  for (std::size_t i = 0; i < before.size(); ++i) {
    ChangeAtCells(before[i], "k", inlet, true, [](double v) { return v * 2; });
    ChangeAtCells(before[i], "epsilon", outlet, true, [](double v) { return v / 1.5; });
    // Adding and taking off again is not exact in single precision, so p is compared below.
    vtkDataArray* pressure = before[i]->GetCellData()->GetArray("p");
    const Inside circle = [](double x, double y) {
      return (x - 0.05) * (x - 0.05) + (y + 0.005) * (y + 0.005) < 0.012 * 0.012;
    };
    ChangeAtCells(before[i], "p", circle, false, [](double v) { return v * 0.5; });
    vtkDataArray* edited = after[i]->GetCellData()->GetArray("p");
    for (vtkIdType cell = 0; cell < pressure->GetNumberOfTuples(); ++cell) {
      ASSERT_NEAR(pressure->GetTuple1(cell), edited->GetTuple1(cell), 1e-6)
          << "block " << i << " cell " << cell;
    }
    pressure->DeepCopy(edited);
    if (i == 0) before[0]->GetCellData()->GetArray("nut")->SetTuple1(99, 0.0001);
    AddHidden(before[i], [](double x, double) { return x >= 0.2 && x <= 0.3; });
    EXPECT_EQ(Difference(before[i], after[i]), "") << "block " << i;
  }
}

TEST(Examples, TrimOfThePartChangesWhatItSays) {
  const TestFolder folder;
  const std::string input = kExamples + "/part/gmsh_part.vtu";
  const std::string output = folder.Path("trimmed.vtu");
  const Outcome outcome =
      RunProgram({"run", kExamples + "/part/trim.journal", input, "-o", output});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto expected = ReadMesh(input);
  vtkDataSet* mesh = Leaves(expected)[0];
  const Inside corner = [](double x, double y) { return x < 0.703 && y < 0.503; };
  ChangeAtNodes(mesh, "phi", corner, [](double v) { return v - 0.5; });
  mesh->GetPointData()->GetArray("phi")->SetTuple1(16, 1.25);
  EXPECT_EQ(Difference(mesh, Leaves(ReadMesh(output))[0]), "");
}

TEST(Examples, CoolantChangesTheFirstTimeStepAlone) {
  const TestFolder folder;
  const std::string output = folder.Path("cool.pvd");
  const Outcome outcome = RunProgram({"run", kExamples + "/flange/coolant.journal",
                                      kExamples + "/flange/flange.pvd", "-o", output});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const Inside jet = [](double x, double y) {
    return x * x + (y - 0.0175) * (y - 0.0175) < 0.006 * 0.006;
  };
  std::string index = ReadText(output);
  for (int step = 1; step <= 3; ++step) {
    const std::size_t file = index.find("file=\"") + 6;
    ASSERT_GE(file, 6u) << "step " << step << " is missing";
    const std::string piece = index.substr(file, index.find('"', file) - file);
    index.erase(0, file);
    const auto expected = ReadMesh(kExamples + "/flange/flange_" + std::to_string(step) + ".vtm");
    const auto actual = ReadMesh(folder.Path(piece));
    ASSERT_EQ(Leaves(expected).size(), Leaves(actual).size());
    for (std::size_t i = 0; i < Leaves(expected).size(); ++i) {
      vtkDataSet* block = Leaves(expected)[i];
      if (step == 1) ChangeAtCells(block, "T", jet, false, [](double v) { return v - 10; });
      EXPECT_EQ(Difference(block, Leaves(actual)[i]), "") << piece << " block " << i;
    }
  }
}

}  // namespace clitests
