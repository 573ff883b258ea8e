#pragma once

namespace qelvane::qelutiltools {

/// Probe callback of the surface pick's seed; isNearestPoint: CTRL was held.
void SelvaneSurfaceCallback(bool isNearestPoint);

}  // namespace qelvane::qelutiltools
