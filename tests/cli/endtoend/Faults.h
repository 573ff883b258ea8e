// Runs of the program with a fault at a chosen moment of their writing.
#pragma once

#include "ProgramRun.h"

#include <map>
#include <random>
#include <string>
#include <vector>

namespace clitest {

/// One way to write something, onto nothing or onto something older.
struct Scenario {
  const char* name;
  std::vector<std::string> arguments;  ///< of `marquell run`, the journal left out
  std::vector<std::string> targets;
};

/// At a call that changes files, or at a byte of all that is written, the program gets a signal or
/// the call fails.
struct Fault {
  long long call = 0;  ///< from 1; 0: at the byte
  long long byte = -1;
  int signal = 0;
  int error = 0;
  bool stays = false;  ///< so does every later call that needs room on the disk
};

/// A call that changes files, as an undisturbed run makes it.
struct FileCall {
  std::string name;
  long long bytes = 0;
};

enum class State { kOld, kNew, kBroken };

/// What an undisturbed run of a scenario does.
struct Rehearsal {
  const Scenario* scenario = nullptr;
  std::vector<FileCall> calls;
  long long bytes = 0;
  double seconds = 0;
  std::vector<std::string> namesBefore;
  std::vector<std::string> namesAfter;
  std::map<std::string, std::string> before;  ///< what each target holds, its pieces with it
  std::map<std::string, std::string> after;
};

/// Every run happens in a folder with the same inputs and older targets.
class FaultTest : public ProgramTest {
 protected:
  FaultTest();

  /// All scenarios, rehearsed. The first ones write data sets alone.
  const std::vector<Rehearsal>& Rehearsals() const { return m_rehearsals; }
  const Rehearsal& RehearsalOf(const std::string& name) const;

  /// Runs the scenario in a new folder.
  Outcome RunWith(const Rehearsal& rehearsal, const Fault& fault);
  Outcome RunKilledAfter(const Rehearsal& rehearsal, double seconds);
  /// Runs it once more where it was run last.
  Outcome RunAgain(const Rehearsal& rehearsal);

  State StateOf(const Rehearsal& rehearsal, const std::string& target) const;
  /// Every target is old or whole and new, every input as it was.
  ::testing::AssertionResult IsNothingLost(const Rehearsal& rehearsal) const;
  /// Every target is as told and nothing else came or went.
  ::testing::AssertionResult IsAll(const Rehearsal& rehearsal, State state) const;
  std::vector<std::string> NamesNow() const;

  std::string FolderOfRun() const { return Path("run"); }
  /// Fills a folder with the inputs and older targets, and nothing else.
  void Furnish(const std::string& folder) const;
  std::vector<std::string> ArgumentsOf(const Scenario& scenario) const;
  /// What a target holds, with all that it names.
  static std::string HeldBy(const std::string& folder, const std::string& target);

 private:
  Rehearsal Rehearse(const Scenario& scenario);

  std::vector<Rehearsal> m_rehearsals;
};

/// How many trials an environment variable asks for.
int CountFrom(const char* variable, int otherwise);

/// At most `count` of the rows, evenly from all of them.
template <class Row>
std::vector<Row> SampleOf(std::vector<Row> rows, std::size_t count) {
  std::mt19937 random(20111);
  std::vector<Row> sample;
  std::sample(rows.begin(), rows.end(), std::back_inserter(sample), count, random);
  return sample;
}

std::string Told(const Rehearsal& rehearsal, const Fault& fault);

}  // namespace clitest
