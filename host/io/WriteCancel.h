// Watching files being written, and stopping it.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>

#include "FileProgress.h"

class vtkAlgorithm;

namespace qelhost {

/// Writing was stopped on demand. The target is as it was before; nothing is left beside it.
class WriteCancelled : public std::runtime_error {
 public:
  WriteCancelled();
};

/// What is asked, while files are written, whether to stop; null: nothing. It is asked from the
/// thread that writes.
void SetWriteCancel(bool (*isCancelled)());

/// While it lives, `tell` is called with how far the writing of this thread is, from 0 to 1; when
/// it answers false, WriteCancelled is thrown.
class WriteWatch {
 public:
  explicit WriteWatch(std::function<bool(double fraction)> tell);

 private:
  ProgressTold m_told;
};

// For what writes
// -------------------------------------

/// What is written while it lives is the n-th of count parts of the part before.
class WritePart {
 public:
  WritePart(std::int64_t n, std::int64_t count);

 private:
  ProgressPart m_part;
};

/// fraction: of the part in hand. Throws WriteCancelled.
void TellWrite(double fraction);

/// Throws WriteCancelled when the answer is yes.
void StopIfCancelled();

/// Tells while a writer runs, and lets the answer stop it in the middle of a file; StopIfCancelled
/// must follow its Write.
void StopWhenCancelled(vtkAlgorithm* writer);

}  // namespace qelhost
