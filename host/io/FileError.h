#pragma once

#include <stdexcept>
#include <string>

namespace qelhost {

/// A file that cannot be read or written. what() is one line: the file and the reason.
class FileError : public std::runtime_error {
 public:
  FileError(const std::string& file, const std::string& reason);

  const std::string& File() const { return m_file; }
  /// Without the file.
  const std::string& Reason() const { return m_reason; }

 private:
  std::string m_file;
  std::string m_reason;
};

}  // namespace qelhost
