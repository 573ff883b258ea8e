#include "ValueModifier.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace qelvane::qelutiltools {

namespace {

constexpr char kOperators[] = "=+-*/";
constexpr char kNumberStarts[] = "0123456789.+-";

/// strchr finds the terminator too, which is no character of the list.
bool IsOneOf(char c, const char* list) { return c != '\0' && std::strchr(list, c) != nullptr; }

}  // namespace

std::optional<ValueModifier> ParseModifierText(const std::string& text) {
  std::string compact = text;
  compact.erase(std::remove(compact.begin(), compact.end(), ' '), compact.end());
  if (compact.empty()) return std::nullopt;

  ValueModifier modifier{ValueModifier::kAssign, 0.0};
  const char* number = compact.c_str();
  if (IsOneOf(*number, kOperators)) {
    modifier.op = static_cast<std::uint32_t>(std::strchr(kOperators, *number) - kOperators);
    ++number;
  }
  if (*number != '\0' && !IsOneOf(*number, kNumberStarts)) return std::nullopt;

  modifier.value = std::atof(number);
  if (modifier.op == ValueModifier::kDivide && modifier.value == 0.0) return std::nullopt;
  return modifier;
}

std::string FormatModifier(const ValueModifier& modifier) {
  char text[64];
  std::snprintf(text, sizeof text, "%c%g", kOperators[modifier.op], modifier.value);
  return text;
}

std::optional<ValueModifier> InverseOf(const ValueModifier& modifier) {
  switch (modifier.op) {
    case ValueModifier::kAdd:
      return ValueModifier{ValueModifier::kSubtract, modifier.value};
    case ValueModifier::kSubtract:
      return ValueModifier{ValueModifier::kAdd, modifier.value};
    case ValueModifier::kMultiply:
      if (modifier.value == 0.0) return std::nullopt;
      return ValueModifier{ValueModifier::kDivide, modifier.value};
    case ValueModifier::kDivide:
      return ValueModifier{ValueModifier::kMultiply, modifier.value};
    default:
      return std::nullopt;
  }
}

}  // namespace qelvane::qelutiltools
