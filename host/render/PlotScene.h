// The plot of a frame as things that VTK draws: the same for pictures without a window and for a
// window that people work in.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Frame.h"
#include "ValueBlanking.h"

class vtkRenderer;

namespace qelhost {

/// What a plot looks like beyond the frame's own styles.
///
/// variable         colours the surfaces; 0: none, the surfaces are grey
/// min, max         of the colours
/// colourMap        one of ColourMapNames(); another name counts as the first
/// caption          stands above the plot; may be empty
/// showAxes         ticks and numbers: around a 2D plot, along a box around the data of a 3D one
/// showOrientation  how X, Y and Z lie, in a corner of a 3D plot
/// scale            device pixels of one of the window system's: text and lines grow with it
/// textSize         of numbers, in device pixels; 0: what suits the height and the scale
struct PlotLook {
  LgIndex_t variable = 0;
  double min = 0.0;
  double max = 0.0;
  std::string colourMap = "viridis";
  std::string caption;
  bool showAxes = false;
  bool showOrientation = false;
  double scale = 1.0;
  double textSize = 0.0;
};

/// The colour maps that there are; the first is the default.
std::vector<std::string> ColourMapNames();

/// The colour at a place of a map, 0 to 1: red, green and blue, each 0 to 1.
std::array<double, 3> ColourAt(const std::string& colourMap, double place);

/// What lies under the pointer; zone, cell and node from 1.
struct ProbeHit {
  LgIndex_t zone = 0;
  LgIndex_t cell = 0;
  LgIndex_t node = 0;  ///< the node of the cell that is nearest to the position
  std::array<double, 3> position{};
};

/// Cells or nodes of a zone that are to stand out; one bit an item, items from 0.
struct ZoneHighlight {
  LgIndex_t zone = 0;
  QelValueLocation_e location = ValueLocation_CellCentered;
  ItemBits items;
};

/// The colour in which highlights and what is being drawn appear.
constexpr std::array<double, 3> kAccentColour = {1.0, 0.35, 0.0};

/// The scene of one frame at a time.
///
/// Pixels are device pixels of the window, from its lower left corner. Grid coordinates are those
/// in which geometries are drawn: the data's X and Y in 2D, the view plane's in 3D.
class PlotScene {
 public:
  PlotScene();
  ~PlotScene();
  PlotScene(const PlotScene&) = delete;
  PlotScene& operator=(const PlotScene&) = delete;

  /// The renderers for one window, the margin to be added first: it lies under the plot.
  vtkRenderer* Margin() const;
  vtkRenderer* Plot() const;

  /// Brings the scene to the frame's state; what did not change since the last time is kept. To be
  /// called before each picture. The size is that of the window.
  void Update(Frame& frame, const PlotLook& look, int width, int height);

  /// What is shown at a pixel: never a hidden cell, never a zone that an add-on made.
  std::optional<ProbeHit> HitAt(double x, double y) const;

  std::array<double, 2> GridAt(double x, double y) const;
  std::array<double, 2> PixelAt(double gridX, double gridY) const;
  double GridPerPixel() const;

  /// The view after the pointer was dragged by that many pixels, up is positive. The one given must
  /// be that of the last update; the size of things on the screen stays.
  View Rotated(const View& view, double dx, double dy) const;
  View Panned(const View& view, double dx, double dy) const;
  /// Larger by the factor; what lies under the pixel stays there.
  View ZoomedAt(const View& view, double x, double y, double factor) const;

  /// Replaces all highlights. Kept when the zones change; a zone that is not shown has none.
  void SetHighlight(std::vector<ZoneHighlight> highlights);
  /// A geometry that is being drawn, dashed; a polyline that is not closed yet, with its corners
  /// marked. Without a value: none.
  void SetRubberBand(std::optional<Geometry> geometry);
  /// The geometry that is drawn with handles; 0: none.
  void SetSelectedGeometry(QelGeomID_t id);
  /// Fewer faces while the user moves the view, when there are too many for that.
  void SetInteracting(bool isInteracting);

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace qelhost
