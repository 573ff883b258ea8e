#pragma once

#include "PointBlock.h"
#include "RangeKernels.h"

#include "qelvane/Extensions.h"
#include "qelvane/Types.h"

#include <cstdint>

namespace qelvane::qelutiltools {

/// The values of one field, 64 of them at a time: read where they lie, or through the host's
/// accessor, or 0 throughout. Items count from 0.
class FieldColumn {
 public:
  FieldColumn() = default;  ///< 0 throughout, as a passive variable reads
  FieldColumn(const QelFieldData* field, QelFieldGet_pf get) : m_field(field), m_get(get) {}

  /// Reads them where they lie from now on; false, changing nothing, for a span of a type without a
  /// code or of fewer values than asked for.
  bool UseSpan(const QelFieldSpan_s& span, std::int64_t valueCount);

  /// Whether reading calls the host, which is for one thread alone.
  bool CallsHost() const { return m_get != nullptr; }

  /// Whether the values of this column and the two after it lie as x, y, z, x, y, z, ...
  bool IsFirstOfPoints(const FieldColumn& second, const FieldColumn& third) const;

  /// Whether 64 values lie side by side as floats or doubles, which can be compared as they are.
  bool IsRun() const;

  /// Which of 64 values from first on are in range. Only for a run.
  std::uint64_t RunInRange(std::int64_t first, const Range<double>& range,
                           const Range<float>& floatRange, const RangeKernels& kernels) const;

  /// The same for 64 points, of which this is the first column.
  std::uint64_t PointsInRange(std::int64_t first, const Ranges3<double>& ranges,
                              const Ranges3<float>& floatRanges, const RangeKernels& kernels) const;

  /// Reads count values, of those that come through the accessor the wanted ones alone.
  void Read(std::int64_t first, int count, std::uint64_t wanted, Values64& values) const;

 private:
  /// How values of one stored type are read from a place on, some bytes apart.
  struct Reader {
    std::int64_t valueSize;
    void (*read)(const char* first, std::int64_t stride, int count, double* values);
  };
  static const Reader* ReaderOf(QelFieldDataType_e type);

  const char* At(std::int64_t item) const { return m_first + item * m_stride; }

  const QelFieldData* m_field = nullptr;
  QelFieldGet_pf m_get = nullptr;  ///< null for a span and for 0 throughout
  const char* m_first = nullptr;   ///< null when there is no span
  QelFieldDataType_e m_type = FieldDataType_Invalid;
  std::int64_t m_stride = 0;  ///< in bytes
  const Reader* m_reader = nullptr;
};

}  // namespace qelvane::qelutiltools
