// Polygons, circles and rectangles of any corners: a point is inside by the same answer alone, in a
// block of 64 and through the grid that many points are worth.
#include "Input.h"

#include "PolyBoundary.h"

#include <vector>

namespace {

using namespace qelvane::qelutiltools;

void SetShape(CPolyBoundary& boundary, Input& input) {
  const int kind = input.Below(8);
  if (kind < 2) {
    double numbers[4];
    for (double& number : numbers) number = input.Coordinate();
    if (kind == 0) {
      boundary.SetRectangle(numbers[0], numbers[1], numbers[2], numbers[3]);
    } else {
      boundary.SetCircle(numbers[0], numbers[1], numbers[2]);
    }
    return;
  }
  const int count = input.Take<std::uint8_t>();
  std::vector<double> xs, ys;
  for (int n = 0; n < count; ++n) {
    xs.push_back(input.Coordinate());
    ys.push_back(input.Coordinate());
  }
  const bool isDefined = boundary.SetPolygon(xs.data(), ys.data(), count);
  Demand(isDefined == boundary.IsDefined(), "the answer says whether there is a shape");
}

/// Points on corners, between and beside them, and any others.
PointBlock PointsNear(const CPolyBoundary& boundary, Input& input) {
  const CPolyBoundary::Shape shape = boundary.Definition();
  PointBlock points;
  for (std::size_t n = 0; n < 64; ++n) {
    const std::size_t count = shape.corners.size();
    if (count > 0 && n % 2 == 0) {
      const Point2d& a = shape.corners[n / 2 % count];
      const Point2d& b = shape.corners[(n / 2 + 1 + n / 16) % count];
      points[0][n] = n % 4 == 0 ? a.x : 0.5 * (a.x + b.x);
      points[1][n] = n % 4 == 0 ? a.y : 0.5 * (a.y + b.y);
    } else {
      points[0][n] = input.Coordinate();
      points[1][n] = input.Coordinate();
    }
  }
  return points;
}

/// What is no number is in every range.
bool IsInBox(const Ranges3<double>& box, double x, double y) {
  return box[0].Has(x) && box[1].Has(y);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  CPolyBoundary boundary;
  SetShape(boundary, input);
  const PointBlock points = PointsNear(boundary, input);
  const Ranges3<double> box = boundary.BoundingBox();
  std::uint64_t wanted = 0;
  std::uint64_t inside = 0;
  for (std::size_t n = 0; n < 64; ++n) {
    const std::uint64_t bit = std::uint64_t{1} << n;
    if (!IsInBox(box, points[0][n], points[1][n])) continue;
    wanted |= bit;
    if (boundary.IsInside(points[0][n], points[1][n])) inside |= bit;
  }
  Demand((boundary.InsideOf(points, wanted) & wanted) == inside, "64 points answer as each does");
  boundary.ExpectPoints(std::int64_t{1} << (input.Below(16) + 8));
  Demand((boundary.InsideOf(points, wanted) & wanted) == inside, "so do they through the grid");
  return 0;
}
