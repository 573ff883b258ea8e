#include "IndexWalk.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <set>
#include <system_error>
#include <vector>

#include "FileError.h"
#include "InputFile.h"

namespace qelhost {
namespace {

constexpr std::size_t kDeepest = 16;
/// Files may be named again: a mesh that stands still belongs to every time step.
constexpr std::int64_t kMostAgain = 1 << 16;
constexpr std::int64_t kMostBytesAgain = std::int64_t{4} << 30;

struct Walk {
  std::vector<std::string> open;
  std::set<std::string> seen;
  std::int64_t again = 0;
  std::int64_t bytesAgain = 0;
};

Walk& ThisWalk() {
  thread_local Walk walk;
  return walk;
}

}  // namespace

std::string RealPath(const std::string& path) {
  std::error_code error;
  const auto real = std::filesystem::weakly_canonical(path, error);
  return error ? path : real.string();
}

OpenIndex::OpenIndex(const std::string& path) {
  std::vector<std::string>& open = ThisWalk().open;
  const std::string real = RealPath(path);
  if (std::find(open.begin(), open.end(), real) != open.end()) {
    throw FileError(path, "names itself, or a file that names it");
  }
  if (open.size() >= kDeepest) throw FileError(path, "lies too deep in files that name others");
  open.push_back(real);
}

OpenIndex::~OpenIndex() {
  Walk& walk = ThisWalk();
  walk.open.pop_back();
  if (walk.open.empty()) walk = Walk();
}

void OpenIndex::CountFile(const std::string& file) {
  Walk& walk = ThisWalk();
  if (walk.seen.insert(RealPath(file)).second) return;
  walk.bytesAgain += FileBytes(file);
  if (++walk.again > kMostAgain || walk.bytesAgain > kMostBytesAgain) {
    throw FileError(file, "is named too often");
  }
}

}  // namespace qelhost
