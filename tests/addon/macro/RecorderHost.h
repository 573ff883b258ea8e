#pragma once

#include <string>
#include <vector>

namespace recorderhost {

/// As much of a host as the grammar asks for: a lock and a macro recorder.
struct RecorderHost {
  bool isRecording = true;
  bool refusesLines = false;
  int stopsAfterQueries = -1;  ///< recording ends after that many questions; never when negative
  int recordingQueries = 0;
  int lockDepth = 0;
  int callsWithoutLock = 0;
  std::vector<std::string> owners;  ///< the add-on name of each line
  std::vector<std::string> lines;
};

/// The host that the functions work on; a test starts with a fresh one.
RecorderHost& Host();
void ResetHost();

}  // namespace recorderhost
