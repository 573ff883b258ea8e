// Variables and values.
#include "ApiGuard.h"
#include "ApiHandles.h"

#include "qelvane/QelUtil.h"

using namespace qelhost;

namespace {

const Field* FieldOf(const Host& host, LgIndex_t zone, LgIndex_t var) {
  const DataSetPtr data = ActiveData(host);
  return data == nullptr ? nullptr : data->FindField(zone, var);
}

bool IsKnown(const QelFieldData* ref) { return TheHandles().references.Has(ref); }

/// The coordinates of regular grids are computed; whoever wants to alter them must be told so.
void NoteComputedCoordinate(Host& host, const DataSet& data, LgIndex_t zone, LgIndex_t var) {
  const Zone* const found = data.FindZone(zone);
  const Variable* const variable = data.FindVariable(var);
  if (found == nullptr || variable == nullptr || variable->coordinateAxis < 0) return;
  if (found->ComputedCoordinatesKind() == nullptr) return;
  host.refusedWrite = variable->name + " of zone " + std::to_string(zone) +
                      " cannot be altered: the coordinates of its " +
                      found->ComputedCoordinatesKind() + " are computed";
}

/// Whether count values from index on, from 1, are there.
bool IsInRange(const QelFieldData& ref, LgIndex_t index, std::int64_t count) {
  return index >= 1 && count >= 0 && std::int64_t{index} - 1 + count <= ref.count;
}

}  // namespace

bool QelUtilVarGetName(LgIndex_t var, char** name) {
  return Guarded(__func__, false, [&](Host& host) {
    const DataSetPtr data = ActiveData(host);
    const Variable* const variable = data == nullptr ? nullptr : data->FindVariable(var);
    return variable != nullptr && HandOut(host, variable->name, "Variable name", name);
  });
}

LgIndex_t QelUtilVarGetNumByName(const char* name) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host& host) -> LgIndex_t {
    const DataSetPtr data = ActiveData(host);
    return data == nullptr || name == nullptr ? 0 : data->VariableNumber(name);
  });
}

LgIndex_t QelUtilVarGetNumByAssignment(char axis) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host& host) -> LgIndex_t {
    const DataSetPtr data = ActiveData(host);
    return data == nullptr ? 0 : data->CoordinateVariable(axis);
  });
}

void QelUtilVarGetMinMax(LgIndex_t var, double* min, double* max) {
  GuardedVoid(__func__, [&](Host& host) {
    const DataSetPtr data = ActiveData(host);
    Range range;
    if (data != nullptr && data->FindVariable(var) != nullptr) range = data->VariableRange(var);
    if (min != nullptr) *min = range.min;
    if (max != nullptr) *max = range.max;
  });
}

QelValueLocation_e QelUtilDataValueGetLocation(LgIndex_t zone, LgIndex_t var) {
  return Guarded(__func__, ValueLocation_CellCentered, [&](Host& host) {
    const Field* const field = FieldOf(host, zone, var);
    return field == nullptr ? ValueLocation_CellCentered : field->location;
  });
}

bool QelUtilDataValueIsPassive(LgIndex_t zone, LgIndex_t var) {
  return Guarded(__func__, false, [&](Host& host) {
    const Field* const field = FieldOf(host, zone, var);
    return field != nullptr && field->IsPassive();
  });
}

bool QelUtilDataValueAlloc(LgIndex_t zone, LgIndex_t var) {
  return Guarded(__func__, false, [&](Host& host) {
    const DataSetPtr data = ActiveData(host);
    if (data == nullptr || !data->AllocateValues(zone, var)) return false;
    TheHandles().references.ForgetReplacedFields(*data->FindZone(zone));
    return true;
  });
}

LgIndex_t QelUtilDataValueGetShareCount(LgIndex_t zone, LgIndex_t var) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host& host) -> LgIndex_t {
    const DataSetPtr data = ActiveData(host);
    return data == nullptr ? 0 : data->ShareCount(zone, var);
  });
}

bool QelUtilDataValueBranchShared(LgIndex_t zone, LgIndex_t var) {
  return Guarded(__func__, false, [&](Host& host) {
    const DataSetPtr data = ActiveData(host);
    if (data == nullptr || !data->BranchShared(zone, var)) return false;
    TheHandles().references.ForgetReplacedFields(*data->FindZone(zone));
    return true;
  });
}

QelFieldData* QelUtilDataValueGetReadableNLRef(LgIndex_t zone, LgIndex_t var) {
  return Guarded<QelFieldData*>(__func__, nullptr, [&](Host& host) -> QelFieldData* {
    const DataSetPtr data = ActiveData(host);
    if (data == nullptr) return nullptr;
    return TheHandles().references.HandOutField(data, data->FindZone(zone),
                                                data->ReadableAtNodes(zone, var));
  });
}

QelFieldData* QelUtilDataValueGetWritableNativeRef(LgIndex_t zone, LgIndex_t var) {
  return Guarded<QelFieldData*>(__func__, nullptr, [&](Host& host) -> QelFieldData* {
    const DataSetPtr data = ActiveData(host);
    if (data == nullptr) return nullptr;
    QelFieldData* const field = data->Writable(zone, var);
    if (field != nullptr) {
      field->isOpenForWriting = true;
      host.watch.BeforeWriting(data, zone, var);
      host.history.BeforeWriting(data, zone, var);
    } else {
      NoteComputedCoordinate(host, *data, zone, var);
    }
    return TheHandles().references.HandOutField(data, data->FindZone(zone), field);
  });
}

LgIndex_t QelUtilDataValueGetCountByRef(const QelFieldData* ref) {
  return Guarded<LgIndex_t>(__func__, 0, [&](Host&) { return IsKnown(ref) ? ref->count : 0; });
}

double QelUtilDataValueGetByRef(const QelFieldData* ref, LgIndex_t index) {
  return Guarded(__func__, 0.0, [&](Host&) {
    return IsKnown(ref) && IsInRange(*ref, index, 1) ? ref->get(ref, index - 1) : 0.0;
  });
}

void QelUtilDataValueSetByRef(QelFieldData* ref, LgIndex_t index, double value) {
  GuardedVoid(__func__, [&](Host&) {
    if (IsKnown(ref) && ref->set != nullptr && IsInRange(*ref, index, 1)) {
      ref->set(ref, index - 1, value);
    }
  });
}

void QelUtilDataValueArraySetByRef(QelFieldData* dest, LgIndex_t destOffset, LgIndex_t count,
                                   const void* source) {
  GuardedVoid(__func__, [&](Host&) {
    if (IsKnown(dest) && source != nullptr && IsInRange(*dest, destOffset, count)) {
      CopyStoredValues(*dest, destOffset - 1, count, source);
    }
  });
}

QelFieldGet_pf QelUtilDataValueRefGetGetFunc(const QelFieldData* ref) {
  return Guarded<QelFieldGet_pf>(__func__, nullptr,
                                 [&](Host&) { return IsKnown(ref) ? ref->get : nullptr; });
}

QelFieldSet_pf QelUtilDataValueRefGetSetFunc(QelFieldData* ref) {
  return Guarded<QelFieldSet_pf>(__func__, nullptr,
                                 [&](Host&) { return IsKnown(ref) ? ref->set : nullptr; });
}

// Values are always in memory here, so there is nothing to hold off between the two.
void QelUtilDataLoadBegin() {}
void QelUtilDataLoadEnd() {}
