#pragma once

#include "qelvane/Types.h"

#include <map>
#include <string>
#include <vector>

namespace callloghost {

/// As much of a host as the utilities ask for. It logs each call with its arguments, counts what it
/// has allocated and not got back, and can refuse any one call.
struct CallLogHost {
  bool hasDataSet = true;
  std::vector<std::string> zoneNames;
  double psi = 0.0;  ///< viewer angles, in radians
  double alpha = 0.0;
  double theta = 0.0;
  bool isBatch = false;
  bool isRecording = false;

  /// What reading a style setting yields, by its path as it stands in the log; one that is not
  /// here is left as the reader had it.
  std::map<std::string, double> styles;
  /// What setting styles answers, call for call; Ok after the last.
  std::vector<QelSetValueResult_e> styleAnswers;

  /// The call to refuse, as it stands in the log ("" for none), after letting some pass.
  std::string refused;
  int passesBeforeRefusal = 0;

  std::vector<std::string> log;  ///< without lock calls
  int lockDepth = 0;
  int openStrings = 0;
  int openSets = 0;
  int openLists = 0;
};

CallLogHost& Host();
void ResetHost();

}  // namespace callloghost
