// Blanking checks, geometries, pick list, probe, mouse.
#include "FakeCall.h"

#include <algorithm>

namespace fakehost {

namespace {

bool Compares(LgIndex_t relOp, double a, double b) {
  switch (relOp) {
    case BlankRelOp_LessThanOrEqual:
      return a <= b;
    case BlankRelOp_GreaterThanOrEqual:
      return a >= b;
    case BlankRelOp_LessThan:
      return a < b;
    case BlankRelOp_GreaterThan:
      return a > b;
    case BlankRelOp_EqualTo:
      return a == b;
    default:
      return a != b;
  }
}

double ValueAt(LgIndex_t zone, LgIndex_t var, LgIndex_t index) {
  const Values* const values = Host().ValuesAt(zone, var);
  if (values == nullptr || values->storage == nullptr) return 0.0;
  return index < 1 || index > values->storage->count ? 0.0 : values->storage->Get(index - 1);
}

bool IsMet(const Constraint& constraint, LgIndex_t zone, LgIndex_t index) {
  const bool hasConstant = constraint.op2Mode == ConstraintOp2Mode_UseConstant;
  return Compares(constraint.relOp, ValueAt(zone, constraint.varA, index),
                  hasConstant ? constraint.cutoff : ValueAt(zone, constraint.varB, index));
}

bool IsCellCentred(LgIndex_t zone, LgIndex_t var) {
  const Values* const values = Host().ValuesAt(zone, var);
  return values != nullptr && values->location == ValueLocation_CellCentered;
}

bool HidesCell(const Constraint& constraint, const Blanking& blanking, LgIndex_t zone,
               LgIndex_t cell) {
  if (IsCellCentred(zone, constraint.varA)) return IsMet(constraint, zone, cell);
  const std::vector<LgIndex_t> corners = Host().ZoneAt(zone)->mesh.Corners(cell);
  const auto isMet = [&](LgIndex_t node) { return IsMet(constraint, zone, node); };
  const LgIndex_t mode = blanking.blankEntireCell ? blanking.cellMode : BlankCellMode_AllCorners;
  if (mode == BlankCellMode_AnyCorner) return std::any_of(corners.begin(), corners.end(), isMet);
  if (mode == BlankCellMode_PrimaryValue) return isMet(corners.front());
  return std::all_of(corners.begin(), corners.end(), isMet);
}

bool HidesNode(const Constraint& constraint, const Blanking& blanking, LgIndex_t zone,
               LgIndex_t node) {
  if (!IsCellCentred(zone, constraint.varA)) return IsMet(constraint, zone, node);
  const Mesh& mesh = Host().ZoneAt(zone)->mesh;
  bool hasCell = false;
  for (LgIndex_t cell = 1; cell <= mesh.CellCount(); ++cell) {
    const std::vector<LgIndex_t> corners = mesh.Corners(cell);
    if (std::find(corners.begin(), corners.end(), node) == corners.end()) continue;
    hasCell = true;
    if (!HidesCell(constraint, blanking, zone, cell)) return false;
  }
  return hasCell;
}

template <class Hides>
bool IsBlanked(LgIndex_t zone, LgIndex_t item, Hides hides) {
  const Zone* const found = Host().ZoneAt(zone);
  if (found == nullptr) return false;
  const Blanking& blanking = Host().ActiveFrame().blanking;
  if (!blanking.include || !found->usesValueBlanking) return false;
  for (const auto& [number, constraint] : blanking.constraints) {
    if (constraint.include && hides(constraint, blanking, zone, item)) return true;
  }
  return false;
}

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

bool FakeHost::IsBlankedCell(LgIndex_t zone, LgIndex_t cell) {
  return IsBlanked(zone, cell, HidesCell);
}
bool FakeHost::IsBlankedNode(LgIndex_t zone, LgIndex_t node) {
  return IsBlanked(zone, node, HidesNode);
}

}  // namespace fakehost

using namespace fakehost;

bool QelUtilBlankingIsActive() {
  return !Fails(__func__) && Host().HasFrame() && Host().ActiveFrame().blanking.include;
}

bool QelUtilBlankingCheckDataPoint(LgIndex_t zone, LgIndex_t node) {
  return !Fails(__func__, zone, node) && !Host().IsBlankedNode(zone, node);
}

bool QelUtilBlankingCheckFECell(LgIndex_t zone, LgIndex_t element) {
  const bool fails = Fails(__func__, zone, element);
  const Zone* const found = Host().ZoneAt(zone);
  if (found != nullptr && found->mesh.type == ZoneType_Ordered) {
    Host().Report(std::string(__func__) + " was asked about an ordered zone");
  }
  return !fails && !Host().IsBlankedCell(zone, element);
}

bool QelUtilBlankingCheckIJKCell(LgIndex_t zone, LgIndex_t plane, LgIndex_t cellIndex) {
  const bool fails = Fails(__func__, zone, plane, cellIndex);
  const Zone* const found = Host().ZoneAt(zone);
  if (found != nullptr && found->mesh.type != ZoneType_Ordered) {
    Host().Report(std::string(__func__) + " was asked about a finite-element zone");
  }
  return !fails && !Host().IsBlankedCell(zone, cellIndex);
}

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
  Note(__func__, geom);
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
  Note(__func__, geom);
  const Geometry* const geometry = Existing(geom, __func__);
  return geometry == nullptr ? 0.0 : geometry->width;
}

double QelUtilGeomCircleGetRadius(QelGeomID_t geom) {
  Note(__func__, geom);
  const Geometry* const geometry = Existing(geom, __func__);
  return geometry == nullptr ? 0.0 : geometry->width;
}

LgIndex_t QelUtilGeomPolyGetPointCount(QelGeomID_t geom) {
  Note(__func__, geom);
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
  Note(__func__);
  return Host().mouseMode;
}
