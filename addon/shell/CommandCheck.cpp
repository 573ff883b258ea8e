#include "CommandCheck.h"

#include "AddOnName.h"
#include "CMacroEngine.h"
#include "EntryPoint.h"
#include "HostServices.h"

#include "qelvane/QelUtil.h"

#include <cstring>
#include <string>

namespace qelvane::qelutiltools {

namespace {

/// What the last line that chose it makes picks do: change a variable, or hide cells.
enum class Mode { NotChosen, Alter, Blank };

Mode mode = Mode::NotChosen;

constexpr char kUndoBlankInAlterMode[] =
    "UNDOBLANK after an ALTER command sets the altered variable to 0 in every zone and leaves "
    "hidden "
    "cells hidden; place a BLANK command before it";

void FollowMode(std::int32_t command) {
  switch (command) {
    case Command_AlterElement:
    case Command_AlterArea:
    case Command_AlterSurface:
      mode = Mode::Alter;
      break;
    case Command_BlankElement:
    case Command_BlankArea:
    case Command_BlankSurface:
      mode = Mode::Blank;
      break;
    default:
      break;
  }
}

void Answer(const std::string& text, char** errMsg) {
  *errMsg = QelUtilStringAlloc(static_cast<LgIndex_t>(text.size()), "Command check");
  if (*errMsg != nullptr) std::strcpy(*errMsg, text.c_str());
}

/// An engine of its own, so that checking a line leaves the last error text as it is.
bool CheckCommand(const char* command, char** errMsg) {
  bool isGood = false;
  EntryPoint(nullptr, [&] {
    if (command == nullptr) {
      mode = Mode::NotChosen;
      isGood = true;
      return;
    }
    if (errMsg == nullptr) return;
    CMacroEngine engine;
    MacroCommand parsed;
    isGood = engine.ParseCommand(command, parsed);
    if (!isGood) {
      Answer(engine.GlobalError(), errMsg);
      return;
    }
    if (parsed.Command == Command_UndoBlank && mode == Mode::Alter) {
      Answer(kUndoBlankInAlterMode, errMsg);
    }
    FollowMode(parsed.Command);
  });
  return isGood;
}

}  // namespace

void OfferCommandCheck() {
  const auto* const extension = AskHostFor<QelCommandCheck_s>(QEL_EXTENSION_COMMAND_CHECK);
  if (extension != nullptr) extension->offer(ADDON_NAME, CheckCommand);
}

}  // namespace qelvane::qelutiltools
