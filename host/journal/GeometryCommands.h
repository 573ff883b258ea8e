#pragma once

#include "Geometry.h"
#include "HostCommands.h"

#include <string>

namespace qelhost {

/// "$!GEOMETRY ...": drawing, selecting, moving and deleting the figures on a frame. Coordinates
/// are grid coordinates; a polyline's points are relative to its anchor.
CommandAction ParseGeometry(const std::string& rest);

/// What ParseGeometry reads, numbers with six significant digits.
std::string TextOf(const Geometry& geometry);

}  // namespace qelhost
