// Styles: the settings that are named by a path, and the layers of zones.
#include "FakeCall.h"
#include "FakeLists.h"

#include "qelvane/Keywords.h"

#include <algorithm>
#include <cmath>
#include <variant>

namespace fakehost {

namespace {

using Path = std::vector<std::string>;
using Target = std::variant<bool*, LgIndex_t*, double*>;

constexpr LgIndex_t kAnyNumber = 1000000;
/// Stands for the number of variables.
constexpr LgIndex_t kVariables = -1;

/// A path below that of its owner, where the owner keeps the setting, and which integers it takes.
template <class Owner>
struct StyleRow {
  Path path;
  Target (*in)(Owner& owner);
  LgIndex_t least = 0;
  LgIndex_t most = kAnyNumber;
};

const std::vector<StyleRow<Blanking>>& BlankingRows() {
  static const std::vector<StyleRow<Blanking>> rows = {
      {{SV_INCLUDE}, [](Blanking& b) -> Target { return &b.include; }},
      {{SV_BLANKENTIRECELL}, [](Blanking& b) -> Target { return &b.blankEntireCell; }},
      {{SV_VALUEBLANKCELLMODE},
       [](Blanking& b) -> Target { return &b.cellMode; },
       BlankCellMode_AllCorners,
       BlankCellMode_PrimaryValue}};
  return rows;
}

const std::vector<StyleRow<Constraint>>& ConstraintRows() {
  static const std::vector<StyleRow<Constraint>> rows = {
      {{SV_INCLUDE}, [](Constraint& c) -> Target { return &c.include; }},
      {{SV_VARA}, [](Constraint& c) -> Target { return &c.varA; }, 1, kVariables},
      {{SV_VARB}, [](Constraint& c) -> Target { return &c.varB; }, 1, kVariables},
      {{SV_RELOP},
       [](Constraint& c) -> Target { return &c.relOp; },
       BlankRelOp_LessThanOrEqual,
       BlankRelOp_NotEqualTo},
      {{SV_CONSTRAINTOP2MODE},
       [](Constraint& c) -> Target { return &c.op2Mode; },
       ConstraintOp2Mode_UseVar,
       ConstraintOp2Mode_UseConstant},
      {{SV_VALUECUTOFF}, [](Constraint& c) -> Target { return &c.cutoff; }}};
  return rows;
}

const std::vector<StyleRow<FieldMap>>& FieldMapRows() {
  static const std::vector<StyleRow<FieldMap>> rows = {
      {{SV_SHADE, SV_SHOW},
       [](FieldMap& m) -> Target { return &m.Layer(ZoneLayer::Shade).isShown; }},
      {{SV_SURFACES, SV_SURFACESTOPLOT}, [](FieldMap& m) -> Target { return &m.surfacesToPlot; }},
      {{SV_EFFECTS, SV_USEVALUEBLANKING},
       [](FieldMap& m) -> Target { return &m.usesValueBlanking; }},
      {{SV_VOLUMEMODE, SV_VOLUMEOBJECTSTOPLOT, SV_SHOWSLICES},
       [](FieldMap& m) -> Target { return &m.showsSlices; }},
      {{SV_VOLUMEMODE, SV_VOLUMEOBJECTSTOPLOT, SV_SHOWISOSURFACES},
       [](FieldMap& m) -> Target { return &m.showsIsosurfaces; }},
      {{SV_VOLUMEMODE, SV_VOLUMEOBJECTSTOPLOT, SV_SHOWSTREAMTRACES},
       [](FieldMap& m) -> Target { return &m.showsStreamtraces; }}};
  return rows;
}

/// What an argument list is about: one setting, of one owner or of several field maps.
struct Found {
  QelSetValueResult_e result = SetValueResult_SyntaxError;
  std::vector<Target> targets;
  LgIndex_t least = 0;
  LgIndex_t most = kAnyNumber;
};

/// The rest of the path when it begins with the names; null when it does not.
const Path* Below(const Path& path, const Path& names, Path& rest) {
  if (path.size() <= names.size()) return nullptr;
  if (!std::equal(names.begin(), names.end(), path.begin())) return nullptr;
  rest.assign(path.begin() + static_cast<std::ptrdiff_t>(names.size()), path.end());
  return &rest;
}

template <class Owner>
Found Look(const std::vector<StyleRow<Owner>>& rows, const Path& path,
           const std::vector<Owner*>& owners) {
  Found found;
  for (const StyleRow<Owner>& row : rows) {
    if (row.path != path) continue;
    for (Owner* const owner : owners) found.targets.push_back(row.in(*owner));
    found.least = row.least;
    found.most = row.most;
    found.result = owners.empty() ? SetValueResult_ValueError : SetValueResult_Ok;
  }
  return found;
}

std::vector<Constraint*> ConstraintOf(const QelArgList* args) {
  const Argument* const number = Find(args, SV_OFFSET1, ArgumentKind::Integer);
  if (number == nullptr || number->integer < 1 || number->integer > kConstraintCount) return {};
  return {&Host().ActiveFrame().blanking.constraints[static_cast<LgIndex_t>(number->integer)]};
}

/// None when one of the set is no field map.
std::vector<FieldMap*> MapsOf(const std::vector<SetIndex_t>& numbers) {
  std::vector<FieldMap*> maps;
  for (const SetIndex_t number : numbers) {
    Zone* const zone = Host().ZoneAt(static_cast<LgIndex_t>(number));
    if (zone == nullptr) return {};
    maps.push_back(&zone->fieldMap);
  }
  return maps;
}

Path PathOf(const QelArgList* args) {
  Path path;
  for (const char* name : {SV_P1, SV_P2, SV_P3, SV_P4, SV_P5, SV_P6, SV_P7}) {
    const Argument* const part = Find(args, name, ArgumentKind::Text);
    if (part == nullptr) break;
    path.push_back(part->text);
  }
  return path;
}

std::vector<SetIndex_t> ObjectsOf(const QelArgList* args, const char* function) {
  const Argument* const set = Find(args, SV_OBJECTSET, ArgumentKind::Pointer);
  if (set == nullptr) return {};
  return MembersOf(static_cast<const QelSet*>(set->pointer), function);
}

Found FindSetting(const QelArgList* args, const char* function) {
  const Path path = PathOf(args);
  Path rest;
  if (Below(path, {SV_BLANKING, SV_VALUE, SV_CONSTRAINT}, rest) != nullptr) {
    return Look(ConstraintRows(), rest, ConstraintOf(args));
  }
  if (Below(path, {SV_BLANKING, SV_VALUE}, rest) != nullptr) {
    return Look(BlankingRows(), rest, {&Host().ActiveFrame().blanking});
  }
  if (Below(path, {SV_FIELDMAP}, rest) != nullptr) {
    return Look(FieldMapRows(), rest, MapsOf(ObjectsOf(args, function)));
  }
  return {};
}

/// True when the setting was another.
template <class T>
bool Assign(T& setting, T value) {
  const bool isNew = setting != value;
  setting = value;
  return isNew;
}

QelSetValueResult_e SetTargets(const Found& found, const Argument* integer,
                               const Argument* number) {
  if (found.result != SetValueResult_Ok) return found.result;
  const bool isReal = std::holds_alternative<double*>(found.targets.front());
  const bool isFlag = std::holds_alternative<bool*>(found.targets.front());
  if ((isReal ? number : integer) == nullptr) return SetValueResult_ValueError;
  const LgIndex_t most = found.most == kVariables ? QelUtilDataSetGetNumVars() : found.most;
  if (!isReal && !isFlag && (integer->integer < found.least || integer->integer > most)) {
    return SetValueResult_ValueError;
  }
  bool isNew = false;
  for (const Target& target : found.targets) {
    bool isNewHere = false;
    if (isReal) {
      isNewHere = Assign(*std::get<double*>(target), number->number);
    } else if (isFlag) {
      isNewHere = Assign(*std::get<bool*>(target), integer->integer != 0);
    } else {
      isNewHere = Assign(*std::get<LgIndex_t*>(target), static_cast<LgIndex_t>(integer->integer));
    }
    isNew = isNew || isNewHere;
  }
  return isNew ? SetValueResult_Ok : SetValueResult_Duplicate;
}

std::string Joined(const Path& path) {
  std::string text;
  for (const std::string& name : path) text += (text.empty() ? "" : " ") + name;
  return text;
}

/// Keeps the call for tests, and tells everybody of a change.
QelSetValueResult_e Finish(StyleCall call, const Path& path) {
  Host().styleCalls.push_back(call);
  if (call.result == SetValueResult_Ok) {
    const Path params(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(
                                                       std::min<std::size_t>(path.size(), 3)));
    Host().Notify({StateChange_Style, {}, {}, params});
  }
  return call.result;
}

QelSetValueResult_e SetLayer(LayerStyle& style, const std::string& attribute, double dValue,
                             ArbParam_t iValue) {
  bool isNew = false;
  if (attribute == SV_SHOW) {
    isNew = Assign(style.isShown, iValue != 0);
  } else if (attribute == SV_COLOR) {
    if (iValue < ColorIndex_Black || iValue > ColorIndex_Orange) return SetValueResult_ValueError;
    isNew = Assign(style.color, static_cast<LgIndex_t>(iValue));
  } else if (attribute == SV_LINETHICKNESS) {
    if (!std::isfinite(dValue) || dValue < 0.0) return SetValueResult_ValueError;
    isNew = Assign(style.lineThickness, dValue);
  } else {
    return SetValueResult_SyntaxError;
  }
  return isNew ? SetValueResult_Ok : SetValueResult_Duplicate;
}

QelSetValueResult_e SetZoneLayer(const char* function, ZoneLayer layer, const char* name,
                                 const char* attribute, const QelSet* zones, double dValue,
                                 ArbParam_t iValue) {
  if (Fails(function, attribute, zones, dValue, iValue)) return SetValueResult_ValueError;
  const Path path{name, attribute == nullptr ? "" : attribute};
  StyleCall call{Joined(path), MembersOf(zones, function), 0, iValue, dValue};
  LayerStyle nowhere;
  call.result = SetLayer(nowhere, path[1], dValue, iValue);
  const std::vector<FieldMap*> maps = MapsOf(call.objects);
  if (call.result == SetValueResult_Ok || call.result == SetValueResult_Duplicate) {
    call.result = maps.empty() ? SetValueResult_ValueError : SetValueResult_Duplicate;
    for (FieldMap* const map : maps) {
      if (SetLayer(map->Layer(layer), path[1], dValue, iValue) == SetValueResult_Ok) {
        call.result = SetValueResult_Ok;
      }
    }
  }
  return Finish(call, path);
}

}  // namespace

}  // namespace fakehost

using namespace fakehost;

QelSetValueResult_e QelUtilZoneSetEdgeLayer(const char* attribute, const QelSet* zones,
                                            double dValue, ArbParam_t iValue) {
  return SetZoneLayer(__func__, ZoneLayer::Edge, "EDGELAYER", attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetMesh(const char* attribute, const QelSet* zones, double dValue,
                                       ArbParam_t iValue) {
  return SetZoneLayer(__func__, ZoneLayer::Mesh, "MESH", attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetShade(const char* attribute, const QelSet* zones, double dValue,
                                        ArbParam_t iValue) {
  return SetZoneLayer(__func__, ZoneLayer::Shade, "SHADE", attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetScatter(const char* attribute, const QelSet* zones, double dValue,
                                          ArbParam_t iValue) {
  return SetZoneLayer(__func__, ZoneLayer::Scatter, "SCATTER", attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetContour(const char* attribute, const QelSet* zones, double dValue,
                                          ArbParam_t iValue) {
  return SetZoneLayer(__func__, ZoneLayer::Contour, "CONTOUR", attribute, zones, dValue, iValue);
}
QelSetValueResult_e QelUtilZoneSetVector(const char* attribute, const QelSet* zones, double dValue,
                                         ArbParam_t iValue) {
  return SetZoneLayer(__func__, ZoneLayer::Vector, "VECTOR", attribute, zones, dValue, iValue);
}

QelSetValueResult_e QelUtilZoneSetActive(const QelSet* zones, QelAssignOp_e op) {
  if (Fails(__func__, zones, static_cast<int>(op))) return SetValueResult_ValueError;
  StyleCall call{"ACTIVE", MembersOf(zones, __func__), 0, op, 0.0};
  DataSet* const data = Host().ActiveData();
  const bool areZones = MapsOf(call.objects).size() == call.objects.size();
  if (data == nullptr || !areZones || op < AssignOp_Equals || op > AssignOp_MinusEquals) {
    call.result = SetValueResult_ValueError;
    return Finish(call, {});
  }
  bool isNew = false;
  for (std::size_t i = 0; i < data->zones.size(); ++i) {
    const bool isMember = std::find(call.objects.begin(), call.objects.end(),
                                    static_cast<SetIndex_t>(i + 1)) != call.objects.end();
    bool& isActive = data->zones[i].isActive;
    const bool wanted = op == AssignOp_Equals ? isMember
                        : isMember            ? op == AssignOp_PlusEquals
                                              : isActive;
    const bool isNewHere = Assign(isActive, wanted);
    isNew = isNew || isNewHere;
  }
  call.result = isNew ? SetValueResult_Ok : SetValueResult_Duplicate;
  return Finish(call, {"ACTIVEFIELDMAPS"});
}

QelSetValueResult_e QelUtilStyleSetLowLevelX(QelArgList* args) {
  if (Fails(__func__, args) || !IsLive(args, __func__)) return SetValueResult_ValueError;
  if (!Host().HasFrame()) return SetValueResult_ValueError;
  const Argument* const integer = Find(args, SV_IVALUE, ArgumentKind::Integer);
  const Argument* const number = Find(args, SV_DVALUE, ArgumentKind::Number);
  const Argument* const offset = Find(args, SV_OFFSET1, ArgumentKind::Integer);
  const Path path = PathOf(args);
  StyleCall call{Joined(path), ObjectsOf(args, __func__),
                 offset == nullptr ? 0 : static_cast<LgIndex_t>(offset->integer),
                 integer == nullptr ? 0 : integer->integer,
                 number == nullptr ? 0.0 : number->number};
  call.result = SetTargets(FindSetting(args, __func__), integer, number);
  return Finish(call, path);
}

QelSetValueResult_e QelUtilStyleGetLowLevelX(QelArgList* args) {
  if (Fails(__func__, args) || !IsLive(args, __func__)) return SetValueResult_ValueError;
  if (!Host().HasFrame()) return SetValueResult_ValueError;
  const Found found = FindSetting(args, __func__);
  if (found.result != SetValueResult_Ok) return found.result;
  const Target& target = found.targets.front();
  const bool isReal = std::holds_alternative<double*>(target);
  const Argument* const out = Find(args, isReal ? SV_DVALUE : SV_IVALUE, ArgumentKind::Pointer);
  if (out == nullptr || out->pointer == nullptr) return SetValueResult_ValueError;
  void* const address = const_cast<void*>(out->pointer);
  if (isReal) {
    *static_cast<double*>(address) = *std::get<double*>(target);
  } else if (std::holds_alternative<bool*>(target)) {
    *static_cast<ArbParam_t*>(address) = *std::get<bool*>(target) ? 1 : 0;
  } else {
    *static_cast<ArbParam_t*>(address) = *std::get<LgIndex_t*>(target);
  }
  return SetValueResult_Ok;
}
