#include "PointColumns.h"

#include "Bits.h"

#include <algorithm>

namespace qelvane::qelutiltools {

PointColumns::PointColumns(const std::array<FieldColumn, 3>& columns, std::size_t axisCount,
                           std::int64_t pointCount)
    : m_columns(columns),
      m_axisCount(axisCount),
      m_pointCount(pointCount),
      m_isInterleaved(axisCount == 3 && columns[0].IsFirstOfPoints(columns[1], columns[2])),
      m_isRuns(std::all_of(columns.begin(), columns.begin() + axisCount,
                           [](const FieldColumn& column) { return column.IsRun(); })),
      m_kernels(&BestRangeKernels()) {}

bool PointColumns::CallsHost() const {
  for (std::size_t axis = 0; axis < m_axisCount; ++axis) {
    if (m_columns[axis].CallsHost()) return true;
  }
  return false;
}

std::uint64_t PointColumns::Candidates(std::int64_t word, const PointBox& box, PointBlock& scratch,
                                       AxesRead& isRead) const {
  const int count = ItemsInWord(word, m_pointCount);
  const bool isWhole = count == kBitsPerWord;
  const std::int64_t first = word * kBitsPerWord;
  if (m_isInterleaved && isWhole) {
    return m_columns[0].PointsInRange(first, box.Ranges(), box.FloatRanges(), *m_kernels);
  }
  if (m_isRuns && isWhole) {
    // All axes in any case: leaving some out as they are ruled out costs more, by branches that
    // nobody foresees, than reading them.
    std::uint64_t candidates = ~std::uint64_t{0};
    for (std::size_t axis = 0; axis < m_axisCount; ++axis) {
      candidates &= m_columns[axis].RunInRange(first, box.Ranges()[axis], box.FloatRanges()[axis],
                                               *m_kernels);
    }
    return candidates;
  }
  std::uint64_t candidates = LowestBits(count);
  for (std::size_t axis = 0; axis < m_axisCount && candidates != 0; ++axis) {
    const FieldColumn& column = m_columns[axis];
    const Range<double>& range = box.Ranges()[axis];
    if (isWhole && column.IsRun()) {
      candidates &= column.RunInRange(first, range, box.FloatRanges()[axis], *m_kernels);
    } else {
      column.Read(first, count, candidates, scratch[axis]);
      isRead[axis] = true;
      candidates &= m_kernels->doubles(scratch[axis].data(), range);
    }
  }
  return candidates;
}

void PointColumns::ReadRest(std::int64_t word, std::uint64_t wanted, PointBlock& scratch,
                            const AxesRead& isRead) const {
  const int count = ItemsInWord(word, m_pointCount);
  for (std::size_t axis = 0; axis < m_axisCount; ++axis) {
    if (isRead[axis]) continue;
    m_columns[axis].Read(word * kBitsPerWord, count, wanted, scratch[axis]);
  }
}

void PointColumns::Read(std::int64_t word, PointBlock& points) const {
  const int count = ItemsInWord(word, m_pointCount);
  for (std::size_t axis = 0; axis < m_axisCount; ++axis) {
    m_columns[axis].Read(word * kBitsPerWord, count, LowestBits(count), points[axis]);
  }
}

}  // namespace qelvane::qelutiltools
