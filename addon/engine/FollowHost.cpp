#include "GeometryChoice.h"
#include "HostLock.h"
#include "Selvane.h"

#include "qelvane/QelUtil.h"

#include <optional>

namespace qelvane::qelutiltools {

namespace {

std::optional<PickKind> KindOfGeometry(QelGeomType_e type) {
  switch (type) {
    case GeomType_LineSegs:
      return PickKind::Polygon;
    case GeomType_Rectangle:
    case GeomType_Square:
      return PickKind::Rectangle;
    case GeomType_Circle:
      return PickKind::Circle;
    default:
      return std::nullopt;
  }
}

/// The kind that the user's choice of a mouse mode leaves.
PickKind KindUnder(QelMouseMode_e mode, PickKind kind) {
  switch (mode) {
    case Mouse_GeomRectangle:
      return PickKind::Rectangle;
    case Mouse_GeomPolyline:
      return PickKind::Polygon;
    case Mouse_GeomCircle:
      return PickKind::Circle;
    case Mouse_Probe:
      return kind;
    default:
      return kind == PickKind::Cube || kind == PickKind::Sphere ? kind : PickKind::None;
  }
}

}  // namespace

void Selvane::TakeNewestGeometry() {
  const HostLock lock;
  RecordPickGeometry();
  SetGeometryArmed(false);
  const QelGeomID_t geometry = NewestGeometry();
  if (geometry == 0) return;
  const std::optional<PickKind> kind = KindOfGeometry(QelUtilGeomGetType(geometry));
  const bool usePaperCoords = QelUtilFrameGetPlotType() == PlotType_Cartesian2D;
  if (!kind || !m_polyBoundary.SetFromGeometry(geometry, usePaperCoords)) return;
  SetPickKind(*kind, true);
}

void Selvane::FollowMouseMode() {
  const HostLock lock;
  const PickKind kind = KindUnder(QelUtilMouseGetCurrentMode(), m_pickKind);
  if (kind == m_pickKind) return;
  // An undo repeats the last pick by its kind.
  DiscardUndo();
  m_pickKind = kind;
}

}  // namespace qelvane::qelutiltools
