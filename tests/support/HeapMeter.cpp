// Operator new and delete of the whole program, on malloc and free so that sanitizers see them.
#include "HeapMeter.h"

#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> liveBytes{0};
std::atomic<std::int64_t> peakBytes{0};

void* Counted(void* memory) {
  if (memory == nullptr) return nullptr;
  const auto size = static_cast<std::int64_t>(malloc_usable_size(memory));
  const std::int64_t live = liveBytes.fetch_add(size) + size;
  std::int64_t peak = peakBytes.load();
  while (live > peak && !peakBytes.compare_exchange_weak(peak, live)) {
  }
  return memory;
}

void* Allocate(std::size_t size) { return Counted(std::malloc(size == 0 ? 1 : size)); }

void* Allocate(std::size_t size, std::align_val_t alignment) {
  void* memory = nullptr;
  const auto boundary = static_cast<std::size_t>(alignment);
  return posix_memalign(&memory, boundary, size == 0 ? 1 : size) == 0 ? Counted(memory) : nullptr;
}

void* OrThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void Release(void* memory) {
  if (memory == nullptr) return;
  liveBytes.fetch_sub(static_cast<std::int64_t>(malloc_usable_size(memory)));
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return OrThrow(Allocate(size)); }
void* operator new[](std::size_t size) { return OrThrow(Allocate(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return OrThrow(Allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return OrThrow(Allocate(size, alignment));
}

void operator delete(void* memory) noexcept { Release(memory); }
void operator delete[](void* memory) noexcept { Release(memory); }
void operator delete(void* memory, std::size_t) noexcept { Release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Release(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { Release(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { Release(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { Release(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { Release(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { Release(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { Release(memory); }

namespace support {

HeapMeter::HeapMeter() : m_before(liveBytes.load()) { peakBytes.store(m_before); }

std::int64_t HeapMeter::PeakBytes() const { return peakBytes.load() - m_before; }

std::int64_t HeapMeter::LiveBytes() const { return liveBytes.load() - m_before; }

}  // namespace support
