// The functions of the interface that see how large a zone is: of zone 1 they tell what the zone on
// the stage has, of all others what the fake host has. The linker sends the add-on's calls here,
// and those to __real_... on to the fake host.
#include "FakeHost.h"
#include "SparseZone.h"

#include <algorithm>
#include <cstring>

using sparse::Column;
using sparse::Shown;
using sparse::SparseZone;

namespace {

SparseZone* staged = nullptr;
Shown shownAs = Shown::ByAccessors;
std::int64_t changedCount = 0;

bool IsStaged(LgIndex_t zone) { return staged != nullptr && zone == 1; }
bool IsStagedHandle(const void* handle) { return staged != nullptr && handle == staged; }

template <class Handle>
Handle* StagedHandle() {
  return reinterpret_cast<Handle*>(staged);
}

/// The column behind a handle; null when it is the fake host's.
Column* ColumnOf(const QelFieldData* ref) {
  if (staged == nullptr || !staged->IsColumn(ref)) return nullptr;
  return reinterpret_cast<Column*>(const_cast<QelFieldData*>(ref));
}

/// Whether the column has so many values from one on; reported when it has not.
bool Has(const Column& column, std::int64_t first, std::int64_t count) {
  if (first >= 0 && first + count <= column.count) return true;
  fakehost::Host().Report("values were asked for that there are not");
  return false;
}

double Get(const QelFieldData* ref, LgIndex_t offset) {
  return Has(*ColumnOf(ref), offset, 1) ? ColumnOf(ref)->Get(offset) : 0.0;
}
void Set(QelFieldData* ref, LgIndex_t offset, double value) {
  if (Has(*ColumnOf(ref), offset, 1)) ColumnOf(ref)->Set(offset, value);
}

LgIndex_t Counted(std::int64_t count) { return static_cast<LgIndex_t>(count); }

// Services -------------------------------------------------------------------------------------

bool FieldSpan(const QelFieldData* ref, QelFieldSpan_s* span) {
  const Column* const column = ColumnOf(ref);
  if (column == nullptr) return false;
  const std::int64_t stride = column->type == FieldDataType_Byte    ? 1
                              : column->type == FieldDataType_Float ? 4
                                                                    : 8;
  *span = {column->memory->First(), column->type, stride, column->count};
  return true;
}

bool NodeMapSpan(const QelNodeMap* map, QelNodeSpan_s* span) {
  if (!IsStagedHandle(map)) return false;
  *span = staged->NodeSpan();
  return true;
}

bool Projection(double m[16]) {
  const std::array<double, 16> matrix = fakehost::Host().ProjectionMatrix();
  std::copy(matrix.begin(), matrix.end(), m);
  return true;
}

bool BlankedCells(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count) {
  if (!IsStaged(zone)) return false;
  *count = staged->HasSize().cellCount;
  *bits = staged->HiddenBits(*count);
  return true;
}

bool BlankedNodes(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count) {
  if (!IsStaged(zone)) return false;
  *count = staged->HasSize().nodeCount;
  *bits = staged->HiddenBits(*count);
  return true;
}

LgIndex_t Workers() { return 2; }

void ForRange(std::int64_t first, std::int64_t last, std::int64_t grain,
              void (*body)(std::int64_t, std::int64_t, void*), void* context) {
  if (shownAs == Shown::BySpans || last - first <= 3 * grain) {
    for (std::int64_t from = first; from < last; from += 64 * grain) {
      body(from, std::min(from + 64 * grain, last), context);
    }
    return;
  }
  body(first, first + grain, context);
  body(first + ((last - first - 1) / grain - 1) * grain, last, context);
}

void Report(double) {}
void Changed(LgIndex_t, LgIndex_t, std::int64_t count) { changedCount += count; }

const QelBulkAccess_s kBulk = {FieldSpan, NodeMapSpan, Projection, BlankedCells, BlankedNodes};
const QelParallel_s kParallel = {Workers, ForRange};
const QelProgress_s kProgress = {Report, Changed};

}  // namespace

namespace sparse {

Stage::Stage(SparseZone& zone, Shown shown) {
  staged = &zone;
  shownAs = shown;
  changedCount = 0;
}

Stage::~Stage() { staged = nullptr; }

std::int64_t Stage::ChangedCount() const { return std::exchange(changedCount, 0); }

}  // namespace sparse

// The functions --------------------------------------------------------------------------------

#define WRAPPED(result, name, ...)              \
  extern "C" result __real_##name(__VA_ARGS__); \
  extern "C" result __wrap_##name(__VA_ARGS__); \
  extern "C" result __wrap_##name(__VA_ARGS__)

WRAPPED(const void*, QelUtilExtensionGet, const char* id) {
  if (staged == nullptr) return __real_QelUtilExtensionGet(id);
  if (std::strcmp(id, QEL_EXTENSION_PROGRESS) == 0) return &kProgress;
  if (shownAs == Shown::ByAccessors) return nullptr;
  if (std::strcmp(id, QEL_EXTENSION_BULK_ACCESS) == 0) return &kBulk;
  return std::strcmp(id, QEL_EXTENSION_PARALLEL) == 0 ? &kParallel : nullptr;
}

WRAPPED(void, QelUtilZoneGetIJK, LgIndex_t zone, LgIndex_t* i, LgIndex_t* j, LgIndex_t* k) {
  if (!IsStaged(zone)) return __real_QelUtilZoneGetIJK(zone, i, j, k);
  const sparse::Size& size = staged->HasSize();
  const bool isOrdered = size.type == ZoneType_Ordered;
  const bool isFaceBased = size.type >= ZoneType_FEPolygon;
  if (i != nullptr) *i = isOrdered ? size.ijk[0] : Counted(size.nodeCount);
  if (j != nullptr) *j = isOrdered ? size.ijk[1] : Counted(size.cellCount);
  if (k == nullptr) return;
  *k = isOrdered ? size.ijk[2] : Counted(isFaceBased ? size.cellCount : staged->CornerCount());
}

// Values

WRAPPED(QelFieldData*, QelUtilDataValueGetReadableNLRef, LgIndex_t zone, LgIndex_t var) {
  if (!IsStaged(zone)) return __real_QelUtilDataValueGetReadableNLRef(zone, var);
  return reinterpret_cast<QelFieldData*>(&staged->Variable(var));
}

WRAPPED(QelFieldData*, QelUtilDataValueGetWritableNativeRef, LgIndex_t zone, LgIndex_t var) {
  if (!IsStaged(zone)) return __real_QelUtilDataValueGetWritableNativeRef(zone, var);
  return reinterpret_cast<QelFieldData*>(&staged->Variable(var));
}

WRAPPED(LgIndex_t, QelUtilDataValueGetCountByRef, const QelFieldData* ref) {
  const Column* const column = ColumnOf(ref);
  return column == nullptr ? __real_QelUtilDataValueGetCountByRef(ref) : Counted(column->count);
}

WRAPPED(double, QelUtilDataValueGetByRef, const QelFieldData* ref, LgIndex_t index) {
  const Column* const column = ColumnOf(ref);
  if (column == nullptr) return __real_QelUtilDataValueGetByRef(ref, index);
  return Has(*column, std::int64_t{index} - 1, 1) ? column->Get(index - 1) : 0.0;
}

WRAPPED(void, QelUtilDataValueSetByRef, QelFieldData* ref, LgIndex_t index, double value) {
  Column* const column = ColumnOf(ref);
  if (column == nullptr) return __real_QelUtilDataValueSetByRef(ref, index, value);
  if (!Has(*column, std::int64_t{index} - 1, 1)) return;
  // What is 0 already is not written, so that it takes up no memory.
  if (column->Get(index - 1) != value) column->Set(index - 1, value);
}

WRAPPED(void, QelUtilDataValueArraySetByRef, QelFieldData* ref, LgIndex_t first, LgIndex_t count,
        const void* source) {
  Column* const column = ColumnOf(ref);
  if (column == nullptr) return __real_QelUtilDataValueArraySetByRef(ref, first, count, source);
  if (!Has(*column, std::int64_t{first} - 1, count)) return;
  const auto* const values = static_cast<const unsigned char*>(source);
  unsigned char* const to = column->memory->First() + (std::int64_t{first} - 1);
  constexpr std::int64_t kPage = 4096;
  for (std::int64_t n = 0; n < count; n += kPage) {
    const auto size = static_cast<std::size_t>(std::min(kPage, count - n));
    if (std::memcmp(to + n, values + n, size) != 0) std::memcpy(to + n, values + n, size);
  }
}

WRAPPED(QelFieldGet_pf, QelUtilDataValueRefGetGetFunc, const QelFieldData* ref) {
  return ColumnOf(ref) == nullptr ? __real_QelUtilDataValueRefGetGetFunc(ref) : Get;
}

WRAPPED(QelFieldSet_pf, QelUtilDataValueRefGetSetFunc, QelFieldData* ref) {
  return ColumnOf(ref) == nullptr ? __real_QelUtilDataValueRefGetSetFunc(ref) : Set;
}

// Connectivity

WRAPPED(QelNodeMap*, QelUtilDataNodeGetReadableRef, LgIndex_t zone) {
  return IsStaged(zone) ? StagedHandle<QelNodeMap>() : __real_QelUtilDataNodeGetReadableRef(zone);
}

WRAPPED(LgIndex_t, QelUtilDataNodeGetByRef, const QelNodeMap* map, LgIndex_t element,
        LgIndex_t corner) {
  if (!IsStagedHandle(map)) return __real_QelUtilDataNodeGetByRef(map, element, corner);
  if (corner > staged->CornerCount()) return 0;
  return Counted(staged->NodeOf(std::int64_t{element} - 1, corner - 1) + 1);
}

WRAPPED(QelNodeToElemMap*, QelUtilDataNodeToElemMapGetReadableRef, LgIndex_t zone) {
  return IsStaged(zone) ? StagedHandle<QelNodeToElemMap>()
                        : __real_QelUtilDataNodeToElemMapGetReadableRef(zone);
}

WRAPPED(LgIndex_t, QelUtilDataNodeToElemMapGetNumElems, const QelNodeToElemMap* map,
        LgIndex_t node) {
  if (!IsStagedHandle(map)) return __real_QelUtilDataNodeToElemMapGetNumElems(map, node);
  return Counted(staged->ElementCountAt(std::int64_t{node} - 1));
}

WRAPPED(LgIndex_t, QelUtilDataNodeToElemMapGetElem, const QelNodeToElemMap* map, LgIndex_t node,
        LgIndex_t n) {
  if (!IsStagedHandle(map)) return __real_QelUtilDataNodeToElemMapGetElem(map, node, n);
  return Counted(staged->ElementAt(std::int64_t{node} - 1, n - 1) + 1);
}

WRAPPED(QelFaceNeighbors*, QelUtilDataFaceNbrGetReadableRef, LgIndex_t zone) {
  return IsStaged(zone) ? StagedHandle<QelFaceNeighbors>()
                        : __real_QelUtilDataFaceNbrGetReadableRef(zone);
}

/// Of the elements at the first node none is on the surface.
WRAPPED(LgIndex_t, QelUtilDataFaceNbrGetNumNByRef, const QelFaceNeighbors* neighbours,
        LgIndex_t element, LgIndex_t face) {
  if (!IsStagedHandle(neighbours)) {
    return __real_QelUtilDataFaceNbrGetNumNByRef(neighbours, element, face);
  }
  return element == staged->HasSize().cellCount ? 0 : 1;
}

WRAPPED(QelElemToFaceMap*, QelUtilDataElemGetReadableRef, LgIndex_t zone) {
  return IsStaged(zone) ? StagedHandle<QelElemToFaceMap>()
                        : __real_QelUtilDataElemGetReadableRef(zone);
}

WRAPPED(LgIndex_t, QelUtilDataElemGetNumFaces, const QelElemToFaceMap* map, LgIndex_t element) {
  return IsStagedHandle(map) ? 1 : __real_QelUtilDataElemGetNumFaces(map, element);
}

WRAPPED(LgIndex_t, QelUtilDataElemGetFace, const QelElemToFaceMap* map, LgIndex_t element,
        LgIndex_t n) {
  return IsStagedHandle(map) ? element : __real_QelUtilDataElemGetFace(map, element, n);
}

WRAPPED(QelFaceMap*, QelUtilDataFaceMapGetReadableRef, LgIndex_t zone) {
  return IsStaged(zone) ? StagedHandle<QelFaceMap>()
                        : __real_QelUtilDataFaceMapGetReadableRef(zone);
}

WRAPPED(LgIndex_t, QelUtilDataFaceMapGetLeftElem, const QelFaceMap* map, LgIndex_t face) {
  return IsStagedHandle(map) ? face : __real_QelUtilDataFaceMapGetLeftElem(map, face);
}

WRAPPED(LgIndex_t, QelUtilDataFaceMapGetRightElem, const QelFaceMap* map, LgIndex_t face) {
  if (!IsStagedHandle(map)) return __real_QelUtilDataFaceMapGetRightElem(map, face);
  return face == staged->HasSize().cellCount ? 0 : face;
}

WRAPPED(LgIndex_t, QelUtilDataFaceMapGetNFaceNodes, const QelFaceMap* map, LgIndex_t face) {
  if (!IsStagedHandle(map)) return __real_QelUtilDataFaceMapGetNFaceNodes(map, face);
  return Counted(staged->CornerCount());
}

WRAPPED(LgIndex_t, QelUtilDataFaceMapGetFaceNode, const QelFaceMap* map, LgIndex_t face,
        LgIndex_t n) {
  if (!IsStagedHandle(map)) return __real_QelUtilDataFaceMapGetFaceNode(map, face, n);
  return Counted(staged->NodeOf(std::int64_t{face} - 1, n - 1) + 1);
}

// Blanking

WRAPPED(bool, QelUtilBlankingCheckDataPoint, LgIndex_t zone, LgIndex_t node) {
  if (!IsStaged(zone)) return __real_QelUtilBlankingCheckDataPoint(zone, node);
  return !SparseZone::IsHidden(std::int64_t{node} - 1, staged->HasSize().nodeCount);
}

WRAPPED(bool, QelUtilBlankingCheckFECell, LgIndex_t zone, LgIndex_t element) {
  if (!IsStaged(zone)) return __real_QelUtilBlankingCheckFECell(zone, element);
  return !SparseZone::IsHidden(std::int64_t{element} - 1, staged->HasSize().cellCount);
}

WRAPPED(bool, QelUtilBlankingCheckIJKCell, LgIndex_t zone, LgIndex_t plane, LgIndex_t cell) {
  if (!IsStaged(zone)) return __real_QelUtilBlankingCheckIJKCell(zone, plane, cell);
  return !SparseZone::IsHidden(std::int64_t{cell} - 1, staged->HasSize().cellCount);
}
