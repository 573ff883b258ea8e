#pragma once

#include "qelvane/Extensions.h"

namespace qelvane::qelutiltools {

/// What the host offers beside its functions, asked for once an operation. Each is null where the
/// host does not offer it, and each is used whatever the others are.
struct HostServices {
  const QelBulkAccess_s* bulk = nullptr;
  const QelParallel_s* parallel = nullptr;
  const QelProgress_s* progress = nullptr;
};

HostServices AskHostServices();

/// One service by its id; null where the host does not offer it, or offers none at all.
const void* AskHostForAny(const char* id);

template <class Service>
const Service* AskHostFor(const char* id) {
  return static_cast<const Service*>(AskHostForAny(id));
}

}  // namespace qelvane::qelutiltools
