#pragma once

#include "PolygonOutline.h"
#include "RangeKernels.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace qelvane::qelutiltools {

/// A grid of square cells over a polygon's box, and what can be proved there about the polygon's
/// tests. The tests round, so near an edge they may answer what is not so: a cell counts as on one
/// side of an edge only when all its points are farther from it than rounding reaches. Cells count
/// from 0, in columns along x and rows along y.
class PolygonRaster {
 public:
  /// Nothing when the numbers are so large, so small or so far from 0 compared to the box that
  /// nothing can be proved.
  static std::optional<PolygonRaster> Make(const Range<double>& x, const Range<double>& y,
                                           std::int32_t cellsAlong);

  std::int32_t CellsAlong() const { return m_cellsAlong; }

  /// Where a point of the box is, in cells: it lies in the cell of the number before the point.
  double ColumnOf(double x) const { return (x - m_xMin) * m_xScale; }
  double RowOf(double y) const { return (y - m_yMin) * m_yScale; }

  /// The inner side of an edge, in cells: a (column - x) + b (row - y) is as much as the sum of the
  /// tests.
  struct Side {
    double a;
    double b;
    double x;
    double y;
    double margin;  ///< how far from 0 the sum has to be to have its sign for sure
    double inverseA;
    bool isFlat;  ///< along the rows, but for so little that the margin covers it
  };

  /// The side on which the sum of the test for the edge has the sign given.
  Side SideOf(const Point2d& from, const Point2d& to, std::int32_t sign) const;

  /// What can be proved in a row, as bounds for the numbers of columns, themselves left out.
  struct Row {
    double insideAfter;    ///< cells after this and ...
    double insideBefore;   ///< ... before this are on the inner sides of all edges
    double outsideBefore;  ///< cells before this or ...
    double outsideAfter;   ///< ... after this are on the outer side of one
  };
  Row WholeRow() const;

  /// Takes one more edge into account.
  void Narrow(Row& row, std::int32_t number, const Side& side) const;

  /// The same for all rows at once.
  void Narrow(std::vector<Row>& rows, const Side& side) const;

  /// A run of cells of a row; none when last is before first.
  struct Run {
    std::int32_t first;
    std::int32_t last;
    bool IsEmpty() const { return last < first; }
  };
  Run Inside(const Row& row) const;
  Run NotOutside(const Row& row) const;

  /// Of the cells within each row's run, those that are not for sure on the inner side of the edge.
  /// `doubtful` has a run for each row.
  void FindDoubtful(const Side& side, const std::vector<Run>& within,
                    std::vector<Run>& doubtful) const;

  /// What can be proved of a pocket's triangle.
  struct Pocket {
    std::vector<Side> sides;
    bool isSolid = false;  ///< cells inside of all sides are in the pocket for sure
    Run rows{};            ///< elsewhere nothing is in the pocket
  };

  /// False when nothing can be proved. The pocket's memory is used again.
  bool SetPocket(const Point2d* corners, Pocket& pocket) const;

 private:
  PolygonRaster() = default;
  Run Clipped(double first, double last) const;
  bool SetStrip(const Point2d* corners, Pocket& pocket) const;

  std::int32_t m_cellsAlong = 0;
  double m_xMin = 0.0;
  double m_yMin = 0.0;
  double m_xScale = 0.0;
  double m_yScale = 0.0;
  double m_margin = 0.0;
  double m_flatness = 0.0;
};

}  // namespace qelvane::qelutiltools
