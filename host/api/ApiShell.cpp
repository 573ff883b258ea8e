// Lock, registration, menus, state changes, idle queue.
#include "ApiGuard.h"
#include "ApiHandles.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <cstring>

using namespace qelhost;

namespace {

constexpr LgIndex_t kInterfaceVersion = 110;

void Announce(Host& host, QelStateChange_t change) {
  const DataSetPtr data = ActiveData(host);
  if (change == StateChange_VarsAltered && data != nullptr) data->NoteDirectWrites();
  host.notices.Send(change);
}

}  // namespace

void QelUtilLockOn() {
  GuardedVoid(__func__, [](Host& host) { host.lock.Push(LockStack::kHostName); });
}

void QelUtilLockOff() {
  GuardedVoid(__func__, [](Host& host) { host.lock.Pop(LockStack::kHostName); });
}

void QelUtilLockStart(QelAddOn* addOn) {
  GuardedVoid(__func__, [&](Host& host) {
    if (host.addOns.IsHandle(addOn)) host.lock.Push(addOn->name);
  });
}

void QelUtilLockFinish(QelAddOn* addOn) {
  GuardedVoid(__func__, [&](Host& host) {
    if (host.addOns.IsHandle(addOn)) host.lock.Pop(addOn->name);
  });
}

bool QelUtilLockIsOn() {
  return Guarded(__func__, false, [](Host& host) { return host.lock.IsOn(); });
}

bool QelUtilLockGetCurrentOwnerName(char** name) {
  return Guarded(__func__, false, [&](Host& host) {
    if (name != nullptr) *name = nullptr;
    return host.lock.IsOn() && HandOut(host, host.lock.Owner(), "Lock owner", name);
  });
}

QelAddOn* QelUtilAddOnRegister(LgIndex_t interfaceVersion, const char* name, const char* version,
                               const char* author) {
  return Guarded<QelAddOn*>(__func__, nullptr, [&](Host& host) -> QelAddOn* {
    if (interfaceVersion < 1 || interfaceVersion > kInterfaceVersion || name == nullptr) {
      return nullptr;
    }
    return host.addOns.Register(name, TextOf(version), TextOf(author));
  });
}

bool QelUtilMacroAddCommandCallback(const char* addOnName, QelMacroCommandCallback_pf callback) {
  return Guarded(__func__, false, [&](Host& host) {
    return addOnName != nullptr && host.addOns.SetMacroCallback(addOnName, callback);
  });
}

void QelUtilMenuAddSeparator(const char* menuPath) {
  GuardedVoid(__func__, [&](Host& host) {
    if (menuPath != nullptr) host.menus.AddSeparator(menuPath);
  });
}

void QelUtilMenuAddOption(const char* menuPath, const char* label, char mnemonic,
                          QelMenuCallback_pf callback) {
  GuardedVoid(__func__, [&](Host& host) {
    if (menuPath == nullptr || label == nullptr || callback == nullptr) return;
    host.menus.AddOption(menuPath, label, mnemonic, callback);
  });
}

void QelUtilMenuSetSensitivity(const char* menuPath, const char* label, bool sensitive) {
  GuardedVoid(__func__, [&](Host& host) {
    if (menuPath != nullptr && label != nullptr) {
      host.menus.SetSensitivity(menuPath, label, sensitive);
    }
  });
}

bool QelUtilStateChangeAddCallbackX(QelArgList* args) {
  return Guarded(__func__, false, [&](Host& host) {
    const auto* const function = FindArgument<const void*>(args, SV_CALLBACKFUNCTION);
    const auto* const mode = FindArgument<LgIndex_t>(args, SV_STATECHANGEMODE);
    const auto* const api = FindArgument<LgIndex_t>(args, SV_STATECHANGECALLBACKAPI);
    if (function == nullptr || *function == nullptr) return false;
    if (mode != nullptr && *mode != StateChangeMode_v100) return false;
    if (api != nullptr && *api != StateChangeCallbackAPI_ChangeOnly) return false;
    QelStateChangeCallback_pf callback = nullptr;
    static_assert(sizeof callback == sizeof *function);
    std::memcpy(&callback, function, sizeof callback);
    host.notices.AddCallback(callback);
    return true;
  });
}

bool QelUtilStateChangeGetStyleParam(LgIndex_t n, char** param) {
  return Guarded(__func__, false, [&](Host& host) {
    const std::string* const name = host.notices.StyleParameter(n);
    return name != nullptr && HandOut(host, *name, "Style parameter", param);
  });
}

void QelUtilStateChanged(QelStateChange_t change, ArbParam_t /*callData*/) {
  GuardedVoid(__func__, [&](Host& host) { Announce(host, change); });
}

void QelUtilStateChangedX(QelArgList* args) {
  GuardedVoid(__func__, [&](Host& host) {
    const auto* const change = FindArgument<LgIndex_t>(args, SV_STATECHANGE);
    if (change != nullptr) Announce(host, *change);
  });
}

bool QelUtilOnIdleQueueAddCallback(QelOnIdleCallback_pf callback, ArbParam_t clientData) {
  return Guarded(__func__, false, [&](Host& host) {
    if (callback == nullptr) return false;
    host.idle.Add(callback, clientData);
    return true;
  });
}
