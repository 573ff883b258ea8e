#include "StringTable.h"

#include <algorithm>
#include <utility>

namespace qelhost {

char* StringTable::Alloc(std::size_t length, const std::string& label) {
  auto bytes = std::make_unique<char[]>(length + 1);
  char* const text = bytes.get();
  m_strings[text] = {std::move(bytes), label};
  return text;
}

char* StringTable::Copy(const std::string& text, const std::string& label) {
  char* const copy = Alloc(text.size(), label);
  std::copy(text.begin(), text.end(), copy);
  return copy;
}

bool StringTable::Release(char* text) { return m_strings.erase(text) > 0; }

std::string StringTable::TakeOver(char* text) {
  if (m_strings.count(text) == 0) return {};
  std::string taken = text;
  Release(text);
  return taken;
}

}  // namespace qelhost
