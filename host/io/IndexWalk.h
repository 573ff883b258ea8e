// Which files indexes lead to, so that no chain of names is followed for ever.
#pragma once

#include <string>

namespace qelhost {

/// An index that is being read on this thread, while it lives; those that name it are around it.
class OpenIndex {
 public:
  /// Throws FileError when it is one of those, or too deep within them.
  explicit OpenIndex(const std::string& path);
  ~OpenIndex();
  OpenIndex(const OpenIndex&) = delete;
  OpenIndex& operator=(const OpenIndex&) = delete;

  /// To be called for each file that it names, before that is read. Throws FileError when files are
  /// named again and again: a few short indexes could ask for more than any memory holds.
  static void CountFile(const std::string& file);
};

/// The file behind a path, however it is written.
std::string RealPath(const std::string& path);

}  // namespace qelhost
