#pragma once

#include <chrono>
#include <ctime>

namespace marquell::bench {

/// What something took, in milliseconds: of all threads' time on processors, and on the wall.
struct Took {
  double cpu = 0.0;
  double wall = 0.0;
};

template <class Work>
Took Timed(Work&& work) {
  const auto wallStart = std::chrono::steady_clock::now();
  const auto cpuNow = [] {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return 1e3 * static_cast<double>(now.tv_sec) + 1e-6 * static_cast<double>(now.tv_nsec);
  };
  const double cpuStart = cpuNow();
  work();
  const double cpu = cpuNow() - cpuStart;
  const std::chrono::duration<double, std::milli> wall =
      std::chrono::steady_clock::now() - wallStart;
  return {cpu, wall.count()};
}

}  // namespace marquell::bench
