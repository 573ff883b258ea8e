#include "User.h"

#include "WrongAnswers.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace fault {

using fakehost::FakeHost;
using fakehost::Host;

namespace {

LgIndex_t VariableNamed(const std::string& name) {
  const std::vector<std::string>& names = Host().ActiveData()->varNames;
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? 0 : static_cast<LgIndex_t>(found - names.begin()) + 1;
}

/// Bit for bit.
bool AreSame(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

}  // namespace

Snapshot ValuesOfUser() {
  Snapshot values;
  if (Host().frames.empty() || Host().frames[0].dataSet == nullptr) return values;
  const std::size_t active = Host().activeFrame;
  Host().ActivateFrame(0);
  for (LgIndex_t zone = 1; zone <= kFileZones; ++zone) {
    for (const char* name : {"n", "c"}) {
      values.push_back(Host().ValuesOf(zone, VariableNamed(name)));
    }
  }
  Host().ActivateFrame(active);
  return values;
}

std::string WrongValue(const Snapshot& before, const Snapshot& after,
                       const std::vector<Change>& changes) {
  if (after.empty() || before.empty()) return "";
  for (std::size_t column = 0; column < before.size(); ++column) {
    if (AreSame(before[column], after[column])) continue;
    if (before[column].size() != after[column].size()) return "another number of values";
    for (std::size_t i = 0; i < before[column].size(); ++i) {
      const double was = before[column][i];
      const double is = after[column][i];
      const auto makesIt = [&](Change change) { return change != nullptr && is == change(was); };
      if (is == was || std::any_of(changes.begin(), changes.end(), makesIt)) continue;
      return "column " + std::to_string(column) + " item " + std::to_string(i + 1) + ": " +
             std::to_string(was) + " became " + std::to_string(is);
    }
  }
  return "";
}

std::string WrongBlank() {
  FakeHost& host = Host();
  if (host.ActiveData() == nullptr) return "";
  const LgIndex_t var = VariableNamed("PICK_BLANK");
  for (LgIndex_t zone = 1; var > 0 && host.ZoneAt(zone) != nullptr; ++zone) {
    for (const double value : host.ValuesOf(zone, var)) {
      if (value != 0.0 && value != 1.0) return "PICK_BLANK is " + std::to_string(value);
    }
  }
  return "";
}

namespace {

double Plus3(double value) { return value + 3.0; }

/// Which values an alteration of an area reaches; what goes wrong on the way is added to problems.
std::vector<std::vector<bool>> AlterAnArea(bool mayLeaveZone, std::vector<std::string>& problems) {
  FakeHost& host = Host();
  const auto play = [&](const char* line) {
    const fakehost::PlayResult result = host.Play(line);
    if (!result.isDone) problems.push_back(std::string("next: ") + line + ": " + result.error);
  };
  play("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=2.5 SIZEY=9");
  const bool isLeft = host.ZoneNamed("PICKING_CUBE") != 0 || host.ZoneNamed("PICKING_SPHERE") != 0;
  if (isLeft && !mayLeaveZone) {
    problems.push_back("next: the zone of a boundary was left in the data");
  }
  const Snapshot before = ValuesOfUser();
  play("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+3\" RULE=ANYINSIDE");
  const Snapshot after = ValuesOfUser();
  std::vector<std::vector<bool>> mask;
  const std::string wrong = WrongValue(before, after, {Plus3});
  if (!wrong.empty()) problems.push_back("next: " + wrong);
  for (std::size_t column = 0; column < std::min(before.size(), after.size()); ++column) {
    std::vector<bool> bits;
    for (std::size_t i = 0; i < before[column].size(); ++i) {
      bits.push_back(before[column][i] != after[column][i]);
    }
    mask.push_back(bits);
  }
  play("UNDOALTER");
  const Snapshot undone = ValuesOfUser();
  for (std::size_t column = 0; column < std::min(before.size(), undone.size()); ++column) {
    if (!AreSame(before[column], undone[column])) problems.push_back("next: undo left a change");
  }
  return mask;
}

void EndTrouble() {
  Host().FailCall("", 0);
  LieOnCall("", 0, 0);
}

}  // namespace

std::vector<std::vector<bool>> DoNext(bool mayLeaveZone, std::vector<std::string>& problems) {
  FakeHost& host = Host();
  EndTrouble();
  host.isBatch = false;
  host.queuedAnswers.assign(99, true);
  host.ActivateFrame(0);
  host.ActiveFrame().view = {};
  host.ActiveFrame().blanking.include = false;
  for (LgIndex_t zone = 1; zone <= kFileZones; ++zone) host.ZoneAt(zone)->isActive = true;
  const std::size_t boxes = host.errorBoxes.size();
  const std::vector<std::vector<bool>> mask = AlterAnArea(mayLeaveZone, problems);
  host.ChooseMenu(kMenuLabel);
  if (!host.IsDialogUp()) problems.push_back("next: the dialog does not open");
  host.Deliver(StateChange_DropDialogs);
  if (host.errorBoxes.size() != boxes) {
    problems.push_back("next: a box says " + host.errorBoxes.back());
  }
  return mask;
}

void CloseEverything(std::vector<std::string>& problems, bool isLying) {
  FakeHost& host = Host();
  EndTrouble();
  host.Deliver(StateChange_NewLayout);
  host.RunIdleQueue();
  if (host.LockDepth() != 0) problems.push_back("a lock was left on");
  for (const std::string& leak : host.Leaks()) problems.push_back("leak: " + leak);
  for (const std::string& misuse : host.Misuse()) {
    // What a host names wrongly is asked about; it has to refuse.
    if (misuse.find("got a geometry that is gone") == std::string::npos || !isLying) {
      problems.push_back("misuse: " + misuse);
    }
  }
  if (host.HasDamagedGaps()) problems.push_back("something was written between values");
}

}  // namespace fault
