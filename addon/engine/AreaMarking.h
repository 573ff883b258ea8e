#pragma once

#include "HostServices.h"
#include "InsideSet.h"
#include "PickBoundary3d.h"
#include "PolyBoundary.h"

#include "qelvane/Types.h"

#include <functional>
#include <optional>

namespace qelvane::qelutiltools {

/// Sets the bits of the nodes of a zone that lie inside the boundary in hand.
using InsideFiller =
    std::function<void(LgIndex_t zone, const HostServices& services, InsideSet& inside)>;

/// Of a boundary drawn in a plot of the type; none for a plot that is not Cartesian. The boundary
/// must live as long, and the plot's axes and view stay.
std::optional<InsideFiller> FillerOf(const CPolyBoundary& boundary, QelPlotType_e plotType);
InsideFiller FillerOf(const CPickBoundary3d& boundary);

// Sets the bits of a zone's nodes that a boundary of the plot's plane has inside; inside has one
// bit per node. The services make it faster and change nothing else.
//
// throws  std::runtime_error when a coordinate cannot be read

/// As seen in a 2D frame. A circle is round on paper, where its own numbers live.
void MarkPlanar(const CPolyBoundary& boundary, LgIndex_t zone, LgIndex_t xVar, LgIndex_t yVar,
                const HostServices& services, InsideSet& inside);

/// As seen in a 3D frame: each node is projected into the plane of the geometries.
void MarkProjected(const CPolyBoundary& boundary, LgIndex_t zone, LgIndex_t xVar, LgIndex_t yVar,
                   LgIndex_t zVar, const HostServices& services, InsideSet& inside);

}  // namespace qelvane::qelutiltools
