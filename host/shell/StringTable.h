#pragma once

#include <memory>
#include <string>
#include <unordered_map>

namespace qelhost {

/// The strings that were handed out through the contract and not released yet.
class StringTable {
 public:
  /// length + 1 bytes, zero-filled; label: what for.
  char* Alloc(std::size_t length, const std::string& label);
  /// A copy of the text.
  char* Copy(const std::string& text, const std::string& label);
  /// Releases the string; false, doing nothing, when it is not one of these.
  bool Release(char* text);
  /// The text of a string that is then released; empty for one that is not one of these.
  std::string TakeOver(char* text);
  std::size_t Count() const { return m_strings.size(); }

 private:
  struct Entry {
    std::unique_ptr<char[]> bytes;
    std::string label;
  };
  std::unordered_map<char*, Entry> m_strings;
};

}  // namespace qelhost
