// Text of XML files.
#pragma once

#include <optional>
#include <string>

namespace qelhost {

/// With entities where a character would end the value of an attribute or begin a tag.
std::string Escaped(const std::string& text);

/// The text of an attribute with its entities read and breaks of lines as blanks, as XML has it;
/// nothing when an entity is none of its own five.
std::optional<std::string> Unescaped(const std::string& text);

/// The shortest decimal text that reads back as the same number.
std::string ShortestNumber(double value);

}  // namespace qelhost
