#include "StateTracking.h"

#include "EntryPoint.h"
#include "HostOwned.h"
#include "MenuEntry.h"
#include "SessionRegistry.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <cstring>

namespace qelvane::qelutiltools {

namespace {

bool IsStyleParam(LgIndex_t n, const char* keyword) {
  char* param = nullptr;
  if (!QelUtilStateChangeGetStyleParam(n, &param)) return false;
  const HostString owned(param);
  return param != nullptr && std::strcmp(param, keyword) == 0;
}

/// Whether the change can decide if the menu entry applies.
bool TouchesMenu(QelStateChange_t change) {
  return change == StateChange_FrameDeleted ||
         (change == StateChange_Style && IsStyleParam(1, SV_PLOTTYPE));
}

}  // namespace

void StateChangeCallback(QelStateChange_t change) {
  bool touchesMenu = false;
  Contain(nullptr, [&] {
    touchesMenu = TouchesMenu(change);
    if (change == StateChange_NewLayout) SessionRegistry::Instance().DeleteAll();
  });
  if (touchesMenu) Contain(nullptr, UpdateMenuSensitivity);
}

}  // namespace qelvane::qelutiltools
