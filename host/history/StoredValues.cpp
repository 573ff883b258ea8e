#include "StoredValues.h"

#include <vtkType.h>

#include <cstring>

namespace qelhost {

namespace {

template <int kSize>
void Gather(const char* from, std::int64_t stride, std::int64_t count, char* to) {
  for (std::int64_t i = 0; i < count; ++i) std::memcpy(to + i * kSize, from + i * stride, kSize);
}

template <int kSize>
void Scatter(const char* from, std::int64_t stride, std::int64_t count, char* to) {
  for (std::int64_t i = 0; i < count; ++i) std::memcpy(to + i * stride, from + i * kSize, kSize);
}

using Mover = void (*)(const char* from, std::int64_t stride, std::int64_t count, char* to);

struct Movers {
  int valueSize;
  Mover gather;
  Mover scatter;
};

constexpr Movers kMovers[] = {{1, Gather<1>, Scatter<1>},
                              {2, Gather<2>, Scatter<2>},
                              {4, Gather<4>, Scatter<4>},
                              {8, Gather<8>, Scatter<8>}};

const Movers& MoversFor(int valueSize) {
  for (const Movers& movers : kMovers) {
    if (movers.valueSize == valueSize) return movers;
  }
  return kMovers[0];
}

}  // namespace

RawBytes MakeRawBytes(std::int64_t size) {
  return RawBytes(new char[static_cast<std::size_t>(size)]);
}

StoredValues::StoredValues(QelFieldData& view)
    : m_array(view.storage->array),
      m_component(view.storage->component),
      m_vtkType(view.vtkType),
      m_isBits(view.vtkType == VTK_BIT) {
  LoadValues(view);
  m_valueSize = m_isBits ? 1 : view.valueSize;
  m_count = m_array->GetNumberOfTuples();
  if (view.first == nullptr) return;
  m_stride = view.stride * m_valueSize;
  m_first = view.first - view.firstTuple * m_stride;
}

const char* StoredValues::Packed(std::int64_t first, std::int64_t count, char* buffer) const {
  if (m_first != nullptr && m_stride == m_valueSize) return m_first + first * m_stride;
  CopyTo(first, count, buffer);
  return buffer;
}

void StoredValues::CopyTo(std::int64_t first, std::int64_t count, char* target) const {
  if (m_isBits) {
    for (std::int64_t i = 0; i < count; ++i) {
      target[i] = m_array->GetComponent(first + i, m_component) != 0 ? 1 : 0;
    }
  } else if (m_stride == m_valueSize) {
    std::memcpy(target, m_first + first * m_stride, static_cast<std::size_t>(count * m_stride));
  } else {
    MoversFor(m_valueSize).gather(m_first + first * m_stride, m_stride, count, target);
  }
}

void StoredValues::CopyFrom(std::int64_t first, std::int64_t count, const char* source) const {
  if (m_isBits) {
    for (std::int64_t i = 0; i < count; ++i) {
      m_array->SetComponent(first + i, m_component, source[i]);
    }
  } else if (m_stride == m_valueSize) {
    std::memcpy(m_first + first * m_stride, source, static_cast<std::size_t>(count * m_stride));
  } else {
    MoversFor(m_valueSize).scatter(source, m_stride, count, m_first + first * m_stride);
  }
}

}  // namespace qelhost
