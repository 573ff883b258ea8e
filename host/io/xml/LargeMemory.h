#pragma once

#include <cstdint>

namespace qelhost {

/// Memory is dear to touch for the first time, page by page; large pages are not. Asks for them for
/// memory that nobody has touched yet.
void PreferLargePages(void* memory, std::int64_t size);

}  // namespace qelhost
