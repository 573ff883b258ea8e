// Interrupts at every stage of a run: nothing is written, nothing is left.
#include "DataFiles.h"
#include "Meshes.h"
#include "ProgramRun.h"

#include <chrono>
#include <csignal>
#include <thread>

namespace clitest {

namespace {

class Interrupt : public ProgramTest {
 protected:
  Interrupt() { WriteData(Path("in.vti"), LargeVolume(), {Layout::Mode::kRawAppended, "none"}); }

  /// Waits until the program has begun to write: something with the target's name is there.
  bool WaitForPartOf(Running& program, const std::string& stem) const {
    while (!program.HasEnded()) {
      for (const std::string& name : Listing()) {
        if (name.find(stem) != std::string::npos) return true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
  }
};

TEST_F(Interrupt, WhileLinesArePlayedLeavesNothing) {
  std::vector<std::string> lines;
  for (int i = 0; i < 2000; ++i) {
    lines.push_back("Marquell PICKCIRCLE ANCHORX=40 ANCHORY=40 RADIUS=30");
    lines.push_back("Marquell ALTERAREA VARIABLE=\"noise\" MODIFIER=\"+1\" RULE=ANYINSIDE");
  }
  WriteText("long.journal", Journal(lines));
  const auto namesBefore = Listing();

  Running program(Folder(), {"run", "long.journal", "in.vti", "-o", "out.vti"});
  std::this_thread::sleep_for(std::chrono::milliseconds(600));
  ASSERT_FALSE(program.HasEnded());
  program.Send(SIGINT);
  const Outcome outcome = program.Wait();

  EXPECT_EQ(outcome.exitCode, 130);
  EXPECT_TRUE(IsOneLineWith(outcome.err, {"interrupted"}));
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(Listing(), namesBefore);
}

TEST_F(Interrupt, WhileTheResultIsWrittenLeavesNothing) {
  DataPtr data = LargeVolume();
  WriteData(Path("in.vti"), data);  // compressed, which takes the longest
  WriteText("none.journal", Journal({}));
  const auto namesBefore = Listing();

  Running program(Folder(), {"run", "none.journal", "in.vti", "-o", "out.vti"});
  ASSERT_TRUE(WaitForPartOf(program, "out")) << program.Wait().err;
  program.Send(SIGINT);
  const Outcome outcome = program.Wait();

  EXPECT_EQ(outcome.exitCode, 130);
  EXPECT_TRUE(IsOneLineWith(outcome.err, {"interrupted"}));
  EXPECT_EQ(Listing(), namesBefore);
}

}  // namespace

}  // namespace clitest
