// Macros and messages.
#include "ApiGuard.h"
#include "HostCommands.h"

#include "qelvane/QelUtil.h"

using namespace qelhost;

bool QelUtilMacroIsRecordingActive() {
  return Guarded(__func__, false, [](Host& host) { return host.recorder.IsActive(); });
}

bool QelUtilMacroIsBatchModeActive() {
  return Guarded(__func__, false, [](Host& host) { return host.messages.isBatch; });
}

bool QelUtilMacroRecordAddOnCommand(const char* addOnName, const char* command) {
  return Guarded(__func__, false, [&](Host& host) {
    if (addOnName == nullptr || *addOnName == '\0' || command == nullptr) return false;
    host.recorder.AddAddOnCommand(addOnName, command, StateOf(host.frames));
    return true;
  });
}

bool QelUtilMacroRecordRawCommand(const char* command) {
  return Guarded(__func__, false, [&](Host& host) {
    if (command == nullptr) return false;
    host.recorder.AddRawCommand(command);
    const Frame* const frame = host.frames.Active();
    if (frame != nullptr && IsBlankingCommand(command)) {
      host.recorder.TakeBlankingAsRecorded(frame->styles.blanking);
    }
    return true;
  });
}

bool QelUtilMacroExecuteCommand(const char* command) {
  return Guarded(__func__, false, [&](Host& host) {
    if (command == nullptr) return false;
    RunHostCommand(host, command);
    return true;
  });
}

void QelUtilDialogErrMsg(const char* message) {
  GuardedVoid(__func__, [&](Host& host) { host.messages.Show(TextOf(message), MessageBox_Error); });
}

bool QelUtilDialogMessageBox(const char* message, QelMessageBox_e kind) {
  return Guarded(__func__, false,
                 [&](Host& host) { return host.messages.Show(TextOf(message), kind); });
}

void QelUtilPleaseWait(const char* message, bool show) {
  GuardedVoid(__func__,
              [&](Host& host) { host.messages.Wait(show ? TextOf(message) : std::string()); });
}

bool QelUtilRedraw(bool /*doFullDrawing*/) {
  return Guarded(__func__, false, [](Host& host) {
    ++host.redrawCount;
    return true;
  });
}

void QelUtilHelp(const char* fileName, bool /*goToID*/, LgIndex_t /*helpID*/) {
  GuardedVoid(__func__, [&](Host& host) {
    if (fileName != nullptr) host.helpAsked.emplace_back(fileName);
  });
}
