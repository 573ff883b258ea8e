#include "Interrupt.h"

#include "Terminal.h"

#include <csignal>

#include <unistd.h>

namespace marquell::cli {

namespace {

volatile std::sig_atomic_t g_isHeld = 0;
volatile std::sig_atomic_t g_isInterrupted = 0;

void OnInterrupt(int) {
  g_isInterrupted = 1;
  if (g_isHeld != 0) return;
  constexpr char kText[] = "marquell: interrupted, nothing written\n";
  const ssize_t ignored = write(STDERR_FILENO, kText, sizeof kText - 1);
  static_cast<void>(ignored);
  _exit(kInterrupted);
}

}  // namespace

void EndOnInterrupt() {
  struct sigaction action = {};
  action.sa_handler = OnInterrupt;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  for (const int signal : kInterrupts) {
    struct sigaction before = {};
    sigaction(signal, nullptr, &before);
    // Whoever started the program wants it to outlive the terminal.
    if (signal == SIGHUP && before.sa_handler == SIG_IGN) continue;
    sigaction(signal, &action, nullptr);
  }
}

void HoldInterrupts() { g_isHeld = 1; }

bool IsInterrupted() { return g_isInterrupted != 0; }

}  // namespace marquell::cli
