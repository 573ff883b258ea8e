// Interrupts at every stage of a run: nothing is written, nothing is left.
#include "DataFiles.h"
#include "Faults.h"
#include "Meshes.h"
#include "ProgramRun.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <iostream>
#include <thread>

namespace clitest {

namespace {

class Interrupt : public ProgramTest {
 protected:
  Interrupt() { WriteData(Path("in.vti"), LargeVolume(), {Layout::Mode::kRawAppended, "none"}); }
};

TEST_F(Interrupt, WhileLinesArePlayedLeavesNothing) {
  std::vector<std::string> lines;
  for (int i = 0; i < 2000; ++i) {
    lines.push_back("Marquell PICKCIRCLE ANCHORX=40 ANCHORY=40 RADIUS=30");
    lines.push_back("Marquell ALTERAREA VARIABLE=\"noise\" MODIFIER=\"+1\" RULE=ANYINSIDE");
  }
  WriteText("long.journal", Journal(lines));
  const auto namesBefore = Listing();

  Running program(Folder(), {"run", "long.journal", "in.vti", "-o", "out.vti", "--verbose"});
  while (!program.HasEnded() && program.ErrorsSoFar().find("line 3 took") == std::string::npos) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  program.Send(SIGINT);
  const Outcome outcome = program.Wait();

  EXPECT_EQ(outcome.exitCode, 130);
  const std::string last = "marquell: interrupted, nothing written\n";
  EXPECT_EQ(outcome.err.substr(outcome.err.size() - std::min(outcome.err.size(), last.size())),
            last);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(Listing(), namesBefore);
}

/// Requests to end that come just before a call that changes a file.
class InterruptAtWriting : public FaultTest {
 protected:
  struct Trial {
    const Rehearsal* rehearsal = nullptr;
    Fault fault;
  };

  std::vector<Trial> AllTrials() const {
    std::vector<Trial> trials;
    for (const Rehearsal& rehearsal : Rehearsals()) {
      for (std::size_t n = 1; n <= rehearsal.calls.size(); ++n) {
        for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
          Fault fault;
          fault.call = static_cast<long long>(n);
          fault.signal = signal;
          trials.push_back({&rehearsal, fault});
        }
      }
    }
    return trials;
  }

  /// Nothing is left; once the first file has its new name, all are written.
  ::testing::AssertionResult Survives(const Trial& trial) {
    const Outcome outcome = RunWith(*trial.rehearsal, trial.fault);
    m_stopped += outcome.exitCode == 130 ? 1 : 0;
    if (outcome.exitCode == 0) return IsAll(*trial.rehearsal, State::kNew);
    if (outcome.exitCode != 130) {
      return ::testing::AssertionFailure() << outcome.exitCode << " " << outcome.err;
    }
    const ::testing::AssertionResult isSaid =
        IsOneLineWith(outcome.err, {"interrupted, nothing written"});
    return isSaid ? IsAll(*trial.rehearsal, State::kOld) : isSaid;
  }

  std::size_t m_stopped = 0;
};

TEST_F(InterruptAtWriting, LeavesNothing) {
  const auto count = static_cast<std::size_t>(CountFrom("INTERRUPTS", 40));
  const std::vector<Trial> trials = SampleOf(AllTrials(), count);
  std::size_t survived = 0;
  for (const Trial& trial : trials) {
    const ::testing::AssertionResult result = Survives(trial);
    survived += result ? 1 : 0;
    EXPECT_TRUE(result) << Told(*trial.rehearsal, trial.fault);
  }
  std::cout << trials.size() << " interrupts, " << survived << " survived, " << m_stopped
            << " before anything had its name\n";
  EXPECT_GT(m_stopped, trials.size() / 3);
}

}  // namespace

}  // namespace clitest
