#pragma once

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

/// Builds the modeless dialog below the given parent; does nothing when it has been built.
void BuildDialog(LgIndex_t parent);

}  // namespace qelvane::qelutiltools
