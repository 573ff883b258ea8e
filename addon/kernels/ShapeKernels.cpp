#include "ShapeKernels.h"

#include "Clones.h"
#include "PackedBits.h"

#include <cstddef>

namespace qelvane::qelutiltools {

namespace {

QEL_INLINED double Moved(const MatrixRow& row, double x, double y, double z) {
  return row[0] * x + row[1] * y + row[2] * z + row[3];
}

}  // namespace

QEL_CLONES std::uint64_t PointsInSphere(const PointBlock& points,
                                        const std::array<double, 3>& centre, double radiusSquared) {
  const double* const x = points[0].data();
  const double* const y = points[1].data();
  const double* const z = points[2].data();
  unsigned char isInside[kBlockPoints];
  for (std::size_t n = 0; n < kBlockPoints; ++n) {
    const double dx = x[n] - centre[0];
    const double dy = y[n] - centre[1];
    const double dz = z[n] - centre[2];
    isInside[n] = static_cast<unsigned char>(!(dy * dy + dx * dx + dz * dz > radiusSquared));
  }
  return PackedBits(isInside);
}

QEL_CLONES std::uint64_t PointsInCircle(const PointBlock& points,
                                        const std::array<double, 2>& centre, double radiusSquared) {
  const double* const x = points[0].data();
  const double* const y = points[1].data();
  unsigned char isInside[kBlockPoints];
  for (std::size_t n = 0; n < kBlockPoints; ++n) {
    const double dx = x[n] - centre[0];
    const double dy = y[n] - centre[1];
    isInside[n] = static_cast<unsigned char>(!(dy * dy + dx * dx > radiusSquared));
  }
  return PackedBits(isInside);
}

QEL_CLONES std::uint64_t PointsInTurnedBox(const PointBlock& points,
                                           const std::array<MatrixRow, 3>& rows,
                                           const Ranges3<double>& box) {
  const double* const x = points[0].data();
  const double* const y = points[1].data();
  const double* const z = points[2].data();
  unsigned char isInside[kBlockPoints];
  for (std::size_t n = 0; n < kBlockPoints; ++n) {
    const double u = Moved(rows[0], x[n], y[n], z[n]);
    const double v = Moved(rows[1], x[n], y[n], z[n]);
    const double w = Moved(rows[2], x[n], y[n], z[n]);
    isInside[n] =
        static_cast<unsigned char>((u >= box[0].low) & (u <= box[0].high) & (v >= box[1].low) &
                                   (v <= box[1].high) & (w >= box[2].low) & (w <= box[2].high));
  }
  return PackedBits(isInside);
}

QEL_CLONES void MoveToPlane(PointBlock& points, const MatrixRow& rowX, const MatrixRow& rowY) {
  for (std::size_t n = 0; n < kBlockPoints; ++n) {
    const double x = points[0][n];
    const double y = points[1][n];
    const double z = points[2][n];
    points[0][n] = Moved(rowX, x, y, z);
    points[1][n] = Moved(rowY, x, y, z);
  }
}

}  // namespace qelvane::qelutiltools
