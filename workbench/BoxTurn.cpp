#include "BoxTurn.h"

#include <algorithm>
#include <cmath>

namespace marquell::workbench {

namespace {

constexpr double kDegree = 0.017453292519943295;

struct Turn {
  double c;
  double s;
  explicit Turn(double degrees) : c(std::cos(degrees * kDegree)), s(std::sin(degrees * kDegree)) {}
};

double Length(const Triple& v) { return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]); }

Triple Unit(const Triple& v, const Triple& otherwise) {
  const double length = Length(v);
  if (length == 0.0) return otherwise;
  return {v[0] / length, v[1] / length, v[2] / length};
}

Triple Cross(const Triple& a, const Triple& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Dot(const Triple& a, const Triple& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

}  // namespace

std::array<double, 16> MatrixOf(const TurnedBox& box) {
  const Turn x(box.rotationDeg[0]);
  const Turn y(box.rotationDeg[1]);
  const Turn z(box.rotationDeg[2]);
  const double turn[3][3] = {{y.c * z.c, -y.c * z.s, y.s},
                             {x.c * z.s + x.s * y.s * z.c, x.c * z.c - x.s * y.s * z.s, -x.s * y.c},
                             {x.s * z.s - x.c * y.s * z.c, x.s * z.c + x.c * y.s * z.s, x.c * y.c}};
  std::array<double, 16> m{};
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      m[4 * row + column] = turn[row][column] * box.size[column];
    }
    m[4 * row + 3] = box.anchor[row];
  }
  m[15] = 1.0;
  return m;
}

TurnedBox BoxOf(const Triple& corner, const Triple& u, const Triple& v, const Triple& w) {
  TurnedBox box;
  box.anchor = corner;
  box.size = {Length(u), Length(v), Length(w)};
  const Triple a = Unit(u, {1, 0, 0});
  const Triple b = Unit(v, {0, 1, 0});
  const Triple c = Cross(a, b);
  if (Dot(c, w) < 0.0) {
    for (std::size_t axis = 0; axis < 3; ++axis) box.anchor[axis] += w[axis];
  }
  // The columns a, b, c are Rx Ry Rz: its first row holds the second angle alone.
  const double sine = std::clamp(c[0], -1.0, 1.0);
  box.rotationDeg[1] = std::asin(sine) / kDegree;
  constexpr double kUpright = 1.0 - 1e-12;
  if (std::fabs(sine) > kUpright) {
    // The other two turn about one axis: all of it is given to the first.
    box.rotationDeg[0] = std::atan2(b[2], b[1]) / kDegree;
  } else {
    box.rotationDeg[0] = std::atan2(-c[1], c[2]) / kDegree;
    box.rotationDeg[2] = std::atan2(-b[0], a[0]) / kDegree;
  }
  return box;
}

}  // namespace marquell::workbench
