#include "CommandCheck.h"

#include "AddOnName.h"
#include "CMacroEngine.h"
#include "EntryPoint.h"

#include "qelvane/Extensions.h"
#include "qelvane/QelUtil.h"

#include <cstring>
#include <string>

namespace qelvane::qelutiltools {

namespace {

/// An engine of its own, so that checking a line leaves the last error text as it is.
bool CheckCommand(const char* command, char** errMsg) {
  bool isGood = false;
  EntryPoint(nullptr, [&] {
    if (command == nullptr || errMsg == nullptr) return;
    CMacroEngine engine;
    MacroCommand parsed;
    isGood = engine.ParseCommand(command, parsed);
    if (isGood) return;
    const std::string& reason = engine.GlobalError();
    *errMsg = QelUtilStringAlloc(static_cast<LgIndex_t>(reason.size()), "Command check");
    if (*errMsg != nullptr) std::strcpy(*errMsg, reason.c_str());
  });
  return isGood;
}

}  // namespace

void OfferCommandCheck() {
  if (QelUtilExtensionGet == nullptr) return;
  const auto* const extension =
      static_cast<const QelCommandCheck_s*>(QelUtilExtensionGet(QEL_EXTENSION_COMMAND_CHECK));
  if (extension != nullptr) extension->offer(ADDON_NAME, CheckCommand);
}

}  // namespace qelvane::qelutiltools
