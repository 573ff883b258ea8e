// Coordinates, view, layers.
#include "FakeCall.h"

#include "qelvane/Keywords.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

struct QelView {
  fakehost::ViewState state;
};

namespace fakehost {

namespace {

const double kRadians = std::acos(-1.0) / 180.0;

double Map(QelCoordSys_e from, QelCoordSys_e to, double value, double offset) {
  if (from == CoordSys_Grid && to == CoordSys_Paper) return value * Host().paperScale + offset;
  if (from == CoordSys_Paper && to == CoordSys_Grid) return (value - offset) / Host().paperScale;
  return value;
}

bool IsLayer(const char* layer) {
  static constexpr const char* kLayers[] = {SV_SHOWEDGE,    SV_SHOWMESH,    SV_SHOWSHADE,
                                            SV_SHOWCONTOUR, SV_SHOWSCATTER, SV_SHOWVECTOR};
  const auto isSame = [layer](const char* known) { return std::strcmp(known, layer) == 0; };
  return layer != nullptr && std::any_of(std::begin(kLayers), std::end(kLayers), isSame);
}

}  // namespace

std::array<double, 16> FakeHost::ProjectionMatrix() {
  const ViewState& view = ActiveFrame().view;
  const double cosA = std::cos(view.alpha * kRadians);
  const double sinA = std::sin(view.alpha * kRadians);
  const double cosS = std::cos(view.psi * kRadians);
  const double sinS = std::sin(view.psi * kRadians);
  const double cosT = std::cos(view.theta * kRadians);
  const double sinT = std::sin(view.theta * kRadians);
  const Point& o = view.origin;
  const auto row = [&o](double* m, double x, double y, double z) {
    m[0] = x;
    m[1] = y;
    m[2] = z;
    m[3] = 0.0 - (x * o.x + y * o.y + z * o.z);
  };
  std::array<double, 16> m{};
  row(&m[0], cosT * cosA + sinT * cosS * sinA, sinT * cosS * cosA - cosT * sinA, sinT * sinS);
  row(&m[4], cosT * cosS * sinA - sinT * cosA, sinT * sinA + cosT * cosS * cosA, cosT * sinS);
  row(&m[8], 0.0 - sinS * sinA, 0.0 - sinS * cosA, cosS);
  m[15] = 1.0;
  return m;
}

Point FakeHost::Project(const Point& point) {
  const std::array<double, 16> m = ProjectionMatrix();
  const auto row = [&](std::size_t r) {
    return m[4 * r] * point.x + m[4 * r + 1] * point.y + m[4 * r + 2] * point.z + m[4 * r + 3];
  };
  return {row(0), row(1), row(2)};
}

}  // namespace fakehost

using namespace fakehost;

double QelUtilConvertXPosition(QelCoordSys_e from, QelCoordSys_e to, double x) {
  Note(__func__, static_cast<int>(from), static_cast<int>(to), x);
  return Map(from, to, x, Host().paperX);
}

double QelUtilConvertYPosition(QelCoordSys_e from, QelCoordSys_e to, double y) {
  Note(__func__, static_cast<int>(from), static_cast<int>(to), y);
  return Map(from, to, y, Host().paperY);
}

double QelUtilConvertXDimension(QelCoordSys_e from, QelCoordSys_e to, double dx) {
  Note(__func__, static_cast<int>(from), static_cast<int>(to), dx);
  return Map(from, to, dx, 0.0);
}

bool QelUtilSetupTransformations() { return !Fails(__func__) && Host().HasFrame(); }

void QelUtilConvert3DPositionToGrid(double x, double y, double z, double* gx, double* gy,
                                    double* gz) {
  Note(__func__, x, y, z);
  if (!Host().HasFrame()) return;
  const Point projected = Host().Project({x, y, z});
  if (gx != nullptr) *gx = projected.x;
  if (gy != nullptr) *gy = projected.y;
  if (gz != nullptr) *gz = projected.z;
}

bool QelUtilViewGet(QelView** view) {
  if (Fails(__func__) || view == nullptr || !Host().HasFrame()) return false;
  *view = new QelView{Host().ActiveFrame().view};
  TheAccount().handles[*view] = "view";
  return true;
}

bool QelUtilViewSet(const QelView* view) {
  if (Fails(__func__, view) || TheAccount().handles.count(view) == 0) return false;
  if (!Host().HasFrame()) return false;
  ViewState& held = Host().ActiveFrame().view;
  const bool isTurned = held.psi != view->state.psi || held.alpha != view->state.alpha ||
                        held.theta != view->state.theta;
  const bool isMoved =
      held.magnification != view->state.magnification || held.origin.x != view->state.origin.x ||
      held.origin.y != view->state.origin.y || held.origin.z != view->state.origin.z;
  held = view->state;
  if (isTurned) Host().Notify({StateChange_Style, {}, {}, {SV_THREEDVIEW}});
  if (isMoved) Host().Notify({StateChange_View, {}, {}, {}});
  return true;
}

void QelUtilViewDealloc(QelView** view) {
  NoteLockFree(__func__);
  if (view == nullptr || *view == nullptr) return;
  if (TheAccount().handles.erase(*view) == 0) {
    Host().Report("a view was released that the host did not hand out");
    return;
  }
  delete *view;
  *view = nullptr;
}

bool QelUtilViewGetMagnification(double* magnification) {
  if (Fails(__func__) || magnification == nullptr || !Host().HasFrame()) return false;
  *magnification = Host().ActiveFrame().view.magnification;
  return true;
}

bool QelUtilViewRotate3D(QelRotateAxis_e axis, double degrees, double x, double y, double z,
                         QelRotateOrigin_e origin) {
  if (Fails(__func__, static_cast<int>(axis), degrees, x, y, z, static_cast<int>(origin))) {
    return false;
  }
  if (!Host().HasFrame()) return false;
  ViewState& view = Host().ActiveFrame().view;
  double* const angles[] = {&view.psi, &view.theta, &view.alpha};
  if (axis < RotateAxis_Psi || axis > RotateAxis_Alpha || !std::isfinite(degrees)) return false;
  if (origin < RotateOriginLocation_DefinedOrigin || origin > RotateOriginLocation_Viewer) {
    return false;
  }
  *angles[axis] += degrees;
  Host().Notify({StateChange_Style, {}, {}, {SV_THREEDVIEW}});
  return true;
}

bool QelUtilThreeDViewGetViewerAngle(double* psi, double* alpha, double* theta) {
  if (Fails(__func__) || !Host().HasFrame()) return false;
  const ViewState& view = Host().ActiveFrame().view;
  if (psi != nullptr) *psi = view.psi * kRadians;
  if (alpha != nullptr) *alpha = view.alpha * kRadians;
  if (theta != nullptr) *theta = view.theta * kRadians;
  return true;
}

bool QelUtilContourSetVariable(LgIndex_t var) {
  const DataSet* const data = Host().ActiveData();
  if (Fails(__func__, var) || data == nullptr) return false;
  if (var < 1 || var > static_cast<LgIndex_t>(data->varNames.size())) return false;
  Host().ActiveFrame().contourVar = var;
  Host().Notify({StateChange_Style, {}, {}, {"GLOBALCONTOUR", "VAR"}});
  return true;
}

bool QelUtilFieldLayerIsActive(const char* layer) {
  if (Fails(__func__, layer) || !IsLayer(layer) || !Host().HasFrame()) return false;
  return Host().ActiveFrame().layers[layer];
}

bool QelUtilFieldLayerSetIsActive(const char* layer, bool active) {
  if (Fails(__func__, layer, active) || !IsLayer(layer) || !Host().HasFrame()) return false;
  Host().ActiveFrame().layers[layer] = active;
  Host().Notify({StateChange_Style, {}, {}, {layer}});
  return true;
}
