// Frames, data sets, and what is asked of zones and variables.
#include "FakeCall.h"

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
    Host().EnterFrame(i);
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
  return Fails(__func__, zone) || found == nullptr ? ZoneType_Ordered : found->mesh.type;
}

bool QelUtilZoneIsFiniteElement(LgIndex_t zone) {
  const Zone* const found = Host().ZoneAt(zone);
  return !Fails(__func__, zone) && found != nullptr && found->mesh.type != ZoneType_Ordered;
}

void QelUtilZoneGetIJK(LgIndex_t zone, LgIndex_t* i, LgIndex_t* j, LgIndex_t* k) {
  const Zone* const found = Host().ZoneAt(zone);
  std::array<LgIndex_t, 3> ijk{0, 0, 0};
  const bool fails = Fails(__func__, zone);
  if (!fails && found != nullptr) {
    const Mesh& mesh = found->mesh;
    if (mesh.type == ZoneType_Ordered) {
      ijk = mesh.ijk;
    } else if (mesh.IsFaceBased()) {
      ijk = {mesh.NodeCount(), mesh.CellCount(), static_cast<LgIndex_t>(mesh.faces.size())};
    } else {
      ijk = {mesh.NodeCount(), mesh.CellCount(),
             static_cast<LgIndex_t>(mesh.elements.CornerCount())};
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
  QelSet* set = QelUtilSetAlloc(FALSE);
  if (set == nullptr) return false;
  for (std::size_t i = 0; i < data->zones.size(); ++i) {
    const Zone& zone = data->zones[i];
    if (ignoreStrandID || zone.strand == 0 || zone.solutionTime == solutionTime) {
      if (QelUtilSetAddMember(set, static_cast<SetIndex_t>(i + 1), FALSE)) continue;
      QelUtilSetDealloc(&set);
      return false;
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
  Zone* const found = Host().ZoneAt(zone);
  if (found != nullptr && strand >= 0) found->strand = strand;
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
  const QelPlotType_e plotType = Host().ActiveFrame().plotType;
  const char last = plotType == PlotType_Cartesian3D ? 'Z' : 'Y';
  const bool isCartesian = plotType == PlotType_Cartesian3D || plotType == PlotType_Cartesian2D;
  if (!isCartesian || axis < 'X' || axis > last) return 0;
  const LgIndex_t var = Host().ActiveFrame().axisVars[static_cast<std::size_t>(axis - 'X')];
  return var <= static_cast<LgIndex_t>(Host().ActiveData()->varNames.size()) ? var : 0;
}

void QelUtilVarGetMinMax(LgIndex_t var, double* min, double* max) {
  Note(__func__, var);
  double low = std::numeric_limits<double>::infinity();
  double high = -low;
  for (LgIndex_t zone = 1; Host().ZoneAt(zone) != nullptr; ++zone) {
    const Values* const values = Host().ValuesAt(zone, var);
    if (values == nullptr || values->storage == nullptr) continue;
    for (std::int64_t i = 0; i < values->storage->count; ++i) {
      const double value = values->storage->Get(i);
      if (std::isnan(value)) continue;
      low = std::min(low, value);
      high = std::max(high, value);
    }
  }
  const bool hasValue = low <= high;
  if (min != nullptr) *min = hasValue ? low : 0.0;
  if (max != nullptr) *max = hasValue ? high : 0.0;
}
