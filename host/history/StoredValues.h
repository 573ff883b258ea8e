// One component of a VTK array as bytes of its stored type, wherever it keeps them.
#pragma once

#include <cstdint>
#include <memory>

#include "FieldData.h"

namespace qelhost {

/// Bytes that nobody has set to anything: large copies are written once, not twice.
using RawBytes = std::unique_ptr<char[]>;
RawBytes MakeRawBytes(std::int64_t size);

/// Every value of a storage, those included that no zone shows. Values count from 0, one a tuple.
class StoredValues {
 public:
  /// Reads the array behind the view if that was not done yet. Throws ValuesError.
  explicit StoredValues(QelFieldData& view);

  /// False where there is no memory to see and no accessor that keeps every bit.
  bool IsReachable() const { return m_first != nullptr || m_isBits; }
  std::int64_t Count() const { return m_count; }
  int ValueSize() const { return m_valueSize; }
  int VtkType() const { return m_vtkType; }
  /// Whether several threads may read and write different values at the same time.
  bool IsPlainMemory() const { return m_first != nullptr; }

  /// The values one after the other: where they lie if they do, else copied to the buffer, which
  /// has room for them.
  const char* Packed(std::int64_t first, std::int64_t count, char* buffer) const;
  void CopyTo(std::int64_t first, std::int64_t count, char* target) const;
  void CopyFrom(std::int64_t first, std::int64_t count, const char* source) const;

 private:
  vtkDataArray* m_array;
  int m_component;
  int m_vtkType;
  bool m_isBits;
  int m_valueSize;
  char* m_first = nullptr;
  std::int64_t m_stride = 0;  ///< bytes
  std::int64_t m_count;
};

}  // namespace qelhost
