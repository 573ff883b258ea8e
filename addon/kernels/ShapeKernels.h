#pragma once

#include "PointBlock.h"
#include "RangeKernels.h"

#include <array>
#include <cstdint>

namespace qelvane::qelutiltools {

/// A row of a matrix: what it makes of a point is r[0] x + r[1] y + r[2] z + r[3], in this order.
using MatrixRow = std::array<double, 4>;

// Which of 64 points are inside, the first in the lowest bit: one decision after the other would
// give the same bits.

/// Not farther than the radius from the centre, but for a distance that is no number, which is
/// inside. The squares are added y first, then x, then z; a circle has none for z.
std::uint64_t PointsInSphere(const PointBlock& points, const std::array<double, 3>& centre,
                             double radiusSquared);
std::uint64_t PointsInCircle(const PointBlock& points, const std::array<double, 2>& centre,
                             double radiusSquared);

/// Between the bounds once the rows have moved them; what is no number is outside.
std::uint64_t PointsInTurnedBox(const PointBlock& points, const std::array<MatrixRow, 3>& rows,
                                const Ranges3<double>& box);

/// Replaces x and y by what the rows make of each point.
void MoveToPlane(PointBlock& points, const MatrixRow& rowX, const MatrixRow& rowY);

}  // namespace qelvane::qelutiltools
