#pragma once

#include "qelvane/Types.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// What the apply button would write if it were pressed now: one bit for every value of the zone's
/// target variable. False when it would write nothing at once: the dialog is not open on what the
/// frame shows, there is no boundary, or a click is needed first. Afterwards every bit is either
/// set for a reason or 0. Shows no box, also when something goes wrong: hosts ask while the user
/// moves the mouse.
bool PreviewApply(LgIndex_t zone, std::uint64_t* bits, std::int64_t bitCount);

}  // namespace qelvane::qelutiltools
