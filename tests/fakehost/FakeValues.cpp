// Field data.
#include "FakeCall.h"

#include <cstring>
#include <unordered_set>

struct QelFieldData {
  std::shared_ptr<fakehost::Storage> storage;
  QelUniqueID_t zone = 0;
  LgIndex_t var = 0;
  bool isWritable = false;
  bool isStale = false;
};

namespace fakehost {

namespace {

struct References {
  std::vector<std::unique_ptr<QelFieldData>> all;
  std::unordered_set<const QelFieldData*> known;
};

References& TheReferences() {
  static auto* const references = new References();
  return *references;
}

QelFieldData* NewReference(std::shared_ptr<Storage> storage, LgIndex_t zone, LgIndex_t var,
                           bool isWritable) {
  auto reference = std::make_unique<QelFieldData>();
  reference->storage = std::move(storage);
  reference->zone = Host().ZoneAt(zone)->id;
  reference->var = var;
  reference->isWritable = isWritable;
  References& references = TheReferences();
  references.all.push_back(std::move(reference));
  references.known.insert(references.all.back().get());
  return references.all.back().get();
}

bool IsUsable(const QelFieldData* ref, const char* function) {
  if (TheReferences().known.count(ref) == 0) {
    Host().Report(std::string(function) + " got a null or foreign field reference");
    return false;
  }
  if (!ref->isStale && Host().ZoneWithId(ref->zone) != nullptr) return true;
  Host().Report(std::string(function) + " got a stale field reference");
  return false;
}

bool IsInRange(const QelFieldData* ref, LgIndex_t offset, const char* function) {
  if (offset >= 0 && offset < ref->storage->count) return true;
  Host().Report(std::string(function) + " got an index out of range");
  return false;
}

double RawGet(const QelFieldData* ref, LgIndex_t offset) {
  constexpr char kName[] = "the raw getter";
  if (IsCalledByBody(kName)) return 0.0;
  if (!IsUsable(ref, kName) || !IsInRange(ref, offset, kName)) return 0.0;
  return ref->storage->Get(offset);
}

void RawSet(QelFieldData* ref, LgIndex_t offset, double value) {
  constexpr char kName[] = "the raw setter";
  if (IsCalledByBody(kName)) return;
  if (!IsUsable(ref, kName) || !IsInRange(ref, offset, kName)) return;
  if (!ref->isWritable) {
    Host().Report("the raw setter got a reference that is for reading");
    return;
  }
  ref->storage->Set(offset, value);
  SpoilBits();
}

/// Each node's mean over the cells around it.
std::shared_ptr<Storage> AveragedToNodes(const Mesh& mesh, const Storage& cells) {
  auto nodes = std::make_shared<Storage>(StoredType::Double, mesh.NodeCount());
  std::vector<int> counts(mesh.points.size());
  for (LgIndex_t cell = 1; cell <= mesh.CellCount(); ++cell) {
    for (const LgIndex_t node : mesh.Corners(cell)) {
      if (node < 1 || node > mesh.NodeCount()) continue;
      nodes->Set(node - 1, nodes->Get(node - 1) + cells.Get(cell - 1));
      ++counts[static_cast<std::size_t>(node - 1)];
    }
  }
  for (LgIndex_t node = 0; node < mesh.NodeCount(); ++node) {
    const int count = counts[static_cast<std::size_t>(node)];
    if (count > 0) nodes->Set(node, nodes->Get(node) / count);
  }
  return nodes;
}

LgIndex_t ShareCount(const Values& values, LgIndex_t var) {
  if (values.storage == nullptr) return 1;
  LgIndex_t count = 0;
  for (LgIndex_t zone = 1; Host().ZoneAt(zone) != nullptr; ++zone) {
    if (Host().ValuesAt(zone, var)->storage == values.storage) ++count;
  }
  return count;
}

}  // namespace

FieldBehind FieldOf(const QelFieldData* ref, const char* function) {
  if (!IsUsable(ref, function)) return {};
  return {ref->storage.get(), ref->zone, ref->var};
}

void InvalidateReferences(QelUniqueID_t zone, LgIndex_t var) {
  SpoilBits();
  for (const auto& reference : TheReferences().all) {
    if (reference->zone == zone && reference->var == var) reference->isStale = true;
  }
}

void ForgetReferences() { TheReferences() = References(); }

}  // namespace fakehost

using namespace fakehost;

QelValueLocation_e QelUtilDataValueGetLocation(LgIndex_t zone, LgIndex_t var) {
  const bool fails = Fails(__func__, zone, var);
  const Values* const values = Host().ValuesAt(zone, var);
  return fails || values == nullptr ? ValueLocation_CellCentered : values->location;
}

bool QelUtilDataValueIsPassive(LgIndex_t zone, LgIndex_t var) {
  const Values* const values = Host().ValuesAt(zone, var);
  return !Fails(__func__, zone, var) && values != nullptr && values->storage == nullptr;
}

bool QelUtilDataValueAlloc(LgIndex_t zone, LgIndex_t var) {
  Values* const values = Host().ValuesAt(zone, var);
  if (Fails(__func__, zone, var) || values == nullptr || values->storage != nullptr) return false;
  const Mesh& mesh = Host().ZoneAt(zone)->mesh;
  const bool isCell = values->location == ValueLocation_CellCentered;
  values->storage = std::make_shared<Storage>(values->typeWhenAllocated,
                                              isCell ? mesh.CellCount() : mesh.NodeCount());
  InvalidateReferences(Host().ZoneAt(zone)->id, var);
  return true;
}

LgIndex_t QelUtilDataValueGetShareCount(LgIndex_t zone, LgIndex_t var) {
  const Values* const values = Host().ValuesAt(zone, var);
  return Fails(__func__, zone, var) || values == nullptr ? 0 : ShareCount(*values, var);
}

bool QelUtilDataValueBranchShared(LgIndex_t zone, LgIndex_t var) {
  Values* const values = Host().ValuesAt(zone, var);
  if (Fails(__func__, zone, var) || values == nullptr || values->storage == nullptr) return false;
  values->storage = std::make_shared<Storage>(*values->storage);
  InvalidateReferences(Host().ZoneAt(zone)->id, var);
  return true;
}

QelFieldData* QelUtilDataValueGetReadableNLRef(LgIndex_t zone, LgIndex_t var) {
  const Values* const values = Host().ValuesAt(zone, var);
  if (Fails(__func__, zone, var) || values == nullptr) return nullptr;
  const Mesh& mesh = Host().ZoneAt(zone)->mesh;
  std::shared_ptr<Storage> storage = values->storage;
  if (storage == nullptr) {
    storage = std::make_shared<Storage>(StoredType::Double, mesh.NodeCount());
  } else if (values->location == ValueLocation_CellCentered) {
    storage = AveragedToNodes(mesh, *storage);
  }
  return NewReference(storage, zone, var, false);
}

QelFieldData* QelUtilDataValueGetWritableNativeRef(LgIndex_t zone, LgIndex_t var) {
  const Values* const values = Host().ValuesAt(zone, var);
  if (Fails(__func__, zone, var) || values == nullptr) return nullptr;
  if (values->storage == nullptr || !values->isWritable) return nullptr;
  return NewReference(values->storage, zone, var, true);
}

LgIndex_t QelUtilDataValueGetCountByRef(const QelFieldData* ref) {
  if (Fails(__func__, ref) || !IsUsable(ref, __func__)) return 0;
  return static_cast<LgIndex_t>(ref->storage->count);
}

double QelUtilDataValueGetByRef(const QelFieldData* ref, LgIndex_t index) {
  Note(__func__, ref, index);
  if (!IsUsable(ref, __func__) || !IsInRange(ref, index - 1, __func__)) return 0.0;
  return ref->storage->Get(index - 1);
}

void QelUtilDataValueSetByRef(QelFieldData* ref, LgIndex_t index, double value) {
  Note(__func__, ref, index, value);
  RawSet(ref, index - 1, value);
}

void QelUtilDataValueArraySetByRef(QelFieldData* dest, LgIndex_t destOffset, LgIndex_t count,
                                   const void* source) {
  Note(__func__, dest, destOffset, count);
  if (!IsUsable(dest, __func__) || source == nullptr || count < 1) return;
  if (!dest->isWritable) {
    Host().Report(std::string(__func__) + " got a reference that is for reading");
    return;
  }
  if (!IsInRange(dest, destOffset - 1, __func__)) return;
  if (count > dest->storage->count - (destOffset - 1)) {
    Host().Report(std::string(__func__) + " got more values than there are");
    return;
  }
  const std::size_t size = SizeOf(dest->storage->type);
  const auto* from = static_cast<const unsigned char*>(source);
  for (LgIndex_t i = 0; i < count; ++i, from += size) {
    std::memcpy(dest->storage->At(destOffset - 1 + i), from, size);
  }
  SpoilBits();
}

QelFieldGet_pf QelUtilDataValueRefGetGetFunc(const QelFieldData* ref) {
  return Fails(__func__, ref) || !IsUsable(ref, __func__) ? nullptr : RawGet;
}

QelFieldSet_pf QelUtilDataValueRefGetSetFunc(QelFieldData* ref) {
  return Fails(__func__, ref) || !IsUsable(ref, __func__) ? nullptr : RawSet;
}

void QelUtilDataLoadBegin() {
  Note(__func__);
  ++Host().dataLoadDepth;
}

void QelUtilDataLoadEnd() {
  Note(__func__);
  if (--Host().dataLoadDepth < 0) Host().Report("a data-load bracket was closed twice");
}
