#include "Probe.h"

#include <cmath>
#include <limits>
#include <vector>

namespace qelhost {
namespace {

using Point = std::array<double, 3>;

/// Turns points of a surface into the plane, measured from the place that is looked at.
class PlacedPoints {
 public:
  PlacedPoints(const ZoneSurface& surface, const Projection& toPlane, double x, double y)
      : m_points(surface.Coordinates()), m_rotation(toPlane.rotation) {
    const auto& [mx, my, mz] = surface.Middle();
    m_shift = toPlane.ToPlane(mx, my, mz);
    m_shift[0] -= x;
    m_shift[1] -= y;
  }

  Point At(std::int32_t point) const {
    const float* const p = m_points + 3 * std::ptrdiff_t{point};
    Point placed = m_shift;
    for (std::size_t row = 0; row < 3; ++row) {
      placed[row] += m_rotation[3 * row] * p[0] + m_rotation[3 * row + 1] * p[1] +
                     m_rotation[3 * row + 2] * p[2];
    }
    return placed;
  }

 private:
  const float* m_points;
  std::array<double, 9> m_rotation;
  Point m_shift{};
};

/// Whether the origin lies inside, by how often the way out to the right crosses the outline.
bool HoldsOrigin(const std::vector<Point>& corners) {
  bool isInside = false;
  for (std::size_t n = 0, before = corners.size() - 1; n < corners.size(); before = n++) {
    const Point& a = corners[before];
    const Point& b = corners[n];
    if ((a[1] > 0.0) == (b[1] > 0.0)) continue;
    if (a[0] + (b[0] - a[0]) * a[1] / (a[1] - b[1]) > 0.0) isInside = !isInside;
  }
  return isInside;
}

/// The depth at the origin of the plane that fits the corners best; nothing when seen from its
/// side.
std::optional<double> DepthAtOrigin(const std::vector<Point>& corners) {
  Point normal{};
  Point middle{};
  for (std::size_t n = 0, before = corners.size() - 1; n < corners.size(); before = n++) {
    const Point& a = corners[before];
    const Point& b = corners[n];
    normal[0] += (a[1] - b[1]) * (a[2] + b[2]);
    normal[1] += (a[2] - b[2]) * (a[0] + b[0]);
    normal[2] += (a[0] - b[0]) * (a[1] + b[1]);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      middle[axis] += b[axis] / static_cast<double>(corners.size());
    }
  }
  if (normal[2] == 0.0) return {};
  return middle[2] + (normal[0] * middle[0] + normal[1] * middle[1]) / normal[2];
}

std::optional<double> DepthOfLine(const Point& a, const Point& b, double reach) {
  const double dx = b[0] - a[0];
  const double dy = b[1] - a[1];
  const double square = dx * dx + dy * dy;
  const double part = square > 0.0 ? std::clamp(-(a[0] * dx + a[1] * dy) / square, 0.0, 1.0) : 0.0;
  if (std::hypot(a[0] + part * dx, a[1] + part * dy) > reach) return {};
  return a[2] + part * (b[2] - a[2]);
}

void Keep(std::optional<FaceHit>& best, const FaceHit& hit) {
  if (!best.has_value() || hit.depth >= best->depth) best = hit;
}

}  // namespace

std::optional<FaceHit> FaceAt(const ZoneSurface& surface, const Projection& toPlane, double gridX,
                              double gridY, double lineReach) {
  constexpr std::int64_t kGrain = 1 << 14;
  const PlacedPoints placed(surface, toPlane, gridX, gridY);
  const FaceList& faces = surface.Faces();
  const std::int64_t pieceCount = (faces.Count() + kGrain - 1) / kGrain;
  std::vector<std::optional<FaceHit>> found(static_cast<std::size_t>(pieceCount));
  vtkSMPTools::For(0, pieceCount, 1, [&](std::int64_t begin, std::int64_t end) {
    std::vector<Point> corners;
    for (std::int64_t face = begin * kGrain; face < std::min(end * kGrain, faces.Count()); ++face) {
      corners.clear();
      for (int n = 0; n < faces.Size(face); ++n) {
        corners.push_back(placed.At(faces.Begin(face)[n]));
      }
      std::optional<double> depth;
      if (corners.size() == 2) {
        depth = DepthOfLine(corners[0], corners[1], lineReach);
      } else if (HoldsOrigin(corners)) {
        depth = DepthAtOrigin(corners);
      }
      if (depth.has_value()) Keep(found[static_cast<std::size_t>(face / kGrain)], {face, *depth});
    }
  });
  std::optional<FaceHit> best;
  for (const auto& hit : found) {
    if (hit.has_value()) Keep(best, *hit);
  }
  return best;
}

std::int64_t NearestNode(Zone& zone, std::int64_t cell, const std::array<double, 3>& position) {
  std::vector<std::int64_t> nodes;
  zone.CellNodes(cell, nodes);
  std::int64_t nearest = nodes.front();
  double least = std::numeric_limits<double>::infinity();
  for (const std::int64_t node : nodes) {
    const std::array<double, 3> at = zone.Position(node);
    const double distance =
        std::hypot(at[0] - position[0], at[1] - position[1], at[2] - position[2]);
    if (distance >= least) continue;
    least = distance;
    nearest = node;
  }
  return nearest;
}

}  // namespace qelhost
