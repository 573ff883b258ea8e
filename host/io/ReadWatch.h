// Watching files being read, and stopping it.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>

#include "FileProgress.h"

class vtkAlgorithm;

namespace qelhost {

/// Reading was stopped on demand.
class ReadCancelled : public std::runtime_error {
 public:
  ReadCancelled();
};

/// While it lives, `tell` is called with how far the reading of this thread is, from 0 to 1; when
/// it answers false, ReadCancelled is thrown.
class ReadWatch {
 public:
  explicit ReadWatch(std::function<bool(double fraction)> tell);

 private:
  ProgressTold m_told;
};

// For what reads
// -------------------------------------

/// What is read while it lives are the shares from one to another, of so many in all, of the part
/// before.
class ReadPart {
 public:
  ReadPart(std::int64_t from, std::int64_t to, std::int64_t all);

 private:
  ProgressPart m_part;
};

bool IsReadWatched();
/// fraction: of the part in hand. Throws ReadCancelled.
void TellRead(double fraction);
/// Tells while the reader runs and stops it; throws ReadCancelled then. work runs it.
void RunWatched(vtkAlgorithm* reader, const std::function<void()>& work);
/// The same for reader->Update().
void UpdateWatched(vtkAlgorithm* reader);

}  // namespace qelhost
