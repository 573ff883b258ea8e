#include "PlotActions.h"

#include "Host.h"

#include "qelvane/Keywords.h"

#include <algorithm>
#include <cmath>

namespace qelhost {

namespace {

bool AreFinite(std::initializer_list<double> numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](double x) { return std::isfinite(x); });
}

void EnterMouseMode(Host& host, QelMouseMode_e mode) {
  Interaction& interaction = host.interaction;
  if (mode != Mouse_Probe) interaction.probeCallback = nullptr;
  interaction.mouseMode = mode;
  host.notices.Send(StateChange_MouseModeUpdate);
}

/// An add-on that turns the view while it holds the lock records a line of its own for that, which
/// may depend on how the view was before.
void TurnTo(Host& host, Frame& frame, const View& view) {
  const bool isOwnersLine = host.lock.IsOn() && host.lock.Owner() != LockStack::kHostName;
  if (isOwnersLine) host.recorder.AddStateLines(StateOf(host.frames));
  frame.view = view;
  if (isOwnersLine) host.recorder.TakeViewAsRecorded(view);
}

bool ChangeView(Host& host, Frame& frame, const View& view) {
  const bool isTurned = !HaveSameProjection(frame.view, view);
  const bool isMoved =
      frame.view.magnification != view.magnification || frame.view.translation != view.translation;
  TurnTo(host, frame, view);
  if (isTurned) host.notices.SendStyle({SV_THREEDVIEW});
  if (isMoved || !isTurned) host.notices.Send(StateChange_View);
  return true;
}

}  // namespace

bool SetMouseMode(Host& host, QelMouseMode_e mode) {
  if (mode < Mouse_None || mode > Mouse_GeomEllipse) return false;
  EnterMouseMode(host, mode);
  return true;
}

bool InstallProbe(Host& host, QelProbeCallback_pf callback, const std::string& instruction) {
  if (callback == nullptr) return false;
  host.interaction.probeCallback = callback;
  host.interaction.probeInstruction = instruction;
  EnterMouseMode(host, Mouse_Probe);
  return true;
}

bool ClickProbe(Host& host, LgIndex_t zone, LgIndex_t cell, LgIndex_t node, bool isCtrlHeld) {
  Interaction& interaction = host.interaction;
  if (interaction.mouseMode != Mouse_Probe) return false;
  interaction.probedZone = zone;
  interaction.probedCell = cell;
  interaction.probedNode = node;
  const QelProbeCallback_pf callback = interaction.probeCallback;
  if (callback != nullptr) callback(isCtrlHeld);
  return true;
}

bool SetPlotType(Host& host, QelPlotType_e type) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr || type < PlotType_Cartesian3D || type > PlotType_Sketch) return false;
  if (frame->plotType == type) return true;
  frame->plotType = type;
  host.notices.SendStyle({SV_PLOTTYPE});
  return true;
}

bool SetViewAngles(Host& host, double psiDeg, double alphaDeg, double thetaDeg) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr || !AreFinite({psiDeg, alphaDeg, thetaDeg})) return false;
  View view = frame->view;
  view.psiDeg = psiDeg;
  view.alphaDeg = alphaDeg;
  view.thetaDeg = thetaDeg;
  return ChangeView(host, *frame, view);
}

bool SetViewOrigin(Host& host, const std::array<double, 3>& origin) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr || !AreFinite({origin[0], origin[1], origin[2]})) return false;
  View view = frame->view;
  view.origin = origin;
  return ChangeView(host, *frame, view);
}

bool SetView(Host& host, const View& view) {
  Frame* const frame = host.frames.Active();
  return frame != nullptr && ChangeView(host, *frame, view);
}

bool RotateView(Host& host, QelRotateAxis_e axis, double degrees) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr || !AreFinite({degrees})) return false;
  View view = frame->view;
  switch (axis) {
    case RotateAxis_Psi:
      view.psiDeg = AddDegrees(view.psiDeg, degrees);
      break;
    case RotateAxis_Theta:
      view.thetaDeg = AddDegrees(view.thetaDeg, degrees);
      break;
    case RotateAxis_Alpha:
      view.alphaDeg = AddDegrees(view.alphaDeg, degrees);
      break;
    default:
      return false;
  }
  TurnTo(host, *frame, view);
  host.notices.SendStyle({SV_THREEDVIEW});
  return true;
}

bool FitView(Host& host) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr) return false;
  frame->view.magnification = 1.0;
  frame->view.translation = {0.0, 0.0};
  host.notices.Send(StateChange_View);
  return true;
}

bool ActivateFrame(Host& host, QelUniqueID_t id) {
  const Frame* const before = host.frames.Active();
  if (before != nullptr && before->Id() == id) return true;
  const QelPlotType_e typeBefore = before == nullptr ? PlotType_None : before->plotType;
  const bool hadData = before != nullptr && before->Data() != nullptr;
  if (!host.frames.Activate(id)) return false;
  host.notices.Send(StateChange_NewActiveFrame);
  const Frame& now = *host.frames.Active();
  if (now.plotType != typeBefore || (now.Data() != nullptr) != hadData) {
    host.notices.SendStyle({SV_PLOTTYPE});
  }
  return true;
}

bool SetSolutionTime(Host& host, double time) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr || !AreFinite({time})) return false;
  frame->solutionTime = time;
  host.notices.Send(StateChange_SolutionTime);
  return true;
}

bool SetZonesActive(Host& host, const std::vector<LgIndex_t>& zones, QelAssignOp_e op) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr || frame->Data() == nullptr) return false;
  if (op < AssignOp_Equals || op > AssignOp_MinusEquals) return false;
  DataSet& data = *frame->Data();
  const bool areKnown = std::all_of(zones.begin(), zones.end(),
                                    [&](LgIndex_t n) { return data.FindZone(n) != nullptr; });
  if (!areKnown) return false;
  if (op == AssignOp_Equals) {
    for (LgIndex_t n = 1; n <= data.ZoneCount(); ++n) data.FindZone(n)->active = false;
  }
  for (const LgIndex_t n : zones) data.FindZone(n)->active = op != AssignOp_MinusEquals;
  host.notices.SendStyle({"ACTIVEFIELDMAPS"});
  return true;
}

bool SetLayerActive(Host& host, Layer layer, bool active) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr) return false;
  frame->styles.layerActive[static_cast<std::size_t>(layer)] = active;
  host.notices.SendStyle({"FIELDLAYERS"});
  return true;
}

bool SetContourVariable(Host& host, LgIndex_t variable) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr || frame->Data() == nullptr) return false;
  if (frame->Data()->FindVariable(variable) == nullptr) return false;
  frame->styles.contourVariable = variable;
  host.notices.SendStyle({"GLOBALCONTOUR", "VAR"});
  return true;
}

QelGeomID_t AddGeometry(Host& host, const Geometry& geometry) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr) return 0;
  const QelGeomID_t id = frame->geometries.Add(geometry);
  host.notices.Send(StateChange_GeomCreated);
  return id;
}

bool SelectGeometry(Host& host, LgIndex_t n) {
  Frame* const frame = host.frames.Active();
  const Geometry* const geometry = frame == nullptr ? nullptr : frame->geometries.At(n);
  if (geometry == nullptr) return false;
  frame->picked = {{PickObject_Geom, geometry->id}};
  return true;
}

bool MoveGeometry(Host& host, LgIndex_t n, double x, double y) {
  Frame* const frame = host.frames.Active();
  Geometry* const geometry = frame == nullptr ? nullptr : frame->geometries.At(n);
  if (geometry == nullptr || !AreFinite({x, y})) return false;
  geometry->anchor[0] = x;
  geometry->anchor[1] = y;
  return true;
}

bool DeleteGeometry(Host& host, LgIndex_t n) {
  Frame* const frame = host.frames.Active();
  const Geometry* const geometry = frame == nullptr ? nullptr : frame->geometries.At(n);
  if (geometry == nullptr) return false;
  const QelGeomID_t id = geometry->id;
  auto& picked = frame->picked;
  picked.erase(std::remove_if(picked.begin(), picked.end(),
                              [id](const PickedItem& item) { return item.geometry == id; }),
               picked.end());
  return frame->geometries.Delete(id);
}

bool DeleteZones(Host& host, const std::vector<LgIndex_t>& zones) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr || frame->Data() == nullptr || zones.empty()) return false;
  if (!frame->Data()->DeleteZones(zones)) return false;
  frame->styles.DropZones(zones);
  host.notices.Send(StateChange_ZonesDeleted);
  return true;
}

bool AddSphereZone(Host& host, LgIndex_t iPoints, LgIndex_t jPoints,
                   const std::array<double, 3>& lowest, double radius, QelFieldDataType_e type) {
  constexpr double kPi = 3.14159265358979323846;
  constexpr LgIndex_t kMostPoints = 10000;
  Frame* const frame = host.frames.Active();
  if (frame == nullptr || frame->Data() == nullptr) return false;
  if (iPoints < 2 || jPoints < 2 || iPoints > kMostPoints || jPoints > kMostPoints) return false;
  if (!AreFinite({lowest[0], lowest[1], lowest[2], radius})) return false;

  DataSet& data = *frame->Data();
  std::vector<QelFieldDataType_e> types(static_cast<std::size_t>(data.VariableCount()), type);
  const LgIndex_t zone =
      data.AddZone("Sphere", iPoints * jPoints, (iPoints - 1) * (jPoints - 1), 0, ZoneType_FEQuad,
                   type == FieldDataType_Invalid ? nullptr : types.data());
  if (zone == 0) return false;
  QelFieldData* const xs = data.Writable(zone, data.CoordinateVariable('X'));
  QelFieldData* const ys = data.Writable(zone, data.CoordinateVariable('Y'));
  QelFieldData* const zs = data.Writable(zone, data.CoordinateVariable('Z'));
  QelNodeMap* const nodes = data.FindZone(zone)->WritableNodeMap();
  if (xs == nullptr || ys == nullptr || zs == nullptr || nodes == nullptr) return false;

  for (LgIndex_t j = 0; j < jPoints; ++j) {
    const double latitude = kPi * (static_cast<double>(j) / (jPoints - 1) - 0.5);
    for (LgIndex_t i = 0; i < iPoints; ++i) {
      const double longitude = 2.0 * kPi * static_cast<double>(i) / (iPoints - 1);
      const LgIndex_t node = i + j * iPoints;
      xs->set(xs, node, lowest[0] + radius * std::cos(latitude) * std::cos(longitude));
      ys->set(ys, node, lowest[1] + radius * std::cos(latitude) * std::sin(longitude));
      zs->set(zs, node, lowest[2] + radius + radius * std::sin(latitude));
      if (i + 1 == iPoints || j + 1 == jPoints) continue;
      const std::int64_t element = i + std::int64_t{j} * (iPoints - 1);
      nodes->SetNode(element, 0, node);
      nodes->SetNode(element, 1, node + 1);
      nodes->SetNode(element, 2, node + 1 + iPoints);
      nodes->SetNode(element, 3, node + iPoints);
    }
  }
  return true;
}

QelSetValueResult_e ApplyStyle(Host& host, const StyleAddress& address, ArbParam_t integer,
                               double value) {
  Frame* const frame = host.frames.Active();
  if (frame == nullptr) return SetValueResult_ValueError;
  const LgIndex_t variableCount = frame->Data() == nullptr ? 0 : frame->Data()->VariableCount();
  const bool isAddOns = host.lock.IsOn() && host.lock.Owner() != LockStack::kHostName;
  const QelSetValueResult_e result = SetStyle(frame->styles, address, integer, value, variableCount,
                                              isAddOns ? StyleSetter::AddOn : StyleSetter::Host);
  if (result == SetValueResult_Ok) host.notices.SendStyle(address.path);
  return result;
}

}  // namespace qelhost
