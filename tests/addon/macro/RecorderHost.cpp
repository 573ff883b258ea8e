#include "RecorderHost.h"

#include "qelvane/QelUtil.h"

namespace recorderhost {

RecorderHost& Host() {
  static RecorderHost host;
  return host;
}

void ResetHost() { Host() = RecorderHost(); }

namespace {

void NeedLock() {
  if (Host().lockDepth < 1) ++Host().callsWithoutLock;
}

}  // namespace
}  // namespace recorderhost

using recorderhost::Host;

void QelUtilLockStart(QelAddOn*) { ++Host().lockDepth; }
void QelUtilLockFinish(QelAddOn*) { --Host().lockDepth; }

bool QelUtilMacroIsRecordingActive(void) {
  recorderhost::NeedLock();
  const int asked = Host().recordingQueries++;
  const bool hasStopped = Host().stopsAfterQueries >= 0 && asked >= Host().stopsAfterQueries;
  return Host().isRecording && !hasStopped;
}

bool QelUtilMacroRecordAddOnCommand(const char* addOnName, const char* command) {
  recorderhost::NeedLock();
  if (Host().refusesLines) return false;
  Host().owners.push_back(addOnName);
  Host().lines.push_back(command);
  return true;
}
