// Threads of the host's own, as unhelpful as the interface allows.
#include "FakeCall.h"
#include "FakeExtensions.h"

#include "qelvane/Extensions.h"

#include <algorithm>
#include <mutex>
#include <random>
#include <thread>

namespace fakehost {

std::atomic<bool> isRangeRunning{false};

namespace {

constexpr LgIndex_t kWorkers = 3;

using Body = void (*)(std::int64_t first, std::int64_t last, void* context);

struct Range {
  std::int64_t first;
  std::int64_t last;
};

/// Some of one grain, some of several, in no order.
std::vector<Range> Scrambled(std::int64_t first, std::int64_t last, std::int64_t grain) {
  static std::mt19937 engine;
  constexpr unsigned kMostGrains = 3;
  std::vector<Range> ranges;
  while (first < last) {
    const auto grains = static_cast<std::int64_t>(1 + engine() % kMostGrains);
    const std::int64_t end = last - first > grains * grain ? first + grains * grain : last;
    ranges.push_back({first, end});
    first = end;
  }
  std::shuffle(ranges.begin(), ranges.end(), engine);
  return ranges;
}

/// What bodies do that they must not; told when all have ended.
class Offences {
 public:
  void Add(const std::string& what) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_all.push_back(what);
  }
  void Tell() {
    for (const std::string& what : m_all) Host().Report(what);
    m_all.clear();
  }

 private:
  std::mutex m_mutex;
  std::vector<std::string> m_all;
};

Offences& TheOffences() {
  static auto* const offences = new Offences();
  return *offences;
}

void RunOne(const Range& range, Body body, void* context) {
  try {
    body(range.first, range.last, context);
  } catch (...) {
    TheOffences().Add("a body of forRange let an exception out");
  }
}

void RunAll(const std::vector<Range>& ranges, Body body, void* context) {
  std::atomic<std::size_t> next{0};
  const auto work = [&] {
    for (std::size_t at = next++; at < ranges.size(); at = next++)
      RunOne(ranges[at], body, context);
  };
  std::vector<std::thread> threads;
  for (LgIndex_t worker = 0; worker < kWorkers; ++worker) threads.emplace_back(work);
  for (std::thread& thread : threads) thread.join();
}

LgIndex_t Workers() {
  Note("workers");
  return kWorkers;
}

void ForRange(std::int64_t first, std::int64_t last, std::int64_t grain, Body body, void* context) {
  if (IsCalledByBody("forRange")) return;
  Note("forRange", first, last, grain);
  if (Host().extensions.count(QEL_EXTENSION_BULK_ACCESS) == 0) {
    Host().Report("forRange was called though no values are shown");
  }
  if (body == nullptr || grain < 1) {
    Host().Report("forRange got no body or no grain");
    return;
  }
  ++Host().rangeRuns;
  isRangeRunning = true;
  RunAll(Scrambled(first, last, grain), body, context);
  isRangeRunning = false;
  TheOffences().Tell();
}

const QelParallel_s kParallel = {Workers, ForRange};

}  // namespace

const void* ParallelService() { return &kParallel; }

void KeepOffence(const char* function) {
  TheOffences().Add(std::string(function) + " was called by a body of forRange");
}

}  // namespace fakehost
