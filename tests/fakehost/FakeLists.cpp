// Strings, sets, argument lists.
#include "FakeLists.h"

#include "FakeCall.h"

#include <cstring>
#include <memory>
#include <set>

struct QelSet {
  std::set<SetIndex_t> members;
};

struct QelArgList {
  std::vector<fakehost::Argument> arguments;
};

namespace fakehost {

namespace {

bool IsAccounted(const void* handle, const char* function) {
  if (TheAccount().handles.count(handle) != 0) return true;
  Host().Report(std::string(function) + " got a stale or foreign handle");
  return false;
}

bool Append(QelArgList* list, const char* function, Argument argument) {
  if (!IsLive(list, function)) return false;
  list->arguments.push_back(std::move(argument));
  return true;
}

Argument Named(const char* name, ArgumentKind kind) {
  Argument argument;
  argument.kind = kind;
  argument.name = name == nullptr ? "" : name;
  return argument;
}

}  // namespace

Account& TheAccount() {
  static auto* const account = new Account();
  return *account;
}

char* NewString(const std::string& text, const std::string& label) {
  char* const copy = new char[text.size() + 1]();
  std::memcpy(copy, text.data(), text.size());
  TheAccount().strings[copy] = label;
  return copy;
}

void FreeString(char* text) {
  if (TheAccount().strings.erase(text) == 0) {
    Host().Report("a string was released that the host did not allocate");
    return;
  }
  delete[] text;
}

std::vector<SetIndex_t> MembersOf(const QelSet* set, const char* function) {
  if (!IsAccounted(set, function)) return {};
  return {set->members.begin(), set->members.end()};
}

bool IsLive(const QelArgList* list, const char* function) { return IsAccounted(list, function); }

const Argument* Find(const QelArgList* list, const char* name) {
  for (const Argument& argument : list->arguments) {
    if (argument.name == name) return &argument;
  }
  return nullptr;
}

const Argument* Find(const QelArgList* list, const char* name, ArgumentKind kind) {
  const Argument* const argument = Find(list, name);
  return argument != nullptr && argument->kind == kind ? argument : nullptr;
}

}  // namespace fakehost

using namespace fakehost;

char* QelUtilStringAlloc(LgIndex_t maxLength, const char* label) {
  if (Fails(__func__, maxLength, label) || maxLength < 0) return nullptr;
  return NewString(std::string(static_cast<std::size_t>(maxLength), '\0'),
                   label == nullptr ? "" : label);
}

void QelUtilStringDealloc(char** s) {
  NoteLockFree(__func__);
  if (s == nullptr || *s == nullptr) return;
  FreeString(*s);
  *s = nullptr;
}

QelSet* QelUtilSetAlloc(bool showErrors) {
  if (Fails(__func__, showErrors)) return nullptr;
  auto* const set = new QelSet();
  TheAccount().handles[set] = "set";
  return set;
}

void QelUtilSetDealloc(QelSet** set) {
  Note(__func__);
  if (set == nullptr || *set == nullptr || !IsAccounted(*set, __func__)) return;
  TheAccount().handles.erase(*set);
  delete *set;
  *set = nullptr;
}

bool QelUtilSetAddMember(QelSet* set, SetIndex_t member, bool showErrors) {
  if (Fails(__func__, set, member, showErrors) || !IsAccounted(set, __func__)) return false;
  if (member < 1) return false;
  set->members.insert(member);
  return true;
}

bool QelUtilSetIsMember(const QelSet* set, SetIndex_t member) {
  if (Fails(__func__, set, member) || !IsAccounted(set, __func__)) return false;
  return set->members.count(member) != 0;
}

SetIndex_t QelUtilSetGetMemberCount(const QelSet* set) {
  if (Fails(__func__, set) || !IsAccounted(set, __func__)) return 0;
  return static_cast<SetIndex_t>(set->members.size());
}

SetIndex_t QelUtilSetGetNextMember(const QelSet* set, SetIndex_t previous) {
  if (Fails(__func__, set, previous) || !IsAccounted(set, __func__)) return 0;
  const auto next = set->members.upper_bound(previous);
  return next == set->members.end() ? 0 : *next;
}

QelArgList* QelUtilArgListAlloc() {
  if (Fails(__func__)) return nullptr;
  auto* const list = new QelArgList();
  TheAccount().handles[list] = "argument list";
  return list;
}

void QelUtilArgListClear(QelArgList* list) {
  Note(__func__, list);
  if (IsLive(list, __func__)) list->arguments.clear();
}

void QelUtilArgListDealloc(QelArgList** list) {
  Note(__func__);
  if (list == nullptr || *list == nullptr || !IsLive(*list, __func__)) return;
  TheAccount().handles.erase(*list);
  delete *list;
  *list = nullptr;
}

bool QelUtilArgListAppendInt(QelArgList* list, const char* name, LgIndex_t value) {
  if (Fails(__func__, list, name, value)) return false;
  Argument argument = Named(name, ArgumentKind::Integer);
  argument.integer = value;
  return Append(list, __func__, argument);
}

bool QelUtilArgListAppendDouble(QelArgList* list, const char* name, double value) {
  if (Fails(__func__, list, name, value)) return false;
  Argument argument = Named(name, ArgumentKind::Number);
  argument.number = value;
  return Append(list, __func__, argument);
}

bool QelUtilArgListAppendString(QelArgList* list, const char* name, const char* value) {
  if (Fails(__func__, list, name, value) || value == nullptr) return false;
  Argument argument = Named(name, ArgumentKind::Text);
  argument.text = value;
  return Append(list, __func__, argument);
}

bool QelUtilArgListAppendArray(QelArgList* list, const char* name, const void* values) {
  if (Fails(__func__, list, name, values)) return false;
  Argument argument = Named(name, ArgumentKind::Pointer);
  argument.pointer = values;
  return Append(list, __func__, argument);
}

bool QelUtilArgListAppendSet(QelArgList* list, const char* name, const QelSet* set) {
  if (Fails(__func__, list, name, set) || !IsAccounted(set, __func__)) return false;
  Argument argument = Named(name, ArgumentKind::Pointer);
  argument.pointer = set;
  return Append(list, __func__, argument);
}

bool QelUtilArgListAppendFunction(QelArgList* list, const char* name, const void* function) {
  if (Fails(__func__, list, name, function)) return false;
  Argument argument = Named(name, ArgumentKind::Pointer);
  argument.pointer = function;
  return Append(list, __func__, argument);
}

bool QelUtilArgListAppendArbParam(QelArgList* list, const char* name, ArbParam_t value) {
  if (Fails(__func__, list, name, value)) return false;
  Argument argument = Named(name, ArgumentKind::Integer);
  argument.integer = value;
  return Append(list, __func__, argument);
}

bool QelUtilArgListAppendArbParamPtr(QelArgList* list, const char* name, ArbParam_t* value) {
  if (Fails(__func__, list, name, value)) return false;
  Argument argument = Named(name, ArgumentKind::Pointer);
  argument.pointer = value;
  return Append(list, __func__, argument);
}

bool QelUtilArgListAppendDoublePtr(QelArgList* list, const char* name, double* value) {
  if (Fails(__func__, list, name, value)) return false;
  Argument argument = Named(name, ArgumentKind::Pointer);
  argument.pointer = value;
  return Append(list, __func__, argument);
}
