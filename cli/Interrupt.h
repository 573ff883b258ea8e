// Ctrl-C: the program ends at once while it has nothing on disk, else after clearing up.
#pragma once

namespace marquell::cli {

/// From now on an interrupt ends the process with kInterrupted.
void EndOnInterrupt();

/// While one lives, an interrupt is only noted: files are being written, and who writes them asks
/// IsInterrupted and clears up.
class HoldInterrupts {
 public:
  HoldInterrupts();
  ~HoldInterrupts();
  HoldInterrupts(const HoldInterrupts&) = delete;
  HoldInterrupts& operator=(const HoldInterrupts&) = delete;
};

bool IsInterrupted();

}  // namespace marquell::cli
