// A file read in pieces, from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace qelhost {

/// Held open, so that what it holds stays reachable when another file takes its name. It is read
/// and never mapped: a file that shrinks meanwhile is an error of a read, not the end of the
/// process.
class ByteFile {
 public:
  /// Throws FileError.
  explicit ByteFile(const std::string& path);
  ~ByteFile();
  ByteFile(const ByteFile&) = delete;
  ByteFile& operator=(const ByteFile&) = delete;

  /// Whether the process may hold another file open besides what else it needs.
  static bool MayOpenAnother();

  const std::string& Path() const { return m_path; }
  std::int64_t Size() const { return m_size; }
  int Descriptor() const { return m_descriptor; }

  /// Throws FileError when not all of the bytes are there.
  void ReadAt(std::int64_t position, char* to, std::int64_t count) const;

  /// Throws FileError when the file was written since it was opened: parts of it read before and
  /// after would not belong together.
  void RequireUnchanged() const;

 private:
  std::string m_path;
  int m_descriptor;
  std::int64_t m_size = 0;
  std::int64_t m_modified = 0;  ///< in nanoseconds
};

}  // namespace qelhost
