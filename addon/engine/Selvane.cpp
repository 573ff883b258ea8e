#include "Selvane.h"

#include "CMacroEngine.h"
#include "Controls.h"
#include "ElementPick.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "SessionRegistry.h"
#include "Utilities.h"

#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <algorithm>

namespace qelvane::qelutiltools {

Selvane::Selvane(QelUniqueID_t dataSetId)
    : m_dataSetId(dataSetId),
      m_cube([this] { return IsPickingWith(PickKind::Cube); }),
      m_sphere([this] { return IsPickingWith(PickKind::Sphere); }) {}

Selvane::~Selvane() {
  if (m_rememberedView != nullptr) QelUtilViewDealloc(&m_rememberedView);
}

bool Selvane::SetPickKind(PickKind kind, bool on) {
  const HostLock lock;
  DiscardUndo();
  m_pickKind = on ? kind : PickKind::None;
  return ShowPickKind();
}

bool Selvane::RenewPickKind() {
  const HostLock lock;
  return ShowPickKind();
}

bool Selvane::ShowPickKind() {
  SetMouseModeFor(m_pickKind);
  bool isShown = true;
  if (m_pickKind == PickKind::Cube) {
    isShown = m_cube.Create();
  } else {
    m_cube.DeleteZone();
  }
  if (m_pickKind == PickKind::Sphere) {
    isShown = m_sphere.Create();
  } else {
    m_sphere.DeleteZone();
  }
  return isShown;
}

bool Selvane::IsPickingWith(PickKind kind) const {
  return m_pickKind == kind && SessionRegistry::Instance().IsCurrent(*this);
}

void Selvane::SetMouseModeFor(PickKind kind) {
  switch (kind) {
    case PickKind::Element:
      HOST_CHECK(QelUtilProbeInstallCallback(SelvaneCellCallback, "Click on the Cell to be blanked"));
      break;
    case PickKind::Rectangle:
      HOST_CHECK(QelUtilMouseSetMode(Mouse_GeomRectangle));
      break;
    case PickKind::Polygon:
      HOST_CHECK(QelUtilMouseSetMode(Mouse_GeomPolyline));
      break;
    case PickKind::Circle:
      HOST_CHECK(QelUtilMouseSetMode(Mouse_GeomCircle));
      break;
    default:
      HOST_CHECK(QelUtilMouseSetMode(Mouse_Select));
      break;
  }
}

void Selvane::SetAlterVariable(LgIndex_t var) {
  const HostLock lock;
  m_alterVar = std::min(std::max<LgIndex_t>(var, 1), QelUtilDataSetGetNumVars());
  DiscardUndo();
  SyncContours();
}

void Selvane::SetSyncContours(bool on) {
  const HostLock lock;
  m_isSyncingContours = on;
  SyncContours();
}

void Selvane::SyncContours() {
  const HostLock lock;
  if (!m_isSyncingContours || m_alterVar < 1 || m_alterVar > QelUtilDataSetGetNumVars()) return;
  // A frame whose contours cannot follow is no reason to stop an alteration.
  QelUtilContourSetVariable(m_alterVar);
}

void Selvane::SetPickRule(bool outside, bool all) {
  const HostLock lock;
  m_pickRule = static_cast<PickRule>((outside ? 1 : 0) + (all ? 2 : 0));
  DiscardUndo();
}

void Selvane::SetPickRule(PickRule rule) { SetPickRule(TakesOutside(rule), NeedsAllCorners(rule)); }

void Selvane::ClampAlterVariable() {
  const HostLock lock;
  m_alterVar = std::min(m_alterVar, QelUtilDataSetGetNumVars());
}

bool Selvane::ParseModifier(const std::string& text) {
  const HostLock lock;
  const std::optional<ValueModifier> modifier = ParseModifierText(text);
  if (!modifier) return false;
  m_modifier = *modifier;
  DiscardUndo();
  return true;
}

void Selvane::EnterAlterMode() {
  if (!m_isBlankMode) return;
  const HostLock lock;
  m_isBlankMode = false;
  DiscardUndo();
}

void Selvane::SetView(StandardView view) {
  const HostLock lock;
  if (QelUtilFrameGetPlotType() != PlotType_Cartesian3D) return;
  if (view == StandardView::ThreeD) {
    RestoreView();
    return;
  }
  if (m_rememberedView == nullptr) HOST_CHECK(QelUtilViewGet(&m_rememberedView));
  // While a macro plays, the host itself plays the recorded command that fits the view.
  const bool fit = !MacroEngine.PlayingBack;
  const double psi = view == StandardView::XY ? 0.0 : 90.0;
  const double alpha = view == StandardView::YZ ? -90.0 : 0.0;
  RotateViewTo(psi, alpha, 0.0, fit);
}

void Selvane::RestoreView() {
  if (m_rememberedView == nullptr) return;
  HOST_CHECK(QelUtilViewSet(m_rememberedView));
  QelUtilViewDealloc(&m_rememberedView);
  m_rememberedView = nullptr;
}

void Selvane::LeaveAsCurrent() {
  const HostLock lock;
  if (m_pickKind == PickKind::Cube) m_cube.DeleteZone();
  if (m_pickKind == PickKind::Sphere) m_sphere.DeleteZone();
  DiscardUndo();
}

void Selvane::DropUndo() {
  const HostLock lock;
  DiscardUndo();
}

bool Selvane::CanApply() {
  const HostLock lock;
  if (const CPickBoundary3d* const boundary = Boundary3d()) return boundary->GetZoneNum() > 0;
  return m_pickKind != PickKind::Element && QelUtilGeomGetBase() != 0;
}

void Selvane::DiscardUndo() {
  m_isUndoAvailable = false;
  m_undoGeometry = 0;
  ShowUndoAvailability();
}

void Selvane::ShowUndoAvailability() const {
  if (QelGUIDialogIsUp(Controls.dialog)) {
    QelGUISetSensitivity(Controls.undoAlterButton, m_isUndoAvailable);
  }
}

}  // namespace qelvane::qelutiltools
