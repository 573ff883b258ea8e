#pragma once

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

/// Told by the host of every change of its state.
void StateChangeCallback(QelStateChange_t change);

}  // namespace qelvane::qelutiltools
