// What the machine around the program does to it: full disks, odd targets, where the add-on lies.
#include "DataFiles.h"
#include "Meshes.h"
#include "ProgramRun.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace clitest {

namespace {

struct TargetRow {
  const char* name;
  const char* input;
  const char* output;
  long long fileSizeLimit;
  std::vector<std::string> more;
};

void PrintTo(const TargetRow& row, std::ostream* out) { *out << row.name; }

class BadTarget : public ProgramTest, public ::testing::WithParamInterface<TargetRow> {
 protected:
  BadTarget() {
    WriteData(Path("in.vtu"), Bricks(), {Layout::Mode::kAscii, "none"});
    WriteData(Path("in.vtm"), Blocks(), {Layout::Mode::kAscii, "none"});
    WriteData(Path("in.vtk"), Bricks());
    WriteData(Path("old.vtu"), Voxels());
    WritePvd(Path("in.pvd"), {{"0", "0", "in.vtu"}, {"1", "0", "old.vtu"}});
    WriteText("file", "no folder");
    WriteText("edits.journal",
              Journal({"Marquell ALTERELEMENT VARIABLE=\"T\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1"}));
  }
};

TEST_P(BadTarget, EndsWithOneLineAndLeavesEverythingAsItWas) {
  const TargetRow& row = GetParam();
  const auto namesBefore = Listing();
  const std::string oldBefore = ReadText("old.vtu");
  Surroundings surroundings;
  surroundings.fileSizeLimit = row.fileSizeLimit;
  std::vector<std::string> arguments = {"run", "edits.journal", row.input, "-o", row.output};
  arguments.insert(arguments.end(), row.more.begin(), row.more.end());

  const Outcome outcome = Run(arguments, surroundings);

  EXPECT_EQ(outcome.exitCode, 3) << outcome.err;
  EXPECT_TRUE(IsOneLineWith(outcome.err, {row.output}));
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(Listing(), namesBefore);
  EXPECT_EQ(ReadText("old.vtu"), oldBefore);
}

INSTANTIATE_TEST_SUITE_P(
    Targets, BadTarget,
    ::testing::Values(TargetRow{"InAFile", "in.vtu", "file/out.vtu", -1, {}},
                      TargetRow{"WhereNobodyMayWrite", "in.vtu", "/proc/out.vtu", -1, {}},
                      TargetRow{"FullDiskForOneFile", "in.vtu", "out.vtu", 4096, {}},
                      TargetRow{"FullDiskForBlocks", "in.vtm", "out.vtm", 4096, {}},
                      TargetRow{"FullDiskForSteps", "in.pvd", "out.pvd", 4096, {}},
                      TargetRow{"FullDiskForALegacyFile", "in.vtk", "out.vtk", 4096, {}},
                      TargetRow{"FullDiskAtReplacing", "in.vtu", "old.vtu", 4096, {"--force"}}),
    [](const auto& row) { return std::string(row.param.name); });

using StandardOutput = ProgramTest;

TEST_F(StandardOutput, ThatIsFullIsAnError) {
  WriteData(Path("in.vtu"), Bricks());
  Surroundings surroundings;
  surroundings.standardOutput = "/dev/full";
  const Outcome outcome = Run({"info", "in.vtu"}, surroundings);
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_TRUE(IsOneLineWith(outcome.err, {"standard output"}));
}

class Messages : public ProgramTest {
 protected:
  Messages() {
    WriteData(Path("in.vtu"), Bricks());
    WriteText("edits.journal",
              Journal({"Marquell ALTERELEMENT VARIABLE=\"T\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1"}));
  }
};

TEST_F(StandardOutput, ThatTakesNothingDoesNotKeepTheReportBack) {
  WriteData(Path("in.vtu"), Bricks());
  WriteText("edits.journal", Journal({"Marquell UNDOBLANK"}));
  Surroundings surroundings;
  surroundings.standardOutput = "/dev/full";
  const Outcome outcome = Run(
      {"run", "edits.journal", "in.vtu", "-o", "out.vtu", "--summary", "--report", "report.json"},
      surroundings);
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_THAT(ReadText("report.json"), ::testing::HasSubstr("UNDOBLANK"));
}

TEST_F(Messages, ThatNobodyReadsAnyMoreDoNotEndTheRun) {
  const std::string program = std::string(MARQUELL_PROGRAM) +
                              " run edits.journal in.vtu -o out.vtu --verbose --summary"
                              " --report report.json";
  const std::string command =
      "cd " + Folder().string() + " && unset MARQUELL_ADDON_PATH; { sleep 0.3; " + program +
      " 2>&1; echo $? >code; } | true; while [ ! -s code ]; do sleep 0.1; done";
  ASSERT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(ReadText("code"), "3\n");
  EXPECT_THAT(ReadText("report.json"), ::testing::HasSubstr("ALTERELEMENT"));
  EXPECT_NE(ReadText("out.vtu"), "");
}

TEST_F(Messages, AreOneLineWhateverTheirFilesAreCalled) {
  const std::string odd = "a\nb\x1b[31m\v\x7f.vtu";
  std::filesystem::copy_file(Path("in.vtu"), Path(odd));
  const Outcome outcome =
      Run({"run", "edits.journal", odd, "-o", "c\nd.vtu", "--verbose", "--force"});
  EXPECT_EQ(outcome.exitCode, 0);
  std::istringstream lines(outcome.err);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_EQ(line.rfind("marquell: ", 0), 0u) << line;
  }
  EXPECT_EQ(outcome.err.find_first_of("\x1b\v\x7f"), std::string::npos);
  const Outcome missing = Run({"info", "no" + odd});
  EXPECT_EQ(missing.err, "marquell: noa b?[31m ?.vtu: No such file or directory\n");
}

class AddOnPlaces : public ProgramTest {
 protected:
  AddOnPlaces() {
    WriteText("edits.journal", Journal({"Marquell UNDOBLANK"}));
    std::filesystem::create_directory(Path("empty"));
    std::filesystem::create_directory(Path("full"));
    std::filesystem::copy_file(MARQUELL_ADDON, Path("full/other.so"));
  }
  Outcome CheckWith(const std::string& places) {
    Surroundings surroundings;
    surroundings.environment = {"MARQUELL_ADDON_PATH=" + places};
    return Run({"check", "edits.journal"}, surroundings);
  }
};

TEST_F(AddOnPlaces, AreTheFoldersOfThePath) {
  EXPECT_EQ(CheckWith(Path("empty") + ":" + Path("full")).exitCode, 0);
}

TEST_F(AddOnPlaces, OfThePathAreTheOnlyOnes) {
  const Outcome outcome = CheckWith(Path("empty"));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(IsOneLineWith(outcome.err, {"edits.journal:2: ", "Marquell"}));
}

TEST_F(AddOnPlaces, ThatHoldNoAddOnAreFilesThatCannotBeRead) {
  WriteText("empty/text.so", "no library");
  const Outcome outcome = CheckWith(Path("empty/text.so"));
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_TRUE(IsOneLineWith(outcome.err, {"text.so"}));
}

}  // namespace

}  // namespace clitest
