// Damage of every kind that files of VTK's XML formats come to.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace filetesting {

using Random = std::mt19937;

/// From 0 on.
inline std::size_t Below(Random& random, std::size_t limit) { return random() % limit; }

struct Seed {
  std::string name;
  std::string extension;
  std::string bytes;
  std::vector<std::size_t> headers;  ///< where the headers of raw payloads begin
};

/// The seed's bytes with something wrong in markup, headers or numbers, or in two of them; the same
/// again for the same state of `random`.
std::string Mutated(Random& random, const Seed& seed);

}  // namespace filetesting
