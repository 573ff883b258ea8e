#pragma once

#include "PointBlock.h"
#include "PolygonOutline.h"
#include "PolygonRaster.h"
#include "RangeKernels.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace qelvane::qelutiltools {

/// Answers for most points of a polygon's box at once: cells of a grid that are for sure inside or
/// outside of the polygon for every point in them. In the other cells the polygon's own tests
/// decide, those of the edges and pockets that come near. The answers are the polygon's own, bit
/// for bit.
class PolygonGrid {
 public:
  /// Whether making one costs less than it saves.
  static bool Pays(const PolygonOutline& outline, double pointCount);

  /// Null where nothing can be proved about cells. x, y: the corners' ranges.
  static std::shared_ptr<const PolygonGrid> Make(const PolygonOutline& outline,
                                                 const Range<double>& x, const Range<double>& y,
                                                 double pointCount);

  /// Whether 64 points are inside, the first in the lowest bit. Only the bits in `wanted` count,
  /// whose points lie in the box. outline: the one that the grid was made of.
  std::uint64_t InsideOf(const PolygonOutline& outline, const PointBlock& points,
                         std::uint64_t wanted) const;

 private:
  enum class Cell : std::uint8_t { Outside = 0, Inside = 1, Mixed = 2 };

  /// A run of cells in a row that a test may decide.
  struct Touch {
    std::int32_t test;  ///< an edge of the hull, or after them a pocket
    std::int16_t row;
    std::int16_t first;
    std::int16_t last;
  };

  explicit PolygonGrid(const PolygonRaster& raster) : m_raster(raster) {}
  bool Classify(const PolygonOutline& outline);
  bool CutPockets(const PolygonOutline& outline, const std::vector<PolygonRaster::Run>& notOutside);
  void NoteTouch(std::size_t test, std::int32_t row, const PolygonRaster::Run& run);
  void ListTests();
  bool DecideMixed(const PolygonOutline& outline, const Point2d& point, std::size_t cell) const;
  std::size_t CellAt(std::int32_t row, std::int32_t column) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_raster.CellsAlong()) +
           static_cast<std::size_t>(column);
  }

  PolygonRaster m_raster;
  std::vector<Cell> m_cells;
  std::vector<Touch> m_touches;        ///< while the grid is made
  bool m_hasLists = true;              ///< false: more tests than are worth keeping
  std::vector<std::int32_t> m_starts;  ///< of each cell's tests in m_tests
  std::vector<std::int32_t> m_tests;
};

}  // namespace qelvane::qelutiltools
