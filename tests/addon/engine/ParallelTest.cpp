// Work handed to a host's pool.
#include "Parallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

namespace {

using qelvane::qelutiltools::ForWords;

LgIndex_t workerCount = 4;
std::atomic<int> rangeCount{0};

LgIndex_t Workers() { return workerCount; }

/// Every grain on a thread of its own, the last one first.
void OnThreads(std::int64_t first, std::int64_t last, std::int64_t grain,
               void (*body)(std::int64_t, std::int64_t, void*), void* context) {
  std::vector<std::thread> threads;
  const std::int64_t grainCount = (last - first + grain - 1) / grain;
  for (std::int64_t n = grainCount - 1; n >= 0; --n) {
    const std::int64_t from = first + n * grain;
    const std::int64_t to = last - from < grain ? last : from + grain;
    ++rangeCount;
    threads.emplace_back(body, from, to, context);
  }
  for (std::thread& thread : threads) thread.join();
}

constexpr QelParallel_s kThreads = {Workers, OnThreads};

/// How often each word was handed out.
std::vector<int> VisitsOf(const QelParallel_s* parallel, std::int64_t wordCount) {
  std::vector<std::atomic<int>> visits(static_cast<std::size_t>(wordCount));
  ForWords(parallel, wordCount, [&](std::int64_t first, std::int64_t last) {
    for (std::int64_t word = first; word < last; ++word) ++visits[static_cast<std::size_t>(word)];
  });
  return {visits.begin(), visits.end()};
}

TEST(Parallel, EveryWordIsHandedOutOnce) {
  workerCount = 4;
  for (const std::int64_t wordCount : {0, 1, 255, 4095, 4096, 5001}) {
    const std::vector<int> once(static_cast<std::size_t>(wordCount), 1);
    EXPECT_EQ(VisitsOf(&kThreads, wordCount), once);
    EXPECT_EQ(VisitsOf(nullptr, wordCount), once);
  }
}

TEST(Parallel, ThePoolIsUsedForMuchWorkAndWhereThereIsOne) {
  workerCount = 4;
  rangeCount = 0;
  VisitsOf(&kThreads, 4095);
  EXPECT_EQ(rangeCount, 0);
  VisitsOf(&kThreads, 4096);
  EXPECT_EQ(rangeCount, 16);
  workerCount = 1;
  VisitsOf(&kThreads, 4096);
  EXPECT_EQ(rangeCount, 16);
}

}  // namespace
