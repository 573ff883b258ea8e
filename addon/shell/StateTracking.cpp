#include "StateTracking.h"

#include "AddOnName.h"
#include "Controls.h"
#include "EntryPoint.h"
#include "HostOwned.h"
#include "MenuEntry.h"
#include "SessionRegistry.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <cstring>

namespace qelvane::qelutiltools {

namespace {

/// Whether an action of the add-on itself caused the change: the lock is then held in its name.
bool IsOwnChange() {
  if (!QelUtilLockIsOn()) return false;
  char* owner = nullptr;
  if (!QelUtilLockGetCurrentOwnerName(&owner)) return false;
  const HostString owned(owner);
  return owner != nullptr && std::strcmp(owner, ADDON_NAME) == 0;
}

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

void DropDialog() {
  if (QelGUIDialogIsUp(Controls.dialog)) QelGUIDialogDrop(Controls.dialog);
}

void ClampAlterVariable() {
  Selvane* const session = SessionRegistry::Instance().Find();
  if (session != nullptr) session->ClampAlterVariable();
}

void FollowChange(QelStateChange_t change, bool isOwn) {
  switch (change) {
    case StateChange_VarsAdded:
    case StateChange_VarsDeleted:
    case StateChange_VarsReset:
      if (!isOwn) ClampAlterVariable();
      break;
    case StateChange_FrameDeleted:
    case StateChange_DropDialogs:
      DropDialog();
      break;
    case StateChange_NewLayout:
      DropDialog();
      SessionRegistry::Instance().DeleteAll();
      break;
    default:
      break;
  }
}

}  // namespace

void StateChangeCallback(QelStateChange_t change) {
  bool touchesMenu = false;
  Contain(nullptr, [&] {
    const bool isOwn = IsOwnChange();
    touchesMenu = TouchesMenu(change);
    FollowChange(change, isOwn);
  });
  // Also after an error: the entry must not stay open to a plot that is gone.
  if (touchesMenu) Contain(nullptr, UpdateMenuSensitivity);
}

}  // namespace qelvane::qelutiltools
