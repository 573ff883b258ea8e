// What this host offers beyond the contract's functions.
#include "ApiGuard.h"
#include "ApiHandles.h"
#include "Extensions.h"

#include "qelvane/Extensions.h"

#include <vtkSMPTools.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <vector>

using namespace qelhost;

namespace {

/// Connectivity that lies in one plain run is shown as it is.
bool NodeMapSpan(const QelNodeMap* map, QelNodeSpan_s* span) {
  return Guarded(__func__, false, [&](Host&) {
    if (span == nullptr || !TheHandles().references.Has(map) || !map->plain) return false;
    *span = {map->nodes, map->wide ? 8 : 4, 0, map->nodesPerElement, map->elementCount};
    return true;
  });
}

/// While a report is wanted of how many values an alteration changed, those to be written are not
/// shown: the add-on then writes through the contract's functions, which count.
bool FieldSpan(const QelFieldData* ref, QelFieldSpan_s* span) {
  return Guarded(__func__, false, [&](Host& host) {
    if (span == nullptr || !TheHandles().references.Has(ref)) return false;
    if (!IsStridedRun(*ref) || ref->type == FieldDataType_Invalid) return false;
    if (ref->isOpenForWriting) {
      if (host.watch.IsOn()) return false;
      ref->storage->directWrites = DirectWrites::Possible;
    }
    *span = {ref->first, ref->type, ref->stride * ref->valueSize, ref->count};
    return true;
  });
}

bool ShowProjection(double m[16]) {
  return Guarded(__func__, false, [&](Host& host) {
    const Frame* const frame = host.frames.Active();
    if (frame == nullptr || m == nullptr) return false;
    const Projection& projection = frame->FixedProjection();
    for (std::size_t row = 0; row < 3; ++row) {
      std::copy_n(&projection.rotation[3 * row], 3, m + 4 * row);
      m[4 * row + 3] = projection.offset[row];
    }
    constexpr double kLastRow[] = {0.0, 0.0, 0.0, 1.0};
    std::copy(std::begin(kLastRow), std::end(kLastRow), m + 12);
    return true;
  });
}

bool ShowBits(const char* function, LgIndex_t zone, ItemBits BlankedItems::*kind,
              const std::uint64_t** bits, std::int64_t* count) {
  return Guarded(function, false, [&](Host& host) {
    Frame* const frame = host.frames.Active();
    const BlankedItems* const blanked = frame == nullptr ? nullptr : frame->Blanked(zone);
    if (blanked == nullptr || bits == nullptr || count == nullptr) return false;
    *bits = (blanked->*kind).words.data();
    *count = (blanked->*kind).count;
    return true;
  });
}

bool BlankedCells(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count) {
  return ShowBits(__func__, zone, &BlankedItems::cells, bits, count);
}

bool BlankedNodes(LgIndex_t zone, const std::uint64_t** bits, std::int64_t* count) {
  return ShowBits(__func__, zone, &BlankedItems::nodes, bits, count);
}

const QelBulkAccess_s kBulkAccess = {FieldSpan, NodeMapSpan, ShowProjection, BlankedCells,
                                     BlankedNodes};

LgIndex_t Workers() { return static_cast<LgIndex_t>(vtkSMPTools::GetEstimatedNumberOfThreads()); }

/// By grains, because the pool below cuts ranges wherever it likes.
void ForRange(std::int64_t first, std::int64_t last, std::int64_t grain,
              void (*body)(std::int64_t, std::int64_t, void*), void* context) {
  if (body == nullptr || last <= first) return;
  const std::int64_t step = std::max<std::int64_t>(grain, 1);
  const std::int64_t grainCount = (last - first - 1) / step + 1;
  vtkSMPTools::For(0, grainCount, 1, [=](std::int64_t from, std::int64_t to) {
    body(first + from * step, std::min(first + to * step, last), context);
  });
}

const QelParallel_s kParallel = {Workers, ForRange};

void ReportProgress(double fraction) {
  GuardedVoid("progress report", [&](Host& host) {
    if (!std::isnan(fraction)) host.progress.Set(std::clamp(fraction, 0.0, 1.0));
  });
}

void ReportAltered(LgIndex_t zone, LgIndex_t var, std::int64_t count) {
  GuardedVoid("progress changed", [&](Host& host) {
    const Frame* const frame = host.frames.Active();
    if (frame == nullptr) return;
    host.watch.Altered(frame->Data(), zone, var, count);
    if (frame->Data() != nullptr) frame->Data()->NoteDirectWrites(zone, var);
  });
}

const QelProgress_s kProgress = {ReportProgress, ReportAltered};

const QelCommandCheck_s kCommandCheck = {[](const char* addOnName, QelCommandCheck_pf check) {
  GuardedVoid("command-check offer", [&](Host& host) {
    if (addOnName != nullptr) host.addOns.SetCommandCheck(addOnName, check);
  });
}};

/// Adds a function that an add-on offers; offered twice it counts once.
template <class Function>
void TakeOffer(std::vector<Function>& offered, Function function) {
  if (function == nullptr) return;
  if (std::find(offered.begin(), offered.end(), function) != offered.end()) return;
  offered.push_back(function);
}

const QelPickQuery_s kPickQuery = {[](QelPickQuery_pf query) {
  GuardedVoid("pick-query offer", [&](Host& host) { TakeOffer(host.pickQueries, query); });
}};

const QelHistory_s kHistory = {[](void (*valuesRestored)()) {
  GuardedVoid("history offer", [&](Host& host) { TakeOffer(host.valuesRestored, valuesRestored); });
}};

bool ReadThree(const double* numbers, std::array<double, 3>& target) {
  if (numbers == nullptr) return false;
  std::copy_n(numbers, target.size(), target.begin());
  return std::all_of(target.begin(), target.end(), [](double x) { return std::isfinite(x); });
}

/// A sphere has one size and no direction, whatever else it is given.
bool ReadShape(QelShape_e kind, const double* anchor, const double* size, const double* rotationDeg,
               ShownShape& shape) {
  shape.kind = kind;
  if (kind == Shape_Box) {
    return ReadThree(anchor, shape.anchor) && ReadThree(size, shape.size) &&
           ReadThree(rotationDeg, shape.rotationDeg);
  }
  if (kind != Shape_Sphere || size == nullptr || !std::isfinite(size[0])) return false;
  shape.size.fill(size[0]);
  return ReadThree(anchor, shape.anchor);
}

bool IsSame(const ShownShape& a, const ShownShape& b) {
  return a.isShown == b.isShown && a.kind == b.kind && a.anchor == b.anchor && a.size == b.size &&
         a.rotationDeg == b.rotationDeg && a.changed == b.changed;
}

void ShowShape(QelShape_e kind, const double anchor[3], const double size[3],
               const double rotationDeg[3], QelShapeChanged_pf changed) {
  GuardedVoid("shape-handles show", [&](Host& host) {
    ShownShape shape;
    if (changed == nullptr || !ReadShape(kind, anchor, size, rotationDeg, shape)) return;
    shape.isShown = true;
    shape.changed = changed;
    shape.version = host.shape.version + 1;
    // What the add-on only repeats must not disturb the drag in hand.
    if (!IsSame(shape, host.shape)) host.shape = shape;
  });
}

void HideShape() {
  GuardedVoid("shape-handles hide", [](Host& host) {
    if (!host.shape.isShown) return;
    const std::int64_t version = host.shape.version + 1;
    host.shape = ShownShape();
    host.shape.version = version;
  });
}

const QelShapeHandles_s kShapeHandles = {ShowShape, HideShape};

struct Extension {
  const char* id;
  const void* service;
};

constexpr Extension kExtensions[] = {
    {QEL_EXTENSION_BULK_ACCESS, &kBulkAccess},
    {QEL_EXTENSION_PARALLEL, &kParallel},
    {QEL_EXTENSION_PROGRESS, &kProgress},
    {QEL_EXTENSION_PICK_QUERY, &kPickQuery},
    {QEL_EXTENSION_HISTORY, &kHistory},
    {QEL_EXTENSION_SHAPE_HANDLES, &kShapeHandles},
    {QEL_EXTENSION_COMMAND_CHECK, &kCommandCheck},
};

std::set<std::string>& WithheldExtensions() {
  static std::set<std::string> ids;
  return ids;
}

}  // namespace

namespace qelhost {

void WithholdExtension(const std::string& id, bool withhold) {
  if (withhold) {
    WithheldExtensions().insert(id);
  } else {
    WithheldExtensions().erase(id);
  }
}

}  // namespace qelhost

const void* QelUtilExtensionGet(const char* id) {
  if (id == nullptr || WithheldExtensions().count(id) > 0) return nullptr;
  for (const Extension& extension : kExtensions) {
    if (std::strcmp(id, extension.id) == 0) return extension.service;
  }
  return nullptr;
}
