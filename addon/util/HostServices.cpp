#include "HostServices.h"

namespace qelvane::qelutiltools {

const void* AskHostForAny(const char* id) {
  return QelUtilExtensionGet == nullptr ? nullptr : QelUtilExtensionGet(id);
}

HostServices AskHostServices() {
  return {AskHostFor<QelBulkAccess_s>(QEL_EXTENSION_BULK_ACCESS),
          AskHostFor<QelParallel_s>(QEL_EXTENSION_PARALLEL),
          AskHostFor<QelProgress_s>(QEL_EXTENSION_PROGRESS)};
}

}  // namespace qelvane::qelutiltools
