#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qelvane::qelutiltools {

/// How an alteration changes a value: an index into "=+-*/" and the operand.
struct ValueModifier {
  static constexpr std::uint32_t kAssign = 0;
  static constexpr std::uint32_t kAdd = 1;
  static constexpr std::uint32_t kSubtract = 2;
  static constexpr std::uint32_t kMultiply = 3;
  static constexpr std::uint32_t kDivide = 4;

  std::uint32_t op = kAdd;
  double value = 0.0;
};

/// Reads a modifier as a user types it, "*1.4" or "99" (which assigns). A leading sign is always
/// the operator, so a negative value to assign is written "=-33". An operator alone has the value
/// 0. Nothing when the text is empty, does not begin like a number, or divides by 0.
std::optional<ValueModifier> ParseModifierText(const std::string& text);

/// The modifier as shown and recorded: the operator and the value with six significant digits.
std::string FormatModifier(const ValueModifier& modifier);

/// The modifier that takes an applied one back, or nothing for = and for *0.
std::optional<ValueModifier> InverseOf(const ValueModifier& modifier);

/// The new value. For = the current value does not matter and need not be read.
inline double ApplyModifier(const ValueModifier& modifier, double current) {
  switch (modifier.op) {
    case ValueModifier::kAssign:
      return modifier.value;
    case ValueModifier::kAdd:
      return current + modifier.value;
    case ValueModifier::kSubtract:
      return current + (0 - modifier.value);
    case ValueModifier::kMultiply:
      return current * modifier.value;
    case ValueModifier::kDivide:
      return current / modifier.value;
    default:
      return current;
  }
}

}  // namespace qelvane::qelutiltools
