#pragma once

#include <cstdint>

namespace support {

/// How much more memory the program's own allocations hold at most than they did when the meter was
/// made: what operator new has handed out, whatever the allocator, a sanitizer or other libraries
/// keep besides. One meter at a time.
class HeapMeter {
 public:
  HeapMeter();
  std::int64_t PeakBytes() const;  ///< since the meter was made, of all threads
  std::int64_t LiveBytes() const;  ///< now; less than nothing when more was released

 private:
  std::int64_t m_before;
};

}  // namespace support
