#include "AddOnName.h"
#include "CMacroEngine.h"
#include "HostCheck.h"
#include "HostLock.h"

#include "qelvane/QelUtil.h"

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <utility>
#include <vector>

namespace qelvane::qelutiltools {

namespace {

/// A whole number is written as one; "%d" holds no more than 32 bits.
std::string TextOf(double x) {
  constexpr double kLargestInt = 2147483646.0;
  constexpr double kSmallestInt = -2147483648.0;
  constexpr double kWholeTolerance = 1e-7;
  char text[64];
  if (std::fabs(std::floor(x) - x) < kWholeTolerance && x <= kLargestInt && x >= kSmallestInt) {
    std::snprintf(text, sizeof text, "%d", static_cast<std::int32_t>(x));
  } else {
    std::snprintf(text, sizeof text, "%g", x);
  }
  return text;
}

std::string TextOf(const std::vector<std::string>& strings) {
  if (strings.empty()) return "\"\"";
  std::string text;
  for (const std::string& string : strings) {
    if (!text.empty()) text += ',';
    text += '"' + string + '"';
  }
  return text;
}

}  // namespace

CMacroEngine::CMacroEngine()
    : m_commands(CommandVocabulary()),
      m_attributes(AttributeVocabulary()),
      m_keywords(KeywordVocabulary()) {}

void CMacroEngine::SetError(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  if (length >= 0) {
    std::vector<char> text(static_cast<std::size_t>(length) + 1);
    std::vsnprintf(text.data(), text.size(), format, again);
    m_globalError.assign(text.data(), static_cast<std::size_t>(length));
  }
  va_end(again);
}

void CMacroEngine::AddAttribute(std::int32_t attribute, MacroValue value) {
  CurrentCommand.Attributes.push_back({attribute, std::move(value)});
}

void CMacroEngine::AddStringAttribute(std::int32_t attribute, const std::string& text) {
  MacroValue value;
  value.Type = MacroValue::kStrings;
  value.Strings.push_back(text);
  AddAttribute(attribute, std::move(value));
}

void CMacroEngine::AddRangeAttribute(std::int32_t attribute, std::int32_t first,
                                     std::int32_t last) {
  char text[32];
  std::snprintf(text, sizeof text, "%d-%d", first, last);
  AddStringAttribute(attribute, text);
}

void CMacroEngine::AddStringListAttribute(std::int32_t attribute,
                                          const std::vector<std::string>& list) {
  if (list.empty()) return;
  MacroValue value;
  value.Type = MacroValue::kStrings;
  value.Strings = list;
  AddAttribute(attribute, std::move(value));
}

void CMacroEngine::AddNumberAttribute(std::int32_t attribute, double number) {
  MacroValue value;
  value.Type = MacroValue::kNumber;
  value.Number = number;
  AddAttribute(attribute, std::move(value));
}

void CMacroEngine::AddBooleanAttribute(std::int32_t attribute, bool flag) {
  MacroValue value;
  value.Type = MacroValue::kBoolean;
  value.Boolean = flag;
  AddAttribute(attribute, std::move(value));
}

void CMacroEngine::AddKeywordAttribute(std::int32_t attribute, std::int32_t keyword) {
  MacroValue value;
  value.Type = MacroValue::kKeyword;
  value.Keyword = keyword;
  AddAttribute(attribute, std::move(value));
}

void CMacroEngine::CommitCommand() {
  if (Deferring) {
    PendingCommands.push_back(CurrentCommand);
  } else {
    RecordCommand(CurrentCommand);
  }
}

void CMacroEngine::FlushDeferredCommands() {
  Deferring = false;
  // Taken out first: a command that the host refuses must not be recorded again by the next flush.
  const std::vector<MacroCommand> pending = std::exchange(PendingCommands, {});
  for (const MacroCommand& command : pending) RecordCommand(command);
}

std::string CMacroEngine::LineOf(const MacroCommand& command) const {
  std::string line = CommandName(command.Command);
  for (const MacroAttribute& attribute : command.Attributes) {
    line += ' ' + AttributeName(attribute.Attribute) + '=';
    const MacroValue& value = attribute.Value;
    switch (value.Type) {
      case MacroValue::kStrings:
        line += TextOf(value.Strings);
        break;
      case MacroValue::kNumber:
        line += TextOf(value.Number);
        break;
      case MacroValue::kBoolean:
        line += value.Boolean ? "T" : "F";
        break;
      default:
        line += KeywordName(value.Keyword);
        break;
    }
  }
  return line;
}

void CMacroEngine::RecordCommand(const MacroCommand& command) {
  const HostLock lock;
  if (!QelUtilMacroIsRecordingActive()) return;
  const std::string strFinalCommand = LineOf(command);
  if (!QelUtilMacroIsRecordingActive()) return;
  HOST_CHECK(QelUtilMacroRecordAddOnCommand(ADDON_NAME, strFinalCommand.c_str()));
}

CMacroEngine& TheMacroEngine() {
  static CMacroEngine engine;
  return engine;
}

CMacroEngine& MacroEngine = TheMacroEngine();

}  // namespace qelvane::qelutiltools
