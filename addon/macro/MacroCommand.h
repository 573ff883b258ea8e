#pragma once

#include "MacroVocabulary.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qelvane::qelutiltools {

/// One typed value of a command line; Type says which of the members holds it.
struct MacroValue {
  static constexpr std::int32_t kStrings = 0;
  static constexpr std::int32_t kNumber = 1;
  static constexpr std::int32_t kBoolean = 2;
  static constexpr std::int32_t kKeyword = 3;

  std::int32_t Type = kStrings;
  std::vector<std::string> Strings;
  double Number = 0.0;
  bool Boolean = false;
  std::int32_t Keyword = 0;
};

struct MacroAttribute {
  std::int32_t Attribute = 0;
  MacroValue Value;
};

/// A command word and its attributes in the order written. The same attribute may occur twice.
struct MacroCommand {
  std::int32_t Command = Command_None;
  std::vector<MacroAttribute> Attributes;
};

}  // namespace qelvane::qelutiltools
