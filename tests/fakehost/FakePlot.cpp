// Geometries, pick list, probe, mouse.
#include "FakeCall.h"

namespace fakehost {

namespace {

Geometry* GeometryWith(QelGeomID_t id) {
  if (!Host().HasFrame()) return nullptr;
  for (Geometry& geometry : Host().ActiveFrame().geometries) {
    if (geometry.id == id) return &geometry;
  }
  return nullptr;
}

/// Reads on a geometry that is gone are misuse: an add-on has to ask first.
Geometry* Existing(QelGeomID_t id, const char* function) {
  Geometry* const geometry = GeometryWith(id);
  if (geometry == nullptr) Host().Report(std::string(function) + " got a geometry that is gone");
  return geometry;
}

const PickedObject* PickedAt(LgIndex_t item) {
  if (!Host().HasFrame()) return nullptr;
  const std::vector<PickedObject>& list = Host().ActiveFrame().pickList;
  if (item < 1 || item > static_cast<LgIndex_t>(list.size())) return nullptr;
  return &list[static_cast<std::size_t>(item - 1)];
}

}  // namespace

}  // namespace fakehost

using namespace fakehost;

QelGeomID_t QelUtilGeomGetBase() {
  if (Fails(__func__) || !Host().HasFrame() || Host().ActiveFrame().geometries.empty()) return 0;
  return Host().ActiveFrame().geometries.front().id;
}

QelGeomID_t QelUtilGeomGetNext(QelGeomID_t geom) {
  if (Fails(__func__, geom) || Existing(geom, __func__) == nullptr) return 0;
  const std::vector<Geometry>& all = Host().ActiveFrame().geometries;
  for (std::size_t i = 0; i + 1 < all.size(); ++i) {
    if (all[i].id == geom) return all[i + 1].id;
  }
  return 0;
}

bool QelUtilGeomIsValid(QelGeomID_t geom) {
  return !Fails(__func__, geom) && GeometryWith(geom) != nullptr;
}

QelGeomType_e QelUtilGeomGetType(QelGeomID_t geom) {
  if (Fails(__func__, geom)) return GeomType_LineSegs;
  const Geometry* const geometry = Existing(geom, __func__);
  return geometry == nullptr ? GeomType_LineSegs : geometry->type;
}

void QelUtilGeomSetPositionCoordSys(QelGeomID_t geom, QelCoordSys_e sys) {
  Note(__func__, geom, static_cast<int>(sys));
  if (Geometry* const geometry = Existing(geom, __func__)) geometry->coordSys = sys;
}

void QelUtilGeomGetAnchorPos(QelGeomID_t geom, double* x, double* y, double* z) {
  Note(__func__, geom);
  const Geometry* const geometry = Existing(geom, __func__);
  if (geometry == nullptr) return;
  if (geometry->coordSys != CoordSys_Grid) Host().Report("a geometry was read outside the grid");
  if (x != nullptr) *x = geometry->anchor.x;
  if (y != nullptr) *y = geometry->anchor.y;
  if (z != nullptr) *z = geometry->anchor.z;
}

void QelUtilGeomRectangleGetSize(QelGeomID_t geom, double* width, double* height) {
  Note(__func__, geom);
  const Geometry* const geometry = Existing(geom, __func__);
  if (geometry == nullptr) return;
  if (width != nullptr) *width = geometry->width;
  if (height != nullptr) *height = geometry->height;
}

double QelUtilGeomSquareGetSize(QelGeomID_t geom) {
  if (Fails(__func__, geom)) return 0.0;
  const Geometry* const geometry = Existing(geom, __func__);
  return geometry == nullptr ? 0.0 : geometry->width;
}

double QelUtilGeomCircleGetRadius(QelGeomID_t geom) {
  if (Fails(__func__, geom)) return 0.0;
  const Geometry* const geometry = Existing(geom, __func__);
  return geometry == nullptr ? 0.0 : geometry->width;
}

LgIndex_t QelUtilGeomPolyGetPointCount(QelGeomID_t geom) {
  if (Fails(__func__, geom)) return 0;
  const Geometry* const geometry = Existing(geom, __func__);
  return geometry == nullptr ? 0 : static_cast<LgIndex_t>(geometry->points.size());
}

void QelUtilGeom2DPolylineGetPoint(QelGeomID_t geom, LgIndex_t point, double* x, double* y) {
  Note(__func__, geom, point);
  const Geometry* const geometry = Existing(geom, __func__);
  if (geometry == nullptr || point < 1 || x == nullptr || y == nullptr) return;
  if (point > static_cast<LgIndex_t>(geometry->points.size())) return;
  *x = geometry->points[static_cast<std::size_t>(point - 1)].x;
  *y = geometry->points[static_cast<std::size_t>(point - 1)].y;
}

LgIndex_t QelUtilPickListGetCount() {
  if (Fails(__func__) || !Host().HasFrame()) return 0;
  return static_cast<LgIndex_t>(Host().ActiveFrame().pickList.size());
}

QelPickObject_e QelUtilPickListGetType(LgIndex_t item) {
  const PickedObject* const picked = PickedAt(item);
  return Fails(__func__, item) || picked == nullptr ? PickObject_None : picked->type;
}

QelGeomID_t QelUtilPickListGetGeom(LgIndex_t item) {
  const PickedObject* const picked = PickedAt(item);
  return Fails(__func__, item) || picked == nullptr ? 0 : picked->geometry;
}

bool QelUtilProbeInstallCallback(QelProbeCallback_pf callback, const char* instruction) {
  if (Fails(__func__, instruction) || callback == nullptr || instruction == nullptr) return false;
  Host().probeCallback = callback;
  Host().probeInstruction = instruction;
  Host().mouseMode = Mouse_Probe;
  Host().Notify({StateChange_MouseModeUpdate, {}, {}, {}});
  return true;
}

LgIndex_t QelUtilProbeFieldGetZone() { return Fails(__func__) ? 0 : Host().probedZone; }
LgIndex_t QelUtilProbeFieldGetCell() { return Fails(__func__) ? 0 : Host().probedCell; }
LgIndex_t QelUtilProbeGetPointIndex() { return Fails(__func__) ? 0 : Host().probedNode; }

bool QelUtilMouseSetMode(QelMouseMode_e mode) {
  if (Fails(__func__, static_cast<int>(mode))) return false;
  if (mode < Mouse_None || mode > Mouse_GeomEllipse) return false;
  if (mode != Mouse_Probe) Host().probeCallback = nullptr;
  Host().mouseMode = mode;
  Host().Notify({StateChange_MouseModeUpdate, {}, {}, {}});
  return true;
}

QelMouseMode_e QelUtilMouseGetCurrentMode() {
  return Fails(__func__) ? Mouse_None : Host().mouseMode;
}
