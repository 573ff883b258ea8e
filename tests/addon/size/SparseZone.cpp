#include "SparseZone.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace sparse {

namespace {

constexpr std::int64_t kBitsPerWord = 64;

std::int64_t SizeOf(QelFieldDataType_e type) {
  switch (type) {
    case FieldDataType_Byte:
      return 1;
    case FieldDataType_Float:
      return 4;
    default:
      return 8;
  }
}

std::int64_t CellsAlong(std::int64_t nodes) { return std::max<std::int64_t>(nodes - 1, 1); }

template <class T>
void Store(unsigned char* at, double value) {
  const T stored = static_cast<T>(value);
  std::memcpy(at, &stored, sizeof stored);
}

template <class T>
double Load(const unsigned char* at) {
  T stored;
  std::memcpy(&stored, at, sizeof stored);
  return static_cast<double>(stored);
}

}  // namespace

SparseMemory::SparseMemory(std::int64_t size) : m_size(static_cast<std::size_t>(size)) {
  void* const memory = mmap(nullptr, m_size, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no room for a zone");
  m_first = static_cast<unsigned char*>(memory);
}

SparseMemory::~SparseMemory() { munmap(m_first, m_size); }

double Column::Get(std::int64_t index) const {
  const unsigned char* const at = memory->First() + index * SizeOf(type);
  if (type == FieldDataType_Byte) return *at;
  return type == FieldDataType_Float ? Load<float>(at) : Load<double>(at);
}

void Column::Set(std::int64_t index, double value) {
  unsigned char* const at = memory->First() + index * SizeOf(type);
  if (type == FieldDataType_Byte) {
    *at = static_cast<unsigned char>(value);
  } else if (type == FieldDataType_Float) {
    Store<float>(at, value);
  } else {
    Store<double>(at, value);
  }
}

Size OrderedSize(LgIndex_t i, LgIndex_t j, LgIndex_t k) {
  return {ZoneType_Ordered,
          {i, j, k},
          std::int64_t{i} * j * k,
          CellsAlong(i) * CellsAlong(j) * CellsAlong(k)};
}

SparseZone::SparseZone(const Size& size) : m_size(size) {
  m_columns = {NewColumn(FieldDataType_Float, size.nodeCount),
               NewColumn(FieldDataType_Double, size.nodeCount),
               NewColumn(FieldDataType_Double, size.nodeCount),
               NewColumn(FieldDataType_Byte, size.nodeCount),
               NewColumn(FieldDataType_Byte, size.cellCount),
               NewColumn(FieldDataType_Byte, size.cellCount)};
  for (std::int64_t node = size.nodeCount - 3; node < size.nodeCount; ++node) {
    Variable(1).Set(node, 1.0);
  }
}

Column SparseZone::NewColumn(QelFieldDataType_e type, std::int64_t count) const {
  return {type, count, std::make_unique<SparseMemory>(count * SizeOf(type))};
}

std::int64_t SparseZone::CornerCount() const {
  constexpr std::int64_t kCorners[] = {0, 3, 4, 4, 8, 2, 2, 3};  // of the last two a face's nodes
  return kCorners[m_size.type];
}

std::int64_t SparseZone::NodeOf(std::int64_t element, std::int64_t corner) const {
  return element == m_size.cellCount - 1 ? m_size.nodeCount - 1 - corner % 3 : 0;
}

std::vector<std::int64_t> SparseZone::Corners(std::int64_t cell) const {
  std::vector<std::int64_t> corners;
  if (m_size.type != ZoneType_Ordered) {
    for (std::int64_t n = 0; n < CornerCount(); ++n) corners.push_back(NodeOf(cell, n));
    return corners;
  }
  const auto [iMax, jMax, kMax] = m_size.ijk;
  const std::int64_t i = cell % CellsAlong(iMax);
  const std::int64_t j = cell / CellsAlong(iMax) % CellsAlong(jMax);
  const std::int64_t k = cell / CellsAlong(iMax) / CellsAlong(jMax);
  for (std::int64_t dk = 0; dk <= (kMax > 1 ? 1 : 0); ++dk) {
    for (std::int64_t dj = 0; dj <= (jMax > 1 ? 1 : 0); ++dj) {
      for (std::int64_t di = 0; di <= (iMax > 1 ? 1 : 0); ++di) {
        corners.push_back(((k + dk) * jMax + j + dj) * iMax + i + di);
      }
    }
  }
  return corners;
}

std::int64_t SparseZone::ElementCountAt(std::int64_t node) const {
  if (node == 0) return m_size.cellCount - 1;
  return node >= m_size.nodeCount - std::min<std::int64_t>(CornerCount(), 3) ? 1 : 0;
}

std::int64_t SparseZone::ElementAt(std::int64_t node, std::int64_t n) const {
  return node == 0 ? n : m_size.cellCount - 1;
}

QelNodeSpan_s SparseZone::NodeSpan() {
  constexpr auto kWidth = static_cast<std::int32_t>(sizeof(std::int32_t));
  const std::int64_t corners = CornerCount();
  if (m_nodes == nullptr) {
    m_nodes = std::make_unique<SparseMemory>(m_size.cellCount * corners * kWidth);
    const std::int64_t last = m_size.cellCount - 1;
    for (std::int64_t n = 0; n < corners; ++n) {
      const auto node = static_cast<std::int32_t>(NodeOf(last, n));
      std::memcpy(m_nodes->First() + (last * corners + n) * kWidth, &node, sizeof node);
    }
  }
  return {m_nodes->First(), kWidth, 0, static_cast<std::int32_t>(corners), m_size.cellCount};
}

const std::uint64_t* SparseZone::HiddenBits(std::int64_t count) {
  m_hidden = std::make_unique<SparseMemory>((count / kBitsPerWord + 1) * 8);
  auto* const words = reinterpret_cast<std::uint64_t*>(m_hidden->First());
  words[(count - 2) / kBitsPerWord] = std::uint64_t{1} << ((count - 2) % kBitsPerWord);
  return words;
}

}  // namespace sparse
