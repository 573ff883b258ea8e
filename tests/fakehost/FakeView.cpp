// Coordinates, view, layers, styles.
#include "FakeCall.h"
#include "FakeLists.h"

#include "qelvane/Keywords.h"

#include <cmath>

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

bool IsPath(const QelArgList* args, std::initializer_list<const char*> names) {
  static constexpr const char* kParameters[] = {SV_P1, SV_P2, SV_P3, SV_P4, SV_P5, SV_P6, SV_P7};
  std::size_t n = 0;
  for (const char* name : names) {
    const Argument* const argument = Find(args, kParameters[n++]);
    if (argument == nullptr || argument->text != name) return false;
  }
  return n == 7 || Find(args, kParameters[n]) == nullptr;
}

/// A style setting that holds an integer; null when the path is another's.
LgIndex_t* IntegerAt(const QelArgList* args) {
  Blanking& blanking = Host().ActiveFrame().blanking;
  if (IsPath(args, {SV_BLANKING, SV_VALUE, SV_VALUEBLANKCELLMODE})) return &blanking.cellMode;
  const Argument* const number = Find(args, SV_OFFSET1);
  if (number == nullptr) return nullptr;
  Constraint& constraint = blanking.constraints[static_cast<LgIndex_t>(number->integer)];
  const std::pair<const char*, LgIndex_t*> members[] = {
      {SV_VARA, &constraint.varA},
      {SV_VARB, &constraint.varB},
      {SV_RELOP, &constraint.relOp},
      {SV_CONSTRAINTOP2MODE, &constraint.op2Mode}};
  for (const auto& [name, member] : members) {
    if (IsPath(args, {SV_BLANKING, SV_VALUE, SV_CONSTRAINT, name})) return member;
  }
  return nullptr;
}

bool* SwitchAt(const QelArgList* args) {
  Blanking& blanking = Host().ActiveFrame().blanking;
  if (IsPath(args, {SV_BLANKING, SV_VALUE, SV_INCLUDE})) return &blanking.include;
  if (IsPath(args, {SV_BLANKING, SV_VALUE, SV_BLANKENTIRECELL})) return &blanking.blankEntireCell;
  const Argument* const number = Find(args, SV_OFFSET1);
  if (number == nullptr || !IsPath(args, {SV_BLANKING, SV_VALUE, SV_CONSTRAINT, SV_INCLUDE})) {
    return nullptr;
  }
  return &blanking.constraints[static_cast<LgIndex_t>(number->integer)].include;
}

double* NumberAt(const QelArgList* args) {
  const Argument* const number = Find(args, SV_OFFSET1);
  if (number == nullptr) return nullptr;
  if (!IsPath(args, {SV_BLANKING, SV_VALUE, SV_CONSTRAINT, SV_VALUECUTOFF})) return nullptr;
  return &Host().ActiveFrame().blanking.constraints[static_cast<LgIndex_t>(number->integer)].cutoff;
}

template <class T>
QelSetValueResult_e Assign(T& setting, T value, const std::vector<std::string>& params) {
  if (setting == value) return SetValueResult_Duplicate;
  setting = value;
  Host().Notify({StateChange_Style, {}, {}, params});
  return SetValueResult_Ok;
}

std::vector<std::string> FirstParams(const QelArgList* args) {
  std::vector<std::string> params;
  for (const char* name : {SV_P1, SV_P2, SV_P3}) {
    if (const Argument* const argument = Find(args, name)) params.push_back(argument->text);
  }
  return params;
}

QelSetValueResult_e SetZoneLayer(const char* function, const char* attribute, const QelSet* zones,
                                 double dValue, ArbParam_t iValue) {
  if (Fails(function, attribute, zones, dValue, iValue)) return SetValueResult_ValueError;
  for (const SetIndex_t zone : MembersOf(zones, function)) {
    if (Host().ZoneAt(static_cast<LgIndex_t>(zone)) == nullptr) return SetValueResult_ValueError;
  }
  const std::string name = attribute == nullptr ? "" : attribute;
  if (name != SV_SHOW && name != SV_COLOR && name != SV_LINETHICKNESS) {
    return SetValueResult_SyntaxError;
  }
  return SetValueResult_Ok;
}

}  // namespace

Point FakeHost::Project(const Point& point) {
  const ViewState& view = ActiveFrame().view;
  const Point p{point.x - view.origin.x, point.y - view.origin.y, point.z - view.origin.z};
  const double a = view.alpha * kRadians;
  const double x1 = std::cos(a) * p.x - std::sin(a) * p.y;
  const double y1 = std::sin(a) * p.x + std::cos(a) * p.y;
  const double s = view.psi * kRadians;
  const double y2 = std::cos(s) * y1 + std::sin(s) * p.z;
  const double z2 = -std::sin(s) * y1 + std::cos(s) * p.z;
  const double t = view.theta * kRadians;
  return {std::cos(t) * x1 + std::sin(t) * y2, -std::sin(t) * x1 + std::cos(t) * y2, z2};
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
  Host().ActiveFrame().view = view->state;
  Host().Notify({StateChange_Style, {}, {}, {SV_THREEDVIEW}});
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
  if (axis < RotateAxis_Psi || axis > RotateAxis_Alpha) return false;
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
  if (Fails(__func__, var) || Host().ActiveData() == nullptr) return false;
  Host().ActiveFrame().contourVar = var;
  return true;
}

bool QelUtilFieldLayerIsActive(const char* layer) {
  if (Fails(__func__, layer) || layer == nullptr || !Host().HasFrame()) return false;
  return Host().ActiveFrame().layers[layer];
}

bool QelUtilFieldLayerSetIsActive(const char* layer, bool active) {
  if (Fails(__func__, layer, active) || layer == nullptr || !Host().HasFrame()) return false;
  Host().ActiveFrame().layers[layer] = active;
  Host().Notify({StateChange_Style, {}, {}, {layer}});
  return true;
}

QelSetValueResult_e QelUtilZoneSetActive(const QelSet* zones, QelAssignOp_e op) {
  if (Fails(__func__, zones, static_cast<int>(op))) return SetValueResult_ValueError;
  const std::vector<SetIndex_t> members = MembersOf(zones, __func__);
  if (op == AssignOp_Equals) {
    for (Zone& zone : Host().ActiveData()->zones) zone.isActive = false;
  }
  for (const SetIndex_t member : members) {
    Zone* const zone = Host().ZoneAt(static_cast<LgIndex_t>(member));
    if (zone == nullptr) return SetValueResult_ValueError;
    zone->isActive = op != AssignOp_MinusEquals;
  }
  Host().Notify({StateChange_Style, {}, {}, {"ACTIVEFIELDMAPS"}});
  return SetValueResult_Ok;
}

QelSetValueResult_e QelUtilZoneSetEdgeLayer(const char* attribute, const QelSet* zones,
                                            double dValue, ArbParam_t iValue) {
  return SetZoneLayer(__func__, attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetMesh(const char* attribute, const QelSet* zones, double dValue,
                                       ArbParam_t iValue) {
  return SetZoneLayer(__func__, attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetShade(const char* attribute, const QelSet* zones, double dValue,
                                        ArbParam_t iValue) {
  return SetZoneLayer(__func__, attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetScatter(const char* attribute, const QelSet* zones, double dValue,
                                          ArbParam_t iValue) {
  return SetZoneLayer(__func__, attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetContour(const char* attribute, const QelSet* zones, double dValue,
                                          ArbParam_t iValue) {
  return SetZoneLayer(__func__, attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetVector(const char* attribute, const QelSet* zones, double dValue,
                                         ArbParam_t iValue) {
  return SetZoneLayer(__func__, attribute, zones, dValue, iValue);
}

QelSetValueResult_e QelUtilStyleSetLowLevelX(QelArgList* args) {
  if (Fails(__func__, args) || !IsLive(args, __func__)) return SetValueResult_ValueError;
  if (!Host().HasFrame()) return SetValueResult_ValueError;
  const Argument* const integer = Find(args, SV_IVALUE);
  const Argument* const number = Find(args, SV_DVALUE);
  const std::vector<std::string> params = FirstParams(args);
  if (bool* const setting = SwitchAt(args)) {
    return integer == nullptr ? SetValueResult_ValueError
                              : Assign(*setting, integer->integer != 0, params);
  }
  if (LgIndex_t* const setting = IntegerAt(args)) {
    return integer == nullptr ? SetValueResult_ValueError
                              : Assign(*setting, static_cast<LgIndex_t>(integer->integer), params);
  }
  if (double* const setting = NumberAt(args)) {
    return number == nullptr ? SetValueResult_ValueError : Assign(*setting, number->number, params);
  }
  return SetValueResult_SyntaxError;
}

QelSetValueResult_e QelUtilStyleGetLowLevelX(QelArgList* args) {
  if (Fails(__func__, args) || !IsLive(args, __func__)) return SetValueResult_ValueError;
  if (!Host().HasFrame()) return SetValueResult_ValueError;
  const Argument* const integer = Find(args, SV_IVALUE);
  const Argument* const number = Find(args, SV_DVALUE);
  auto* const integerOut =
      integer == nullptr ? nullptr : static_cast<ArbParam_t*>(const_cast<void*>(integer->pointer));
  auto* const numberOut =
      number == nullptr ? nullptr : static_cast<double*>(const_cast<void*>(number->pointer));
  if (const bool* const setting = SwitchAt(args)) {
    if (integerOut != nullptr) *integerOut = *setting ? 1 : 0;
    return integerOut == nullptr ? SetValueResult_ValueError : SetValueResult_Ok;
  }
  if (const LgIndex_t* const setting = IntegerAt(args)) {
    if (integerOut != nullptr) *integerOut = *setting;
    return integerOut == nullptr ? SetValueResult_ValueError : SetValueResult_Ok;
  }
  if (const double* const setting = NumberAt(args)) {
    if (numberOut != nullptr) *numberOut = *setting;
    return numberOut == nullptr ? SetValueResult_ValueError : SetValueResult_Ok;
  }
  return SetValueResult_SyntaxError;
}
