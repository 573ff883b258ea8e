#include "CMacroEngine.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <limits>

namespace qelvane::qelutiltools {

namespace {

/// A line can hold any number; converting one that an int cannot hold would be undefined.
std::int32_t TruncatedToInt(double number) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(number)) return 0;
  return static_cast<std::int32_t>(std::clamp<double>(number, Limits::min(), Limits::max()));
}

}  // namespace

bool CMacroEngine::GetString(const MacroValue& value, std::string& out) {
  if (value.Type != MacroValue::kStrings) {
    SetError("Expected a <string> value");
    return false;
  }
  out = value.Strings.empty() ? std::string() : value.Strings.front();
  return true;
}

bool CMacroEngine::GetStringList(const MacroValue& value, std::vector<std::string>& out) {
  if (value.Type != MacroValue::kStrings) {
    SetError("Expected one or more <string> values");
    return false;
  }
  out = value.Strings;
  return true;
}

bool CMacroEngine::GetBoolean(const MacroValue& value, bool& out) {
  if (value.Type != MacroValue::kBoolean) {
    SetError("Expected a <boolean> value.");
    return false;
  }
  out = value.Boolean;
  return true;
}

bool CMacroEngine::GetDouble(const MacroValue& value, double& out) {
  if (value.Type != MacroValue::kNumber) {
    SetError("Expected a <double> value");
    return false;
  }
  out = value.Number;
  return true;
}

bool CMacroEngine::GetDoubleInRange(const MacroValue& value, double min, double max, double& out) {
  double number = 0.0;
  if (!GetDouble(value, number)) return false;
  if (number < min || number > max) {
    SetError("Value is outside allowable range");
    return false;
  }
  out = number;
  return true;
}

bool CMacroEngine::GetInt(const MacroValue& value, std::int32_t& out) {
  if (value.Type != MacroValue::kNumber) {
    SetError("Expected an <int> value");
    return false;
  }
  out = TruncatedToInt(value.Number);
  return true;
}

bool CMacroEngine::GetIntInRange(const MacroValue& value, std::int32_t min, std::int32_t max,
                                 std::int32_t& out) {
  std::int32_t number = 0;
  if (!GetInt(value, number)) return false;
  if (number < min || number > max) {
    SetError("Value is outside allowable range");
    return false;
  }
  out = number;
  return true;
}

bool CMacroEngine::GetKeywordIndex(const MacroValue& value, std::int32_t count,
                                   const std::int32_t* keywords, std::int32_t& out) {
  if (value.Type != MacroValue::kKeyword) {
    SetError("Invalid type argument");
    return false;
  }
  const std::int32_t* const end = keywords + count;
  const std::int32_t* const found = std::find(keywords, end, value.Keyword);
  if (found == end) {
    SetError("Invalid macro argument: %s", KeywordName(value.Keyword).c_str());
    return false;
  }
  out = static_cast<std::int32_t>(found - keywords) + 1;
  return true;
}

bool CMacroEngine::GetKeywordMapped(const MacroValue& value, std::int32_t* out, std::int32_t key1,
                                    ...) {
  if (value.Type != MacroValue::kKeyword) {
    SetError("Invalid type argument");
    return false;
  }
  bool isFound = false;
  va_list pairs;
  va_start(pairs, key1);
  for (std::int32_t key = key1; key != Keyword_EndOfList && !isFound;) {
    const std::int32_t result = va_arg(pairs, std::int32_t);
    if (key == value.Keyword) {
      *out = result;
      isFound = true;
    } else {
      key = va_arg(pairs, std::int32_t);
    }
  }
  va_end(pairs);
  if (!isFound) SetError("Invalid macro argument: %s", KeywordName(value.Keyword).c_str());
  return isFound;
}

}  // namespace qelvane::qelutiltools
