#pragma once

#include "qelvane/Types.h"

#include <string>

namespace qelhost {

/// What the user's pointer does, in whatever frame is active.
struct Interaction {
  QelMouseMode_e mouseMode = Mouse_Select;
  QelProbeCallback_pf probeCallback = nullptr;  ///< gone with the probe mode
  std::string probeInstruction;

  /// Of the last probe; 0: none.
  LgIndex_t probedZone = 0;
  LgIndex_t probedCell = 0;
  LgIndex_t probedNode = 0;
};

}  // namespace qelhost
