#include "HostLock.h"

namespace qelvane::qelutiltools {

QelAddOn* AddOnID = nullptr;

}  // namespace qelvane::qelutiltools
