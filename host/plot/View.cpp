#include "View.h"

#include <cmath>

#include "Matrix.h"

namespace qelhost {

namespace {

struct SineCosine {
  double sine;
  double cosine;
};

/// A view along an axis must not smear the other coordinates into the plane by an ulp.
SineCosine OfDegrees(double angleDeg) {
  constexpr double kRadiansPerDegree = 0.017453292519943295;
  const double quarters = angleDeg / 90.0;
  if (quarters == std::nearbyint(quarters)) {
    static constexpr std::array<SineCosine, 4> kQuarters{{{0, 1}, {1, 0}, {0, -1}, {-1, 0}}};
    const auto quarter = static_cast<long long>(quarters) % 4;
    return kQuarters[static_cast<std::size_t>((quarter + 4) % 4)];
  }
  return {std::sin(angleDeg * kRadiansPerDegree), std::cos(angleDeg * kRadiansPerDegree)};
}

Matrix AboutX(double angleDeg) {
  const auto [s, c] = OfDegrees(angleDeg);
  return {1, 0, 0, 0, c, -s, 0, s, c};
}

Matrix AboutZ(double angleDeg) {
  const auto [s, c] = OfDegrees(angleDeg);
  return {c, -s, 0, s, c, 0, 0, 0, 1};
}

}  // namespace

bool operator==(const View& a, const View& b) {
  return HaveSameProjection(a, b) && a.magnification == b.magnification &&
         a.translation == b.translation;
}

bool HaveSameProjection(const View& a, const View& b) {
  return a.psiDeg == b.psiDeg && a.alphaDeg == b.alphaDeg && a.thetaDeg == b.thetaDeg &&
         a.origin == b.origin;
}

Projection ProjectionOf(const View& view) {
  Projection projection;
  projection.rotation =
      Product(AboutZ(view.thetaDeg), Product(AboutX(-view.psiDeg), AboutZ(view.alphaDeg)));
  projection.origin = view.origin;
  const auto& [x, y, z] = view.origin;
  const std::array<double, 3> turned = projection.ToPlane(x, y, z);
  for (std::size_t axis = 0; axis < turned.size(); ++axis) {
    projection.offset[axis] = 0.0 - turned[axis];
  }
  return projection;
}

double AddDegrees(double angleDeg, double addedDeg) {
  constexpr double kRounding = 1e-9;
  double sum = std::fmod(angleDeg + addedDeg, 360.0);
  const double whole = std::nearbyint(sum);
  if (std::fabs(sum - whole) < kRounding) sum = whole;
  return sum == 0.0 ? 0.0 : sum;
}

}  // namespace qelhost
