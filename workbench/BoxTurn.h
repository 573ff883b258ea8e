// A turned box between an add-on's numbers and VTK's eight corners.
#pragma once

#include <array>

namespace marquell::workbench {

using Triple = std::array<double, 3>;

/// A box: its corner of least coordinates before it is turned, its edges, and the angles about that
/// corner, applied as Rx Ry Rz, in degrees.
struct TurnedBox {
  Triple anchor{0.0, 0.0, 0.0};
  Triple size{1.0, 1.0, 1.0};
  Triple rotationDeg{0.0, 0.0, 0.0};
};

/// The row-major 4 x 4 matrix that makes the box of the unit cube.
std::array<double, 16> MatrixOf(const TurnedBox& box);

/// The box whose edges leave a corner along u, v and w, which are perpendicular to each other. Of
/// the angles that give the same box those with the middle one within 90 degrees; left-handed edges
/// make a box with the same corners, its third edge taken the other way.
TurnedBox BoxOf(const Triple& corner, const Triple& u, const Triple& v, const Triple& w);

}  // namespace marquell::workbench
