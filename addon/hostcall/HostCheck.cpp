#include "HostCheck.h"

#include <stdexcept>
#include <string>

namespace qelvane::qelutiltools {

namespace {

/// "/a/b/Selvane.cpp" -> "Selvane".
std::string BaseName(const std::string& file) {
  const std::size_t slash = file.find_last_of('/');
  const std::size_t first = slash == std::string::npos ? 0 : slash + 1;
  return file.substr(first, file.find_last_of('.') - first);
}

}  // namespace

void ThrowAssertFailed(const char* call, const char* file, int line) {
  throw std::runtime_error(std::string("Assert failed: ") + call + " (" + BaseName(file) + " " +
                           std::to_string(line) + ")");
}

}  // namespace qelvane::qelutiltools
