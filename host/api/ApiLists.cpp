// Strings, sets and argument lists.
#include "ApiGuard.h"
#include "ApiHandles.h"

#include "qelvane/QelUtil.h"

using namespace qelhost;

namespace {

/// Keeps one argument; false for a bad list or name.
template <class T>
bool Append(const char* function, QelArgList* list, const char* name, T value) {
  return Guarded(function, false, [&](Host&) {
    if (!TheHandles().lists.Has(list) || name == nullptr || *name == '\0') return false;
    list->values[name] = std::move(value);
    return true;
  });
}

}  // namespace

char* QelUtilStringAlloc(LgIndex_t maxLength, const char* label) {
  return Guarded<char*>(__func__, nullptr, [&](Host& host) -> char* {
    if (maxLength < 0) return nullptr;
    return host.strings.Alloc(static_cast<std::size_t>(maxLength), TextOf(label));
  });
}

void QelUtilStringDealloc(char** s) {
  GuardedVoid(__func__, [&](Host& host) {
    if (s == nullptr || *s == nullptr) return;
    host.strings.Release(*s);
    *s = nullptr;
  });
}

QelSet* QelUtilSetAlloc(bool /*showErrors*/) {
  return Guarded<QelSet*>(__func__, nullptr, [](Host&) { return TheHandles().sets.Make(); });
}

void QelUtilSetDealloc(QelSet** set) {
  GuardedVoid(__func__, [&](Host&) {
    if (set == nullptr || *set == nullptr) return;
    TheHandles().sets.Release(*set);
    *set = nullptr;
  });
}

bool QelUtilSetAddMember(QelSet* set, SetIndex_t member, bool /*showErrors*/) {
  return Guarded(__func__, false, [&](Host&) {
    if (!TheHandles().sets.Has(set) || member < 1) return false;
    set->members.insert(member);
    return true;
  });
}

bool QelUtilSetIsMember(const QelSet* set, SetIndex_t member) {
  return Guarded(__func__, false, [&](Host&) {
    return TheHandles().sets.Has(set) && set->members.count(member) > 0;
  });
}

SetIndex_t QelUtilSetGetMemberCount(const QelSet* set) {
  return Guarded<SetIndex_t>(__func__, 0, [&](Host&) -> SetIndex_t {
    return TheHandles().sets.Has(set) ? static_cast<SetIndex_t>(set->members.size()) : 0;
  });
}

SetIndex_t QelUtilSetGetNextMember(const QelSet* set, SetIndex_t previous) {
  return Guarded<SetIndex_t>(__func__, 0, [&](Host&) -> SetIndex_t {
    if (!TheHandles().sets.Has(set)) return 0;
    const auto next = set->members.upper_bound(previous);
    return next == set->members.end() ? 0 : *next;
  });
}

QelArgList* QelUtilArgListAlloc() {
  return Guarded<QelArgList*>(__func__, nullptr, [](Host&) { return TheHandles().lists.Make(); });
}

void QelUtilArgListClear(QelArgList* list) {
  GuardedVoid(__func__, [&](Host&) {
    if (TheHandles().lists.Has(list)) list->values.clear();
  });
}

void QelUtilArgListDealloc(QelArgList** list) {
  GuardedVoid(__func__, [&](Host&) {
    if (list == nullptr || *list == nullptr) return;
    TheHandles().lists.Release(*list);
    *list = nullptr;
  });
}

bool QelUtilArgListAppendInt(QelArgList* list, const char* name, LgIndex_t value) {
  return Append(__func__, list, name, value);
}

bool QelUtilArgListAppendDouble(QelArgList* list, const char* name, double value) {
  return Append(__func__, list, name, value);
}

bool QelUtilArgListAppendString(QelArgList* list, const char* name, const char* value) {
  const char* const function = __func__;
  return Guarded(function, false, [&](Host&) {
    return value != nullptr && Append(function, list, name, std::string(value));
  });
}

bool QelUtilArgListAppendArray(QelArgList* list, const char* name, const void* values) {
  return Append(__func__, list, name, values);
}

bool QelUtilArgListAppendSet(QelArgList* list, const char* name, const QelSet* set) {
  return TheHandles().sets.Has(set) && Append(__func__, list, name, set);
}

bool QelUtilArgListAppendFunction(QelArgList* list, const char* name, const void* function) {
  return Append(__func__, list, name, function);
}

bool QelUtilArgListAppendArbParam(QelArgList* list, const char* name, ArbParam_t value) {
  return Append(__func__, list, name, value);
}

bool QelUtilArgListAppendArbParamPtr(QelArgList* list, const char* name, ArbParam_t* value) {
  return Append(__func__, list, name, value);
}

bool QelUtilArgListAppendDoublePtr(QelArgList* list, const char* name, double* value) {
  return Append(__func__, list, name, value);
}
