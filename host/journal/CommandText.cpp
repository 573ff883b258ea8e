#include "CommandText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace qelhost {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

class Cutter {
 public:
  explicit Cutter(const std::string& text) : m_text(text) {}

  bool IsAtEnd() {
    while (m_at < m_text.size() && IsBlank(m_text[m_at])) ++m_at;
    return m_at == m_text.size();
  }

  bool TakeEquals() {
    if (IsAtEnd() || m_text[m_at] != '=') return false;
    ++m_at;
    return true;
  }

  /// A quoted text without its quotes, or everything up to a blank or '='.
  std::string Take(bool& isQuoted) {
    isQuoted = !IsAtEnd() && m_text[m_at] == '"';
    if (isQuoted) {
      const std::size_t closing = m_text.find('"', m_at + 1);
      if (closing == std::string::npos) throw CommandError("a double quote is not closed");
      std::string quoted = m_text.substr(m_at + 1, closing - m_at - 1);
      m_at = closing + 1;
      return quoted;
    }
    const std::size_t first = m_at;
    while (m_at < m_text.size() && !IsBlank(m_text[m_at]) && m_text[m_at] != '=') ++m_at;
    return m_text.substr(first, m_at - first);
  }

 private:
  const std::string& m_text;
  std::size_t m_at = 0;
};

}  // namespace

std::string UpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

double NumberOf(const std::string& text, const std::string& name) {
  const char* first = text.c_str();
  const char* const last = first + text.size();
  // from_chars takes no plus sign, but a minus sign behind one.
  if (last - first > 1 && *first == '+' && first[1] != '-') ++first;
  double number = 0.0;
  const auto [end, error] = std::from_chars(first, last, number);
  if (error != std::errc() || end != last || !std::isfinite(number)) {
    throw CommandError(name + " is not a number: \"" + text + "\"");
  }
  return number;
}

CommandText ParseCommandText(const std::string& text) {
  CommandText parsed;
  Cutter cutter(text);
  while (!cutter.IsAtEnd()) {
    bool isQuoted = false;
    const std::string word = cutter.Take(isQuoted);
    if (!isQuoted && word.empty()) throw CommandError("a value stands without a name");
    if (!cutter.TakeEquals()) {
      parsed.words.push_back(isQuoted ? word : UpperCase(word));
      continue;
    }
    if (cutter.IsAtEnd()) throw CommandError("no value stands behind " + UpperCase(word) + "=");
    parsed.values[UpperCase(word)] = cutter.Take(isQuoted);
  }
  return parsed;
}

const std::string& CommandText::Word(std::size_t n, const char* what) const {
  if (n >= words.size()) throw CommandError(std::string(what) + " is missing");
  return words[n];
}

int CommandText::Count(std::size_t n, const char* what) const {
  const std::string& word = Word(n, what);
  int count = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), count);
  if (error != std::errc() || end != word.data() + word.size()) {
    throw CommandError(std::string(what) + " is not a whole number: \"" + word + "\"");
  }
  return count;
}

double CommandText::Number(const std::string& name) const {
  const auto value = values.find(name);
  if (value == values.end()) throw CommandError(name + " is missing");
  return NumberOf(value->second, name);
}

bool CommandText::Flag(const std::string& name) const {
  const auto value = values.find(name);
  if (value == values.end()) throw CommandError(name + " is missing");
  const std::string flag = UpperCase(value->second);
  if (flag == "YES" || flag == "ON" || flag == "TRUE") return true;
  if (flag == "NO" || flag == "OFF" || flag == "FALSE") return false;
  throw CommandError(name + " must be YES or NO, not \"" + value->second + "\"");
}

void CommandText::Allow(std::size_t wordCount, const std::vector<std::string>& names) const {
  if (words.size() > wordCount)
    throw CommandError("\"" + words[wordCount] + "\" is not understood");
  for (const auto& [name, value] : values) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      throw CommandError(name + " is not understood");
    }
  }
}

}  // namespace qelhost
