#pragma once

#include <string>

namespace fault {

/// Whether this may be heard when a call of the function is refused; see Difference.
///
/// line  what is played; empty when somebody acts
bool IsExpected(const std::string& function, const std::string& line,
                const std::string& difference);

}  // namespace fault
