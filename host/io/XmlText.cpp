#include "XmlText.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>

namespace qelhost {

std::string Escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

std::optional<std::string> Unescaped(const std::string& text) {
  constexpr struct {
    std::string_view entity;
    char character;
  } kEntities[] = {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] != '&') {
      const bool isBreak = text[at] == '\n' || text[at] == '\r' || text[at] == '\t';
      at += text.compare(at, 2, "\r\n") == 0 ? 1 : 0;
      result += isBreak ? ' ' : text[at];
      ++at;
      continue;
    }
    const auto* const known = std::find_if(
        std::begin(kEntities), std::end(kEntities),
        [&](const auto& row) { return text.compare(at, row.entity.size(), row.entity) == 0; });
    if (known == std::end(kEntities)) return std::nullopt;
    result += known->character;
    at += known->entity.size();
  }
  return result;
}

std::string ShortestNumber(double value) {
  char text[32];
  const auto end = std::to_chars(std::begin(text), std::end(text), value).ptr;
  return {text, end};
}

}  // namespace qelhost
