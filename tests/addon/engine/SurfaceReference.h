#pragma once

#include "FakeData.h"

#include <optional>
#include <set>

namespace reference {

using Nodes = std::set<LgIndex_t>;

/// The nodes of the inside set that can be reached from the seed over the surface of the mesh, by
/// the plainest recursion and by search through all elements: for small meshes. Nothing when the
/// seed is not inside or not on the surface. Nodes count from 1.
std::optional<Nodes> Reached(const fakehost::Mesh& mesh, LgIndex_t seed, const Nodes& inside);

}  // namespace reference
