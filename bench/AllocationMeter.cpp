// The C library's allocator of this program, with a counter before it. An add-on brings operator
// new of its own, so that is too high up to count at.
#include "AllocationMeter.h"

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstddef>

namespace {

std::atomic<bool> isCounting{false};
std::atomic<std::int64_t> liveBytes{0};
std::atomic<std::int64_t> peakBytes{0};

void* Counted(void* memory) {
  if (memory == nullptr || !isCounting.load(std::memory_order_relaxed)) return memory;
  const auto size = static_cast<std::int64_t>(malloc_usable_size(memory));
  const std::int64_t live = liveBytes.fetch_add(size) + size;
  std::int64_t peak = peakBytes.load();
  while (live > peak && !peakBytes.compare_exchange_weak(peak, live)) {
  }
  return memory;
}

void Uncount(void* memory) {
  if (memory == nullptr || !isCounting.load(std::memory_order_relaxed)) return;
  liveBytes.fetch_sub(static_cast<std::int64_t>(malloc_usable_size(memory)));
}

}  // namespace

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) { return Counted(__libc_malloc(size)); }

void* calloc(std::size_t count, std::size_t size) { return Counted(__libc_calloc(count, size)); }

void* realloc(void* memory, std::size_t size) {
  Uncount(memory);
  return Counted(__libc_realloc(memory, size));
}

void* memalign(std::size_t alignment, std::size_t size) {
  return Counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return Counted(__libc_memalign(alignment, size));
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  *memory = Counted(__libc_memalign(alignment, size));
  return *memory == nullptr ? ENOMEM : 0;
}

void free(void* memory) {
  Uncount(memory);
  __libc_free(memory);
}

}  // extern "C"

namespace marquell::bench {

AllocationMeter::AllocationMeter() {
  liveBytes.store(0);
  peakBytes.store(0);
  isCounting.store(true);
}

AllocationMeter::~AllocationMeter() { isCounting.store(false); }

std::int64_t AllocationMeter::PeakBytes() const { return peakBytes.load(); }

}  // namespace marquell::bench
