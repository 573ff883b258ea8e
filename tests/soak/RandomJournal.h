#pragma once

#include "Copy.h"
#include "RandomData.h"

#include <string>
#include <vector>

namespace soak {

/// Lines about the data: picks of all kinds and what is done with them, views, blanking, and some
/// that fail.
std::vector<std::string> MakeRandomJournal(Random& random, const Copy& data);

}  // namespace soak
