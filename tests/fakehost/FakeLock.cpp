// Lock, registration, menus, idle queue, notices, extensions.
#include "FakeCall.h"
#include "FakeLists.h"

#include "qelvane/Extensions.h"
#include "qelvane/Keywords.h"

#include <set>

struct QelAddOn {
  std::string name;
};

using namespace fakehost;

namespace {

/// Handles live as long as the process: an add-on keeps its own from one test to the next.
std::set<const QelAddOn*>& AddOns() {
  static auto* const addOns = new std::set<const QelAddOn*>();
  return *addOns;
}

bool IsKnown(const QelAddOn* addOn, const char* function) {
  if (AddOns().count(addOn) != 0) return true;
  Host().Report(std::string(function) + " got a foreign add-on handle");
  return false;
}

void Pop(const std::string& owner, const char* function) {
  std::vector<std::string>& owners = Host().lockOwners;
  if (owners.empty() || owners.back() != owner) {
    Host().Report(std::string(function) + " does not match the start of the lock");
    return;
  }
  owners.pop_back();
}

}  // namespace

void QelUtilLockOn() {
  NoteLockFree(__func__);
  Host().lockOwners.push_back(kHostOwner);
}

void QelUtilLockOff() {
  NoteLockFree(__func__);
  Pop(kHostOwner, __func__);
}

void QelUtilLockStart(QelAddOn* addOn) {
  NoteLockFree(__func__, addOn);
  if (addOn != nullptr && IsKnown(addOn, __func__)) Host().lockOwners.push_back(addOn->name);
}

void QelUtilLockFinish(QelAddOn* addOn) {
  NoteLockFree(__func__, addOn);
  if (addOn != nullptr && IsKnown(addOn, __func__)) Pop(addOn->name, __func__);
}

bool QelUtilLockIsOn() { return !FailsLockFree(__func__) && Host().LockDepth() > 0; }

bool QelUtilLockGetCurrentOwnerName(char** name) {
  const bool fails = FailsLockFree(__func__);
  if (name == nullptr) return false;
  *name = nullptr;
  if (fails || Host().lockOwners.empty()) return false;
  *name = NewString(Host().lockOwners.back(), "lock owner");
  return true;
}

QelAddOn* QelUtilAddOnRegister(LgIndex_t interfaceVersion, const char* name, const char* version,
                               const char* author) {
  if (Fails(__func__, interfaceVersion, name, version, author)) return nullptr;
  if (name == nullptr || version == nullptr || author == nullptr) return nullptr;
  Host().registeredInterface = interfaceVersion;
  Host().registeredName = name;
  Host().registeredVersion = version;
  Host().registeredAuthor = author;
  auto* const addOn = new QelAddOn{name};
  AddOns().insert(addOn);
  return addOn;
}

bool QelUtilMacroAddCommandCallback(const char* addOnName, QelMacroCommandCallback_pf callback) {
  if (Fails(__func__, addOnName) || addOnName == nullptr || callback == nullptr) return false;
  Host().macroCallbacks[addOnName] = callback;
  return true;
}

void QelUtilMenuAddSeparator(const char* menuPath) {
  Note(__func__, menuPath);
  if (menuPath != nullptr) Host().menuSeparators.push_back(menuPath);
}

void QelUtilMenuAddOption(const char* menuPath, const char* label, char mnemonic,
                          QelMenuCallback_pf callback) {
  Note(__func__, menuPath, label, mnemonic);
  if (menuPath == nullptr || label == nullptr || callback == nullptr) return;
  Host().menu.push_back({menuPath, label, mnemonic, callback, true});
}

void QelUtilMenuSetSensitivity(const char* menuPath, const char* label, bool sensitive) {
  Note(__func__, menuPath, label, sensitive);
  if (menuPath == nullptr || label == nullptr) return;
  for (MenuOption& option : Host().menu) {
    if (option.path == menuPath && option.label == label) option.isSensitive = sensitive;
  }
}

bool QelUtilStateChangeAddCallbackX(QelArgList* args) {
  if (Fails(__func__, args) || !IsLive(args, __func__)) return false;
  const Argument* const function = Find(args, SV_CALLBACKFUNCTION);
  const Argument* const mode = Find(args, SV_STATECHANGEMODE);
  const Argument* const api = Find(args, SV_STATECHANGECALLBACKAPI);
  if (function == nullptr || mode == nullptr || api == nullptr) return false;
  if (function->pointer == nullptr) return false;
  if (mode->integer != StateChangeMode_v100 || api->integer != StateChangeCallbackAPI_ChangeOnly) {
    return false;
  }
  Host().stateCallbacks.push_back(
      reinterpret_cast<QelStateChangeCallback_pf>(const_cast<void*>(function->pointer)));
  return true;
}

bool QelUtilStateChangeGetStyleParam(LgIndex_t n, char** param) {
  const std::vector<std::string>& params = Host().currentStyleParams;
  if (FailsLockFree(__func__, n) || param == nullptr) return false;
  if (n < 1 || n > static_cast<LgIndex_t>(params.size())) return false;
  *param = NewString(params[static_cast<std::size_t>(n - 1)], "style parameter");
  return true;
}

void QelUtilStateChanged(QelStateChange_t change, ArbParam_t callData) {
  Note(__func__, change);
  StateChangeNotice notice;
  notice.change = change;
  if (callData != 0) {
    const bool isOfVars = change == StateChange_VarsAdded || change == StateChange_VarsDeleted;
    (isOfVars ? notice.vars : notice.zones) =
        MembersOf(reinterpret_cast<const QelSet*>(callData), __func__);
  }
  Host().Notify(notice);
}

void QelUtilStateChangedX(QelArgList* args) {
  Note(__func__, args);
  if (!IsLive(args, __func__)) return;
  const Argument* const change = Find(args, SV_STATECHANGE);
  if (change == nullptr) return;
  StateChangeNotice notice;
  notice.change = static_cast<QelStateChange_t>(change->integer);
  if (const Argument* const zones = Find(args, SV_ZONELIST)) {
    notice.zones = MembersOf(static_cast<const QelSet*>(zones->pointer), __func__);
  }
  if (const Argument* const vars = Find(args, SV_VARLIST)) {
    notice.vars = MembersOf(static_cast<const QelSet*>(vars->pointer), __func__);
  }
  Host().Notify(notice);
}

bool QelUtilOnIdleQueueAddCallback(QelOnIdleCallback_pf callback, ArbParam_t clientData) {
  if (Fails(__func__) || callback == nullptr) return false;
  Host().idleQueue.emplace_back(callback, clientData);
  return true;
}

const void* QelUtilExtensionGet(const char* id) {
  if (FailsLockFree(__func__, id) || id == nullptr) return nullptr;
  const auto found = Host().extensions.find(id);
  return found == Host().extensions.end() ? nullptr : found->second;
}
