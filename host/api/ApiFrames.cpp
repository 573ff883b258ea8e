// Frames, data sets and zones.
#include "ApiGuard.h"
#include "ApiHandles.h"
#include "PlotActions.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <cmath>

using namespace qelhost;

namespace {

void Put(LgIndex_t* target, LgIndex_t value) {
  if (target != nullptr) *target = value;
}

bool IsFieldType(QelFieldDataType_e type) {
  return type >= FieldDataType_Float && type <= FieldDataType_Int64;
}

/// One entry a zone from the two arrays of the argument list; absent arrays mean floats at nodes.
bool ReadNewFields(const QelArgList* args, LgIndex_t zoneCount, std::vector<NewField>& fields) {
  const auto* const types = FindArgument<const void*>(args, SV_VARDATATYPE);
  const auto* const locations = FindArgument<const void*>(args, SV_VALUELOCATION);
  for (LgIndex_t i = 0; i < zoneCount; ++i) {
    NewField field;
    if (types != nullptr && *types != nullptr) {
      field.type = static_cast<const QelFieldDataType_e*>(*types)[i];
    }
    if (locations != nullptr && *locations != nullptr) {
      field.location = static_cast<const QelValueLocation_e*>(*locations)[i];
    }
    const bool isLocation =
        field.location == ValueLocation_CellCentered || field.location == ValueLocation_Nodal;
    if (!IsFieldType(field.type) || !isLocation) return false;
    fields.push_back(field);
  }
  return true;
}

}  // namespace

LgIndex_t QelUtilFrameGetCount() {
  return Guarded<LgIndex_t>(__func__, 0, [](Host& host) { return host.frames.Count(); });
}

QelUniqueID_t QelUtilFrameGetUniqueID() {
  return Guarded<QelUniqueID_t>(__func__, 0, [](Host& host) {
    return host.frames.Active() == nullptr ? 0 : host.frames.Active()->Id();
  });
}

bool QelUtilFrameActivateByUniqueID(QelUniqueID_t id) {
  return Guarded(__func__, false, [&](Host& host) { return ActivateFrame(host, id); });
}

QelPlotType_e QelUtilFrameGetPlotType() {
  return Guarded(__func__, PlotType_None, [](Host& host) {
    return host.frames.Active() == nullptr ? PlotType_None : host.frames.Active()->plotType;
  });
}

bool QelUtilDataSetIsAvailable() {
  return Guarded(__func__, false, [](Host& host) { return ActiveData(host) != nullptr; });
}

QelUniqueID_t QelUtilDataSetGetUniqueID() {
  return Guarded<QelUniqueID_t>(__func__, 0, [](Host& host) -> QelUniqueID_t {
    const DataSetPtr data = ActiveData(host);
    return data == nullptr ? 0 : data->Id();
  });
}

bool QelUtilDataSetGetInfo(char** title, LgIndex_t* numZones, LgIndex_t* numVars) {
  return Guarded(__func__, false, [&](Host& host) {
    const DataSetPtr data = ActiveData(host);
    if (data == nullptr) return false;
    if (title != nullptr) HandOut(host, data->Title(), "Data set title", title);
    Put(numZones, data->ZoneCount());
    Put(numVars, data->VariableCount());
    return true;
  });
}

LgIndex_t QelUtilDataSetGetNumZones() {
  return Guarded<LgIndex_t>(__func__, 0, [](Host& host) -> LgIndex_t {
    const DataSetPtr data = ActiveData(host);
    return data == nullptr ? 0 : data->ZoneCount();
  });
}

LgIndex_t QelUtilDataSetGetNumVars() {
  return Guarded<LgIndex_t>(__func__, 0, [](Host& host) -> LgIndex_t {
    const DataSetPtr data = ActiveData(host);
    return data == nullptr ? 0 : data->VariableCount();
  });
}

bool QelUtilDataSetAddZone(const char* name, LgIndex_t iMax, LgIndex_t jMax, LgIndex_t kMax,
                           QelZoneType_e type, const QelFieldDataType_e* varTypes) {
  return Guarded(__func__, false, [&](Host& host) {
    const DataSetPtr data = ActiveData(host);
    if (data == nullptr || name == nullptr) return false;
    return data->AddZone(name, iMax, jMax, kMax, type, varTypes) > 0;
  });
}

bool QelUtilDataSetDeleteZone(const QelSet* zones) {
  return Guarded(__func__, false, [&](Host& host) {
    std::vector<LgIndex_t> numbers;
    if (!IndicesOf(zones, numbers)) return false;
    std::vector<const Zone*> deleted;
    for (const LgIndex_t number : numbers) {
      const Zone* const zone = ActiveZone(host, number);
      if (zone == nullptr || zone->IsFromFile()) return false;
      deleted.push_back(zone);
    }
    // First, for those who hear of the deletion may still hold references into the zones.
    for (const Zone* const zone : deleted) TheHandles().references.ForgetZone(zone);
    return DeleteZones(host, numbers);
  });
}

bool QelUtilDataSetAddVarX(QelArgList* args) {
  return Guarded(__func__, false, [&](Host& host) {
    const DataSetPtr data = ActiveData(host);
    const auto* const name = FindArgument<std::string>(args, SV_NAME);
    if (data == nullptr || name == nullptr || name->empty()) return false;
    std::vector<NewField> fields;
    if (!ReadNewFields(args, data->ZoneCount(), fields)) return false;
    const auto* const deferred = FindArgument<LgIndex_t>(args, SV_DEFERVARCREATION);
    return data->AddVariable(*name, fields, deferred != nullptr && *deferred != 0) > 0;
  });
}

bool QelUtilCreateSphericalZone(LgIndex_t iPoints, LgIndex_t jPoints, double x, double y, double z,
                                double radius, QelFieldDataType_e type) {
  return Guarded(__func__, false, [&](Host& host) {
    return AddSphereZone(host, iPoints, jPoints, {x, y, z}, radius, type);
  });
}

bool QelUtilZoneGetName(LgIndex_t zone, char** name) {
  return Guarded(__func__, false, [&](Host& host) {
    const Zone* const found = ActiveZone(host, zone);
    return found != nullptr && HandOut(host, found->name, "Zone name", name);
  });
}

bool QelUtilZoneRename(LgIndex_t zone, const char* name) {
  return Guarded(__func__, false, [&](Host& host) {
    const DataSetPtr data = ActiveData(host);
    return data != nullptr && name != nullptr && data->RenameZone(zone, name);
  });
}

QelZoneType_e QelUtilZoneGetType(LgIndex_t zone) {
  return Guarded(__func__, ZoneType_Ordered, [&](Host& host) {
    const Zone* const found = ActiveZone(host, zone);
    return found == nullptr ? ZoneType_Ordered : found->Type();
  });
}

bool QelUtilZoneIsFiniteElement(LgIndex_t zone) {
  return Guarded(__func__, false, [&](Host& host) {
    const Zone* const found = ActiveZone(host, zone);
    return found != nullptr && !found->IsOrdered();
  });
}

void QelUtilZoneGetIJK(LgIndex_t zone, LgIndex_t* i, LgIndex_t* j, LgIndex_t* k) {
  GuardedVoid(__func__, [&](Host& host) {
    Put(i, 0);
    Put(j, 0);
    Put(k, 0);
    Zone* const found = ActiveZone(host, zone);
    if (found == nullptr) return;
    const auto ijk = found->IJK();
    Put(i, ijk[0]);
    Put(j, ijk[1]);
    Put(k, ijk[2]);
  });
}

bool QelUtilZoneIsActive(LgIndex_t zone) {
  return Guarded(__func__, false, [&](Host& host) {
    const Zone* const found = ActiveZone(host, zone);
    return found != nullptr && found->active;
  });
}

bool QelUtilZoneGetRelevant(double solutionTime, bool ignoreStrandID, QelSet** zones) {
  return Guarded(__func__, false, [&](Host& host) {
    if (zones == nullptr || ActiveData(host) == nullptr || std::isnan(solutionTime)) return false;
    QelSet set;
    for (const LgIndex_t zone : host.frames.Active()->ZonesAt(solutionTime, ignoreStrandID)) {
      set.members.insert(zone);
    }
    *zones = TheHandles().sets.Make(std::move(set));
    return true;
  });
}

double QelUtilSolutionTimeGetCurrent() {
  return Guarded(__func__, 0.0, [](Host& host) {
    return host.frames.Active() == nullptr ? 0.0 : host.frames.Active()->solutionTime;
  });
}

void QelUtilZoneSetStrandID(LgIndex_t zone, LgIndex_t strand) {
  GuardedVoid(__func__, [&](Host& host) {
    Zone* const found = ActiveZone(host, zone);
    if (found != nullptr && strand >= 0) found->strand = strand;
  });
}

LgIndex_t QelUtilZoneGetFieldMap(LgIndex_t zone) {
  // One map a zone, numbered as the zones are.
  return Guarded<LgIndex_t>(
      __func__, 0, [&](Host& host) { return ActiveZone(host, zone) == nullptr ? 0 : zone; });
}
