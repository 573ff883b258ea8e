#pragma once

#include "FakeHost.h"
#include "PickReference.h"

#include <cstddef>
#include <vector>

/// Random zones, variables and boundaries in a host.
namespace extension {

template <class T, std::size_t count>
const T& OneOf(reference::Random& random, const T (&items)[count]) {
  return items[static_cast<std::size_t>(random.Below(static_cast<int>(count)))];
}

/// Up to three small zones of a type in a frame of the host, with odd coordinates and variables
/// "n1", "c1", "n2" and "c2": shared, passive, not writable, hidden at places.
void MakeRandomScene(reference::Random& random, QelZoneType_e type);

/// Any of the host's data, also one that is a coordinate.
LgIndex_t RandomVariable(reference::Random& random);

/// One that lies somewhere about nodes with coordinates up to reach.
reference::Boundary AnyBoundary(reference::Random& random, int reach);

/// The values of all zones and variables, one after the other; a passive variable has none.
std::vector<std::vector<unsigned char>> AllValues();

}  // namespace extension
