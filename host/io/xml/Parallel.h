// Loops on VTK's pool whose body may throw.
#pragma once

#include <vtkSMPTools.h>

#include <atomic>
#include <cstdint>
#include <exception>
#include <mutex>

namespace qelhost {

/// body(i) for every i from 0 to count - 1, `grain` of them at a time. What is thrown first comes
/// out; what was not begun by then is left out.
template <class Body>
void ForEachInParallel(std::int64_t count, std::int64_t grain, Body&& body) {
  std::atomic<bool> hasFailed{false};
  std::exception_ptr failure;
  std::mutex failureMutex;
  vtkSMPTools::For(0, count, grain, [&](std::int64_t first, std::int64_t last) {
    try {
      for (std::int64_t i = first; i < last && !hasFailed; ++i) body(i);
    } catch (...) {
      const std::lock_guard<std::mutex> lock(failureMutex);
      if (!hasFailed.exchange(true)) failure = std::current_exception();
    }
  });
  if (failure != nullptr) std::rethrow_exception(failure);
}

}  // namespace qelhost
