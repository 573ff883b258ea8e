#pragma once

#include "HostServices.h"
#include "InsideSet.h"
#include "PolyBoundary.h"

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

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
