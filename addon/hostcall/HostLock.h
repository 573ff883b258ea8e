#pragma once

#include "qelvane/QelUtil.h"

namespace qelvane::qelutiltools {

/// The add-on's handle at the host; null until it has registered, and when that failed.
extern QelAddOn* AddOnID;

/// Holds the host's lock in the add-on's name; pairs nest.
class HostLock {
 public:
  HostLock() { QelUtilLockStart(AddOnID); }
  ~HostLock() { QelUtilLockFinish(AddOnID); }
  HostLock(const HostLock&) = delete;
  HostLock& operator=(const HostLock&) = delete;
};

}  // namespace qelvane::qelutiltools
