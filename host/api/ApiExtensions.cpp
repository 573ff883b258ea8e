// What this host offers beyond the contract's functions.
#include "ApiGuard.h"
#include "ApiHandles.h"

#include "qelvane/Extensions.h"

#include <cstring>

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

// "Not for this one": the add-on goes through the contract's functions, where every write is
// counted.
bool NoFieldSpan(const QelFieldData*, QelFieldSpan_s*) { return false; }
bool NoProjection(double*) { return false; }

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

const QelBulkAccess_s kBulkAccess = {NoFieldSpan, NodeMapSpan, NoProjection, BlankedCells,
                                     BlankedNodes};

/// The program shows its own progress, line by line, so the part of a line that is done is no news.
void ReportNothing(double) {}

void ReportAltered(LgIndex_t zone, LgIndex_t var, std::int64_t count) {
  GuardedVoid("progress changed", [&](Host& host) {
    const Frame* const frame = host.frames.Active();
    if (frame != nullptr) host.watch.Altered(frame->Data(), zone, var, count);
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
    {QEL_EXTENSION_PROGRESS, &kProgress},
    {QEL_EXTENSION_COMMAND_CHECK, &kCommandCheck},
};

}  // namespace

const void* QelUtilExtensionGet(const char* id) {
  if (id == nullptr) return nullptr;
  for (const Extension& extension : kExtensions) {
    if (std::strcmp(id, extension.id) == 0) return extension.service;
  }
  return nullptr;
}
