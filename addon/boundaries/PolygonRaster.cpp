#include "PolygonRaster.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace qelvane::qelutiltools {

namespace {

/// Half of what a double near 1 is apart from the next.
constexpr double kRounding = 1.1102230246251565e-16;

/// How much farther than its borders a cell may reach because places are rounded; see Make.
constexpr double kSlack = 1e-6;

constexpr double kNever = 1e300;

double Distance(const Point2d& p, const Point2d& q) { return std::hypot(q.x - p.x, q.y - p.y); }

}  // namespace

/// With M the largest coordinate, a test's sum of three products of two sums each is off by less
/// than 64 roundings of M * M, and what is worked out here of it by less than 100 more. Places are
/// off by less than 8 roundings of M, which stays far below kSlack cells.
std::optional<PolygonRaster> PolygonRaster::Make(const Range<double>& x, const Range<double>& y,
                                                 std::int32_t cellsAlong) {
  const double largest = std::max(std::max(std::fabs(x.low), std::fabs(x.high)),
                                  std::max(std::fabs(y.low), std::fabs(y.high)));
  constexpr double kLeast = 1e-100;
  constexpr double kMost = 1e100;
  if (!(largest > kLeast && largest < kMost)) return std::nullopt;
  const double cellWidth = (x.high - x.low) / cellsAlong;
  const double cellHeight = (y.high - y.low) / cellsAlong;
  constexpr double kMostRoundings = 1e7;
  if (!(cellWidth > largest / kMostRoundings && cellHeight > largest / kMostRoundings)) {
    return std::nullopt;
  }
  PolygonRaster raster;
  raster.m_cellsAlong = cellsAlong;
  raster.m_xMin = x.low;
  raster.m_yMin = y.low;
  raster.m_xScale = 1.0 / cellWidth;
  raster.m_yScale = 1.0 / cellHeight;
  raster.m_margin = 256.0 * kRounding * largest * largest;
  raster.m_flatness = kRounding * largest * largest / cellsAlong;
  return raster;
}

PolygonRaster::Side PolygonRaster::SideOf(const Point2d& from, const Point2d& to,
                                          std::int32_t sign) const {
  Side side{};
  side.a = sign * (to.y - from.y) / m_xScale;
  side.b = sign * (from.x - to.x) / m_yScale;
  side.x = ColumnOf(from.x);
  side.y = RowOf(from.y);
  side.margin = m_margin;
  side.isFlat = std::fabs(side.a) <= m_flatness;
  side.inverseA = side.isFlat ? 0.0 : 1.0 / side.a;
  return side;
}

PolygonRaster::Row PolygonRaster::WholeRow() const { return {-kNever, kNever, -kNever, kNever}; }

namespace {

/// Where the edge crosses the rows, as columns: that of row n is start + slope * n.
struct Crossing {
  double start;
  double slope;
  double At(double row) const { return start + slope * row; }
};

/// Where the sum is `value` at the border of each row that is `border` rows from its beginning.
Crossing CrossingOf(const PolygonRaster::Side& side, double border, double value) {
  return {side.x + (value - side.b * (border - side.y)) * side.inverseA, -side.b * side.inverseA};
}

/// The borders of a row at which the sum is least and greatest.
struct Borders {
  double least;
  double greatest;
};

Borders BordersOf(const PolygonRaster::Side& side) {
  return side.b > 0 ? Borders{-kSlack, 1 + kSlack} : Borders{1 + kSlack, -kSlack};
}

/// A flat edge says the same of all cells of a row.
void NarrowByFlat(PolygonRaster::Row& row, std::int32_t number, const PolygonRaster::Side& side) {
  const Borders borders = BordersOf(side);
  if (side.b * (number + borders.least - side.y) <= side.margin) row.insideAfter = kNever;
  if (side.b * (number + borders.greatest - side.y) < -side.margin) row.outsideBefore = kNever;
}

struct Crossings {
  Crossing inside;
  Crossing outside;

  explicit Crossings(const PolygonRaster::Side& side)
      : inside(CrossingOf(side, BordersOf(side).least, side.margin)),
        outside(CrossingOf(side, BordersOf(side).greatest, -side.margin)) {
    // A cell is inside when the border of its that is nearest to the edge is, and outside when the
    // one is that is farthest.
    if (side.a > 0) {
      inside.start += kSlack;
      outside.start -= 1 + kSlack;
    } else {
      inside.start -= 1 + kSlack;
      outside.start += kSlack;
    }
  }
};

}  // namespace

void PolygonRaster::Narrow(Row& row, std::int32_t number, const Side& side) const {
  if (side.isFlat) return NarrowByFlat(row, number, side);
  const Crossings crossings(side);
  const double inside = crossings.inside.At(number);
  const double outside = crossings.outside.At(number);
  if (side.a > 0) {
    row.insideAfter = std::max(row.insideAfter, inside);
    row.outsideBefore = std::max(row.outsideBefore, outside);
  } else {
    row.insideBefore = std::min(row.insideBefore, inside);
    row.outsideAfter = std::min(row.outsideAfter, outside);
  }
}

void PolygonRaster::Narrow(std::vector<Row>& rows, const Side& side) const {
  if (side.isFlat) {
    for (std::int32_t number = 0; number < m_cellsAlong; ++number) {
      NarrowByFlat(rows[static_cast<std::size_t>(number)], number, side);
    }
    return;
  }
  const Crossings crossings(side);
  double number = 0.0;
  if (side.a > 0) {
    for (Row& row : rows) {
      row.insideAfter = std::max(row.insideAfter, crossings.inside.At(number));
      row.outsideBefore = std::max(row.outsideBefore, crossings.outside.At(number));
      number += 1.0;
    }
  } else {
    for (Row& row : rows) {
      row.insideBefore = std::min(row.insideBefore, crossings.inside.At(number));
      row.outsideAfter = std::min(row.outsideAfter, crossings.outside.At(number));
      number += 1.0;
    }
  }
}

/// Both ends belong to the run; they may lie anywhere.
PolygonRaster::Run PolygonRaster::Clipped(double first, double last) const {
  const double end = m_cellsAlong;
  return {static_cast<std::int32_t>(std::min(std::max(first, 0.0), end)),
          static_cast<std::int32_t>(std::min(std::max(last, -1.0), end - 1.0))};
}

PolygonRaster::Run PolygonRaster::Inside(const Row& row) const {
  return Clipped(std::floor(row.insideAfter) + 1.0, std::ceil(row.insideBefore) - 1.0);
}

PolygonRaster::Run PolygonRaster::NotOutside(const Row& row) const {
  return Clipped(std::ceil(row.outsideBefore), std::floor(row.outsideAfter));
}

void PolygonRaster::FindDoubtful(const Side& side, const std::vector<Run>& within,
                                 std::vector<Run>& doubtful) const {
  constexpr Run kNone{0, -1};
  if (side.isFlat) {
    for (std::int32_t number = 0; number < m_cellsAlong; ++number) {
      const auto n = static_cast<std::size_t>(number);
      Row row = WholeRow();
      NarrowByFlat(row, number, side);
      doubtful[n] = row.insideAfter == kNever ? within[n] : kNone;
    }
    return;
  }
  const Crossing inside = Crossings(side).inside;
  double number = 0.0;
  for (std::size_t n = 0; n < within.size(); ++n, number += 1.0) {
    const double crossing = inside.At(number);
    const Run& run = within[n];
    if (side.a > 0 ? crossing < run.first : crossing > run.last) {
      doubtful[n] = kNone;
    } else if (side.a > 0) {
      doubtful[n] = {run.first, std::min(run.last, Clipped(0.0, std::floor(crossing)).last)};
    } else {
      doubtful[n] = {std::max(run.first, Clipped(std::ceil(crossing), 0.0).first), run.last};
    }
  }
}

/// Where a triangle may hold a point, its three sums have to be above minus the margin. Compared
/// with the area, that widens the triangle about its middle.
bool PolygonRaster::SetPocket(const Point2d* corners, Pocket& pocket) const {
  const double sum = TriangleSum(corners[0], corners[1], corners[2]);
  const double area = std::fabs(sum);
  if (!(area >= 4.0 * m_margin)) return SetStrip(corners, pocket);
  const std::int32_t sign = SignOf(sum);
  pocket.sides = {SideOf(corners[0], corners[1], sign), SideOf(corners[1], corners[2], sign),
                  SideOf(corners[2], corners[0], sign)};
  pocket.isSolid = true;
  const auto [low, high] = std::minmax({corners[0].y, corners[1].y, corners[2].y});
  const double widening = 2.0 * m_margin / (area - m_margin) * (high - low) * m_yScale + kSlack;
  pocket.rows = Clipped(std::floor(RowOf(low) - widening), std::floor(RowOf(high) + widening));
  return true;
}

/// Three corners in a line, as far as can be told: a point that is far from their longest edge, on
/// whichever side, is out of the pocket.
bool PolygonRaster::SetStrip(const Point2d* corners, Pocket& pocket) const {
  std::size_t longest = 0;
  double length = 0.0;
  for (std::size_t edge = 0; edge < 3; ++edge) {
    const double here = Distance(corners[edge], corners[(edge + 1) % 3]);
    if (here > length) {
      longest = edge;
      length = here;
    }
  }
  // Three times the same corner has every point.
  if (!(length > 0.0)) return false;
  const Point2d& from = corners[longest];
  const Point2d& to = corners[(longest + 1) % 3];
  pocket.sides = {SideOf(from, to, 1), SideOf(from, to, -1)};
  // So far that, with next to no area, one of the other two sums has the other sign for sure.
  for (Side& side : pocket.sides) side.margin *= 8.0;
  pocket.isSolid = false;
  pocket.rows = Clipped(0.0, m_cellsAlong);
  return true;
}

}  // namespace qelvane::qelutiltools
