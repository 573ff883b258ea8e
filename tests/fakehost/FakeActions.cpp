#include "FakeCall.h"
#include "FakeHost.h"

#include "qelvane/Keywords.h"

#include <algorithm>

namespace fakehost {

namespace {

/// Takes away what a failed command left over on purpose; answers how many there were.
int ReleaseMacroErrorStrings() {
  std::vector<const void*> found;
  for (const auto& [text, label] : TheAccount().strings) {
    if (label == "Macro Error.") found.push_back(text);
  }
  for (const void* text : found) FreeString(static_cast<char*>(const_cast<void*>(text)));
  return static_cast<int>(found.size());
}

}  // namespace

PlayResult FakeHost::Play(const std::string& command) {
  PlayResult result;
  const auto owner = macroCallbacks.find("Marquell");
  if (owner == macroCallbacks.end()) {
    result.error = "no callback";
    return result;
  }
  const int depth = LockDepth();
  char* error = nullptr;
  isPlaying = true;
  result.isDone = owner->second(command.c_str(), &error);
  isPlaying = false;
  if (isRecording) recordedLines.push_back("Marquell " + command);
  if (LockDepth() != depth) Report("the macro callback left the lock unbalanced");
  if (error != nullptr) {
    result.error = error;
    FreeString(error);
  }
  result.macroErrorStrings = ReleaseMacroErrorStrings();
  return result;
}

void FakeHost::ChooseMenu(const std::string& label) {
  const int depth = LockDepth();
  for (const MenuOption& option : menu) {
    if (option.label == label) option.callback();
  }
  if (LockDepth() != depth) Report("the menu callback left the lock unbalanced");
}

void FakeHost::Probe(bool withCtrl, LgIndex_t zone, LgIndex_t cell, LgIndex_t node) {
  if (mouseMode != Mouse_Probe || probeCallback == nullptr) return;
  probedZone = zone;
  probedCell = cell;
  probedNode = node;
  const int depth = LockDepth();
  probeCallback(withCtrl);
  if (LockDepth() != depth) Report("the probe callback left the lock unbalanced");
}

void FakeHost::RunIdleQueue() {
  const auto queue = std::move(idleQueue);
  idleQueue.clear();
  const int depth = LockDepth();
  for (const auto& [callback, clientData] : queue) callback(clientData);
  if (LockDepth() != depth) Report("an idle callback left the lock unbalanced");
}

void FakeHost::Deliver(QelStateChange_t change, const std::vector<std::string>& styleParams) {
  lockOwners.push_back(kHostOwner);
  Notify({change, {}, {}, styleParams});
  lockOwners.pop_back();
}

void FakeHost::Notify(StateChangeNotice notice) {
  notices.push_back(notice);
  const std::vector<std::string> outer = currentStyleParams;
  currentStyleParams =
      notice.change == StateChange_Style ? notice.styleParams : std::vector<std::string>();
  const std::vector<QelStateChangeCallback_pf> callbacks = stateCallbacks;
  const int depth = LockDepth();
  for (const QelStateChangeCallback_pf callback : callbacks) callback(notice.change);
  if (LockDepth() != depth) Report("the state-change callback left the lock unbalanced");
  currentStyleParams = outer;
}

void FakeHost::EnterFrame(std::size_t index) {
  if (index == activeFrame) return;
  const QelPlotType_e typeBefore = ActiveFrame().plotType;
  const bool hadData = ActiveData() != nullptr;
  activeFrame = index;
  Notify({StateChange_NewActiveFrame, {}, {}, {}});
  if (ActiveFrame().plotType == typeBefore && (ActiveData() != nullptr) == hadData) return;
  Notify({StateChange_Style, {}, {}, {SV_PLOTTYPE}});
}

void FakeHost::SwitchFrame(std::size_t index) {
  lockOwners.push_back(kHostOwner);
  EnterFrame(index);
  lockOwners.pop_back();
}

void FakeHost::CloseAll() {
  frames.clear();
  activeFrame = 0;
  Deliver(StateChange_NewLayout);
  Deliver(StateChange_FrameDeleted);
}

void FakeHost::FailCall(const std::string& function, int nth, int then, const std::string& spared) {
  faultFunction = function;
  faultCountdown = nth;
  faultHits = 0;
  nextFaultCountdown = then;
  sparedFunction = spared;
}

int FakeHost::CallCount(const std::string& function) const {
  return static_cast<int>(
      std::count_if(calls.begin(), calls.end(),
                    [&function](const CallRecord& call) { return call.function == function; }));
}

bool FakeHost::Enter(const char* function, const std::string& arguments, bool needsLock,
                     bool isFallible) {
  if (IsCalledByBody(function)) return false;
  if (keepsCalls) calls.push_back({function, arguments, isFallible});
  if (needsLock && lockOwners.empty()) Report(std::string(function) + " was called unlocked");
  if (!isFallible) return false;
  if (faultHits > 0 && nextFaultCountdown > 0 && sparedFunction != function &&
      --nextFaultCountdown == 0) {
    NoteFault();
    return true;
  }
  if (faultFunction != function || faultCountdown < 1) return false;
  if (--faultCountdown > 0) return false;
  NoteFault();
  return true;
}

void FakeHost::Reset() {
  const bool wasDamaged = HasDamagedGaps();
  ForgetReferences();
  ForgetMaps();
  TheAccount() = Account();
  DropAllDialogs();
  ForgetBits();
  *this = FakeHost();
  OfferWhatTheEnvironmentSays();
  if (wasDamaged) Report("before the reset something was written between values");
}

bool FakeHost::HasDamagedGaps() const {
  for (const Frame& frame : frames) {
    if (frame.dataSet == nullptr) continue;
    for (const Zone& zone : frame.dataSet->zones) {
      for (const Values& values : zone.vars) {
        if (values.storage != nullptr && !values.storage->AreGapsWhole()) return true;
      }
    }
  }
  return false;
}

std::vector<std::string> FakeHost::Leaks() const {
  std::vector<std::string> leaks;
  for (const auto& [text, label] : TheAccount().strings) leaks.push_back("string " + label);
  for (const auto& [handle, kind] : TheAccount().handles) leaks.push_back(kind);
  if (dataLoadDepth != 0) leaks.push_back("a data-load bracket");
  for (const std::string& message : waitMessages) leaks.push_back("the wait message " + message);
  return leaks;
}

FakeHost& Host() {
  // Never destroyed: add-ons may call until the process has ended.
  static FakeHost* const host = new FakeHost();
  return *host;
}

std::int64_t NewUniqueId() {
  static std::int64_t last = 0;
  return ++last;
}

}  // namespace fakehost
