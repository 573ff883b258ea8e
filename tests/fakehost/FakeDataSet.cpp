// What an add-on adds to a data set and takes away from it: zones and variables.
#include "FakeCall.h"
#include "FakeLists.h"

#include "qelvane/Keywords.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace fakehost;

namespace {

bool IsKnownType(QelFieldDataType_e type) {
  return type >= FieldDataType_Invalid && type <= FieldDataType_Int64;
}

/// A product of dimensions when it can count something, else 0.
LgIndex_t CountOf(LgIndex_t i, LgIndex_t j, LgIndex_t k) {
  constexpr std::int64_t kMost = std::numeric_limits<LgIndex_t>::max();
  if (i < 1 || j < 1 || k < 1) return 0;
  const std::int64_t plane = std::int64_t{i} * j;
  return plane > kMost || plane * k > kMost ? 0 : static_cast<LgIndex_t>(plane * k);
}

/// A mesh of that size, every point at the origin and every corner at node 1.
bool MakeBare(QelZoneType_e type, LgIndex_t iMax, LgIndex_t jMax, LgIndex_t kMax, Mesh& mesh) {
  static constexpr std::size_t kCornerCounts[] = {0, 3, 4, 4, 8, 2};
  if (type < ZoneType_Ordered || type > ZoneType_FELineSeg || iMax < 1 || jMax < 1) return false;
  mesh.type = type;
  if (type == ZoneType_Ordered) {
    mesh.ijk = {iMax, jMax, kMax};
    mesh.points.resize(static_cast<std::size_t>(CountOf(iMax, jMax, kMax)));
    return !mesh.points.empty();
  }
  mesh.points.resize(static_cast<std::size_t>(iMax));
  mesh.elements.Assign(static_cast<std::size_t>(jMax), kCornerCounts[type], 1);
  return true;
}

/// How the arguments of a new variable describe it in every zone; null where they say nothing.
struct NewVariable {
  const char* name = nullptr;
  const QelFieldDataType_e* types = nullptr;
  const QelValueLocation_e* locations = nullptr;
  bool isDeferred = false;
};

bool ReadNewVariable(const QelArgList* args, std::size_t zoneCount, NewVariable& variable) {
  const Argument* const name = Find(args, SV_NAME, ArgumentKind::Text);
  if (name == nullptr || name->text.empty()) return false;
  variable.name = name->text.c_str();
  if (const Argument* const types = Find(args, SV_VARDATATYPE, ArgumentKind::Pointer)) {
    variable.types = static_cast<const QelFieldDataType_e*>(types->pointer);
    if (variable.types == nullptr) return false;
    if (!std::all_of(variable.types, variable.types + zoneCount, IsKnownType)) return false;
  }
  if (const Argument* const locations = Find(args, SV_VALUELOCATION, ArgumentKind::Pointer)) {
    variable.locations = static_cast<const QelValueLocation_e*>(locations->pointer);
    const auto isKnown = [](QelValueLocation_e location) {
      return location == ValueLocation_CellCentered || location == ValueLocation_Nodal;
    };
    if (variable.locations == nullptr) return false;
    if (!std::all_of(variable.locations, variable.locations + zoneCount, isKnown)) return false;
  }
  const Argument* const deferred = Find(args, SV_DEFERVARCREATION, ArgumentKind::Integer);
  variable.isDeferred = deferred != nullptr && deferred->integer != 0;
  return true;
}

Values ValuesFor(const Mesh& mesh, std::size_t zone, const NewVariable& variable) {
  Values values;
  if (variable.types != nullptr) values.typeWhenAllocated = StoredTypeOf(variable.types[zone]);
  if (variable.locations != nullptr) values.location = variable.locations[zone];
  if (variable.isDeferred) return values;
  const bool isCell = values.location == ValueLocation_CellCentered;
  values.storage = std::make_shared<Storage>(values.typeWhenAllocated,
                                             isCell ? mesh.CellCount() : mesh.NodeCount());
  return values;
}

Zone& AppendZone(Mesh mesh, const std::array<StoredType, 3>& coordinateTypes) {
  Zone& zone = *Host().ZoneAt(Host().AddZone(std::move(mesh), coordinateTypes));
  zone.isFromFile = false;
  return zone;
}

}  // namespace

bool QelUtilDataSetAddZone(const char* name, LgIndex_t iMax, LgIndex_t jMax, LgIndex_t kMax,
                           QelZoneType_e type, const QelFieldDataType_e* varTypes) {
  if (Fails(__func__, name, iMax, jMax, kMax, static_cast<int>(type))) return false;
  const DataSet* const data = Host().ActiveData();
  if (name == nullptr || *name == '\0' || data == nullptr) return false;
  const std::size_t varCount = data->varNames.size();
  if (varTypes != nullptr && !std::all_of(varTypes, varTypes + varCount, IsKnownType)) {
    return false;
  }
  Mesh mesh;
  if (!MakeBare(type, iMax, jMax, kMax, mesh)) return false;
  std::array<StoredType, 3> coordinateTypes{};
  for (std::size_t axis = 0; axis < coordinateTypes.size(); ++axis) {
    const auto var = static_cast<std::size_t>(Host().ActiveFrame().axisVars[axis]);
    const bool isChosen = varTypes != nullptr && var >= 1 && var <= varCount;
    coordinateTypes[axis] = isChosen ? StoredTypeOf(varTypes[var - 1]) : StoredType::Double;
  }
  Zone& zone = AppendZone(std::move(mesh), coordinateTypes);
  zone.name = name;
  for (std::size_t var = 0; varTypes != nullptr && var < varCount; ++var) {
    zone.vars[var].typeWhenAllocated = StoredTypeOf(varTypes[var]);
  }
  return true;
}

bool QelUtilDataSetDeleteZone(const QelSet* zones) {
  if (Fails(__func__, zones)) return false;
  const std::vector<SetIndex_t> doomed = MembersOf(zones, __func__);
  for (const SetIndex_t zone : doomed) {
    const Zone* const found = Host().ZoneAt(static_cast<LgIndex_t>(zone));
    if (found == nullptr || found->isFromFile) return false;
  }
  if (doomed.empty()) return false;
  std::vector<Zone>& all = Host().ActiveData()->zones;
  std::for_each(doomed.rbegin(), doomed.rend(),
                [&all](SetIndex_t zone) { all.erase(all.begin() + (zone - 1)); });
  Host().Notify({StateChange_ZonesDeleted, doomed, {}, {}});
  return true;
}

bool QelUtilDataSetAddVarX(QelArgList* args) {
  if (Fails(__func__, args) || !IsLive(args, __func__)) return false;
  DataSet* const data = Host().ActiveData();
  NewVariable variable;
  if (data == nullptr || !ReadNewVariable(args, data->zones.size(), variable)) return false;
  data->varNames.emplace_back(variable.name);
  for (std::size_t i = 0; i < data->zones.size(); ++i) {
    data->zones[i].vars.push_back(ValuesFor(data->zones[i].mesh, i, variable));
  }
  return true;
}

bool QelUtilCreateSphericalZone(LgIndex_t iPoints, LgIndex_t jPoints, double x, double y, double z,
                                double radius, QelFieldDataType_e type) {
  if (Fails(__func__, iPoints, jPoints, x, y, z, radius, static_cast<int>(type))) return false;
  if (iPoints < 2 || CountOf(iPoints, jPoints, 1) == 0 || jPoints < 2) return false;
  if (Host().ActiveData() == nullptr || !IsKnownType(type)) return false;
  const bool isFinite =
      std::isfinite(x) && std::isfinite(y) && std::isfinite(z) && std::isfinite(radius);
  if (!isFinite) return false;
  Mesh mesh = MakeLattice(ZoneType_FEQuad, iPoints - 1, jPoints - 1, 0);
  const double pi = std::acos(-1.0);
  for (Point& point : mesh.points) {
    const double turn = 2.0 * pi * point.x / (iPoints - 1);
    const double rise = pi * point.y / (jPoints - 1);
    point = {x + radius * std::sin(rise) * std::cos(turn),
             y + radius * std::sin(rise) * std::sin(turn), z + radius * (1.0 - std::cos(rise))};
  }
  const StoredType stored = StoredTypeOf(type);
  AppendZone(std::move(mesh), {stored, stored, stored});
  return true;
}
