#pragma once

#include <array>

namespace qelhost {

/// How a frame looks at its data: the three angles of the 3D view, the point they turn about, and
/// the zoom. The projection is parallel.
struct View {
  double psiDeg = 0.0;
  double alphaDeg = 0.0;
  double thetaDeg = 0.0;
  std::array<double, 3> origin{0.0, 0.0, 0.0};  ///< in data coordinates
  double magnification = 1.0;                   ///< 1 fits the data to the frame
  std::array<double, 2> translation{0.0, 0.0};  ///< of the plot on the frame, in data units
};

bool operator==(const View& a, const View& b);
inline bool operator!=(const View& a, const View& b) { return !(a == b); }

/// Whether both look along the same direction from the same origin, whatever the zoom.
bool HaveSameProjection(const View& a, const View& b);

/// Data coordinates to the view plane: x to the right, y up, z towards the viewer, measured from
/// the view's origin. The rotation is row-major; an offset follows it. Add-ons are given the same
/// numbers and sum in the same order, so the order here is part of what they rely on.
struct Projection {
  std::array<double, 9> rotation{1, 0, 0, 0, 1, 0, 0, 0, 1};
  std::array<double, 3> origin{0.0, 0.0, 0.0};
  std::array<double, 3> offset{0.0, 0.0, 0.0};  ///< what the rotation makes of the origin, negated

  std::array<double, 3> ToPlane(double x, double y, double z) const {
    return {rotation[0] * x + rotation[1] * y + rotation[2] * z + offset[0],
            rotation[3] * x + rotation[4] * y + rotation[5] * z + offset[1],
            rotation[6] * x + rotation[7] * y + rotation[8] * z + offset[2]};
  }
};

/// R = Rz(theta) Rx(-psi) Rz(alpha): at psi 0 the viewer looks down Z; psi tilts the data towards
/// the viewer, alpha turns it about its own Z, theta turns the picture. Multiples of 90 degrees are
/// exact.
Projection ProjectionOf(const View& view);

/// The angle after adding to it, within (-360, 360) and cleaned of the rounding that converting to
/// radians and back leaves.
double AddDegrees(double angleDeg, double addedDeg);

}  // namespace qelhost
