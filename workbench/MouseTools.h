// What the mouse does in the plot, by the host's mouse mode.
#pragma once

#include <Qt>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Geometry.h"
#include "PlotScene.h"
#include "View.h"
#include "Workspace.h"

namespace marquell::workbench {

/// A press, a motion or a release. Positions in device pixels from the plot's lower left.
struct MouseEvent {
  double x = 0.0;
  double y = 0.0;
  Qt::MouseButton button = Qt::NoButton;
  bool isCtrlHeld = false;
  bool isDoubleClick = false;
};

/// Turns mouse events into what the user does. In every mode the middle button moves the plot, the
/// right button and the wheel zoom; the left button does what the mode says, and in select mode,
/// beside any geometry, what suits the plot best: it turns a 3D view and moves a 2D one.
class MouseTools {
 public:
  MouseTools(Workspace& workspace, qelhost::PlotScene& scene)
      : m_workspace(workspace), m_scene(scene) {}

  void Press(const MouseEvent& event);
  void Move(const MouseEvent& event);
  void Release(const MouseEvent& event);
  void Wheel(const MouseEvent& event, double notches);
  /// Ends the polygon in hand; false when there is none.
  bool FinishPolygon();
  /// Gives up what is being drawn; false when nothing is.
  bool Cancel();
  /// The host may have changed: a polygon belongs to its tool and its frame.
  void Follow();

  /// Device pixels of one of the window system's: how far a click may tremble grows with it.
  void SetScale(double devicePixelRatio) { m_scale = devicePixelRatio; }

  /// Called with the read-out of a probed cell or node.
  std::function<void(const std::string& text)> onProbed;
  /// Called when the picture has to be drawn although the host has not changed.
  std::function<void()> onRedraw;

 private:
  enum class Drag { None, Rotate, Pan, Zoom, Draw, MoveGeometry };
  using Point = std::array<double, 2>;

  Drag DragOf(const MouseEvent& event) const;
  void BeginDrag(Drag drag, const MouseEvent& event);
  void DragView(const MouseEvent& event);
  void SetView(const qelhost::View& view);
  void Probe(const MouseEvent& event);
  bool SelectAt(const MouseEvent& event);
  void ClickPolygon(const MouseEvent& event);
  void ShowPolygon(const Point& pointer);
  std::optional<qelhost::Geometry> Drawn(const Point& pointer) const;
  void Draw(const qelhost::Geometry& geometry);
  void ShowBand(std::optional<qelhost::Geometry> band);

  Workspace& m_workspace;
  qelhost::PlotScene& m_scene;
  double m_scale = 1.0;
  Drag m_drag = Drag::None;
  Qt::MouseButton m_button = Qt::NoButton;
  MouseEvent m_last;
  MouseEvent m_pressed;
  Point m_start{0.0, 0.0};  ///< of a drag, in grid coordinates
  LgIndex_t m_movedGeometry = 0;
  Point m_movedAnchor{0.0, 0.0};
  std::vector<Point> m_polygon;
  QelUniqueID_t m_polygonFrame = 0;
};

}  // namespace marquell::workbench
