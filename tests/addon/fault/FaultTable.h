#pragma once

#include <string>

namespace fault {

/// Whether this may be heard when a call of the function is refused; see Difference.
bool IsExpected(const std::string& function, const std::string& difference);

}  // namespace fault
