#include "CMacroEngine.h"

#include <cctype>
#include <cstdlib>
#include <string_view>

namespace qelvane::qelutiltools {

namespace {

/// Case does not matter outside quotes, and is kept inside them.
std::string UpperOutsideQuotes(const std::string& text) {
  std::string upper = text;
  bool isQuoted = false;
  for (char& c : upper) {
    if (c == '"') {
      isQuoted = !isQuoted;
    } else if (!isQuoted) {
      c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
  }
  return upper;
}

enum class TokenState { Read, None, OpenQuote };

/// Reads a line from left to right.
class Scanner {
 public:
  explicit Scanner(const std::string& line) : m_line(line) {}

  void SkipBlanks() {
    while (Next() == ' ' || Next() == '\t') ++m_position;
  }

  /// The next character, not consumed; '\0' at the end.
  char Next() const { return m_position < m_line.size() ? m_line[m_position] : '\0'; }

  void Consume() { ++m_position; }

  /// A quoted text without its quotes, or everything up to '=' or white space. Without a character
  /// there is no token; an open quote takes the rest of the line.
  TokenState ReadToken(std::string& token) {
    token.clear();
    SkipBlanks();
    if (Next() == '\0') return TokenState::None;
    if (Next() == '"') return ReadQuoted(token);
    while (!IsTokenEnd(Next())) {
      token += Next();
      ++m_position;
    }
    return TokenState::Read;
  }

 private:
  static bool IsTokenEnd(char c) {
    return c == '\0' || c == '=' || std::isspace(static_cast<unsigned char>(c)) != 0;
  }

  TokenState ReadQuoted(std::string& token) {
    const std::size_t first = m_position + 1;
    const std::size_t closing = m_line.find('"', first);
    if (closing == std::string::npos) {
      m_position = m_line.size();
      return TokenState::OpenQuote;
    }
    token = m_line.substr(first, closing - first);
    m_position = closing + 1;
    return TokenState::Read;
  }

  const std::string& m_line;
  std::size_t m_position = 0;
};

/// Reads the value that stands behind an attribute's '='.
class ValueReader {
 public:
  ValueReader(CMacroEngine& engine, const MacroVocabulary& keywords, Scanner& scanner,
              const std::string& attribute)
      : m_engine(engine), m_keywords(keywords), m_scanner(scanner), m_attribute(attribute) {}

  bool Read(MacroValue& value) {
    m_scanner.SkipBlanks();
    const char next = m_scanner.Next();
    if (next == '"') return ReadStrings(value);
    if (next == '(' || std::isalpha(static_cast<unsigned char>(next)) != 0) {
      return ReadKeyword(value);
    }
    return ReadNumber(value);
  }

 private:
  bool Fail(const char* text) {
    m_engine.SetError("%s", text);
    return false;
  }

  bool ReadStrings(MacroValue& value) {
    value.Type = MacroValue::kStrings;
    while (true) {
      std::string text;
      if (m_scanner.ReadToken(text) != TokenState::Read) {
        return Fail("Missing trailing double quote");
      }
      if (!text.empty()) value.Strings.push_back(text);
      m_scanner.SkipBlanks();
      if (m_scanner.Next() != ',') return true;
      m_scanner.Consume();
      m_scanner.SkipBlanks();
      if (m_scanner.Next() != '"') return Fail("Expected a string after comma");
    }
  }

  bool ReadKeyword(MacroValue& value) {
    std::string token;
    if (m_scanner.ReadToken(token) != TokenState::Read) return Fail("No value found after '='");
    const auto keyword = m_keywords.textToId.find(token);
    if (keyword == m_keywords.textToId.end()) {
      m_engine.SetError("Invalid keyword found after \"%s\"", m_attribute.c_str());
      return false;
    }
    switch (keyword->second) {
      case Keyword_T:
      case Keyword_True:
      case Keyword_Yes:
        value.Type = MacroValue::kBoolean;
        value.Boolean = true;
        break;
      case Keyword_F:
      case Keyword_False:
      case Keyword_No:
        value.Type = MacroValue::kBoolean;
        value.Boolean = false;
        break;
      default:
        value.Type = MacroValue::kKeyword;
        value.Keyword = keyword->second;
        break;
    }
    return true;
  }

  bool ReadNumber(MacroValue& value) {
    std::string token;
    // An empty token, as in "ZONE==3", is no number either; reading on would stand still.
    if (m_scanner.ReadToken(token) != TokenState::Read || token.empty()) {
      return Fail("Expected number after '='");
    }
    value.Type = MacroValue::kNumber;
    value.Number = std::atof(token.c_str());
    return true;
  }

  CMacroEngine& m_engine;
  const MacroVocabulary& m_keywords;
  Scanner& m_scanner;
  const std::string& m_attribute;
};

}  // namespace

bool CMacroEngine::ParseCommand(const std::string& text, MacroCommand& out) {
  const std::string line = UpperOutsideQuotes(text);
  Scanner scanner(line);

  std::string token;
  const TokenState word = scanner.ReadToken(token);
  if (word != TokenState::Read) return true;
  const auto command = m_commands.textToId.find(token);
  if (command == m_commands.textToId.end()) {
    SetError("Invalid macro command string");
    return false;
  }
  out.Command = command->second;

  while (scanner.ReadToken(token) == TokenState::Read) {
    const auto attribute = m_attributes.textToId.find(token);
    if (attribute == m_attributes.textToId.end()) {
      SetError("Invalid macro attribute string");
      return false;
    }
    scanner.SkipBlanks();
    if (scanner.Next() != '=') {
      SetError("Expected '=' after macro attribute string \"%s\"", token.c_str());
      return false;
    }
    scanner.Consume();
    MacroAttribute parsed;
    parsed.Attribute = attribute->second;
    if (!ValueReader(*this, m_keywords, scanner, token).Read(parsed.Value)) return false;
    out.Attributes.push_back(parsed);
  }
  return true;
}

}  // namespace qelvane::qelutiltools
