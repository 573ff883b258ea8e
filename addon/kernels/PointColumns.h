#pragma once

#include "FieldColumn.h"

#include <array>
#include <cstdint>

namespace qelvane::qelutiltools {

/// A box to reject points by, with its bounds in the two types in which they are compared.
class PointBox {
 public:
  explicit PointBox(const Ranges3<double>& ranges)
      : m_ranges(ranges),
        m_floatRanges{FloatsIn(ranges[0]), FloatsIn(ranges[1]), FloatsIn(ranges[2])} {}

  const Ranges3<double>& Ranges() const { return m_ranges; }
  const Ranges3<float>& FloatRanges() const { return m_floatRanges; }

 private:
  Ranges3<double> m_ranges;
  Ranges3<float> m_floatRanges;
};

/// The nodes of a zone as points, 64 of them at a time, from two or three columns.
class PointColumns {
 public:
  PointColumns(const FieldColumn& x, const FieldColumn& y, std::int64_t pointCount)
      : PointColumns({x, y, FieldColumn()}, 2, pointCount) {}
  PointColumns(const FieldColumn& x, const FieldColumn& y, const FieldColumn& z,
               std::int64_t pointCount)
      : PointColumns({x, y, z}, 3, pointCount) {}

  bool CallsHost() const;

  /// Of the word's points, those that no coordinate says are outside of the box: one that is no
  /// number says nothing. Coordinates behind the accessor are asked for in order, each only for
  /// points that the ones before have not ruled out.
  std::uint64_t InBox(std::int64_t word, const PointBox& box, PointBlock& scratch) const {
    AxesRead isRead{};
    return Candidates(word, box, scratch, isRead);
  }

  /// The same for a shape in the box. inside(points, bits) decides about the points in the box,
  /// which the bits say; it is not asked when there are none, and bits that it was not given count
  /// for nothing.
  template <class Inside>
  std::uint64_t InShape(std::int64_t word, const PointBox& box, PointBlock& scratch,
                        Inside&& inside) const {
    AxesRead isRead{};
    const std::uint64_t candidates = Candidates(word, box, scratch, isRead);
    if (candidates == 0) return 0;
    ReadRest(word, candidates, scratch, isRead);
    return inside(scratch, candidates) & candidates;
  }

  /// All of the word's points.
  void Read(std::int64_t word, PointBlock& points) const;

 private:
  using AxesRead = std::array<bool, 3>;

  PointColumns(const std::array<FieldColumn, 3>& columns, std::size_t axisCount,
               std::int64_t pointCount);

  std::uint64_t Candidates(std::int64_t word, const PointBox& box, PointBlock& scratch,
                           AxesRead& isRead) const;
  void ReadRest(std::int64_t word, std::uint64_t wanted, PointBlock& scratch,
                const AxesRead& isRead) const;

  std::array<FieldColumn, 3> m_columns;
  std::size_t m_axisCount;
  std::int64_t m_pointCount;
  bool m_isInterleaved;
  bool m_isRuns;
  const RangeKernels* m_kernels;
};

}  // namespace qelvane::qelutiltools
