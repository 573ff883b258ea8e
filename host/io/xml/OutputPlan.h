// A file put together from parts of another and from memory.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ByteFile.h"

namespace qelhost {

class OutputPlan {
 public:
  explicit OutputPlan(const ByteFile& source) : m_source(source) {}

  /// Bytes of the source file.
  void Copy(std::int64_t begin, std::int64_t end);
  /// Bytes that the plan keeps.
  void Add(std::string bytes);
  /// Bytes that must outlive Write.
  void Refer(const char* bytes, std::int64_t count);

  /// Writes all parts, from file to file without passing them through the process where the system
  /// can do that. Throws FileError, which names the file to blame, and WriteCancelled.
  void Write(const std::string& path) const;

 private:
  struct Part {
    std::int64_t place = 0;  ///< in the target
    std::int64_t count = 0;
    std::int64_t sourcePlace = -1;  ///< -1: from memory
    const char* memory = nullptr;   ///< null: the plan's own text
    std::size_t text = 0;
  };
  void Append(Part part);
  std::vector<Part> Pieces() const;

  const ByteFile& m_source;
  std::vector<Part> m_parts;
  std::vector<std::string> m_texts;
  std::int64_t m_size = 0;
};

}  // namespace qelhost
