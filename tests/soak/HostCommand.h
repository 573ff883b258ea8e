#pragma once

#include <string>

namespace soak {

/// Carries out, on the host in memory, one of the open host's own commands that journals here have.
/// False when it is none of them, or there is not what it is about.
bool CarryOut(const std::string& line);

}  // namespace soak
