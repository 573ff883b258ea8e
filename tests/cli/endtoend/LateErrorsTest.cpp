// Disks that find out late: what was written is lost when the file is closed or synced.
#include "Faults.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

namespace clitest {

namespace {

class LateErrors : public FaultTest {
 protected:
  /// Numbers of the scenario's calls of this name, up to its last rename.
  static std::vector<long long> CallsBeforeTheEnd(const Rehearsal& rehearsal,
                                                  const std::string& name) {
    const auto& calls = rehearsal.calls;
    const auto last = std::find_if(calls.rbegin(), calls.rend(),
                                   [](const FileCall& call) { return call.name == "rename"; });
    std::vector<long long> numbers;
    for (auto call = calls.begin(); call != last.base(); ++call) {
      if (call->name == name) numbers.push_back(std::distance(calls.begin(), call) + 1);
    }
    return numbers;
  }

  /// At each of these calls the disk says that it is broken: then everything is as it was.
  void ExpectOldAfterEach(const Rehearsal& rehearsal, const std::vector<long long>& numbers) {
    for (const long long number : numbers) {
      Fault fault;
      fault.call = number;
      fault.error = EIO;
      SCOPED_TRACE(Told(rehearsal, fault));
      const Outcome outcome = RunWith(rehearsal, fault);
      EXPECT_EQ(outcome.exitCode, 3);
      EXPECT_TRUE(IsOneLineWith(outcome.err,
                                {rehearsal.scenario->targets.front() + ": ", std::strerror(EIO)}));
      EXPECT_TRUE(IsAll(rehearsal, State::kOld));
    }
  }
};

TEST_F(LateErrors, OfAFileThatIsClosedLeaveTheOldOne) {
  for (const char* const name : {"Copied", "CopiedOverOld", "CopiedOverItsInput"}) {
    const Rehearsal& rehearsal = RehearsalOf(name);
    const std::vector<long long> closes = CallsBeforeTheEnd(rehearsal, "close");
    EXPECT_FALSE(closes.empty()) << name;
    ExpectOldAfterEach(rehearsal, closes);
  }
}

TEST_F(LateErrors, OfFilesAndFoldersThatAreSyncedLeaveTheOldOnes) {
  for (const char* const name : {"BlocksOverOld", "StepsOverOld"}) {
    const Rehearsal& rehearsal = RehearsalOf(name);
    const std::vector<long long> syncs = CallsBeforeTheEnd(rehearsal, "fsync");
    EXPECT_GE(syncs.size(), 4U) << name << ": two pieces, their folder, the index";
    ExpectOldAfterEach(rehearsal, syncs);
  }
}

}  // namespace

}  // namespace clitest
