#pragma once

#include "HostLock.h"
#include "Utilities.h"

#include <exception>
#include <stdexcept>

namespace qelvane::qelutiltools {

/// Runs the body and lets no exception into the host: all end here, as the add-on's error box with
/// the text given (null: the general one). Returns whether the body ran to its end.
template <class Body>
bool Contain(const char* message, Body&& body) noexcept {
  try {
    body();
    return true;
  } catch (const std::exception& e) {
    ShowAddOnError(e, message);
  } catch (...) {
    ShowAddOnError(std::runtime_error("not a standard exception"), message);
  }
  return false;
}

/// The body of a question that shows nothing: all exceptions end here. Holds the lock for its whole
/// run. Returns whether the body ran to its end.
template <class Body>
bool ContainSilently(Body&& body) noexcept {
  const HostLock lock;
  try {
    body();
    return true;
  } catch (...) {
    return false;
  }
}

/// The body of a callback: contained, and holding the lock for its whole run. The state-change
/// callback uses Contain alone: it must see who holds the lock.
template <class Body>
bool EntryPoint(const char* message, Body&& body) noexcept {
  const HostLock lock;
  return Contain(message, body);
}

}  // namespace qelvane::qelutiltools
