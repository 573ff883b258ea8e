// The tags of a VTK XML file, one after the other, with the places where they stand.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace qelhost {

/// Places count from 0, in bytes of the file.
struct XmlAttribute {
  std::string name;
  std::string value;  ///< as it stands there, entities unread
  std::int64_t begin = 0;
  std::int64_t end = 0;  ///< of the value, without its quotes
};

struct XmlTag {
  std::string name;  ///< "/DataArray" ends one; "!--" is a comment, "?xml" the declaration
  std::vector<XmlAttribute> attributes;
  std::int64_t begin = 0;  ///< of its angle bracket
  std::int64_t end = 0;    ///< behind the other
  bool isClosed = false;   ///< it ends itself
  bool isSound = true;     ///< its attributes are written as XML demands, and few enough

  const XmlAttribute* Find(const char* attribute) const;
  /// "" when there is none.
  std::string Value(const char* attribute) const;
};

/// The text as the value of an attribute that reads back the same; nothing when no XML file can
/// hold it: most control characters, and bytes that are no UTF-8.
std::optional<std::string> AttributeText(const std::string& text);

class XmlTagScanner {
 public:
  explicit XmlTagScanner(std::istream& in);

  /// Text between tags is skipped unread. False at the end of the file, and at something too long
  /// to be a tag.
  bool Next(XmlTag& tag);

  /// Whether the last Next has found something that was too long.
  bool IsStuck() const { return m_isStuck; }

 private:
  bool SkipPast(char wanted, std::string* text);
  bool ReadToEndOfTag();
  bool Fill();
  std::int64_t Position() const { return m_bufferStart + static_cast<std::int64_t>(m_at); }

  std::istream& m_in;
  std::vector<char> m_buffer;
  std::string m_text;
  std::int64_t m_bufferStart = 0;
  std::size_t m_at = 0;
  std::size_t m_end = 0;
  bool m_isStuck = false;
};

}  // namespace qelhost
