#include "PolygonGrid.h"

#include "Bits.h"
#include "Clones.h"
#include "PackedBits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace qelvane::qelutiltools {

namespace {

constexpr std::size_t kCount = 64;

std::size_t TestCount(const PolygonOutline& outline) {
  return outline.hull.size() + outline.PocketCount();
}

/// As fine as is worth its making: all rows have to be gone through for each edge.
std::int32_t CellsAlongFor(const PolygonOutline& outline, double pointCount) {
  constexpr double kCheap = 1 << 21;
  constexpr double kStepsAPoint = 16.0;
  const double affordable =
      (kCheap + kStepsAPoint * pointCount) / static_cast<double>(TestCount(outline));
  for (const std::int32_t cellsAlong : {256, 128}) {
    if (affordable >= cellsAlong) return cellsAlong;
  }
  return 64;
}

bool HasNumbersOnly(const std::vector<Point2d>& corners) {
  return std::all_of(corners.begin(), corners.end(), [](const Point2d& corner) {
    return !std::isnan(corner.x) && !std::isnan(corner.y);
  });
}

struct CellNumbers {
  std::array<std::int32_t, kCount> cells;
  std::uint64_t areNumbers;  ///< points of which both coordinates are numbers
};

QEL_INLINED double Between(double value, double last) {
  const double atLeast0 = value > 0.0 ? value : 0.0;
  return atLeast0 < last ? atLeast0 : last;
}

/// Points elsewhere than in the box get some cell.
QEL_CLONES void NumberCells(const PolygonRaster& raster, const PointBlock& points,
                            CellNumbers& numbers) {
  const double* const x = points[0].data();
  const double* const y = points[1].data();
  const std::int32_t cellsAlong = raster.CellsAlong();
  const double last = cellsAlong - 1;
  unsigned char areNumbers[kCount];
  for (std::size_t n = 0; n < kCount; ++n) {
    const auto column = static_cast<std::int32_t>(Between(raster.ColumnOf(x[n]), last));
    const auto row = static_cast<std::int32_t>(Between(raster.RowOf(y[n]), last));
    numbers.cells[n] = row * cellsAlong + column;
    areNumbers[n] = static_cast<unsigned char>((x[n] == x[n]) & (y[n] == y[n]));
  }
  numbers.areNumbers = PackedBits(areNumbers);
}

}  // namespace

bool PolygonGrid::Pays(const PolygonOutline& outline, double pointCount) {
  constexpr double kStepsOfMaking = 1 << 22;
  return outline.orientation != 0 && !outline.hull.empty() &&
         pointCount * static_cast<double>(TestCount(outline)) > kStepsOfMaking;
}

std::shared_ptr<const PolygonGrid> PolygonGrid::Make(const PolygonOutline& outline,
                                                     const Range<double>& x, const Range<double>& y,
                                                     double pointCount) {
  if (!HasNumbersOnly(outline.hull) || !HasNumbersOnly(outline.pockets)) return nullptr;
  constexpr std::int32_t kCoarsest = 32;
  std::shared_ptr<const PolygonGrid> finest;
  for (std::int32_t cellsAlong = CellsAlongFor(outline, pointCount); cellsAlong >= kCoarsest;
       cellsAlong /= 2) {
    const auto raster = PolygonRaster::Make(x, y, cellsAlong);
    if (!raster) return finest;
    const std::shared_ptr<PolygonGrid> grid(new PolygonGrid(*raster));
    if (!grid->Classify(outline)) return finest;
    grid->ListTests();
    // A mixed cell without a list costs all tests: rather more of them with one.
    if (grid->m_hasLists) return grid;
    if (finest == nullptr) finest = grid;
  }
  return finest;
}

void PolygonGrid::NoteTouch(std::size_t test, std::int32_t row, const PolygonRaster::Run& run) {
  constexpr std::size_t kMostTouches = 1 << 20;
  if (run.IsEmpty() || !m_hasLists) return;
  if (m_touches.size() == kMostTouches) {
    m_hasLists = false;
    m_touches = {};
    return;
  }
  m_touches.push_back({static_cast<std::int32_t>(test), static_cast<std::int16_t>(row),
                       static_cast<std::int16_t>(run.first), static_cast<std::int16_t>(run.last)});
}

/// The hull first: it is where the inner sides of all its edges meet, whatever its edges are.
bool PolygonGrid::Classify(const PolygonOutline& outline) {
  const std::int32_t cellsAlong = m_raster.CellsAlong();
  std::vector<PolygonRaster::Side> sides;
  sides.reserve(outline.hull.size());
  std::vector<PolygonRaster::Row> rows(static_cast<std::size_t>(cellsAlong), m_raster.WholeRow());
  for (std::size_t edge = 0; edge < outline.hull.size(); ++edge) {
    sides.push_back(
        m_raster.SideOf(outline.EdgeStart(edge), outline.hull[edge], outline.orientation));
    m_raster.Narrow(rows, sides.back());
  }

  m_cells.assign(static_cast<std::size_t>(cellsAlong) * static_cast<std::size_t>(cellsAlong),
                 Cell::Outside);
  std::vector<PolygonRaster::Run> notOutside;
  for (std::int32_t row = 0; row < cellsAlong; ++row) {
    const PolygonRaster::Row& proved = rows[static_cast<std::size_t>(row)];
    const PolygonRaster::Run inside = m_raster.Inside(proved);
    notOutside.push_back(m_raster.NotOutside(proved));
    for (std::int32_t column = notOutside.back().first; column <= notOutside.back().last;
         ++column) {
      const bool isInside = column >= inside.first && column <= inside.last;
      m_cells[CellAt(row, column)] = isInside ? Cell::Inside : Cell::Mixed;
    }
  }
  std::vector<PolygonRaster::Run> doubtful(rows.size());
  for (std::size_t edge = 0; edge < sides.size() && m_hasLists; ++edge) {
    m_raster.FindDoubtful(sides[edge], notOutside, doubtful);
    for (std::int32_t row = 0; row < cellsAlong; ++row) {
      NoteTouch(edge, row, doubtful[static_cast<std::size_t>(row)]);
    }
  }
  return CutPockets(outline, notOutside);
}

/// Cells in a pocket are outside, others that it touches mixed unless they are outside already.
bool PolygonGrid::CutPockets(const PolygonOutline& outline,
                             const std::vector<PolygonRaster::Run>& notOutside) {
  PolygonRaster::Pocket pocket;
  for (std::size_t number = 0; number < outline.PocketCount(); ++number) {
    if (!m_raster.SetPocket(&outline.pockets[3 * number], pocket)) return false;
    for (std::int32_t row = pocket.rows.first; row <= pocket.rows.last; ++row) {
      const PolygonRaster::Run& within = notOutside[static_cast<std::size_t>(row)];
      if (within.IsEmpty()) continue;
      PolygonRaster::Row proved = m_raster.WholeRow();
      for (const PolygonRaster::Side& side : pocket.sides) m_raster.Narrow(proved, row, side);
      const PolygonRaster::Run inside =
          pocket.isSolid ? m_raster.Inside(proved) : PolygonRaster::Run{0, -1};
      const PolygonRaster::Run reach = m_raster.NotOutside(proved);
      const PolygonRaster::Run touched{std::max(reach.first, within.first),
                                       std::min(reach.last, within.last)};
      for (std::int32_t column = touched.first; column <= touched.last; ++column) {
        Cell& cell = m_cells[CellAt(row, column)];
        if (column >= inside.first && column <= inside.last) {
          cell = Cell::Outside;
        } else if (cell == Cell::Inside) {
          cell = Cell::Mixed;
        }
      }
      NoteTouch(outline.hull.size() + number, row, touched);
    }
  }
  return true;
}

/// For each mixed cell the tests that may decide it, those of the hull first.
void PolygonGrid::ListTests() {
  if (!m_hasLists) return;
  m_starts.assign(m_cells.size() + 1, 0);
  const auto visit = [this](auto&& note) {
    for (const Touch& touch : m_touches) {
      for (std::int32_t column = touch.first; column <= touch.last; ++column) {
        const std::size_t cell = CellAt(touch.row, column);
        if (m_cells[cell] == Cell::Mixed) note(cell, touch.test);
      }
    }
  };
  std::int64_t total = 0;
  visit([&](std::size_t cell, std::int32_t) {
    ++m_starts[cell + 1];
    ++total;
  });
  constexpr std::int64_t kMostTests = 1 << 21;
  m_hasLists = total <= kMostTests;
  if (m_hasLists) {
    for (std::size_t cell = 0; cell < m_cells.size(); ++cell) m_starts[cell + 1] += m_starts[cell];
    m_tests.resize(static_cast<std::size_t>(total));
    std::vector<std::int32_t> next(m_starts.begin(), m_starts.end() - 1);
    visit([&](std::size_t cell, std::int32_t test) {
      m_tests[static_cast<std::size_t>(next[cell]++)] = test;
    });
  }
  m_touches = {};
}

std::uint64_t PolygonGrid::InsideOf(const PolygonOutline& outline, const PointBlock& points,
                                    std::uint64_t wanted) const {
  CellNumbers numbers{};
  NumberCells(m_raster, points, numbers);
  std::uint64_t inside = 0;
  std::uint64_t mixed = 0;
  for (std::size_t n = 0; n < kCount; ++n) {
    const auto cell =
        static_cast<std::uint64_t>(m_cells[static_cast<std::size_t>(numbers.cells[n])]);
    inside |= (cell & 1) << n;
    mixed |= (cell >> 1) << n;
  }
  const auto pointAt = [&](int bit) {
    const auto n = static_cast<std::size_t>(bit);
    return Point2d{points[0][n], points[1][n]};
  };
  inside &= numbers.areNumbers;
  inside |= BitsWhere(mixed & numbers.areNumbers & wanted, [&](int bit) {
    return DecideMixed(outline, pointAt(bit),
                       static_cast<std::size_t>(numbers.cells[static_cast<std::size_t>(bit)]));
  });
  inside |=
      BitsWhere(wanted & ~numbers.areNumbers, [&](int bit) { return outline.Has(pointAt(bit)); });
  return inside;
}

bool PolygonGrid::DecideMixed(const PolygonOutline& outline, const Point2d& point,
                              std::size_t cell) const {
  if (!m_hasLists) return outline.Has(point);
  const std::size_t hullCount = outline.hull.size();
  for (std::int32_t n = m_starts[cell]; n < m_starts[cell + 1]; ++n) {
    const auto test = static_cast<std::size_t>(m_tests[static_cast<std::size_t>(n)]);
    if (test < hullCount ? !outline.IsInsideEdge(point, test)
                         : outline.IsInPocket(point, test - hullCount)) {
      return false;
    }
  }
  return true;
}

}  // namespace qelvane::qelutiltools
