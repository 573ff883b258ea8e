#pragma once

#include "CMacroEngine.h"

#include <cstdint>
#include <initializer_list>

namespace qelvane::qelutiltools {

/// What a number attribute holds that the command does not give.
constexpr double kAbsentNumber = -9.99e99;

/// One attribute that a boundary command accepts. Two slots may share a target: the later
/// attribute in the command wins.
struct NumberSlot {
  std::int32_t attribute = 0;
  double* target = nullptr;  ///< set to `absent` first, then to the value given
  bool isRequired = true;
  double absent = kAbsentNumber;
};

/// Reads the numbers of a boundary command in the order written, stopping at the first fault.
/// False with the reason in the macro engine's error text: an attribute without a slot, a value
/// that is no number, or a required number that is absent.
bool ReadNumberAttributes(const MacroCommand& command, std::initializer_list<NumberSlot> slots);

/// The three faults of a boundary command, each with the command's keyword in its text.
void ReportInvalidParameter(const MacroCommand& command);
void ReportBadValue(const MacroCommand& command);
void ReportMissingParameter(const MacroCommand& command);

}  // namespace qelvane::qelutiltools
