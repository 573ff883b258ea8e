// Reading a file for trial, where what reads it may fail in any way.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace qelhost {

/// What a trial may take.
struct TrialLimits {
  std::int64_t bytes;  ///< of memory, besides what this process has
  double busySeconds;  ///< of work, however much else this machine has to do
  double seconds;      ///< with all that it waits for

  /// More than a file of so many bytes can need.
  static TrialLimits For(std::int64_t fileBytes);
};

/// Some readers of VTK's, and the libraries under them, take a file's counts at their word, and
/// nothing outside them knows where these stand. Such a file is read in a process of its own first.
/// Throws FileError when that process dies, goes beyond the limits, or finds the file bad; and
/// ReadCancelled.
void ReadForTrial(const std::string& path, const TrialLimits& limits,
                  const std::function<void()>& read);

}  // namespace qelhost
