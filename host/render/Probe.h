// Which face lies under a place of the plot.
#pragma once

#include <optional>

#include "PlotCamera.h"
#include "ZoneSurface.h"

namespace qelhost {

struct FaceHit {
  std::int64_t face = 0;
  double depth = 0.0;  ///< towards the viewer
};

/// The face nearest to the viewer there; of those equally near the last, which is drawn over the
/// others. Lines count within a distance in grid coordinates.
std::optional<FaceHit> FaceAt(const ZoneSurface& surface, const Projection& toPlane, double gridX,
                              double gridY, double lineReach);

/// The node of a zone's cell that is nearest to a position; both from 0.
std::int64_t NearestNode(Zone& zone, std::int64_t cell, const std::array<double, 3>& position);

}  // namespace qelhost
