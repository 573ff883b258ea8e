#pragma once

#include <cstdint>

namespace marquell::bench {

/// How much more memory the whole process has allocated at most than when the meter was made: its
/// libraries and add-ons included, because it counts below all of them. One meter at a time;
/// nothing is counted while there is none.
class AllocationMeter {
 public:
  AllocationMeter();
  ~AllocationMeter();
  AllocationMeter(const AllocationMeter&) = delete;
  AllocationMeter& operator=(const AllocationMeter&) = delete;
  std::int64_t PeakBytes() const;
};

}  // namespace marquell::bench
