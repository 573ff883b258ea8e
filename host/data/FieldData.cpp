#include "FieldData.h"

#include <vtkAOSDataArrayTemplate.h>
#include <vtkSOADataArrayTemplate.h>
#include <vtkType.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace qelhost {
namespace {

// ---- conversion ----

template <class T>
T ToStored(double value) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(value);
  } else {
    if (std::isnan(value)) return 0;
    const double rounded = std::round(value);  // halves away from zero
    // The largest 64-bit integers are no doubles: their limit rounds up to a power of two, which
    // no longer fits, so that limit itself is clamped too.
    constexpr auto kMin = std::numeric_limits<T>::min();
    constexpr auto kMax = std::numeric_limits<T>::max();
    if (rounded <= static_cast<double>(kMin)) return kMin;
    if (rounded >= static_cast<double>(kMax)) return kMax;
    return static_cast<T>(rounded);
  }
}

/// Bits decide, so that -0 over 0 counts and NaN over the same NaN does not.
template <class T>
bool Differs(T a, T b) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(a) && std::isnan(b)) return false;
  }
  return std::memcmp(&a, &b, sizeof(T)) != 0;  // NOLINT(bugprone-suspicious-memory-comparison)
}

template <class T>
void Store(QelFieldData& ref, T& place, T value) {
  WriteTally& tally = ref.storage->tally;
  ++tally.writes;
  if (!Differs(place, value)) return;
  ++tally.changed;
  place = value;
}

// ---- one accessor per stored type and form ----

template <class T>
T* Plain(const QelFieldData& ref, std::int64_t offset) {
  return reinterpret_cast<T*>(ref.first) + offset;
}
template <class T>
T* Strided(const QelFieldData& ref, std::int64_t offset) {
  return reinterpret_cast<T*>(ref.first) + offset * ref.stride;
}
template <class T>
T* Mapped(const QelFieldData& ref, std::int64_t offset) {
  return reinterpret_cast<T*>(ref.first) + ref.tupleOfItem[offset] * ref.stride;
}

template <class T, T* (*Place)(const QelFieldData&, std::int64_t)>
double Get(const QelFieldData* ref, LgIndex_t offset) {
  return static_cast<double>(*Place(*ref, offset));
}
template <class T, T* (*Place)(const QelFieldData&, std::int64_t)>
void Set(QelFieldData* ref, LgIndex_t offset, double value) {
  Store(*ref, *Place(*ref, offset), ToStored<T>(value));
}

std::int64_t TupleOf(const QelFieldData& ref, std::int64_t offset) {
  return ref.tupleOfItem != nullptr ? ref.tupleOfItem[offset] : ref.firstTuple + offset;
}
double GetThroughVtk(const QelFieldData* ref, LgIndex_t offset) {
  return ref->storage->array->GetComponent(TupleOf(*ref, offset), ref->storage->component);
}
void SetBitThroughVtk(QelFieldData* ref, LgIndex_t offset, double value) {
  Storage& storage = *ref->storage;
  const double bit = std::isnan(value) ? 0 : std::round(value) >= 1 ? 1 : 0;
  const auto tuple = TupleOf(*ref, offset);
  ++storage.tally.writes;
  if (storage.array->GetComponent(tuple, storage.component) == bit) return;
  ++storage.tally.changed;
  storage.array->SetComponent(tuple, storage.component, bit);
}

template <class T>
void SetAccessors(QelFieldData& ref) {
  if (ref.tupleOfItem != nullptr) {
    ref.get = Get<T, Mapped<T>>;
    ref.set = Set<T, Mapped<T>>;
  } else if (ref.stride != 1) {
    ref.get = Get<T, Strided<T>>;
    ref.set = Set<T, Strided<T>>;
  } else {
    ref.get = Get<T, Plain<T>>;
    ref.set = Set<T, Plain<T>>;
  }
}

/// Points `first` at the component's first value; false for an array that has no such memory.
template <class T>
bool FindMemory(QelFieldData& ref, vtkDataArray* array, int component) {
  if (auto* together = vtkAOSDataArrayTemplate<T>::FastDownCast(array)) {
    T* const values = together->GetPointer(0);  // null where there are none
    ref.first = reinterpret_cast<char*>(values == nullptr ? nullptr : values + component);
    ref.stride = array->GetNumberOfComponents();
    return true;
  }
  if (auto* apart = vtkSOADataArrayTemplate<T>::FastDownCast(array)) {
    ref.first = reinterpret_cast<char*>(apart->GetComponentArrayPointer(component));
    ref.stride = 1;
    return true;
  }
  return false;
}

template <class T>
bool Resolve(QelFieldData& ref, std::int64_t firstTuple) {
  if (!FindMemory<T>(ref, ref.storage->array, ref.storage->component)) return false;
  ref.valueSize = sizeof(T);
  ref.first += firstTuple * ref.stride * static_cast<std::int64_t>(sizeof(T));
  SetAccessors<T>(ref);
  return true;
}

void ResolveThroughVtk(QelFieldData& ref) {
  ref.first = nullptr;
  ref.get = GetThroughVtk;
  // Bits are the one stored type without a place of its own; other arrays without memory are
  // computed by their reader and cannot be written.
  if (ref.vtkType == VTK_BIT) ref.set = SetBitThroughVtk;
}

void ResolveByType(QelFieldData& ref) {
  bool resolved = false;
  switch (ref.vtkType) {
    vtkTemplateMacro(resolved = Resolve<VTK_TT>(ref, ref.firstTuple));
    default:
      break;
  }
  if (!resolved) ResolveThroughVtk(ref);
}

FieldView StartView(std::shared_ptr<Storage> storage, std::int64_t count) {
  auto view = std::make_unique<QelFieldData>();
  view->owner = std::move(storage);
  view->storage = view->owner.get();
  view->count = static_cast<LgIndex_t>(count);
  view->vtkType = view->storage->array->GetDataType();
  view->type = FieldTypeOfVtk(view->vtkType);
  return view;
}

// ---- computed values ----

double ComputedAt(const ComputedCoordinates& grid, const std::array<std::int64_t, 3>& ijk) {
  if (grid.ticks != nullptr) return grid.ticks->GetComponent(ijk[grid.axis], 0);
  // VTK's own order of summation, so that a position here and one from VTK agree to the last bit.
  double value = 0;
  for (int n = 0; n < 3; ++n) value += grid.row[n] * static_cast<double>(ijk[n] + grid.start[n]);
  return value + grid.row[3];
}
double GetComputed(const QelFieldData* ref, LgIndex_t offset) {
  const ComputedCoordinates& grid = *ref->coordinates;
  const std::int64_t i = offset % grid.dimensions[0];
  const std::int64_t row = offset / grid.dimensions[0];
  return ComputedAt(grid, {i, row % grid.dimensions[1], row / grid.dimensions[1]});
}
double GetAveraged(const QelFieldData* ref, LgIndex_t offset) {
  return ref->average->Average(*ref->averaged, offset);
}
double GetZero(const QelFieldData*, LgIndex_t) { return 0; }

FieldView StartComputedView(QelFieldGet_pf get, LgIndex_t count) {
  auto view = std::make_unique<QelFieldData>();
  view->get = get;
  view->count = count;
  view->type = FieldDataType_Double;
  return view;
}

struct TypeRow {
  int vtkType;
  QelFieldDataType_e type;
  const char* name;
};

QelFieldDataType_e SignedTypeOfSize(std::size_t size) {
  return size == 8   ? FieldDataType_Int64
         : size == 4 ? FieldDataType_Int32
         : size == 2 ? FieldDataType_Int16
                     : FieldDataType_Invalid;
}

const char* SignedNameOfSize(std::size_t size) { return size == 8 ? "int64" : "int32"; }
const char* UnsignedNameOfSize(std::size_t size) { return size == 8 ? "uint64" : "uint32"; }

const std::vector<TypeRow>& Types() {
  static const std::vector<TypeRow> kTypes = {
      {0, FieldDataType_Double, "computed"},
      {VTK_FLOAT, FieldDataType_Float, "float"},
      {VTK_DOUBLE, FieldDataType_Double, "double"},
      {VTK_INT, FieldDataType_Int32, "int32"},
      {VTK_SHORT, FieldDataType_Int16, "int16"},
      {VTK_UNSIGNED_CHAR, FieldDataType_Byte, "uint8"},
      {VTK_LONG_LONG, FieldDataType_Int64, "int64"},
      {VTK_LONG, SignedTypeOfSize(sizeof(long)), SignedNameOfSize(sizeof(long))},
      {VTK_ID_TYPE, SignedTypeOfSize(sizeof(vtkIdType)), SignedNameOfSize(sizeof(vtkIdType))},
      {VTK_CHAR, FieldDataType_Invalid, "int8"},
      {VTK_SIGNED_CHAR, FieldDataType_Invalid, "int8"},
      {VTK_UNSIGNED_SHORT, FieldDataType_Invalid, "uint16"},
      {VTK_UNSIGNED_INT, FieldDataType_Invalid, "uint32"},
      {VTK_UNSIGNED_LONG, FieldDataType_Invalid, UnsignedNameOfSize(sizeof(unsigned long))},
      {VTK_UNSIGNED_LONG_LONG, FieldDataType_Invalid, "uint64"},
      {VTK_BIT, FieldDataType_Invalid, "bit"},
  };
  return kTypes;
}

}  // namespace

FieldView MakeDirectView(std::shared_ptr<Storage> storage, std::int64_t firstTuple,
                         LgIndex_t count) {
  FieldView view = StartView(std::move(storage), count);
  view->firstTuple = firstTuple;
  if (view->storage->HasValues()) ResolveByType(*view);
  return view;
}

FieldView MakeMappedView(std::shared_ptr<Storage> storage,
                         const std::vector<std::int64_t>& tuples) {
  FieldView view = StartView(std::move(storage), static_cast<std::int64_t>(tuples.size()));
  view->tupleOfItem = tuples.data();
  if (view->storage->HasValues()) ResolveByType(*view);
  return view;
}

void LoadValues(QelFieldData& view) {
  if (view.get != nullptr) return;
  view.storage->pending->Load();
  ResolveByType(view);
}

FieldView MakeComputedView(std::shared_ptr<const ComputedCoordinates> coordinates,
                           LgIndex_t count) {
  FieldView view = StartComputedView(GetComputed, count);
  view->coordinates = std::move(coordinates);
  return view;
}

FieldView MakeAveragedView(const QelFieldData& cells, NodeAverageSource& source,
                           LgIndex_t nodeCount) {
  FieldView view = StartComputedView(GetAveraged, nodeCount);
  view->averaged = &cells;
  view->average = &source;
  return view;
}

FieldView MakeZeroView(LgIndex_t count) { return StartComputedView(GetZero, count); }

bool IsStridedRun(const QelFieldData& ref) {
  return ref.first != nullptr && ref.tupleOfItem == nullptr &&
         reinterpret_cast<std::uintptr_t>(ref.first) % static_cast<unsigned>(ref.valueSize) == 0;
}

namespace {

template <class T>
void CopyValues(QelFieldData& ref, std::int64_t offset, std::int64_t count, const void* source) {
  for (std::int64_t i = 0; i < count; ++i) {
    T value;
    std::memcpy(&value, static_cast<const char*>(source) + i * sizeof(T), sizeof(T));
    T* place =
        ref.tupleOfItem != nullptr ? Mapped<T>(ref, offset + i) : Strided<T>(ref, offset + i);
    Store(ref, *place, value);
  }
}

}  // namespace

bool CopyStoredValues(QelFieldData& ref, std::int64_t offset, std::int64_t count,
                      const void* source) {
  if (ref.set == nullptr || ref.first == nullptr) return false;
  switch (ref.vtkType) {
    vtkTemplateMacro(CopyValues<VTK_TT>(ref, offset, count, source));
    default:
      return false;
  }
  return true;
}

namespace {

void Include(Range& range, double value) {
  if (std::isnan(value)) return;
  if (!range.hasValues || value < range.min) range.min = value;
  if (!range.hasValues || value > range.max) range.max = value;
  range.hasValues = true;
}

/// Over values that lie in one run, without a call for each.
template <class T>
Range ScanRun(const QelFieldData& ref) {
  Range range;
  const T* const values = reinterpret_cast<const T*>(ref.first);
  for (std::int64_t i = 0; i < ref.count; ++i) {
    Include(range, static_cast<double>(values[i * ref.stride]));
  }
  return range;
}

/// Without a walk over all nodes: a file of a hundred bytes may have two billion. In a rectilinear
/// grid all nodes have one of the ticks; an image's coordinates rise or fall along each index,
/// rounded as they are, so that the extremes lie at its corners. Steps that leave the range of
/// doubles have no such order, and no meaning.
Range ScanComputed(const ComputedCoordinates& grid) {
  Range range;
  if (grid.ticks != nullptr) {
    std::array<std::int64_t, 3> ijk{0, 0, 0};
    std::int64_t& along = ijk[static_cast<std::size_t>(grid.axis)];
    const std::int64_t count = grid.dimensions[static_cast<std::size_t>(grid.axis)];
    for (along = 0; along < count; ++along) Include(range, ComputedAt(grid, ijk));
    return range;
  }
  for (const std::int64_t i : {std::int64_t{0}, grid.dimensions[0] - 1}) {
    for (const std::int64_t j : {std::int64_t{0}, grid.dimensions[1] - 1}) {
      for (const std::int64_t k : {std::int64_t{0}, grid.dimensions[2] - 1}) {
        Include(range, ComputedAt(grid, {i, j, k}));
      }
    }
  }
  return range;
}

}  // namespace

Range ScanRange(const QelFieldData& ref) {
  if (IsStridedRun(ref)) {
    switch (ref.vtkType) { vtkTemplateMacro(return ScanRun<VTK_TT>(ref)); }
  }
  if (ref.coordinates != nullptr && ref.count > 0) return ScanComputed(*ref.coordinates);
  Range range;
  for (LgIndex_t i = 0; i < ref.count; ++i) Include(range, ref.get(&ref, i));
  return range;
}

QelFieldDataType_e FieldTypeOfVtk(int vtkType) {
  for (const TypeRow& row : Types()) {
    if (row.vtkType == vtkType) return row.type;
  }
  return FieldDataType_Invalid;
}

int VtkTypeOfField(QelFieldDataType_e type) {
  if (type == FieldDataType_Invalid) return 0;
  for (const TypeRow& row : Types()) {
    if (row.vtkType != 0 && row.type == type) return row.vtkType;
  }
  return 0;
}

const char* StoredTypeName(int vtkType) {
  for (const TypeRow& row : Types()) {
    if (row.vtkType == vtkType) return row.name;
  }
  return "unknown";
}

}  // namespace qelhost
