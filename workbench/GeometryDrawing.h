// Geometries as they come from the mouse, in grid coordinates.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "Geometry.h"

namespace marquell::workbench {

/// What a drag from one point to another draws in that mouse mode: a rectangle between two corners,
/// a square at its first corner, a circle or an ellipse about its centre. Nothing in other modes
/// and for a drag without extent.
std::optional<qelhost::Geometry> DraggedGeometry(QelMouseMode_e mode,
                                                 const std::array<double, 2>& from,
                                                 const std::array<double, 2>& to);

/// The polygon with these corners.
qelhost::Geometry PolygonOf(const std::vector<std::array<double, 2>>& corners);

/// The geometry whose outline passes within reach of the point, the one drawn last of several,
/// counted from 1; 0: none.
LgIndex_t GeometryAt(const qelhost::GeometryList& geometries, const std::array<double, 2>& point,
                     double reach);

/// The host's command that moves the n-th geometry; its numbers have six significant digits.
std::string MoveCommand(LgIndex_t n, double x, double y);

}  // namespace marquell::workbench
