#include "MouseTools.h"

#include <algorithm>
#include <cmath>

#include "GeometryDrawing.h"
#include "LockStack.h"
#include "PlotActions.h"
#include "ReadOut.h"
#include "UserActions.h"

namespace marquell::workbench {

namespace {

using qelhost::Frame;
using qelhost::Geometry;
using qelhost::Host;

/// A press and a release closer than this are a click, in the window system's pixels.
constexpr double kClickSlack = 4.0;
/// How near to a geometry's outline or a polygon's first corner a click is on it.
constexpr double kGrabPixels = 8.0;

bool IsFar(const MouseEvent& from, const MouseEvent& to, double scale) {
  return std::hypot(to.x - from.x, to.y - from.y) > scale * kClickSlack;
}

QelMouseMode_e ModeOf(const Workspace& workspace) {
  return workspace.TheHost().interaction.mouseMode;
}

Frame* ActiveFrame(const Workspace& workspace) {
  Frame* const frame = workspace.TheHost().frames.Active();
  return frame != nullptr && frame->Data() != nullptr ? frame : nullptr;
}

}  // namespace

MouseTools::Drag MouseTools::DragOf(const MouseEvent& event) const {
  if (event.button == Qt::MiddleButton) return Drag::Pan;
  if (event.button == Qt::RightButton) return Drag::Zoom;
  switch (ModeOf(m_workspace)) {
    case Mouse_Zoom:
      return Drag::Zoom;
    case Mouse_Translate:
      return Drag::Pan;
    case Mouse_GeomRectangle:
    case Mouse_GeomSquare:
    case Mouse_GeomCircle:
    case Mouse_GeomEllipse:
      return Drag::Draw;
    case Mouse_GeomPolyline:
      return Drag::None;
    default:
      return ActiveFrame(m_workspace)->plotType == PlotType_Cartesian3D ? Drag::Rotate : Drag::Pan;
  }
}

void MouseTools::Press(const MouseEvent& event) {
  if (m_drag != Drag::None || ActiveFrame(m_workspace) == nullptr) return;
  m_pressed = m_last = event;
  m_button = event.button;
  const bool isLeft = event.button == Qt::LeftButton;
  const QelMouseMode_e mode = ModeOf(m_workspace);
  if (isLeft && mode == Mouse_GeomPolyline) {
    ClickPolygon(event);
    return;
  }
  if (event.button == Qt::RightButton && !m_polygon.empty()) {
    FinishPolygon();
    return;
  }
  if (isLeft && mode == Mouse_Select && SelectAt(event)) return;
  BeginDrag(DragOf(event), event);
}

void MouseTools::BeginDrag(Drag drag, const MouseEvent& event) {
  m_drag = drag;
  m_start = m_scene.GridAt(event.x, event.y);
}

void MouseTools::Move(const MouseEvent& event) {
  if (ActiveFrame(m_workspace) == nullptr) return;
  const Point pointer = m_scene.GridAt(event.x, event.y);
  switch (m_drag) {
    case Drag::None:
      if (!m_polygon.empty()) ShowPolygon(pointer);
      break;
    case Drag::Draw:
      ShowBand(Drawn(pointer));
      break;
    case Drag::MoveGeometry:
      if (const Geometry* const geometry =
              ActiveFrame(m_workspace)->geometries.At(m_movedGeometry)) {
        Geometry moved = *geometry;
        moved.anchor[0] = m_movedAnchor[0] + pointer[0] - m_start[0];
        moved.anchor[1] = m_movedAnchor[1] + pointer[1] - m_start[1];
        ShowBand(moved);
      }
      break;
    default:
      // A click that trembles is no drag, so that it can still probe.
      if (IsFar(m_pressed, event, m_scale) || m_last.x != m_pressed.x || m_last.y != m_pressed.y) {
        DragView(event);
        m_last = event;
      }
  }
}

void MouseTools::DragView(const MouseEvent& event) {
  const qelhost::View view = ActiveFrame(m_workspace)->view;
  const double dx = event.x - m_last.x;
  const double dy = event.y - m_last.y;
  m_scene.SetInteracting(true);
  switch (m_drag) {
    case Drag::Rotate:
      SetView(m_scene.Rotated(view, dx, dy));
      break;
    case Drag::Pan:
      SetView(m_scene.Panned(view, dx, dy));
      break;
    default: {
      constexpr double kPixelsPerDoubling = 100.0;
      SetView(m_scene.ZoomedAt(view, m_pressed.x, m_pressed.y, std::exp2(dy / kPixelsPerDoubling)));
    }
  }
}

void MouseTools::SetView(const qelhost::View& view) {
  m_workspace.Do([&view](Host& host) {
    {
      const qelhost::HostAction lock(host.lock);
      qelhost::SetView(host, view);
    }
    host.idle.Run();
  });
}

void MouseTools::Release(const MouseEvent& event) {
  if (m_drag == Drag::None || event.button != m_button) return;
  const Drag drag = m_drag;
  m_drag = Drag::None;
  m_scene.SetInteracting(false);
  ShowBand(std::nullopt);
  Frame* const frame = ActiveFrame(m_workspace);
  if (frame == nullptr) return;
  const Point pointer = m_scene.GridAt(event.x, event.y);
  const bool isClick = !IsFar(m_pressed, event, m_scale);
  if (drag == Drag::Draw && !isClick) {
    if (const auto geometry = Drawn(pointer)) Draw(*geometry);
  } else if (drag == Drag::MoveGeometry && !isClick) {
    m_workspace.Act(MoveCommand(m_movedGeometry, m_movedAnchor[0] + pointer[0] - m_start[0],
                                m_movedAnchor[1] + pointer[1] - m_start[1]));
  } else if (isClick && event.button == Qt::LeftButton) {
    if (ModeOf(m_workspace) == Mouse_Probe) Probe(event);
    if (ModeOf(m_workspace) == Mouse_Select && drag != Drag::MoveGeometry) {
      m_workspace.Do([](Host& host) { host.frames.Active()->picked.clear(); });
    }
  }
}

void MouseTools::Wheel(const MouseEvent& event, double notches) {
  Frame* const frame = ActiveFrame(m_workspace);
  if (frame == nullptr) return;
  constexpr double kFactorPerNotch = 1.15;
  SetView(m_scene.ZoomedAt(frame->view, event.x, event.y, std::pow(kFactorPerNotch, notches)));
}

void MouseTools::Probe(const MouseEvent& event) {
  const std::optional<qelhost::ProbeHit> hit = m_scene.HitAt(event.x, event.y);
  const LgIndex_t zone = hit ? hit->zone : 0;
  const LgIndex_t cell = hit ? hit->cell : 0;
  const LgIndex_t node = hit ? hit->node : 0;
  m_workspace.Do([&](Host& host) { qelhost::Probe(host, zone, cell, node, event.isCtrlHeld); });
  if (!onProbed) return;
  Frame* const frame = ActiveFrame(m_workspace);
  const bool isHit = hit.has_value() && frame != nullptr;
  onProbed(isHit ? ReadOut(*frame, zone, cell, event.isCtrlHeld ? node : 0) : "Nothing there");
}

bool MouseTools::SelectAt(const MouseEvent& event) {
  Frame& frame = *ActiveFrame(m_workspace);
  const Point at = m_scene.GridAt(event.x, event.y);
  const LgIndex_t found =
      GeometryAt(frame.geometries, at, m_scale * kGrabPixels * m_scene.GridPerPixel());
  if (found == 0) return false;
  m_movedGeometry = found;
  const auto& anchor = frame.geometries.At(found)->anchor;
  m_movedAnchor = {anchor[0], anchor[1]};
  m_workspace.Act("$!GEOMETRY SELECT " + std::to_string(found));
  BeginDrag(Drag::MoveGeometry, event);
  return true;
}

void MouseTools::ClickPolygon(const MouseEvent& event) {
  if (event.isDoubleClick) {
    FinishPolygon();
    return;
  }
  if (m_polygon.size() > 2) {
    const Point first = m_scene.PixelAt(m_polygon.front()[0], m_polygon.front()[1]);
    if (std::hypot(first[0] - event.x, first[1] - event.y) < m_scale * kGrabPixels) {
      FinishPolygon();
      return;
    }
  }
  const Point corner = m_scene.GridAt(event.x, event.y);
  if (m_polygon.empty() || m_polygon.back() != corner) m_polygon.push_back(corner);
  m_polygonFrame = ActiveFrame(m_workspace)->Id();
  ShowPolygon(corner);
}

void MouseTools::ShowPolygon(const Point& pointer) {
  std::vector<Point> corners = m_polygon;
  corners.push_back(pointer);
  ShowBand(PolygonOf(corners));
}

bool MouseTools::FinishPolygon() {
  if (m_polygon.empty()) return false;
  const std::vector<Point> corners = std::move(m_polygon);
  m_polygon.clear();
  ShowBand(std::nullopt);
  constexpr std::size_t kFewestCorners = 3;
  if (corners.size() >= kFewestCorners) Draw(PolygonOf(corners));
  return true;
}

bool MouseTools::Cancel() {
  const bool isDrawing = !m_polygon.empty() || m_drag == Drag::Draw || m_drag == Drag::MoveGeometry;
  m_polygon.clear();
  m_drag = Drag::None;
  m_scene.SetInteracting(false);
  ShowBand(std::nullopt);
  return isDrawing;
}

void MouseTools::Follow() {
  if (m_polygon.empty()) return;
  const Frame* const frame = ActiveFrame(m_workspace);
  const bool isSame = frame != nullptr && frame->Id() == m_polygonFrame;
  if (!isSame || ModeOf(m_workspace) != Mouse_GeomPolyline) Cancel();
}

std::optional<Geometry> MouseTools::Drawn(const Point& pointer) const {
  return DraggedGeometry(ModeOf(m_workspace), m_start, pointer);
}

void MouseTools::Draw(const Geometry& geometry) { m_workspace.Act(qelhost::DrawCommand(geometry)); }

void MouseTools::ShowBand(std::optional<Geometry> band) {
  m_scene.SetRubberBand(std::move(band));
  if (onRedraw) onRedraw();
}

}  // namespace marquell::workbench
