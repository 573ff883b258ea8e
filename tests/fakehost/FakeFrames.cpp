// Frames, data sets, zones, variables.
#include "FakeCall.h"
#include "FakeLists.h"

#include "qelvane/Keywords.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace fakehost;

namespace {

bool HandOut(const std::string& text, char** out) {
  if (out == nullptr) return false;
  *out = NewString(text, "name");
  return true;
}

void SetIfWanted(LgIndex_t* out, LgIndex_t value) {
  if (out != nullptr) *out = value;
}

}  // namespace

LgIndex_t QelUtilFrameGetCount() {
  return Fails(__func__) ? 0 : static_cast<LgIndex_t>(Host().frames.size());
}

QelUniqueID_t QelUtilFrameGetUniqueID() {
  return Fails(__func__) || !Host().HasFrame() ? 0 : Host().ActiveFrame().id;
}

bool QelUtilFrameActivateByUniqueID(QelUniqueID_t id) {
  if (Fails(__func__, id)) return false;
  for (std::size_t i = 0; i < Host().frames.size(); ++i) {
    if (Host().frames[i].id != id) continue;
    if (i != Host().activeFrame) {
      Host().activeFrame = i;
      Host().Notify({StateChange_NewActiveFrame, {}, {}, {}});
    }
    return true;
  }
  return false;
}

QelPlotType_e QelUtilFrameGetPlotType() {
  return Fails(__func__) || !Host().HasFrame() ? PlotType_None : Host().ActiveFrame().plotType;
}

bool QelUtilDataSetIsAvailable() { return !Fails(__func__) && Host().ActiveData() != nullptr; }

QelUniqueID_t QelUtilDataSetGetUniqueID() {
  return Fails(__func__) || Host().ActiveData() == nullptr ? 0 : Host().ActiveData()->id;
}

bool QelUtilDataSetGetInfo(char** title, LgIndex_t* numZones, LgIndex_t* numVars) {
  const DataSet* const data = Host().ActiveData();
  if (Fails(__func__) || data == nullptr) return false;
  if (title != nullptr) *title = NewString(data->title, "title");
  SetIfWanted(numZones, static_cast<LgIndex_t>(data->zones.size()));
  SetIfWanted(numVars, static_cast<LgIndex_t>(data->varNames.size()));
  return true;
}

LgIndex_t QelUtilDataSetGetNumZones() {
  const DataSet* const data = Host().ActiveData();
  return Fails(__func__) || data == nullptr ? 0 : static_cast<LgIndex_t>(data->zones.size());
}

LgIndex_t QelUtilDataSetGetNumVars() {
  const DataSet* const data = Host().ActiveData();
  return Fails(__func__) || data == nullptr ? 0 : static_cast<LgIndex_t>(data->varNames.size());
}

bool QelUtilDataSetAddZone(const char* name, LgIndex_t iMax, LgIndex_t jMax, LgIndex_t kMax,
                           QelZoneType_e type, const QelFieldDataType_e* varTypes) {
  if (Fails(__func__, name, iMax, jMax, kMax, static_cast<int>(type))) return false;
  if (name == nullptr || Host().ActiveData() == nullptr || iMax < 1 || jMax < 1) return false;
  static constexpr std::size_t kCornerCounts[] = {0, 3, 4, 4, 8, 2};
  if (type < ZoneType_Ordered || type > ZoneType_FELineSeg) return false;
  Mesh mesh;
  mesh.type = type;
  if (type == ZoneType_Ordered) {
    mesh.ijk = {iMax, jMax, std::max<LgIndex_t>(kMax, 1)};
    mesh.points.resize(static_cast<std::size_t>(mesh.ijk[0] * mesh.ijk[1] * mesh.ijk[2]));
  } else {
    mesh.points.resize(static_cast<std::size_t>(iMax));
    mesh.elements.assign(static_cast<std::size_t>(jMax),
                         std::vector<LgIndex_t>(kCornerCounts[type], 1));
  }
  const StoredType stored = varTypes == nullptr ? StoredType::Double : StoredTypeOf(varTypes[0]);
  Zone& zone = *Host().ZoneAt(Host().AddZone(mesh, stored));
  zone.name = name;
  zone.isFromFile = false;
  return true;
}

bool QelUtilDataSetDeleteZone(const QelSet* zones) {
  if (Fails(__func__, zones)) return false;
  std::vector<SetIndex_t> doomed = MembersOf(zones, __func__);
  for (const SetIndex_t zone : doomed) {
    const Zone* const found = Host().ZoneAt(static_cast<LgIndex_t>(zone));
    if (found == nullptr || found->isFromFile) return false;
  }
  if (doomed.empty()) return false;
  InvalidateReferences(0, 0);
  std::vector<Zone>& all = Host().ActiveData()->zones;
  std::for_each(doomed.rbegin(), doomed.rend(),
                [&all](SetIndex_t zone) { all.erase(all.begin() + (zone - 1)); });
  Host().Notify({StateChange_ZonesDeleted, doomed, {}, {}});
  return true;
}

bool QelUtilDataSetAddVarX(QelArgList* args) {
  if (Fails(__func__, args) || !IsLive(args, __func__)) return false;
  const Argument* const name = Find(args, SV_NAME);
  if (name == nullptr || Host().ActiveData() == nullptr) return false;
  const Argument* const types = Find(args, SV_VARDATATYPE);
  const Argument* const locations = Find(args, SV_VALUELOCATION);
  const Argument* const deferred = Find(args, SV_DEFERVARCREATION);
  const LgIndex_t var = Host().AddVariable(name->text, ValueLocation_Nodal, StoredType::Double,
                                           [](LgIndex_t, LgIndex_t) { return 0.0; });
  for (std::size_t i = 0; i < Host().ActiveData()->zones.size(); ++i) {
    Values& values = *Host().ValuesAt(static_cast<LgIndex_t>(i + 1), var);
    if (types != nullptr) {
      values.typeWhenAllocated =
          StoredTypeOf(static_cast<const QelFieldDataType_e*>(types->pointer)[i]);
    }
    if (locations != nullptr) {
      values.location = static_cast<const QelValueLocation_e*>(locations->pointer)[i];
    }
    const Mesh& mesh = Host().ActiveData()->zones[i].mesh;
    const bool isCell = values.location == ValueLocation_CellCentered;
    values.storage = std::make_shared<Storage>(values.typeWhenAllocated,
                                               isCell ? mesh.CellCount() : mesh.NodeCount());
    if (deferred != nullptr && deferred->integer != 0) values.storage.reset();
  }
  return true;
}

bool QelUtilCreateSphericalZone(LgIndex_t iPoints, LgIndex_t jPoints, double x, double y, double z,
                                double radius, QelFieldDataType_e type) {
  if (Fails(__func__, iPoints, jPoints, x, y, z, radius)) return false;
  if (iPoints < 2 || jPoints < 2 || Host().ActiveData() == nullptr) return false;
  Mesh mesh = MakeLattice(ZoneType_FEQuad, iPoints - 1, jPoints - 1, 0);
  const double pi = std::acos(-1.0);
  for (Point& point : mesh.points) {
    const double turn = 2.0 * pi * point.x / (iPoints - 1);
    const double rise = pi * point.y / (jPoints - 1);
    point = {x + radius * std::sin(rise) * std::cos(turn),
             y + radius * std::sin(rise) * std::sin(turn), z + radius * (1.0 - std::cos(rise))};
  }
  Host().ZoneAt(Host().AddZone(mesh, StoredTypeOf(type)))->isFromFile = false;
  return true;
}

bool QelUtilZoneGetName(LgIndex_t zone, char** name) {
  const Zone* const found = Host().ZoneAt(zone);
  return !Fails(__func__, zone) && found != nullptr && HandOut(found->name, name);
}

bool QelUtilZoneRename(LgIndex_t zone, const char* name) {
  Zone* const found = Host().ZoneAt(zone);
  if (Fails(__func__, zone, name) || found == nullptr || name == nullptr) return false;
  found->name = name;
  return true;
}

QelZoneType_e QelUtilZoneGetType(LgIndex_t zone) {
  const Zone* const found = Host().ZoneAt(zone);
  Note(__func__, zone);
  return found == nullptr ? ZoneType_Ordered : found->mesh.type;
}

bool QelUtilZoneIsFiniteElement(LgIndex_t zone) {
  const Zone* const found = Host().ZoneAt(zone);
  Note(__func__, zone);
  return found != nullptr && found->mesh.type != ZoneType_Ordered;
}

void QelUtilZoneGetIJK(LgIndex_t zone, LgIndex_t* i, LgIndex_t* j, LgIndex_t* k) {
  const Zone* const found = Host().ZoneAt(zone);
  std::array<LgIndex_t, 3> ijk{0, 0, 0};
  const bool fails = Fails(__func__, zone);
  if (!fails && found != nullptr) {
    const Mesh& mesh = found->mesh;
    if (mesh.type == ZoneType_Ordered) {
      ijk = mesh.ijk;
    } else if (mesh.type == ZoneType_FEPolygon || mesh.type == ZoneType_FEPolyhedron) {
      ijk = {mesh.NodeCount(), mesh.CellCount(), static_cast<LgIndex_t>(mesh.faces.size())};
    } else {
      const std::size_t corners = mesh.elements.empty() ? 0 : mesh.elements.front().size();
      ijk = {mesh.NodeCount(), mesh.CellCount(), static_cast<LgIndex_t>(corners)};
    }
  }
  SetIfWanted(i, ijk[0]);
  SetIfWanted(j, ijk[1]);
  SetIfWanted(k, ijk[2]);
}

bool QelUtilZoneIsActive(LgIndex_t zone) {
  const Zone* const found = Host().ZoneAt(zone);
  return !Fails(__func__, zone) && found != nullptr && found->isActive;
}

bool QelUtilZoneGetRelevant(double solutionTime, bool ignoreStrandID, QelSet** zones) {
  if (Fails(__func__, solutionTime, ignoreStrandID) || zones == nullptr) return false;
  const DataSet* const data = Host().ActiveData();
  if (data == nullptr) return false;
  QelSet* const set = QelUtilSetAlloc(FALSE);
  if (set == nullptr) return false;
  for (std::size_t i = 0; i < data->zones.size(); ++i) {
    const Zone& zone = data->zones[i];
    if (ignoreStrandID || zone.strand == 0 || zone.solutionTime == solutionTime) {
      QelUtilSetAddMember(set, static_cast<SetIndex_t>(i + 1), FALSE);
    }
  }
  *zones = set;
  return true;
}

double QelUtilSolutionTimeGetCurrent() {
  Note(__func__);
  return Host().solutionTime;
}

void QelUtilZoneSetStrandID(LgIndex_t zone, LgIndex_t strand) {
  Note(__func__, zone, strand);
  if (Zone* const found = Host().ZoneAt(zone)) found->strand = strand;
}

LgIndex_t QelUtilZoneGetFieldMap(LgIndex_t zone) {
  return Fails(__func__, zone) || Host().ZoneAt(zone) == nullptr ? 0 : zone;
}

bool QelUtilVarGetName(LgIndex_t var, char** name) {
  const DataSet* const data = Host().ActiveData();
  if (Fails(__func__, var) || data == nullptr) return false;
  if (var < 1 || var > static_cast<LgIndex_t>(data->varNames.size())) return false;
  return HandOut(data->varNames[static_cast<std::size_t>(var - 1)], name);
}

LgIndex_t QelUtilVarGetNumByName(const char* name) {
  const DataSet* const data = Host().ActiveData();
  if (Fails(__func__, name) || data == nullptr || name == nullptr) return 0;
  const auto found = std::find(data->varNames.begin(), data->varNames.end(), name);
  if (found == data->varNames.end()) return 0;
  return static_cast<LgIndex_t>(found - data->varNames.begin() + 1);
}

LgIndex_t QelUtilVarGetNumByAssignment(char axis) {
  if (Fails(__func__, axis) || Host().ActiveData() == nullptr) return 0;
  return axis >= 'X' && axis <= 'Z' ? axis - 'X' + 1 : 0;
}

void QelUtilVarGetMinMax(LgIndex_t var, double* min, double* max) {
  Note(__func__, var);
  double low = std::numeric_limits<double>::infinity();
  double high = -low;
  for (LgIndex_t zone = 1; Host().ZoneAt(zone) != nullptr; ++zone) {
    for (const double value : Host().ValuesOf(zone, var)) {
      if (std::isnan(value)) continue;
      low = std::min(low, value);
      high = std::max(high, value);
    }
  }
  const bool hasValue = low <= high;
  if (min != nullptr) *min = hasValue ? low : 0.0;
  if (max != nullptr) *max = hasValue ? high : 0.0;
}
