// Which extensions this host offers.
#pragma once

#include <string>

namespace qelhost {

/// Answers null for an extension from now on, or gives it again: for programs that measure or
/// compare what add-ons do without it. User-interface thread only.
void WithholdExtension(const std::string& id, bool withhold);

}  // namespace qelhost
