// Macros and messages.
#include "FakeCall.h"

#include <algorithm>

using namespace fakehost;

bool QelUtilMacroIsRecordingActive() {
  return !Fails(__func__) && Host().isRecording && !Host().isPlaying;
}

bool QelUtilMacroIsBatchModeActive() {
  Note(__func__);
  return Host().isBatch;
}

bool QelUtilMacroRecordAddOnCommand(const char* addOnName, const char* command) {
  if (Fails(__func__, addOnName, command) || addOnName == nullptr || command == nullptr) {
    return false;
  }
  if (Host().isRecording && !Host().isPlaying) {
    Host().recordedLines.push_back(std::string(addOnName) + " " + command);
  }
  return true;
}

bool QelUtilMacroRecordRawCommand(const char* command) {
  if (Fails(__func__, command) || command == nullptr) return false;
  if (Host().isRecording && !Host().isPlaying) {
    std::string line = command;
    if (!line.empty() && line.back() == '\n') line.pop_back();
    Host().recordedLines.push_back(line);
  }
  return true;
}

bool QelUtilMacroExecuteCommand(const char* command) {
  if (Fails(__func__, command) || command == nullptr) return false;
  Host().executedCommands.emplace_back(command);
  if (Host().onExecute == nullptr) return true;
  const bool wasPlaying = Host().isPlaying;
  Host().isPlaying = true;
  Host().lockOwners.push_back(kHostOwner);
  const bool isDone = Host().onExecute(command);
  Host().lockOwners.pop_back();
  Host().isPlaying = wasPlaying;
  return isDone;
}

void QelUtilDialogErrMsg(const char* message) {
  Note(__func__, message);
  Host().errorBoxes.emplace_back(message == nullptr ? "" : message);
}

bool QelUtilDialogMessageBox(const char* message, QelMessageBox_e kind) {
  Note(__func__, message, static_cast<int>(kind));
  Host().messageBoxes.push_back({message == nullptr ? "" : message, kind});
  if (kind != MessageBox_OkCancel && kind != MessageBox_YesNo) return true;
  if (Host().queuedAnswers.empty()) return false;
  const bool answer = Host().queuedAnswers.front();
  Host().queuedAnswers.erase(Host().queuedAnswers.begin());
  return answer;
}

void QelUtilPleaseWait(const char* message, bool show) {
  Note(__func__, message, show);
  std::vector<std::string>& shown = Host().waitMessages;
  if (show) {
    shown.emplace_back(message == nullptr ? "" : message);
    Host().waitHistory.push_back(shown.back());
  } else if (!shown.empty()) {
    shown.pop_back();
  } else {
    Host().Report("a wait message was taken away that was not shown");
  }
}

bool QelUtilRedraw(bool doFullDrawing) {
  if (Fails(__func__, doFullDrawing)) return false;
  ++Host().redrawCount;
  return true;
}

void QelUtilHelp(const char* fileName, bool goToID, LgIndex_t helpID) {
  Note(__func__, fileName, goToID, helpID);
}
