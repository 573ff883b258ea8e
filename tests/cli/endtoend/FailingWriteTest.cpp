// Disks that are full or broken: every file is as it was, or whole and new.
#include "Faults.h"

#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <sched.h>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <set>

namespace clitest {

namespace {

namespace fs = std::filesystem;

struct Trial {
  const Rehearsal* rehearsal = nullptr;
  Fault fault;
};

/// Bytes of everything that a scenario writes: both ends, pages, and some more.
std::set<long long> PlacesIn(const Rehearsal& rehearsal) {
  constexpr long long kAtEnds = 64;
  constexpr long long kPage = 4096;
  constexpr int kMore = 200;
  std::set<long long> places;
  const auto add = [&](long long place) {
    if (place >= 0 && place < rehearsal.bytes) places.insert(place);
  };
  for (long long n = 0; n < kAtEnds; ++n) {
    add(n);
    add(rehearsal.bytes - 1 - n);
  }
  for (long long page = kPage; page < rehearsal.bytes; page += kPage) {
    for (const long long place : {page - 1, page, page + 1}) add(place);
  }
  std::mt19937 random(3);
  for (int n = 0; n < kMore; ++n) {
    add(std::uniform_int_distribution<long long>(0, rehearsal.bytes - 1)(random));
  }
  return places;
}

/// Calls that may fail without a word: what is refused is only less tidy.
bool IsOfCourtesy(const std::string& call) {
  static const std::set<std::string> kCalls = {"chmod",  "chown",    "remove",
                                               "unlink", "unlinkat", "rmdir"};
  return kCalls.count(call) > 0;
}

/// The text is one line that names a target; with the reason when there is one to expect.
::testing::AssertionResult IsSaid(const Rehearsal& rehearsal, const std::string& text, int reason) {
  const auto& targets = rehearsal.scenario->targets;
  const auto named = std::find_if(targets.begin(), targets.end(), [&](const std::string& one) {
    return text.find(": " + one + ": ") != std::string::npos;
  });
  if (named == targets.end()) return ::testing::AssertionFailure() << "no target in " << text;
  return IsOneLineWith(text, {*named, reason == 0 ? "" : std::strerror(reason)});
}

/// A byte that finds no room is missing; a file that is closed with an error may be.
bool MustBeSaid(const Trial& trial) {
  if (trial.fault.call == 0) return trial.fault.stays;
  const std::string& call = trial.rehearsal->calls[trial.fault.call - 1].name;
  return call == "close" || call == "fclose" || call == "fsync";
}

class FailingWrites : public FaultTest {
 protected:
  /// At places in what is written.
  std::vector<Trial> AtBytes() const {
    std::vector<Trial> trials;
    for (const Rehearsal& rehearsal : Rehearsals()) {
      for (const long long place : PlacesIn(rehearsal)) {
        Fault fault;
        fault.byte = place;
        Add(trials, rehearsal, fault, ENOSPC, true);
        Add(trials, rehearsal, fault, EIO, false);
      }
    }
    return trials;
  }

  /// At calls that write, or at all others.
  std::vector<Trial> AtCalls(bool isWriting) const {
    std::vector<Trial> trials;
    for (const Rehearsal& rehearsal : Rehearsals()) {
      for (std::size_t n = 1; n <= rehearsal.calls.size(); ++n) {
        const FileCall& call = rehearsal.calls[n - 1];
        if (IsOfCourtesy(call.name) || (call.bytes > 0) != isWriting) continue;
        Fault fault;
        fault.call = static_cast<long long>(n);
        for (const bool stays : {false, true}) Add(trials, rehearsal, fault, ENOSPC, stays);
        for (const bool stays : {false, true}) Add(trials, rehearsal, fault, EIO, stays);
        if (isWriting) Add(trials, rehearsal, fault, EINTR, false);
      }
    }
    return trials;
  }

  static void Add(std::vector<Trial>& trials, const Rehearsal& rehearsal, Fault fault, int error,
                  bool stays) {
    fault.error = error;
    fault.stays = stays;
    trials.push_back({&rehearsal, fault});
  }

  /// The old files and one line that says why, or the new ones.
  ::testing::AssertionResult Survives(const Trial& trial) {
    const Rehearsal& rehearsal = *trial.rehearsal;
    const Outcome outcome = RunWith(rehearsal, trial.fault);
    if (outcome.exitCode == 0 && outcome.err.empty()) {
      if (MustBeSaid(trial)) return ::testing::AssertionFailure() << "nothing was said";
      return IsAll(rehearsal, State::kNew);
    }
    if (outcome.exitCode != 3) {
      return ::testing::AssertionFailure() << outcome.exitCode << " " << outcome.err;
    }
    const ::testing::AssertionResult isSaid = IsSaid(
        rehearsal, outcome.err, trial.fault.stays && trial.fault.error == ENOSPC ? ENOSPC : 0);
    if (!isSaid) return isSaid;
    if (rehearsal.scenario->targets.size() == 1) return IsAll(rehearsal, State::kOld);
    for (const std::string& name : NamesNow()) {
      if (name.front() == '.') return ::testing::AssertionFailure() << name << " was left";
    }
    return IsNothingLost(rehearsal);
  }
};

TEST_F(FailingWrites, LeaveTheOldFileAndSayWhy) {
  const auto count = static_cast<std::size_t>(CountFrom("FAILING_WRITES", 60));
  std::vector<Trial> trials = SampleOf(AtBytes(), count / 3);
  for (const bool isWriting : {false, true}) {
    const std::vector<Trial> more = SampleOf(AtCalls(isWriting), count / 3);
    trials.insert(trials.end(), more.begin(), more.end());
  }
  std::size_t survived = 0;
  for (const Trial& trial : trials) {
    const ::testing::AssertionResult result = Survives(trial);
    survived += result ? 1 : 0;
    EXPECT_TRUE(result) << Told(*trial.rehearsal, trial.fault);
  }
  std::cout << trials.size() << " failing writes, " << survived << " survived\n";
}

/// A disk of its own, gone with the process.
class FullDisk : public FaultTest {
 protected:
  void SetUp() override {
    fs::create_directory(Path("disk"));
    const bool isMounted = unshare(CLONE_NEWNS) == 0 &&
                           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                           mount("marquell-test", Path("disk").c_str(), "tmpfs", 0, "size=2m") == 0;
    if (!isMounted) GTEST_SKIP() << "no disk can be mounted here: " << std::strerror(errno);
    m_isMounted = true;
  }
  void TearDown() override {
    if (m_isMounted) umount2(Path("disk").c_str(), MNT_DETACH);
  }

  /// Leaves no more than this much room.
  void FillBut(long long pages) const {
    struct statvfs disk {};
    ASSERT_EQ(statvfs(Path("disk").c_str(), &disk), 0);
    const long long free = static_cast<long long>(disk.f_bavail) - pages;
    ASSERT_GE(free, 0);
    std::ofstream(Path("disk/full"))
        << std::string(static_cast<std::size_t>(free) * disk.f_frsize, '.');
  }

 private:
  bool m_isMounted = false;
};

/// What a power failure would leave shows nowhere else.
TEST_F(FailingWrites, ReplaceNothingBeforeTheDiskHasIt) {
  using testing::ElementsAre;
  const auto syncsAndRenames = [this](const std::string& name) {
    std::vector<std::string> calls;
    for (const FileCall& call : RehearsalOf(name).calls) {
      if (call.name == "fsync" || call.name == "rename") calls.push_back(call.name);
    }
    return calls;
  };
  for (const char* const name : {"CopiedOverOld", "EncodedOverOld", "LegacyOverOld",
                                 "RecordingOverOld", "ReportOverOld", "PictureOverOld"}) {
    EXPECT_THAT(syncsAndRenames(name), ElementsAre("fsync", "rename")) << name;
  }
  for (const char* const name : {"BlocksOverOld", "StepsOverOld"}) {
    const std::vector<std::string> calls = syncsAndRenames(name);
    const auto first = std::find(calls.begin(), calls.end(), "rename");
    EXPECT_TRUE(first - calls.begin() >= 3) << name << ": pieces and their folder";
    EXPECT_THAT(std::vector<std::string>(first, calls.end()),
                ElementsAre("rename", "fsync", "rename"))
        << name;
  }
}

TEST_F(FullDisk, LeavesTheOldFile) {
  int fullCount = 0;
  int roomCount = 0;
  for (const char* const name : {"CopiedOverOld", "EncodedOverOld", "BlocksOverOld", "StepsOverOld",
                                 "LegacyOverOld", "RecordingOverOld", "PictureOverOld"}) {
    const Rehearsal& rehearsal = RehearsalOf(name);
    for (const long long pages : {0, 1, 2, 3, 5, 8, 40}) {
      Furnish(Path("disk"));
      FillBut(pages);
      const Outcome outcome = Running(Path("disk"), ArgumentsOf(*rehearsal.scenario)).Wait();
      const std::string& target = rehearsal.scenario->targets.front();
      const std::string held = HeldBy(Path("disk"), target);
      SCOPED_TRACE(name + (" with room for " + std::to_string(pages)));
      EXPECT_TRUE(outcome.exitCode == 0 || outcome.exitCode == 3) << outcome.exitCode;
      const auto& expected = outcome.exitCode == 0 ? rehearsal.after : rehearsal.before;
      EXPECT_TRUE(held == expected.at(target)) << outcome.err;
      if (outcome.exitCode == 3) {
        EXPECT_TRUE(IsSaid(rehearsal, outcome.err, ENOSPC));
      }
      ++(outcome.exitCode == 0 ? roomCount : fullCount);
    }
  }
  std::cout << fullCount << " full disks, " << roomCount << " with room enough\n";
  EXPECT_GT(fullCount, 10);
  EXPECT_GT(roomCount, 0);
}

}  // namespace

}  // namespace clitest
