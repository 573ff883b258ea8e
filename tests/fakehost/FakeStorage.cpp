#include "FakeData.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <type_traits>

namespace fakehost {

namespace {

template <class T>
T Convert(double value) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(value);
  } else {
    if (std::isnan(value)) return 0;
    const double rounded = std::round(value);
    // The largest 64-bit integers are not doubles, so the bound itself is already outside.
    if (rounded >= static_cast<double>(std::numeric_limits<T>::max())) {
      return std::numeric_limits<T>::max();
    }
    if (rounded <= static_cast<double>(std::numeric_limits<T>::lowest())) {
      return std::numeric_limits<T>::lowest();
    }
    return static_cast<T>(rounded);
  }
}

template <class T>
double GetTyped(const unsigned char* at) {
  T value;
  std::memcpy(&value, at, sizeof value);
  return static_cast<double>(value);
}

template <class T>
void SetTyped(unsigned char* at, double value) {
  const T stored = Convert<T>(value);
  std::memcpy(at, &stored, sizeof stored);
}

struct TypeRow {
  StoredType type;
  QelFieldDataType_e code;
  std::size_t size;
  double (*get)(const unsigned char* at);
  void (*set)(unsigned char* at, double value);
};

template <class T>
constexpr TypeRow Row(StoredType type, QelFieldDataType_e code) {
  return {type, code, sizeof(T), GetTyped<T>, SetTyped<T>};
}

// In the order of the enumeration.
constexpr TypeRow kTypes[] = {Row<float>(StoredType::Float, FieldDataType_Float),
                              Row<double>(StoredType::Double, FieldDataType_Double),
                              Row<std::int32_t>(StoredType::Int32, FieldDataType_Int32),
                              Row<std::int16_t>(StoredType::Int16, FieldDataType_Int16),
                              Row<std::uint8_t>(StoredType::Byte, FieldDataType_Byte),
                              Row<std::int64_t>(StoredType::Int64, FieldDataType_Int64),
                              Row<std::int8_t>(StoredType::Int8, FieldDataType_Invalid),
                              Row<std::uint16_t>(StoredType::UInt16, FieldDataType_Invalid),
                              Row<std::uint32_t>(StoredType::UInt32, FieldDataType_Invalid),
                              Row<std::uint64_t>(StoredType::UInt64, FieldDataType_Invalid)};

const TypeRow& RowOf(StoredType type) { return kTypes[static_cast<std::size_t>(type)]; }

}  // namespace

Storage::Storage(StoredType storedType, std::int64_t valueCount)
    : type(storedType),
      count(valueCount),
      bytes(static_cast<std::size_t>(valueCount) * SizeOf(storedType)) {}

double Storage::Get(std::int64_t index) const {
  return RowOf(type).get(bytes.data() + static_cast<std::size_t>(index) * SizeOf(type));
}

void Storage::Set(std::int64_t index, double value) {
  RowOf(type).set(bytes.data() + static_cast<std::size_t>(index) * SizeOf(type), value);
}

QelFieldDataType_e CodeOf(StoredType type) { return RowOf(type).code; }

StoredType StoredTypeOf(QelFieldDataType_e code) {
  for (const TypeRow& row : kTypes) {
    if (row.code == code && code != FieldDataType_Invalid) return row.type;
  }
  return StoredType::Double;
}

std::size_t SizeOf(StoredType type) { return RowOf(type).size; }

}  // namespace fakehost
