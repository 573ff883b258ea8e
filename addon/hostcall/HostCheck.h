#pragma once

namespace qelvane::qelutiltools {

/// Throws the add-on's internal error: "Assert failed: " + the call as written + " (Selvane 42)".
///
/// throws  std::runtime_error, always
[[noreturn]] void ThrowAssertFailed(const char* call, const char* file, int line);

}  // namespace qelvane::qelutiltools

/// Makes a host call that must not fail, once, and throws when it yields false or null.
/// A macro only because it must quote the call and know the caller's line.
#define HOST_CHECK(call)                                                                \
  do {                                                                                  \
    if (!(call)) ::qelvane::qelutiltools::ThrowAssertFailed(#call, __FILE__, __LINE__); \
  } while (false)
