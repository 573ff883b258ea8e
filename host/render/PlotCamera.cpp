#include "PlotCamera.h"

#include <vtkCamera.h>

#include <algorithm>
#include <cmath>

#include "ViewMotion.h"

namespace qelhost {
namespace {

constexpr double kFill = 0.94;  ///< of the plot's part, what the data fill at magnification 1

Projection ProjectionFor(QelPlotType_e plotType, const View& view) {
  return plotType == PlotType_Cartesian3D ? ProjectionOf(view) : Projection();
}

}  // namespace

void DataBox::Add(const DataBox& other) {
  for (std::size_t axis = 0; axis < min.size(); ++axis) {
    min[axis] = std::min(min[axis], other.min[axis]);
    max[axis] = std::max(max[axis], other.max[axis]);
  }
}

DataBox PlotCamera::InPlane(const Projection& projection) const {
  DataBox plane;
  for (int corner = 0; corner < 8; ++corner) {
    const auto& [x, y, z] = m_data.Corner(corner);
    const auto at = projection.ToPlane(x, y, z);
    plane.Add({at, at});
  }
  return plane;
}

double PlotCamera::FittingHalf(const DataBox& inPlane) const {
  const double width = std::max(1, m_box.width - 2 * m_clearance);
  const double height = std::max(1, m_box.height - 2 * m_clearance);
  const double unit = std::max((inPlane.max[0] - inPlane.min[0]) / width,
                               (inPlane.max[1] - inPlane.min[1]) / height) /
                      kFill;
  return unit > 0.0 ? 0.5 * unit * m_box.height : 1.0;
}

void PlotCamera::Place(QelPlotType_e plotType, const View& view, const DataBox& data,
                       const PixelBox& box, int clearance) {
  m_clearance = clearance;
  m_plotType = plotType;
  m_projection = ProjectionFor(plotType, view);
  m_data = data.IsEmpty() ? DataBox{{-0.5, -0.5, 0.0}, {0.5, 0.5, 0.0}} : data;
  m_box = box;
  const DataBox plane = InPlane(m_projection);
  for (std::size_t axis = 0; axis < m_centre.size(); ++axis) {
    m_fitted[axis] = 0.5 * (plane.min[axis] + plane.max[axis]);
    m_centre[axis] = m_fitted[axis] - view.translation[axis];
  }
  m_half = FittingHalf(plane) / view.magnification;
  m_low = plane.min[2];
  m_high = plane.max[2];
}

void PlotCamera::Apply(vtkCamera* camera) const {
  const double depth = std::max(m_high - m_low, 1e-9 * std::max(m_half, 1e-300));
  const double reach = depth + m_half;
  const auto focus = FromPlane(m_centre[0], m_centre[1], 0.5 * (m_low + m_high));
  const auto eye = FromPlane(m_centre[0], m_centre[1], m_high + reach);
  camera->ParallelProjectionOn();
  camera->SetFocalPoint(focus.data());
  camera->SetPosition(eye.data());
  camera->SetViewUp(&m_projection.rotation[3]);
  camera->SetParallelScale(m_half);
  camera->SetClippingRange(0.01 * reach, 3.0 * reach + depth);
}

std::array<double, 3> PlotCamera::FromPlane(double x, double y, double z) const {
  std::array<double, 3> at = m_projection.origin;
  for (std::size_t axis = 0; axis < at.size(); ++axis) {
    at[axis] += m_projection.rotation[axis] * x + m_projection.rotation[3 + axis] * y +
                m_projection.rotation[6 + axis] * z;
  }
  return at;
}

std::array<double, 2> PlotCamera::GridAt(double x, double y) const {
  const double unit = GridPerPixel();
  return {m_centre[0] + (x - m_box.x - 0.5 * m_box.width) * unit,
          m_centre[1] + (y - m_box.y - 0.5 * m_box.height) * unit};
}

std::array<double, 2> PlotCamera::PixelAt(double gridX, double gridY) const {
  const double unit = GridPerPixel();
  return {m_box.x + 0.5 * m_box.width + (gridX - m_centre[0]) / unit,
          m_box.y + 0.5 * m_box.height + (gridY - m_centre[1]) / unit};
}

std::array<double, 2> PlotCamera::PixelOf(const std::array<double, 3>& dataPoint) const {
  const auto at = m_projection.ToPlane(dataPoint[0], dataPoint[1], dataPoint[2]);
  return PixelAt(at[0], at[1]);
}

View PlotCamera::Rotated(const View& view, double dx, double dy) const {
  // Once around for a drag from one side to the other.
  constexpr double kOnceAround = 360.0;
  View turned = Turned(view, kOnceAround * dx / m_box.width, kOnceAround * dy / m_box.height);
  // What fits changes with the angles; what is seen must not grow or shrink while it turns.
  turned.magnification *= FittingHalf(InPlane(ProjectionFor(m_plotType, turned))) /
                          FittingHalf(InPlane(ProjectionFor(m_plotType, view)));
  return turned;
}

View PlotCamera::Panned(const View& view, double dx, double dy) const {
  View moved = view;
  moved.translation[0] += dx * GridPerPixel();
  moved.translation[1] += dy * GridPerPixel();
  return moved;
}

View PlotCamera::ZoomedAt(const View& view, double x, double y, double factor) const {
  View zoomed = view;
  zoomed.magnification *= factor;
  const std::array<double, 2> fixed = GridAt(x, y);
  for (std::size_t axis = 0; axis < fixed.size(); ++axis) {
    const double centre = fixed[axis] + (m_centre[axis] - fixed[axis]) / factor;
    zoomed.translation[axis] = m_fitted[axis] - centre;
  }
  return zoomed;
}

}  // namespace qelhost
