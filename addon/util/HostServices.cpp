#include "HostServices.h"

namespace qelvane::qelutiltools {

namespace {

template <class Service>
const Service* Ask(const char* id) {
  return static_cast<const Service*>(QelUtilExtensionGet(id));
}

}  // namespace

HostServices AskHostServices() {
  if (QelUtilExtensionGet == nullptr) return {};
  return {Ask<QelBulkAccess_s>(QEL_EXTENSION_BULK_ACCESS),
          Ask<QelParallel_s>(QEL_EXTENSION_PARALLEL), Ask<QelProgress_s>(QEL_EXTENSION_PROGRESS)};
}

}  // namespace qelvane::qelutiltools
