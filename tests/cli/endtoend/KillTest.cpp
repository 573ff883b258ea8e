// Killed at any moment, the program leaves every file as it was or whole and new.
#include "Faults.h"

#include <algorithm>
#include <csignal>
#include <iostream>

namespace clitest {

namespace {

struct Kill {
  const Rehearsal* rehearsal = nullptr;
  Fault fault;
  double seconds = -1;  ///< at this time instead of at the fault
};

class Killed : public FaultTest {
 protected:
  /// Before every call that changes a file.
  std::vector<Kill> AtCalls() const {
    std::vector<Kill> kills;
    for (const Rehearsal& rehearsal : Rehearsals()) {
      for (std::size_t n = 1; n <= rehearsal.calls.size(); ++n) {
        Fault fault;
        fault.call = static_cast<long long>(n);
        fault.signal = SIGKILL;
        kills.push_back({&rehearsal, fault});
      }
    }
    return kills;
  }

  /// In the middle of writes.
  std::vector<Kill> AtBytes(std::size_t count) {
    std::vector<Kill> kills;
    for (std::size_t n = 0; n < count; ++n) {
      const Rehearsal& rehearsal = Rehearsals()[n % Rehearsals().size()];
      Fault fault;
      fault.byte = std::uniform_int_distribution<long long>(0, rehearsal.bytes - 1)(m_random);
      fault.signal = SIGKILL;
      kills.push_back({&rehearsal, fault});
    }
    return kills;
  }

  std::vector<Kill> AtTimes(std::size_t count) {
    std::vector<Kill> kills;
    for (std::size_t n = 0; n < count; ++n) {
      const Rehearsal& rehearsal = Rehearsals()[n % Rehearsals().size()];
      kills.push_back({&rehearsal, Fault(),
                       std::uniform_real_distribution<double>(0, rehearsal.seconds)(m_random)});
    }
    return kills;
  }

  ::testing::AssertionResult Survives(const Kill& kill) {
    const Rehearsal& rehearsal = *kill.rehearsal;
    const bool isTimed = kill.seconds >= 0;
    const Outcome outcome =
        isTimed ? RunKilledAfter(rehearsal, kill.seconds) : RunWith(rehearsal, kill.fault);
    if (!isTimed && outcome.exitCode != -1) {
      return ::testing::AssertionFailure() << "it was not killed: " << outcome.err;
    }
    return IsNothingLost(rehearsal);
  }

  /// What the killed process left behind is in nobody's way, and goes.
  ::testing::AssertionResult IsOutOfTheWay(const Rehearsal& rehearsal) {
    const Outcome outcome = RunAgain(rehearsal);
    if (outcome.exitCode != 0) return ::testing::AssertionFailure() << outcome.err;
    for (const std::string& name : NamesNow()) {
      if (name.front() == '.') return ::testing::AssertionFailure() << name << " was left";
    }
    // A result that was its own input was altered twice.
    if (rehearsal.scenario->targets.front().rfind("in.", 0) == 0) {
      return ::testing::AssertionSuccess();
    }
    for (const std::string& target : rehearsal.scenario->targets) {
      if (StateOf(rehearsal, target) != State::kNew) {
        return ::testing::AssertionFailure() << target << " is not the new one";
      }
    }
    return ::testing::AssertionSuccess();
  }

  static std::string ToldOf(const Kill& kill) {
    if (kill.seconds < 0) return Told(*kill.rehearsal, kill.fault);
    return kill.rehearsal->scenario->name + (" after " + std::to_string(kill.seconds)) + " s";
  }

 private:
  std::mt19937 m_random{7};
};

TEST_F(Killed, AtAnyMomentTheProgramLosesNothing) {
  const auto count = static_cast<std::size_t>(CountFrom("KILLS", 60));
  std::vector<Kill> kills = SampleOf(AtCalls(), count * 6 / 10);
  const std::size_t others = count - std::min(count, kills.size());
  for (const std::vector<Kill>& more : {AtBytes(others / 2), AtTimes(others - others / 2)}) {
    kills.insert(kills.end(), more.begin(), more.end());
  }
  std::size_t survived = 0;
  for (std::size_t n = 0; n < kills.size(); ++n) {
    ::testing::AssertionResult result = Survives(kills[n]);
    constexpr std::size_t kOften = 4;
    if (result && n % kOften == 0) result = IsOutOfTheWay(*kills[n].rehearsal);
    survived += result ? 1 : 0;
    EXPECT_TRUE(result) << ToldOf(kills[n]);
  }
  std::cout << kills.size() << " kills, " << survived << " survived\n";
}

}  // namespace

}  // namespace clitest
