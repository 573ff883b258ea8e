// What a run promises beside the values: summary, report, dry runs, several files, failed lines.
#include "Meshes.h"
#include "Program.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkPointData.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace clitests {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr char kDouble[] =
    "$!VIEW PSI=0 ALPHA=0 THETA=0 ORIGINX=0 ORIGINY=0 ORIGINZ=0\n"
    "Marquell PICKRECTANGLE ANCHORX=-0.1 ANCHORY=-0.1 SIZEX=1.35 SIZEY=1.6\n"
    "Marquell ALTERAREA VARIABLE=\"p\" MODIFIER=\"*2\" RULE=ALLINSIDE\n";

const Inside kRectangle = [](double x, double y) { return x < 1.25 && y < 1.5; };

/// A folder with bricks in in.vtu.
class Run : public testing::Test {
 protected:
  Run() : input(folder.Path("in.vtu")), output(folder.Path("out.vtu")) {
    WriteMesh(MakeMesh(MeshKind::kBricks), input);
  }

  std::string Journal(const std::string& text) const { return folder.Write("j.journal", text); }

  TestFolder folder;
  std::string input;
  std::string output;
};

}  // namespace

TEST_F(Run, SummarySaysWhatEachLineDid) {
  const Outcome outcome = RunProgram({"run", Journal(kDouble), input, "-o", output, "--summary"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  // Two columns by two rows of nodes lie inside, on four layers.
  EXPECT_THAT(outcome.out, HasSubstr("   3  Marquell ALTERAREA VARIABLE=\"p\""));
  EXPECT_THAT(outcome.out,
              HasSubstr("p in zone 1: 16 nodes picked, 16 changed; was 1 to 20.75, is "));
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Run, ReportSaysTheSameAsJson) {
  const std::string report = folder.Path("report.json");
  const Outcome outcome =
      RunProgram({"run", Journal(kDouble), input, "-o", output, "--report", report});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");

  const auto expected = ReadMesh(input);
  vtkDataSet* mesh = Leaves(expected)[0];
  ChangeAtNodes(mesh, "p", kRectangle, [](double v) { return v * 2; });
  const double* range = mesh->GetPointData()->GetArray("p")->GetRange();

  const auto json = nlohmann::json::parse(ReadText(report));
  ASSERT_EQ(json["lines"].size(), 3u);
  EXPECT_EQ(json["lines"][2]["line"], 3);
  EXPECT_EQ(json["lines"][2]["done"], true);
  EXPECT_GE(json["lines"][2]["seconds"].get<double>(), 0.0);
  ASSERT_EQ(json["lines"][2]["changes"].size(), 1u);
  const auto& change = json["lines"][2]["changes"][0];
  EXPECT_EQ(change["variable"], "p");
  EXPECT_EQ(change["location"], "nodes");
  EXPECT_EQ(change["zones"], nlohmann::json::array({1}));
  EXPECT_EQ(change["picked"], 16);
  EXPECT_EQ(change["changed"], 16);
  EXPECT_EQ(change["before"]["min"], 1.0);
  EXPECT_EQ(change["before"]["max"], 20.75);
  EXPECT_EQ(change["after"]["min"], range[0]);
  EXPECT_EQ(change["after"]["max"], range[1]);
  EXPECT_EQ(json["written"], nlohmann::json::array({output}));
}

TEST_F(Run, ValuesThatStayTheSameCountAsPickedNotAsChanged) {
  const Outcome outcome =
      RunProgram({"run",
                  Journal("$!VIEW PSI=0 ALPHA=0 THETA=0 ORIGINX=0 ORIGINY=0 ORIGINZ=0\n"
                          "Marquell PICKRECTANGLE ANCHORX=-0.1 ANCHORY=-0.1 SIZEX=1.35 SIZEY=1.6\n"
                          "Marquell ALTERAREA VARIABLE=\"p\" MODIFIER=\"+0\" RULE=ALLINSIDE\n"),
                  input, "-o", output, "--summary"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("16 nodes picked, 0 changed"));
}

TEST_F(Run, DryRunWritesNothing) {
  const Outcome outcome =
      RunProgram({"run", Journal(kDouble), input, "-o", output, "--dry-run", "--summary"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("16 nodes picked"));
  EXPECT_THAT(folder.Names(), ElementsAre("in.vtu", "j.journal"));
}

TEST_F(Run, ElementLineChangesThatNodeAlone) {
  const Outcome outcome = RunProgram(
      {"run", Journal("Marquell ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"=-5\" ZONE=1 ELEMENT=3\n"),
       input, "-o", output});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto expected = ReadMesh(input);
  Leaves(expected)[0]->GetPointData()->GetArray("p")->SetTuple1(2, -5);
  EXPECT_EQ(Difference(Leaves(expected)[0], Leaves(ReadMesh(output))[0]), "");
}

TEST_F(Run, ComponentOfAVectorIsAVariable) {
  const Outcome outcome = RunProgram(
      {"run", Journal("Marquell ALTERELEMENT VARIABLE=\"U_Y\" MODIFIER=\"*2\" ZONE=1 ELEMENT=7\n"),
       input, "-o", output});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto expected = ReadMesh(input);
  vtkDataArray* velocity = Leaves(expected)[0]->GetPointData()->GetArray("U");
  velocity->SetComponent(6, 1, velocity->GetComponent(6, 1) * 2);
  EXPECT_EQ(Difference(Leaves(expected)[0], Leaves(ReadMesh(output))[0]), "");
}

TEST_F(Run, CellNumberCountsTheFilesCells) {
  const Outcome outcome = RunProgram(
      {"run", Journal("Marquell ALTERELEMENT VARIABLE=\"id\" MODIFIER=\"=9\" ZONE=1 ELEMENT=5\n"),
       input, "-o", output});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto expected = ReadMesh(input);
  Leaves(expected)[0]->GetCellData()->GetArray("id")->SetTuple1(4, 9);
  EXPECT_EQ(Difference(Leaves(expected)[0], Leaves(ReadMesh(output))[0]), "");
}

TEST_F(Run, ForceReplacesTheInputItself) {
  const auto expected = ReadMesh(input);
  ChangeAtNodes(Leaves(expected)[0], "p", kRectangle, [](double v) { return v * 2; });
  const Outcome outcome = RunProgram({"run", Journal(kDouble), input, "-o", input, "--force"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(Difference(Leaves(expected)[0], Leaves(ReadMesh(input))[0]), "");
  EXPECT_THAT(folder.Names(), ElementsAre("in.vtu", "j.journal"));
}

TEST_F(Run, SeveralFilesAreWrittenIntoAFolderUnderTheirNames) {
  const std::string second = folder.Path("second.vts");
  WriteMesh(MakeMesh(MeshKind::kStructured), second);
  const Outcome outcome =
      RunProgram({"run", Journal(std::string(kDouble) + "$!FRAME 2\n" + kDouble), input, second,
                  "-o", folder.Path("results")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  for (const char* name : {"in.vtu", "second.vts"}) {
    const auto expected = ReadMesh(folder.Path(name));
    ChangeAtNodes(Leaves(expected)[0], "p", kRectangle, [](double v) { return v * 2; });
    const auto actual = ReadMesh(folder.Path(std::string("results/") + name));
    EXPECT_EQ(Difference(Leaves(expected)[0], Leaves(actual)[0]), "") << name;
  }
}

TEST_F(Run, KeepGoingWritesAndReportsAfterAFailedLine) {
  const std::string journal = Journal(std::string("$!NOSUCHCOMMAND\n") + kDouble);
  const Outcome outcome =
      RunProgram({"run", journal, input, "-o", output, "--keep-going", "--summary"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr("j.journal:1: $!NOSUCHCOMMAND: "));
  EXPECT_THAT(outcome.out, HasSubstr("16 nodes picked"));
  const auto expected = ReadMesh(input);
  ChangeAtNodes(Leaves(expected)[0], "p", kRectangle, [](double v) { return v * 2; });
  EXPECT_EQ(Difference(Leaves(expected)[0], Leaves(ReadMesh(output))[0]), "");
}

TEST_F(Run, AddOnIsLoadedFromTheFileGiven) {
  const Outcome good =
      RunProgram({"run", Journal(kDouble), input, "-o", output, "--add-on", MARQUELL_ADDON});
  EXPECT_EQ(good.exitCode, 0) << good.err;
  const Outcome bad = RunProgram({"run", Journal(kDouble), input, "-o", folder.Path("b.vtu"),
                                  "--add-on", folder.Path("none.so")});
  EXPECT_EQ(bad.exitCode, 3);
  EXPECT_EQ(LineCount(bad.err), 1) << bad.err;
  EXPECT_THAT(bad.err, HasSubstr("none.so"));
}

TEST_F(Run, InterruptLeavesNothingBehind) {
  std::string longJournal;
  for (int i = 0; i < 200000; ++i) {
    longJournal += "Marquell ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=1 ELEMENT=3\n";
  }
  const Outcome outcome = RunProgram({"run", Journal(longJournal), input, "-o", output}, {-1, 0.3});
  EXPECT_EQ(outcome.exitCode, 130);
  EXPECT_EQ(outcome.err, "marquell: interrupted, nothing written\n");
  EXPECT_THAT(folder.Names(), ElementsAre("in.vtu", "j.journal"));
}

}  // namespace clitests
