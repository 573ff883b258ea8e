// An input that becomes shorter while a journal plays: arrays are read when they are needed, so the
// rest of it may be missed in the middle of a run.
#include "Meshes.h"
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace clitests {

using testing::HasSubstr;

namespace {

class ShrinkingInput : public testing::Test {
 protected:
  ShrinkingInput() : input(folder.Path("in.vtu")), output(folder.Path("out.vtu")) {
    WriteMesh(MakeMesh(MeshKind::kBricks), input);
  }

  /// Plays the lines after one that cuts the input in half.
  Outcome Run(const std::string& lines) {
    const std::string journal = folder.Write("j.journal", "Shrink " + input + "\n" + lines);
    return RunProgram({"run", journal, input, "-o", output, "--add-on", SHRINK_ADDON, "--add-on",
                       MARQUELL_ADDON});
  }

  void ExpectOneLineAndNothingWritten(const Outcome& outcome) {
    EXPECT_EQ(outcome.exitCode, 3) << outcome.err;
    EXPECT_EQ(LineCount(outcome.err), 1) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(input));
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"in.vtu", "j.journal"}));
  }

  TestFolder folder;
  const std::string input;
  const std::string output;
};

TEST_F(ShrinkingInput, EndsTheRunWhenValuesAreNeeded) {
  ExpectOneLineAndNothingWritten(
      Run("Marquell ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=1 ELEMENT=3\n"));
}

TEST_F(ShrinkingInput, EndsTheRunEvenIfFailedLinesDoNot) {
  const std::string journal = folder.Write(
      "j.journal", "Shrink " + input +
                       "\nMarquell ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=1 ELEMENT=3\n");
  ExpectOneLineAndNothingWritten(
      RunProgram({"run", journal, input, "-o", output, "--keep-going", "--add-on", SHRINK_ADDON,
                  "--add-on", MARQUELL_ADDON}));
}

TEST_F(ShrinkingInput, EndsTheRunWhenItsBytesAreCopied) { ExpectOneLineAndNothingWritten(Run("")); }

}  // namespace

}  // namespace clitests
