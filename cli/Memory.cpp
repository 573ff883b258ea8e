#include "Memory.h"

#include "Terminal.h"

#include <atomic>
#include <cstdlib>
#include <exception>
#include <new>

#include <unistd.h>

namespace marquell::cli {

namespace {

/// Costs address space alone until it is needed.
constexpr std::size_t kReserveBytes = std::size_t{64} << 20;

std::atomic<void*> g_reserve{nullptr};

void GiveReserveOrFail() {
  void* const reserve = g_reserve.exchange(nullptr);
  if (reserve == nullptr) throw std::bad_alloc();
  std::free(reserve);
}

[[noreturn]] void EndForWantOfMemory() {
  try {
    const std::exception_ptr failure = std::current_exception();
    if (failure != nullptr) std::rethrow_exception(failure);
  } catch (const std::bad_alloc&) {
    PrintNoMemory();
    _exit(kFileFailed);
  } catch (...) {
    std::abort();
  }
  std::abort();
}

}  // namespace

void KeepMemoryBack() {
  g_reserve = std::malloc(kReserveBytes);
  std::set_new_handler(GiveReserveOrFail);
  std::set_terminate(EndForWantOfMemory);
}

void PrintNoMemory() {
  constexpr char kText[] = "marquell: there is not enough memory for this data set\n";
  const ssize_t ignored = write(STDERR_FILENO, kText, sizeof kText - 1);
  static_cast<void>(ignored);
}

}  // namespace marquell::cli
