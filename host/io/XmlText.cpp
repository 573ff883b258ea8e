#include "XmlText.h"

#include <charconv>
#include <iterator>

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

std::string ShortestNumber(double value) {
  char text[32];
  const auto end = std::to_chars(std::begin(text), std::end(text), value).ptr;
  return {text, end};
}

}  // namespace qelhost
