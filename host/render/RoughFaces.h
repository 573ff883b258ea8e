#pragma once

#include "ZoneSurface.h"

namespace qelhost {

/// Fewer faces that look alike from afar, by nodes of the zone: corners that lie together in one
/// of the cubes, so many along the longest side, become one of them. What is left of a face keeps
/// its cell.
FaceList RoughFaces(const ZoneSurface& surface, int cubes);

}  // namespace qelhost
