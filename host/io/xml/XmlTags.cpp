#include "XmlTags.h"

#include <algorithm>
#include <cstring>

namespace qelhost {
namespace {

constexpr char kBlanks[] = " \t\r\n";

std::string NameOf(const std::string& text) {
  return text.substr(0, std::min(text.find_first_of(" \t\r\n/>", 1), text.size()));
}

/// text: the tag without its angle brackets, which begins at `start`.
std::vector<XmlAttribute> AttributesOf(const std::string& text, std::int64_t start) {
  std::vector<XmlAttribute> attributes;
  std::size_t at = text.find_first_of(kBlanks);
  while (at != std::string::npos) {
    at = text.find_first_not_of(" \t\r\n/", at);
    const std::size_t equals = at == std::string::npos ? at : text.find('=', at);
    if (equals == std::string::npos) break;
    const std::size_t quote = text.find_first_of("\"'", equals);
    const std::size_t close =
        quote == std::string::npos ? quote : text.find(text[quote], quote + 1);
    if (close == std::string::npos) break;
    XmlAttribute attribute;
    attribute.name = text.substr(at, equals - at);
    const std::size_t nameEnd = attribute.name.find_last_not_of(kBlanks);
    attribute.name.resize(nameEnd == std::string::npos ? 0 : nameEnd + 1);
    attribute.value = text.substr(quote + 1, close - quote - 1);
    attribute.begin = start + static_cast<std::int64_t>(quote) + 1;
    attribute.end = start + static_cast<std::int64_t>(close);
    attributes.push_back(std::move(attribute));
    at = close + 1;
  }
  return attributes;
}

}  // namespace

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
  m_text.clear();
  if (!SkipPast('>', &m_text)) return false;
  tag.end = Position();
  tag.name = NameOf(m_text);
  tag.isClosed = !m_text.empty() && m_text.back() == '/';
  tag.attributes = AttributesOf(m_text, tag.begin + 1);
  return true;
}

bool XmlTagScanner::SkipPast(char wanted, std::string* text) {
  constexpr std::size_t kLongestTag = 1 << 16;
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
    // No tag is that long: this is some other file.
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
