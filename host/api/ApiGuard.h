#pragma once

#include "Host.h"

#include <spdlog/spdlog.h>
#include <exception>
#include <utility>

namespace qelhost {

/// Runs the body of a contract function. No exception may leave the host, so what is thrown becomes
/// the function's answer for a failure, and a line in the log; values that cannot be read end the
/// run, which the player sees to.
template <class Result, class Body>
Result Guarded(const char* function, Result onFailure, Body&& body) noexcept {
  try {
    return body(Host::Instance());
  } catch (const ValuesError& e) {
    Host::Instance().unreadableValues = e.what();
  } catch (const std::exception& e) {
    spdlog::error("{}: {}", function, e.what());
  } catch (...) {
    spdlog::error("{}: an unknown error", function);
  }
  return onFailure;
}

template <class Body>
void GuardedVoid(const char* function, Body&& body) noexcept {
  Guarded(function, false, [&body](Host& host) {
    body(host);
    return true;
  });
}

/// A null text counts as an empty one.
inline std::string TextOf(const char* text) { return text == nullptr ? std::string() : text; }

/// Puts a host-allocated copy of the text into an out-parameter; false when that is null.
inline bool HandOut(Host& host, const std::string& text, const char* label, char** target) {
  if (target == nullptr) return false;
  *target = host.strings.Copy(text, label);
  return true;
}

}  // namespace qelhost
