#include "XmlTags.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "../XmlText.h"

namespace qelhost {
namespace {

constexpr char kBlanks[] = " \t\r\n";
constexpr std::size_t kLongestTag = 1 << 16;
/// Whoever looks an attribute up, VTK too, looks at all of them.
constexpr std::size_t kMostAttributes = 1 << 12;

std::string NameOf(const std::string& text) {
  if (text.rfind("!--", 0) == 0) return "!--";
  return text.substr(0, std::min(text.find_first_of(" \t\r\n/>", 1), text.size()));
}

/// One attribute from `at` on, which is left behind it. False when none stands there as it should.
bool ReadAttribute(const std::string& text, std::int64_t start, std::size_t& at,
                   XmlAttribute& attribute) {
  const std::size_t nameEnd = std::min(text.find_first_of(" \t\r\n=\"'<", at), text.size());
  const std::size_t equals = text.find_first_not_of(kBlanks, nameEnd);
  if (nameEnd == at || equals == std::string::npos || text[equals] != '=') return false;
  const std::size_t quote = text.find_first_not_of(kBlanks, equals + 1);
  if (quote == std::string::npos || (text[quote] != '"' && text[quote] != '\'')) return false;
  const std::size_t close = text.find(text[quote], quote + 1);
  if (close == std::string::npos) return false;
  attribute.name = text.substr(at, nameEnd - at);
  attribute.value = text.substr(quote + 1, close - quote - 1);
  attribute.begin = start + static_cast<std::int64_t>(quote) + 1;
  attribute.end = start + static_cast<std::int64_t>(close);
  at = close + 1;
  return attribute.value.find('<') == std::string::npos;
}

bool AreNamedApart(const std::vector<XmlAttribute>& attributes) {
  std::vector<std::string_view> names;
  names.reserve(attributes.size());
  for (const XmlAttribute& attribute : attributes) names.emplace_back(attribute.name);
  std::sort(names.begin(), names.end());
  return std::adjacent_find(names.begin(), names.end()) == names.end();
}

/// Fills in the attributes of a tag up to the first that is none. text: without its angle brackets.
void ReadAttributes(const std::string& text, XmlTag& tag) {
  const std::size_t end = text.size() - (tag.isClosed ? 1 : 0);
  std::size_t at = tag.name.size();
  for (;;) {
    const std::size_t next = std::min(text.find_first_not_of(kBlanks, at), end);
    if (next >= end) break;
    const bool isApart = next > at;
    XmlAttribute attribute;
    at = next;
    tag.isSound = isApart && tag.attributes.size() < kMostAttributes &&
                  ReadAttribute(text, tag.begin + 1, at, attribute);
    if (!tag.isSound) return;
    tag.attributes.push_back(std::move(attribute));
  }
  tag.isSound = AreNamedApart(tag.attributes);
}

bool StartsWith(const std::string& text, const char* start) { return text.rfind(start, 0) == 0; }

/// Whether the angle bracket behind a text that grows ends its tag: within quotes and in a comment
/// it does not.
class EndOfTag {
 public:
  bool IsBehind(const std::string& text) {
    if (StartsWith(text, "!--")) {
      return text.size() >= 5 && text.compare(text.size() - 2, 2, "--") == 0;
    }
    if (StartsWith(text, "!")) return true;
    if (StartsWith(text, "?")) return text.size() >= 2 && text.back() == '?';
    for (; m_seen < text.size(); ++m_seen) {
      const char c = text[m_seen];
      if (m_quote == 0 ? c == '"' || c == '\'' : c == m_quote) m_quote = m_quote == 0 ? c : 0;
    }
    return m_quote == 0;
  }

 private:
  std::size_t m_seen = 0;
  char m_quote = 0;
};

/// The bytes of the character at text[at], as far as XML allows it; 0 when it does not.
std::size_t LengthOfCharacter(const std::string& text, std::size_t at) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(at);
  if (lead < 0x80) return lead >= 0x20 || std::strchr("\t\r\n", static_cast<int>(lead)) ? 1 : 0;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || at + length > text.size()) return 0;
  std::uint32_t point = lead & (0xFFu >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0u) != 0x80) return 0;
    point = point << 6 | (byte(at + i) & 0x3Fu);
  }
  constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = point >= 0xD800 && point <= 0xDFFF;
  const bool isNone = point == 0xFFFE || point == 0xFFFF || point > 0x10FFFF;
  return point < kLeast[length] || isSurrogate || isNone ? 0 : length;
}

}  // namespace

std::optional<std::string> AttributeText(const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = text[at] == '\0' ? 0 : LengthOfCharacter(text, at);
    if (length == 0) return std::nullopt;
    at += length;
  }
  std::string value;
  for (const char c : Escaped(text)) {
    // A line break within quotes would be read as a blank.
    if (std::strchr("\t\r\n", c) == nullptr) {
      value += c;
    } else {
      value += "&#" + std::to_string(static_cast<int>(c)) + ";";
    }
  }
  return value;
}

const XmlAttribute* XmlTag::Find(const char* attribute) const {
  for (const XmlAttribute& candidate : attributes) {
    if (candidate.name == attribute) return &candidate;
  }
  return nullptr;
}

std::string XmlTag::Value(const char* attribute) const {
  const XmlAttribute* const found = Find(attribute);
  return found == nullptr ? std::string() : found->value;
}

XmlTagScanner::XmlTagScanner(std::istream& in) : m_in(in), m_buffer(1 << 20) {}

bool XmlTagScanner::Next(XmlTag& tag) {
  if (!SkipPast('<', nullptr)) return false;
  tag.begin = Position() - 1;
  if (!ReadToEndOfTag()) return false;
  tag.end = Position();
  tag.name = NameOf(m_text);
  tag.isClosed = m_text.size() > tag.name.size() && m_text.back() == '/';
  tag.isSound = true;
  tag.attributes.clear();
  ReadAttributes(m_text, tag);
  return true;
}

bool XmlTagScanner::ReadToEndOfTag() {
  m_text.clear();
  EndOfTag end;
  // No tag is longer: this is some other file.
  while (m_text.size() <= kLongestTag && SkipPast('>', &m_text)) {
    if (end.IsBehind(m_text)) return true;
    m_text += '>';
  }
  m_isStuck = m_text.size() > kLongestTag;
  return false;
}

bool XmlTagScanner::SkipPast(char wanted, std::string* text) {
  for (;;) {
    if (m_at == m_end && !Fill()) return false;
    const char* from = m_buffer.data() + m_at;
    const auto* found = static_cast<const char*>(std::memchr(from, wanted, m_end - m_at));
    const std::size_t length = found == nullptr ? m_end - m_at : found - from;
    if (text != nullptr) text->append(from, length);
    m_at += length;
    if (found != nullptr) {
      ++m_at;
      return true;
    }
    if (text != nullptr && text->size() > kLongestTag) return false;
  }
}

bool XmlTagScanner::Fill() {
  m_bufferStart += static_cast<std::int64_t>(m_end);
  m_in.read(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
  m_at = 0;
  m_end = static_cast<std::size_t>(m_in.gcount());
  return m_end > 0;
}

}  // namespace qelhost
