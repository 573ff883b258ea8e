// Where the plot lies in the window, and how grid coordinates become pixels there.
#pragma once

#include <array>

#include "View.h"
#include "qelvane/Types.h"

class vtkCamera;

namespace qelhost {

/// A box around data, in their coordinates.
struct DataBox {
  std::array<double, 3> min{1e300, 1e300, 1e300};
  std::array<double, 3> max{-1e300, -1e300, -1e300};

  bool IsEmpty() const { return min[0] > max[0]; }
  void Add(const DataBox& other);
  bool operator==(const DataBox& other) const { return min == other.min && max == other.max; }
  std::array<double, 3> Corner(int n) const {
    return {n & 1 ? max[0] : min[0], n & 2 ? max[1] : min[1], n & 4 ? max[2] : min[2]};
  }
};

/// Part of a window, in pixels from its lower left corner.
struct PixelBox {
  int x = 0;
  int y = 0;
  int width = 1;
  int height = 1;
};

class PlotCamera {
 public:
  /// Fits what the box holds into the pixels at magnification 1. Without anything in it the plot
  /// shows one unit around the origin. Clearance is left free on each side.
  void Place(QelPlotType_e plotType, const View& view, const DataBox& data, const PixelBox& box,
             int clearance);
  /// The same view of the same box of pixels gives the same camera.
  void Apply(vtkCamera* camera) const;

  const PixelBox& Box() const { return m_box; }
  const Projection& ToPlane() const { return m_projection; }
  /// From the plane's coordinates to those of the data.
  std::array<double, 3> FromPlane(double x, double y, double z) const;

  double GridPerPixel() const { return 2.0 * m_half / m_box.height; }
  std::array<double, 2> GridAt(double x, double y) const;
  std::array<double, 2> PixelAt(double gridX, double gridY) const;
  std::array<double, 2> PixelOf(const std::array<double, 3>& dataPoint) const;

  View Rotated(const View& view, double dx, double dy) const;
  View Panned(const View& view, double dx, double dy) const;
  View ZoomedAt(const View& view, double x, double y, double factor) const;

 private:
  DataBox InPlane(const Projection& projection) const;
  /// Half the height that shows all at magnification 1.
  double FittingHalf(const DataBox& inPlane) const;

  QelPlotType_e m_plotType = PlotType_Cartesian2D;
  DataBox m_data;
  PixelBox m_box;
  int m_clearance = 0;
  Projection m_projection;
  std::array<double, 2> m_fitted{};  ///< the middle of the data in the plane
  std::array<double, 2> m_centre{};  ///< what the middle of the pixels shows
  double m_half = 1.0;               ///< of the height shown
  double m_low = 0.0;                ///< of the data towards the viewer
  double m_high = 0.0;
};

}  // namespace qelhost
