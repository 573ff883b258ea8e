#include "FieldColumn.h"

#include "Bits.h"

#include <cstddef>
#include <cstring>

namespace qelvane::qelutiltools {

namespace {

template <class T>
void ReadAs(const char* first, std::int64_t stride, int count, double* values) {
  if (stride == static_cast<std::int64_t>(sizeof(T))) {
    for (int n = 0; n < count; ++n) {
      T value;
      std::memcpy(&value, first + n * static_cast<std::int64_t>(sizeof(T)), sizeof value);
      values[n] = static_cast<double>(value);
    }
    return;
  }
  for (int n = 0; n < count; ++n) {
    T value;
    std::memcpy(&value, first + n * stride, sizeof value);
    values[n] = static_cast<double>(value);
  }
}

}  // namespace

const FieldColumn::Reader* FieldColumn::ReaderOf(QelFieldDataType_e type) {
  static constexpr Reader kFloat = {sizeof(float), ReadAs<float>};
  static constexpr Reader kDouble = {sizeof(double), ReadAs<double>};
  static constexpr Reader kInt32 = {sizeof(std::int32_t), ReadAs<std::int32_t>};
  static constexpr Reader kInt16 = {sizeof(std::int16_t), ReadAs<std::int16_t>};
  static constexpr Reader kByte = {sizeof(std::uint8_t), ReadAs<std::uint8_t>};
  static constexpr Reader kInt64 = {sizeof(std::int64_t), ReadAs<std::int64_t>};
  switch (type) {
    case FieldDataType_Float:
      return &kFloat;
    case FieldDataType_Double:
      return &kDouble;
    case FieldDataType_Int32:
      return &kInt32;
    case FieldDataType_Int16:
      return &kInt16;
    case FieldDataType_Byte:
      return &kByte;
    case FieldDataType_Int64:
      return &kInt64;
    default:
      return nullptr;
  }
}

bool FieldColumn::UseSpan(const QelFieldSpan_s& span, std::int64_t valueCount) {
  const Reader* const reader = ReaderOf(span.type);
  if (reader == nullptr || span.first == nullptr || span.count < valueCount) return false;
  m_get = nullptr;
  m_first = static_cast<const char*>(span.first);
  m_type = span.type;
  m_stride = span.stride;
  m_reader = reader;
  return true;
}

bool FieldColumn::IsFirstOfPoints(const FieldColumn& second, const FieldColumn& third) const {
  if (m_type != FieldDataType_Float && m_type != FieldDataType_Double) return false;
  const auto follows = [this](const FieldColumn& other, int place) {
    return other.m_type == m_type && other.m_stride == m_stride &&
           other.m_first == m_first + place * m_reader->valueSize;
  };
  return m_stride == 3 * m_reader->valueSize && follows(second, 1) && follows(third, 2);
}

bool FieldColumn::IsRun() const {
  return (m_type == FieldDataType_Float || m_type == FieldDataType_Double) &&
         m_stride == m_reader->valueSize;
}

std::uint64_t FieldColumn::RunInRange(std::int64_t first, const Range<double>& range,
                                      const Range<float>& floatRange,
                                      const RangeKernels& kernels) const {
  return m_type == FieldDataType_Float
             ? kernels.floats(reinterpret_cast<const float*>(At(first)), floatRange)
             : kernels.doubles(reinterpret_cast<const double*>(At(first)), range);
}

std::uint64_t FieldColumn::PointsInRange(std::int64_t first, const Ranges3<double>& ranges,
                                         const Ranges3<float>& floatRanges,
                                         const RangeKernels& kernels) const {
  return m_type == FieldDataType_Float
             ? kernels.floatPoints(reinterpret_cast<const float*>(At(first)), floatRanges)
             : kernels.doublePoints(reinterpret_cast<const double*>(At(first)), ranges);
}

void FieldColumn::Read(std::int64_t first, int count, std::uint64_t wanted,
                       Values64& values) const {
  if (m_reader != nullptr) {
    m_reader->read(At(first), m_stride, count, values.data());
  } else if (m_get != nullptr) {
    VisitBits(wanted, [&](int bit) {
      values[static_cast<std::size_t>(bit)] = m_get(m_field, static_cast<LgIndex_t>(first + bit));
    });
  } else {
    values.fill(0.0);
  }
}

}  // namespace qelvane::qelutiltools
