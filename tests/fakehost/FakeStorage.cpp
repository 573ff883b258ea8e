#include "FakeData.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace fakehost {

namespace {

/// Fills what lies between values.
constexpr unsigned char kGap = 0xA5;

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

Storage::Storage(StoredType storedType, std::int64_t valueCount, Layout valueLayout)
    : type(storedType),
      count(valueCount),
      layout(valueLayout),
      bytes(static_cast<std::size_t>(valueCount * Stride())) {
  if (layout.lanes == 1) return;
  std::fill(bytes.begin(), bytes.end(), kGap);
  for (std::int64_t index = 0; index < count; ++index) std::fill_n(At(index), SizeOf(type), 0);
}

Storage::Storage(StoredType storedType, std::int64_t valueCount, std::int64_t axis,
                 std::shared_ptr<std::vector<unsigned char>> coordinates)
    : type(storedType), count(valueCount), layout{3, axis}, points(std::move(coordinates)) {}

Storage::Storage(const Storage& other)
    : type(other.type), count(other.count), layout(other.layout), bytes(other.bytes) {
  if (other.points != nullptr) {
    points = std::make_shared<std::vector<unsigned char>>(*other.points);
  }
}

double Storage::Get(std::int64_t index) const { return RowOf(type).get(At(index)); }

void Storage::Set(std::int64_t index, double value) { RowOf(type).set(At(index), value); }

unsigned char* Storage::At(std::int64_t index) {
  unsigned char* const first = points == nullptr ? bytes.data() : points->data();
  return first + index * Stride() + layout.lane * static_cast<std::int64_t>(SizeOf(type));
}

const unsigned char* Storage::At(std::int64_t index) const {
  return const_cast<Storage*>(this)->At(index);
}

std::int64_t Storage::Stride() const {
  return layout.lanes * static_cast<std::int64_t>(SizeOf(type));
}

bool Storage::AreGapsWhole() const {
  if (layout.lanes == 1 || points != nullptr) return true;
  for (std::int64_t index = 0; index < count; ++index) {
    const unsigned char* const first = bytes.data() + index * Stride();
    for (const unsigned char* at = first; at != first + Stride(); ++at) {
      const bool isOfValue = at >= At(index) && at < At(index) + SizeOf(type);
      if (!isOfValue && *at != kGap) return false;
    }
  }
  return true;
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
