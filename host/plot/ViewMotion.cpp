#include "ViewMotion.h"

#include <cmath>

#include "Matrix.h"

namespace qelhost {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;

/// Whole degrees where only rounding is missing: a view along an axis has to stay exact.
double Tidy(double angleDeg) {
  constexpr double kRounding = 1e-11;
  const double whole = std::nearbyint(angleDeg);
  const double tidied = std::fabs(angleDeg - whole) < kRounding ? whole : angleDeg;
  return tidied == 0.0 ? 0.0 : tidied;
}

double Degrees(double y, double x) { return Tidy(std::atan2(y, x) * kDegreesPerRadian); }

Matrix RotationOf(const View& view) { return ProjectionOf(view).rotation; }

}  // namespace

View WithRotation(const View& view, const Matrix& r) {
  constexpr double kNoTilt = 1e-12;
  View turned = view;
  const double sine = std::hypot(r[6], r[7]);
  const bool isBehind = view.psiDeg < 0.0;
  if (sine < kNoTilt) {
    // Seen along its own Z alpha and theta turn about the same axis.
    turned.psiDeg = r[8] > 0.0 ? 0.0 : 180.0;
    const double angle = Degrees(r[3], r[0]);
    turned.alphaDeg = r[8] > 0.0 ? Tidy(angle - view.thetaDeg) : Tidy(view.thetaDeg - angle);
  } else {
    turned.psiDeg = isBehind ? Degrees(-sine, r[8]) : Degrees(sine, r[8]);
    turned.alphaDeg = isBehind ? Degrees(r[6], r[7]) : Degrees(-r[6], -r[7]);
  }
  // Theta makes up for what rounding does to the others, which is much where psi is small.
  turned.thetaDeg = 0.0;
  const Matrix tilted = RotationOf(turned);
  const double cosine = r[0] * tilted[0] + r[1] * tilted[1] + r[2] * tilted[2];
  const double minusSine = r[0] * tilted[3] + r[1] * tilted[4] + r[2] * tilted[5];
  turned.thetaDeg = Degrees(-minusSine, cosine);
  return turned;
}

View Turned(const View& view, double rightDeg, double upDeg) {
  const double right = rightDeg / kDegreesPerRadian;
  const double up = upDeg / kDegreesPerRadian;
  const Matrix aboutUpright = {std::cos(right),  0, std::sin(right), 0, 1, 0,
                               -std::sin(right), 0, std::cos(right)};
  const Matrix aboutLevel = {1,           0, 0, 0, std::cos(up), std::sin(up), 0, -std::sin(up),
                             std::cos(up)};
  return WithRotation(view, Product(aboutLevel, Product(aboutUpright, RotationOf(view))));
}

}  // namespace qelhost
