#pragma once

#include "InsideSet.h"

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

/// Leaves in the set only the nodes that can be reached from the seed over the zone's surface
/// without leaving the set. The surface of a volume is made of the cell faces that have no
/// neighbour, that of an ordered zone of the six sides of its index block; a zone of surface cells
/// is walked from cell to cell, a polygonal one along its edges.
///
/// seed     a node of the zone, from 1
/// returns  false, with the set as it was, when the seed is not in the set or not on the surface,
///          and when the host does not give the zone's connectivity
///
/// Each node that is reached is looked at once, with the cells around it. Takes the lock.
bool SearchSurface(LgIndex_t zone, LgIndex_t seed, InsideSet& inside);

// One for each way in which a zone keeps its cells; the seed counts from 0 and is in the set.
bool SearchOrderedSurface(LgIndex_t zone, std::int64_t seed, InsideSet& inside);
bool SearchElementSurface(LgIndex_t zone, std::int64_t seed, InsideSet& inside);
bool SearchFaceMapSurface(LgIndex_t zone, std::int64_t seed, InsideSet& inside);

}  // namespace qelvane::qelutiltools
