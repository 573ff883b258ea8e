#pragma once

#include "FakeHost.h"

#include <sstream>
#include <string>
#include <type_traits>

namespace fakehost {

template <class T>
void DescribeOne(std::ostringstream& out, const T& value) {
  if constexpr (std::is_same_v<T, const char*> || std::is_same_v<T, char*>) {
    if (value == nullptr) {
      out << "null";
    } else {
      out << '"' << value << '"';
    }
  } else if constexpr (std::is_same_v<T, char>) {
    out << static_cast<int>(value);
  } else if constexpr (std::is_pointer_v<T>) {
    out << (value == nullptr ? "null" : "handle");
  } else {
    out << value;
  }
}

template <class... Args>
std::string Describe(const Args&... args) {
  std::ostringstream out;
  out << std::boolalpha;
  [[maybe_unused]] const char* separator = "";
  ((out << separator, DescribeOne<std::decay_t<Args>>(out, args), separator = ", "), ...);
  return out.str();
}

/// Logs the call; reports it when no lock is on.
template <class... Args>
void Note(const char* function, const Args&... args) {
  Host().Enter(function, Host().keepsCalls ? Describe(args...) : std::string(), true, false);
}

/// The same for a function whose answer can be "failed"; true when a test wants this call to fail.
template <class... Args>
bool Fails(const char* function, const Args&... args) {
  return Host().Enter(function, Host().keepsCalls ? Describe(args...) : std::string(), true, true);
}

/// For functions that may be called without the lock.
template <class... Args>
void NoteLockFree(const char* function, const Args&... args) {
  Host().Enter(function, Host().keepsCalls ? Describe(args...) : std::string(), false, false);
}
template <class... Args>
bool FailsLockFree(const char* function, const Args&... args) {
  return Host().Enter(function, Host().keepsCalls ? Describe(args...) : std::string(), false, true);
}

/// What is allocated and not yet released, by kind; strings with their labels.
struct Account {
  std::map<const void*, std::string> strings;
  std::map<const void*, std::string> handles;  ///< sets, argument lists, views
};
Account& TheAccount();

/// A host-allocated copy of the text, accounted for.
char* NewString(const std::string& text, const std::string& label);
void FreeString(char* text);

/// The name under which the host itself holds the lock.
constexpr char kHostOwner[] = "Workbench";

/// Marks every reference to the values of a zone, known by its id, and variable as no longer valid.
/// Those of a zone that is gone need no mark.
void InvalidateReferences(QelUniqueID_t zone, LgIndex_t var);
void ForgetReferences();
void ForgetMaps();
void DropAllDialogs();

/// The set's members when it is a live set of the host, else none, reported.
std::vector<SetIndex_t> MembersOf(const QelSet* set, const char* function);

}  // namespace fakehost
