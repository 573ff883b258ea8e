#pragma once

#include "qelvane/Extensions.h"
#include "qelvane/Types.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace sparse {

/// Of nodes, cells and all else: what a host can count.
constexpr std::int64_t kMost = std::numeric_limits<LgIndex_t>::max();

/// Zeros of which only those that are written to take up memory.
class SparseMemory {
 public:
  explicit SparseMemory(std::int64_t size);
  ~SparseMemory();
  SparseMemory(const SparseMemory&) = delete;
  SparseMemory& operator=(const SparseMemory&) = delete;
  unsigned char* First() const { return m_first; }

 private:
  std::size_t m_size;
  unsigned char* m_first = nullptr;
};

/// The values of a variable. A host's handle of them is their address.
struct Column {
  QelFieldDataType_e type = FieldDataType_Invalid;
  std::int64_t count = 0;
  std::unique_ptr<SparseMemory> memory;

  double Get(std::int64_t index) const;        ///< from 0
  void Set(std::int64_t index, double value);  ///< whole numbers from 0 to 255
};

/// How many of what a zone has.
struct Size {
  QelZoneType_e type = ZoneType_Ordered;
  std::array<LgIndex_t, 3> ijk{1, 1, 1};  ///< of an ordered zone
  std::int64_t nodeCount = 0;
  std::int64_t cellCount = 0;
};
Size OrderedSize(LgIndex_t i, LgIndex_t j, LgIndex_t k);

/// A zone of any size, most of it alike: all nodes are at the origin but the last three, which are
/// at x = 1, and all elements stand on the first node but the last element, which stands on the
/// last nodes. Hidden, when anything is, is the last cell but one and the last node but one.
/// Everything counts from 0.
class SparseZone {
 public:
  static constexpr LgIndex_t kVariables = 6;  ///< X, Y, Z, one at nodes, one at cells, PICK_BLANK
  static constexpr LgIndex_t kNodal = 4;
  static constexpr LgIndex_t kAtCells = 5;
  static constexpr LgIndex_t kBlank = 6;

  explicit SparseZone(const Size& size);

  const Size& HasSize() const { return m_size; }
  std::int64_t CornerCount() const;  ///< of each element
  std::int64_t NodeOf(std::int64_t element, std::int64_t corner) const;
  std::vector<std::int64_t> Corners(std::int64_t cell) const;  ///< of ordered zones, too
  bool IsFar(std::int64_t node) const { return node >= m_size.nodeCount - 3; }
  static bool IsHidden(std::int64_t item, std::int64_t count) { return item == count - 2; }

  std::int64_t ElementCountAt(std::int64_t node) const;
  std::int64_t ElementAt(std::int64_t node, std::int64_t n) const;

  Column& Variable(LgIndex_t var) { return m_columns[static_cast<std::size_t>(var - 1)]; }
  bool IsColumn(const void* handle) const {
    return handle >= m_columns.data() && handle < m_columns.data() + m_columns.size();
  }
  QelNodeSpan_s NodeSpan();
  const std::uint64_t* HiddenBits(std::int64_t count);

 private:
  Column NewColumn(QelFieldDataType_e type, std::int64_t count) const;

  Size m_size;
  std::array<Column, kVariables> m_columns;
  std::unique_ptr<SparseMemory> m_nodes;
  std::unique_ptr<SparseMemory> m_hidden;
};

/// How the host shows the zone.
enum class Shown {
  ByAccessors,
  BySpans,        ///< all of it, one range after the other
  BySpansAtEnds,  ///< its pool leaves out what lies between the first and the last ranges
};

/// Puts the zone in the place of the host's zone 1 while it lives.
class Stage {
 public:
  Stage(SparseZone& zone, Shown shown);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  std::int64_t ChangedCount() const;  ///< values that the add-on told of since the last question
};

}  // namespace sparse
