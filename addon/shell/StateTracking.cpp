#include "StateTracking.h"

#include "AddOnName.h"
#include "Controls.h"
#include "DialogState.h"
#include "EntryPoint.h"
#include "GeometryChoice.h"
#include "HostCheck.h"
#include "HostOwned.h"
#include "MenuEntry.h"
#include "SessionRegistry.h"
#include "ShapeHandles.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace qelvane::qelutiltools {

namespace {

bool isQuitting = false;
bool isVariableChangePending = false;
bool isNewFramePending = false;

/// A notice, and what is asked of the host about it at once: who made the change.
struct Change {
  QelStateChange_t code;
  bool isLocked;
  bool isOwn;  ///< an action of the add-on itself caused it: the lock is held in its name
};

bool IsOwnLock() {
  char* owner = nullptr;
  if (!QelUtilLockGetCurrentOwnerName(&owner)) return false;
  const HostString owned(owner);
  return owner != nullptr && std::strcmp(owner, ADDON_NAME) == 0;
}

Change ChangeOf(QelStateChange_t code) {
  const bool isLocked = QelUtilLockIsOn();
  return {code, isLocked, isLocked && IsOwnLock()};
}

bool IsStyleParam(LgIndex_t n, const char* keyword) {
  char* param = nullptr;
  if (!QelUtilStateChangeGetStyleParam(n, &param)) return false;
  const HostString owned(param);
  return param != nullptr && std::strcmp(param, keyword) == 0;
}

bool IsDialogUp() { return QelGUIDialogIsUp(Controls.dialog); }

// Deferred work --------------------------------------------------------------------------------

void OnIdleVarAddDelCallback(ArbParam_t) {
  EntryPoint(nullptr, [] {
    isVariableChangePending = false;
    if (!isQuitting && IsDialogUp()) RefillVariableMenu();
  });
}

void OnIdleNewFrameCallback(ArbParam_t) {
  EntryPoint(nullptr, [] {
    isNewFramePending = false;
    if (isQuitting || !IsDialogUp()) return;
    if (SessionRegistry::Instance().GetOrCreate() == nullptr) {
      CloseDialog();
    } else {
      InitDialog();
    }
  });
  FollowShape();
}

// What each change asks for --------------------------------------------------------------------

void FollowVariables(const Change& change) {
  if (change.isOwn) return;
  Selvane* const session = SessionRegistry::Instance().Find();
  if (session == nullptr) return;
  session->ClampAlterVariable();
  if (isVariableChangePending) return;
  isVariableChangePending = true;
  HOST_CHECK(QelUtilOnIdleQueueAddCallback(OnIdleVarAddDelCallback, (ArbParam_t) 0));
}

void FollowStyle(const Change& change) {
  if (change.isOwn) return;
  Selvane* const session = SessionRegistry::Instance().Find();
  if (session == nullptr) {
    if (IsDialogUp()) CloseDialog();
    return;
  }
  if (IsStyleParam(1, SV_BLANKING) && IsStyleParam(2, SV_VALUE) && IsStyleParam(3, SV_INCLUDE)) {
    if (IsDialogUp()) QelGUIToggleSet(Controls.includeBlankingToggle, QelUtilBlankingIsActive());
    return;
  }
  // An area is drawn in the plane of the view: seen from elsewhere it is another area.
  const PickKind kind = session->Kind();
  const bool isDrawn =
      kind == PickKind::Rectangle || kind == PickKind::Polygon || kind == PickKind::Circle;
  if (isDrawn && IsStyleParam(1, SV_THREEDVIEW)) session->DropUndo();
}

void FollowMouseMode(const Change& change) {
  if (change.isOwn) return;
  Selvane* const session = SessionRegistry::Instance().Find();
  if (session == nullptr) return;
  session->FollowMouseMode();
  if (IsDialogUp()) RefreshTools();
}

void FollowGeometry(const Change& change) {
  const bool isAwaited = IsDialogUp() || IsGeometryArmed();
  if (!isAwaited || !change.isLocked || change.isOwn) return;
  Selvane* const session = SessionRegistry::Instance().Find();
  if (session == nullptr) return;
  session->TakeNewestGeometry();
  if (!IsDialogUp()) return;
  RefreshTools();
  RefreshControls();
}

void FollowFrame(const Change&) {
  if (isNewFramePending) return;
  isNewFramePending = true;
  HOST_CHECK(QelUtilOnIdleQueueAddCallback(OnIdleNewFrameCallback, (ArbParam_t) 0));
}

void DropDialogs(const Change&) { DropDialog(); }

void ForgetDataSets(const Change&) {
  DropDialog();
  UnbindDialog();
  SessionRegistry::Instance().DeleteAll();
}

void NoteQuitting(const Change&) { isQuitting = true; }

struct Row {
  QelStateChange_t code;
  void (*follow)(const Change& change);
};

constexpr Row kRows[] = {
    {StateChange_VarsAdded, FollowVariables},  {StateChange_VarsDeleted, FollowVariables},
    {StateChange_VarsReset, FollowVariables},  {StateChange_FrameDeleted, DropDialogs},
    {StateChange_Style, FollowStyle},          {StateChange_NewLayout, ForgetDataSets},
    {StateChange_QuitHost, NoteQuitting},      {StateChange_MouseModeUpdate, FollowMouseMode},
    {StateChange_GeomCreated, FollowGeometry}, {StateChange_DropDialogs, DropDialogs},
    {StateChange_NewActiveFrame, FollowFrame},
};

bool IsFollowed(QelStateChange_t code) {
  return std::any_of(std::begin(kRows), std::end(kRows),
                     [code](const Row& row) { return row.code == code; });
}

/// Whether the change can take a box or a sphere, or its dialog, out of the user's hands. What the
/// add-on does itself is half done yet: a sphere's zone comes and goes as it moves.
bool TouchesShape(const Change& change) {
  return !change.isOwn && (change.code == StateChange_ZonesDeleted ||
                           change.code == StateChange_DataSetReset || IsFollowed(change.code));
}

/// Whether the change can decide if the menu entry applies.
bool TouchesMenu(QelStateChange_t code) {
  return code == StateChange_FrameDeleted ||
         (code == StateChange_Style && IsStyleParam(1, SV_PLOTTYPE));
}

}  // namespace

void StateChangeCallback(QelStateChange_t code) {
  bool touchesMenu = false;
  bool touchesShape = false;
  Contain(nullptr, [&] {
    const Change change = ChangeOf(code);
    touchesShape = TouchesShape(change);
    touchesMenu = TouchesMenu(code);
    for (const Row& row : kRows) {
      if (row.code == code) row.follow(change);
    }
  });
  if (touchesShape) FollowShape();
  // Also after an error: the entry must not stay open to a plot that is gone.
  if (touchesMenu) Contain(nullptr, UpdateMenuSensitivity);
}

}  // namespace qelvane::qelutiltools
