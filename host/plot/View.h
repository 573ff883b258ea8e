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
/// the view's origin. Row-major 3 x 3; the origin is subtracted first.
struct Projection {
  std::array<double, 9> rotation{1, 0, 0, 0, 1, 0, 0, 0, 1};
  std::array<double, 3> origin{0.0, 0.0, 0.0};

  std::array<double, 3> ToPlane(double x, double y, double z) const {
    const double dx = x - origin[0];
    const double dy = y - origin[1];
    const double dz = z - origin[2];
    return {rotation[0] * dx + rotation[1] * dy + rotation[2] * dz,
            rotation[3] * dx + rotation[4] * dy + rotation[5] * dz,
            rotation[6] * dx + rotation[7] * dy + rotation[8] * dz};
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
