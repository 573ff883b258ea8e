// Damage that files of any format come to.
#pragma once

#include <string>

#include "Mutations.h"

namespace filetesting {

/// The bytes cut off, with bits turned, digits changed, lines or tags lost, bytes swapped, numbers
/// made large, or with several of these; the same again for the same state of `random`.
std::string Damaged(Random& random, std::string bytes);

}  // namespace filetesting
