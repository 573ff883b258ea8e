// What this host offers beyond the contract's functions.
#include "ApiGuard.h"
#include "ApiHandles.h"
#include "Extensions.h"

#include "qelvane/Extensions.h"

#include <vtkSMPTools.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>

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

/// The program shows its own progress, line by line, so the part of a line that is done is no news.
void ReportNothing(double) {}

void ReportAltered(LgIndex_t zone, LgIndex_t var, std::int64_t count) {
  GuardedVoid("progress changed", [&](Host& host) {
    const Frame* const frame = host.frames.Active();
    if (frame == nullptr) return;
    host.watch.Altered(frame->Data(), zone, var, count);
    if (frame->Data() != nullptr) frame->Data()->NoteDirectWrites();
  });
}

const QelProgress_s kProgress = {ReportNothing, ReportAltered};

const QelCommandCheck_s kCommandCheck = {[](const char* addOnName, QelCommandCheck_pf check) {
  GuardedVoid("command-check offer", [&](Host& host) {
    if (addOnName != nullptr) host.addOns.SetCommandCheck(addOnName, check);
  });
}};

struct Extension {
  const char* id;
  const void* service;
};

constexpr Extension kExtensions[] = {
    {QEL_EXTENSION_BULK_ACCESS, &kBulkAccess},
    {QEL_EXTENSION_PARALLEL, &kParallel},
    {QEL_EXTENSION_PROGRESS, &kProgress},
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
