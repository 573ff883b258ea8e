// An altered array as its file stores it.
#pragma once

#include <vtkDataArray.h>

#include <cstdint>
#include <string>
#include <vector>

#include "StoredArray.h"

namespace qelhost {

/// A run of bytes: of the source file, of the array's memory, or kept here.
struct EncodedRun {
  std::int64_t begin = 0;  ///< in the source file, when end is behind it
  std::int64_t end = 0;
  const char* memory = nullptr;
  std::int64_t memorySize = 0;
  std::vector<char> bytes;

  std::int64_t Size() const;
};

/// A payload, header and all.
using EncodedPayload = std::vector<EncodedRun>;

/// Encodes an array, whose memory must stay as it is meanwhile, in the form given. With the array
/// as it was stored before (null: it is new), blocks that hold the same values stay as they are
/// stored. Throws FileError.
EncodedPayload Encode(vtkDataArray* array, const PayloadFormat& format, const StoredArray* before);

std::int64_t SizeOf(const EncodedPayload& payload);

}  // namespace qelhost
