// Stopping while files are written.
#pragma once

#include <stdexcept>

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

/// Throws WriteCancelled when the answer is yes.
void StopIfCancelled();

/// Lets the answer stop a writer in the middle of a file; StopIfCancelled must follow its Write.
void StopWhenCancelled(vtkAlgorithm* writer);

}  // namespace qelhost
