// What is said of a probed place.
#pragma once

#include <string>

#include "Frame.h"

namespace marquell::workbench {

/// Zone, index and every value of a cell, or of a node when one is given (else 0). Numbers count
/// from 1. Cell-centred variables at a node, and nodal ones at a cell, are left out.
std::string ReadOut(qelhost::Frame& frame, LgIndex_t zone, LgIndex_t cell, LgIndex_t node);

}  // namespace marquell::workbench
