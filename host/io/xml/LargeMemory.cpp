#include "LargeMemory.h"

#include <sys/mman.h>
#include <unistd.h>

namespace qelhost {

void PreferLargePages(void* memory, std::int64_t size) {
  constexpr std::int64_t kWorthIt = 4 << 20;
  if (size < kWorthIt) return;
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto address = reinterpret_cast<std::uintptr_t>(memory);
  const std::uintptr_t first = (address + page - 1) / page * page;
  const std::uintptr_t last = address + static_cast<std::uintptr_t>(size);
  // A system without them goes on with small ones.
  madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

}  // namespace qelhost
