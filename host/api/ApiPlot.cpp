// Blanking, geometries, pick list, probe, mouse, coordinates.
#include "ApiGuard.h"
#include "ApiHandles.h"
#include "PlotActions.h"

#include "qelvane/QelUtil.h"

using namespace qelhost;

namespace {

Geometry* GeometryOf(const Host& host, QelGeomID_t id) {
  Frame* const frame = host.frames.Active();
  return frame == nullptr ? nullptr : frame->geometries.Find(id);
}

void Put(double* target, double value) {
  if (target != nullptr) *target = value;
}

/// A size of a geometry of that type; 0 for another.
double SizeOf(const char* function, QelGeomID_t geom, QelGeomType_e type) {
  return Guarded(function, 0.0, [&](Host& host) {
    const Geometry* const geometry = GeometryOf(host, geom);
    return geometry == nullptr || geometry->type != type ? 0.0 : geometry->size[0];
  });
}

const PickedItem* PickedAt(const Host& host, LgIndex_t item) {
  const Frame* const frame = host.frames.Active();
  if (frame == nullptr || item < 1 || item > static_cast<LgIndex_t>(frame->picked.size())) {
    return nullptr;
  }
  return &frame->picked[static_cast<std::size_t>(item - 1)];
}

}  // namespace

bool QelUtilBlankingIsActive() {
  return Guarded(__func__, false, [](Host& host) {
    return host.frames.Active() != nullptr && host.frames.Active()->styles.blanking.include;
  });
}

bool QelUtilBlankingCheckDataPoint(LgIndex_t zone, LgIndex_t node) {
  return Guarded(__func__, false, [&](Host& host) {
    const Zone* const found = ActiveZone(host, zone);
    if (found == nullptr || node < 1 || node > found->NodeCount()) return false;
    const BlankedItems* const blanked = host.frames.Active()->Blanked(zone);
    return blanked == nullptr || !blanked->nodes.Has(std::int64_t{node} - 1);
  });
}

bool QelUtilBlankingCheckFECell(LgIndex_t zone, LgIndex_t element) {
  return Guarded(__func__, false, [&](Host& host) {
    const Zone* const found = ActiveZone(host, zone);
    if (found == nullptr || element < 1 || element > found->CellCount()) return false;
    const BlankedItems* const blanked = host.frames.Active()->Blanked(zone);
    return blanked == nullptr || !blanked->cells.Has(std::int64_t{element} - 1);
  });
}

bool QelUtilBlankingCheckIJKCell(LgIndex_t zone, LgIndex_t plane, LgIndex_t cellIndex) {
  constexpr LgIndex_t kVolumePlane = 0;
  return plane == kVolumePlane && QelUtilBlankingCheckFECell(zone, cellIndex);
}

QelGeomID_t QelUtilGeomGetBase() {
  return Guarded<QelGeomID_t>(__func__, 0, [](Host& host) {
    return host.frames.Active() == nullptr ? 0 : host.frames.Active()->geometries.First();
  });
}

QelGeomID_t QelUtilGeomGetNext(QelGeomID_t geom) {
  return Guarded<QelGeomID_t>(__func__, 0, [&](Host& host) {
    return host.frames.Active() == nullptr ? 0 : host.frames.Active()->geometries.After(geom);
  });
}

bool QelUtilGeomIsValid(QelGeomID_t geom) {
  return Guarded(__func__, false, [&](Host& host) { return GeometryOf(host, geom) != nullptr; });
}

QelGeomType_e QelUtilGeomGetType(QelGeomID_t geom) {
  return Guarded(__func__, GeomType_LineSegs, [&](Host& host) {
    const Geometry* const geometry = GeometryOf(host, geom);
    return geometry == nullptr ? GeomType_LineSegs : geometry->type;
  });
}

void QelUtilGeomSetPositionCoordSys(QelGeomID_t geom, QelCoordSys_e sys) {
  // All systems of this host are one and the same, so only the name changes.
  GuardedVoid(__func__, [&](Host& host) {
    Geometry* const geometry = GeometryOf(host, geom);
    if (geometry != nullptr && sys >= CoordSys_Grid && sys <= CoordSys_Paper) {
      geometry->coordSys = sys;
    }
  });
}

void QelUtilGeomGetAnchorPos(QelGeomID_t geom, double* x, double* y, double* z) {
  GuardedVoid(__func__, [&](Host& host) {
    const Geometry* const geometry = GeometryOf(host, geom);
    const auto anchor = geometry == nullptr ? std::array<double, 3>{} : geometry->anchor;
    Put(x, anchor[0]);
    Put(y, anchor[1]);
    Put(z, anchor[2]);
  });
}

void QelUtilGeomRectangleGetSize(QelGeomID_t geom, double* width, double* height) {
  GuardedVoid(__func__, [&](Host& host) {
    const Geometry* const geometry = GeometryOf(host, geom);
    const bool isRectangle = geometry != nullptr && geometry->type == GeomType_Rectangle;
    Put(width, isRectangle ? geometry->size[0] : 0.0);
    Put(height, isRectangle ? geometry->size[1] : 0.0);
  });
}

double QelUtilGeomSquareGetSize(QelGeomID_t geom) {
  return SizeOf(__func__, geom, GeomType_Square);
}

double QelUtilGeomCircleGetRadius(QelGeomID_t geom) {
  return SizeOf(__func__, geom, GeomType_Circle);
}

LgIndex_t QelUtilGeomPolyGetPointCount(QelGeomID_t geom) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host& host) -> LgIndex_t {
    const Geometry* const geometry = GeometryOf(host, geom);
    return geometry == nullptr ? 0 : static_cast<LgIndex_t>(geometry->points.size());
  });
}

void QelUtilGeom2DPolylineGetPoint(QelGeomID_t geom, LgIndex_t point, double* x, double* y) {
  GuardedVoid(__func__, [&](Host& host) {
    const Geometry* const geometry = GeometryOf(host, geom);
    const bool isThere = geometry != nullptr && point >= 1 &&
                         point <= static_cast<LgIndex_t>(geometry->points.size());
    const auto at =
        isThere ? geometry->points[static_cast<std::size_t>(point - 1)] : std::array<double, 2>{};
    Put(x, at[0]);
    Put(y, at[1]);
  });
}

LgIndex_t QelUtilPickListGetCount() {
  return Guarded<LgIndex_t>(__func__, 0, [](Host& host) -> LgIndex_t {
    const Frame* const frame = host.frames.Active();
    return frame == nullptr ? 0 : static_cast<LgIndex_t>(frame->picked.size());
  });
}

QelPickObject_e QelUtilPickListGetType(LgIndex_t item) {
  return Guarded(__func__, PickObject_None, [&](Host& host) {
    const PickedItem* const picked = PickedAt(host, item);
    return picked == nullptr ? PickObject_None : picked->type;
  });
}

QelGeomID_t QelUtilPickListGetGeom(LgIndex_t item) {
  return Guarded<QelGeomID_t>(__func__, 0, [&](Host& host) {
    const PickedItem* const picked = PickedAt(host, item);
    return picked == nullptr ? 0 : picked->geometry;
  });
}

bool QelUtilProbeInstallCallback(QelProbeCallback_pf callback, const char* instruction) {
  return Guarded(__func__, false,
                 [&](Host& host) { return InstallProbe(host, callback, TextOf(instruction)); });
}

LgIndex_t QelUtilProbeFieldGetZone() {
  return Guarded<LgIndex_t>(__func__, 0, [](Host& host) { return host.interaction.probedZone; });
}

LgIndex_t QelUtilProbeFieldGetCell() {
  return Guarded<LgIndex_t>(__func__, 0, [](Host& host) { return host.interaction.probedCell; });
}

LgIndex_t QelUtilProbeGetPointIndex() {
  return Guarded<LgIndex_t>(__func__, 0, [](Host& host) { return host.interaction.probedNode; });
}

bool QelUtilMouseSetMode(QelMouseMode_e mode) {
  return Guarded(__func__, false, [&](Host& host) { return SetMouseMode(host, mode); });
}

QelMouseMode_e QelUtilMouseGetCurrentMode() {
  return Guarded(__func__, Mouse_None, [](Host& host) { return host.interaction.mouseMode; });
}

// Without a window, and with paper equal to grid, every coordinate system is the same.
double QelUtilConvertXPosition(QelCoordSys_e /*from*/, QelCoordSys_e /*to*/, double x) { return x; }
double QelUtilConvertYPosition(QelCoordSys_e /*from*/, QelCoordSys_e /*to*/, double y) { return y; }
double QelUtilConvertXDimension(QelCoordSys_e /*from*/, QelCoordSys_e /*to*/, double dx) {
  return dx;
}

bool QelUtilSetupTransformations() {
  return Guarded(__func__, false, [](Host& host) {
    Frame* const frame = host.frames.Active();
    if (frame == nullptr) return false;
    frame->FixProjection();
    return true;
  });
}

// Asked for every node; nothing in it can throw, so nothing is guarded.
void QelUtilConvert3DPositionToGrid(double x, double y, double z, double* gx, double* gy,
                                    double* gz) {
  const Frame* const frame = Host::Instance().frames.Active();
  const std::array<double, 3> at =
      frame == nullptr ? std::array<double, 3>{} : frame->FixedProjection().ToPlane(x, y, z);
  Put(gx, at[0]);
  Put(gy, at[1]);
  Put(gz, at[2]);
}
