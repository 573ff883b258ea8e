// Text of XML files.
#pragma once

#include <string>

namespace qelhost {

/// With entities where a character would end the value of an attribute or begin a tag.
std::string Escaped(const std::string& text);

/// The shortest decimal text that reads back as the same number.
std::string ShortestNumber(double value);

}  // namespace qelhost
