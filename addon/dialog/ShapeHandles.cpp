#include "ShapeHandles.h"

#include "BoundaryFields.h"
#include "Controls.h"
#include "DialogState.h"
#include "EntryPoint.h"
#include "HostCheck.h"
#include "HostServices.h"
#include "Selvane.h"
#include "SessionRegistry.h"

#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace qelvane::qelutiltools {

namespace {

/// Anchor, sizes and rotations, as the fields have them; of a sphere the centre and the radius, the
/// rest being 0.
struct DraggedShape {
  QelShape_e kind = Shape_Box;
  BoundaryNumbers numbers{};
};

bool operator==(const DraggedShape& a, const DraggedShape& b) {
  return a.kind == b.kind && a.numbers == b.numbers;
}

/// What the host has been told of last, and what it has told since.
std::optional<DraggedShape> known;
bool isFollowPending = false;

bool AreFinite(const BoundaryNumbers& numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](double n) { return std::isfinite(n); });
}

bool IsWithBoundary() {
  Selvane* const session = DialogSession();
  return session != nullptr && session->Boundary3d() != nullptr;
}

/// The boundary that the open dialog edits; null when there is none in the active frame's data.
CPickBoundary3d* BoundaryInHand() {
  if (!IsWithBoundary() || !QelGUIDialogIsUp(Controls.dialog)) return nullptr;
  Selvane& session = *DialogSession();
  return SessionRegistry::Instance().IsCurrent(session) ? session.Boundary3d() : nullptr;
}

/// None also for numbers that were typed and are nowhere: they cannot be dragged.
std::optional<DraggedShape> ShapeInHand() {
  const CPickBoundary3d* const boundary = BoundaryInHand();
  if (boundary == nullptr || boundary->GetZoneNum() < 1) return std::nullopt;
  DraggedShape shape;
  shape.kind = DialogSession()->Kind() == PickKind::Sphere ? Shape_Sphere : Shape_Box;
  shape.numbers = BoundaryInFields();
  if (!AreFinite(shape.numbers)) return std::nullopt;
  return shape;
}

void OnShapeChanged(const double anchor[3], const double size[3], const double rotationDeg[3]);

const QelShapeHandles_s* AskForHandles() {
  return AskHostFor<QelShapeHandles_s>(QEL_EXTENSION_SHAPE_HANDLES);
}

void Tell(const QelShapeHandles_s& handles) {
  const std::optional<DraggedShape> shape = ShapeInHand();
  if (shape == known) return;
  const bool isLeft = known && (!shape || shape->kind != known->kind);
  known = shape;
  if (isLeft) handles.hide();
  if (!shape) return;
  const double* const numbers = shape->numbers.data();
  handles.show(shape->kind, numbers, numbers + 3, numbers + 6, OnShapeChanged);
}

/// What the host says of the shape that it was told of.
BoundaryNumbers NumbersOf(QelShape_e kind, const double* anchor, const double* size,
                          const double* rotationDeg) {
  if (kind == Shape_Sphere) return {anchor[0], anchor[1], anchor[2], size[0]};
  return {anchor[0], anchor[1],      anchor[2],      size[0],       size[1],
          size[2],   rotationDeg[0], rotationDeg[1], rotationDeg[2]};
}

/// Sizes below 0 are taken as they are, like those that are typed. Numbers that are not finite are
/// not: nobody can have dragged a shape there, and the host is shown the one in hand again.
void TakeShape(const double* anchor, const double* size, const double* rotationDeg) {
  if (anchor == nullptr || size == nullptr || rotationDeg == nullptr) return;
  const std::optional<DraggedShape> shape = ShapeInHand();
  if (!shape || !known || shape->kind != known->kind) return;
  const BoundaryNumbers entered = AsShown(NumbersOf(shape->kind, anchor, size, rotationDeg));
  if (!AreFinite(entered)) {
    known.reset();
    return;
  }
  // Taken in hand and not moved: no entry, and no reason to drop the undo.
  if (entered == AsShown(known->numbers)) return;
  EnterBoundary(entered);
  // The host, in whose hand the shape still is, has it already but for the rounding.
  known = ShapeInHand();
}

void OnShapeChanged(const double anchor[3], const double size[3], const double rotationDeg[3]) {
  EntryPoint(nullptr, [=] { TakeShape(anchor, size, rotationDeg); });
  FollowShapeEntered();
}

void OnIdleFollowShape(ArbParam_t) {
  isFollowPending = false;
  FollowShape();
}

}  // namespace

void FollowShape() {
  if (!known && !IsWithBoundary()) return;
  Contain(nullptr, [] {
    if (const QelShapeHandles_s* const handles = AskForHandles()) {
      const HostLock lock;
      Tell(*handles);
    } else {
      known.reset();
    }
  });
}

void FollowShapeEntered() {
  FollowShape();
  Contain(nullptr, [] {
    if (known || isFollowPending || !IsWithBoundary() || AskForHandles() == nullptr) return;
    const HostLock lock;
    HOST_CHECK(QelUtilOnIdleQueueAddCallback(OnIdleFollowShape, (ArbParam_t) 0));
    isFollowPending = true;
  });
}

}  // namespace qelvane::qelutiltools
