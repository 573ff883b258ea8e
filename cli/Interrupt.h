// Ctrl-C and other requests to end: the program ends at once while it has nothing on disk, else
// after clearing up.
#pragma once

#include <csignal>

namespace marquell::cli {

/// From the keyboard, from who manages the machine, and when the terminal goes.
constexpr int kInterrupts[] = {SIGINT, SIGTERM, SIGHUP};

/// From now on an interrupt ends the process with kInterrupted.
void EndOnInterrupt();

/// From now on an interrupt is only noted: files are being written, and who writes them asks
/// IsInterrupted and clears up. Once they are written it comes too late.
void HoldInterrupts();

bool IsInterrupted();

}  // namespace marquell::cli
