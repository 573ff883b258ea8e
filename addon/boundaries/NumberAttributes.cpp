#include "NumberAttributes.h"

#include <algorithm>

namespace qelvane::qelutiltools {

namespace {

const char* NameOf(const MacroCommand& command) {
  return MacroEngine.CommandName(command.Command).c_str();
}

}  // namespace

void ReportInvalidParameter(const MacroCommand& command) {
  MacroEngine.SetError("Invalid parameter in the %s command", NameOf(command));
}

void ReportBadValue(const MacroCommand& command) {
  MacroEngine.SetError("Bad value for parameter in %s macro", NameOf(command));
}

void ReportMissingParameter(const MacroCommand& command) {
  MacroEngine.SetError("Missing parameter in %s macro", NameOf(command));
}

bool ReadNumberAttributes(const MacroCommand& command, std::initializer_list<NumberSlot> slots) {
  for (const NumberSlot& slot : slots) *slot.target = slot.absent;

  for (const MacroAttribute& attribute : command.Attributes) {
    const auto* const slot =
        std::find_if(slots.begin(), slots.end(), [&attribute](const NumberSlot& candidate) {
          return candidate.attribute == attribute.Attribute;
        });
    if (slot == slots.end()) {
      ReportInvalidParameter(command);
      ReportBadValue(command);
      return false;
    }
    if (!MacroEngine.GetDouble(attribute.Value, *slot->target)) {
      ReportBadValue(command);
      return false;
    }
  }

  const bool isMissing = std::any_of(slots.begin(), slots.end(), [](const NumberSlot& slot) {
    return slot.isRequired && *slot.target == kAbsentNumber;
  });
  if (isMissing) ReportMissingParameter(command);
  return !isMissing;
}

}  // namespace qelvane::qelutiltools
