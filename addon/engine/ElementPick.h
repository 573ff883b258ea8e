#pragma once

namespace qelvane::qelutiltools {

/// Probe callback of the single-element pick; isNearestPoint: CTRL was held.
void SelvaneCellCallback(bool isNearestPoint);

}  // namespace qelvane::qelutiltools
