#include "DialogState.h"

#include "BoundaryFields.h"
#include "Controls.h"
#include "HostCheck.h"
#include "HostLock.h"
#include "HostOwned.h"
#include "RuleMenus.h"
#include "Selvane.h"
#include "SessionRegistry.h"
#include "ShapeHandles.h"

#include "qelvane/QelGUI.h"
#include "qelvane/QelUtil.h"

#include <cstdio>

namespace qelvane::qelutiltools {

namespace {

Selvane* session = nullptr;

struct ToolToggle {
  LgIndex_t ControlIds::*toggle;
  PickKind kind;
};

constexpr ToolToggle kToolToggles[] = {{&ControlIds::elementTool, PickKind::Element},
                                       {&ControlIds::rectangleTool, PickKind::Rectangle},
                                       {&ControlIds::polygonTool, PickKind::Polygon},
                                       {&ControlIds::circleTool, PickKind::Circle},
                                       {&ControlIds::cubeTool, PickKind::Cube},
                                       {&ControlIds::sphereTool, PickKind::Sphere}};

/// What is shown for a pick tool.
struct ToolPage {
  LgIndex_t ControlIds::*page = nullptr;
  bool hasSurfaceChoice = false;
  bool hasShade = false;
};

ToolPage PageOf(PickKind kind) {
  switch (kind) {
    case PickKind::Cube:
      return {&ControlIds::cubePage, false, true};
    case PickKind::Sphere:
      return {&ControlIds::spherePage, false, true};
    case PickKind::Element:
      return {&ControlIds::elementPage};
    case PickKind::Rectangle:
      return {&ControlIds::rectanglePage, true};
    case PickKind::Circle:
      return {&ControlIds::circlePage, true};
    case PickKind::Polygon:
      return {&ControlIds::polygonPage, true};
    default:
      return {&ControlIds::startPage, true};
  }
}

void ShowTabOf(const Selvane& shown) {
  constexpr LgIndex_t kAlterPage = 1;
  constexpr LgIndex_t kBlankPage = 2;
  if (shown.IsBlankMode()) {
    QelGUITabSetCurrentPage(Controls.tab, kBlankPage);
    EnterBlankPage();
  } else {
    QelGUITabSetCurrentPage(Controls.tab, kAlterPage);
    EnterAlterPage();
  }
}

}  // namespace

Selvane* DialogSession() { return session; }

bool NeedsSeed(Selvane& picking) {
  constexpr LgIndex_t kTunnelThrough = 1;
  return picking.Boundary3d() == nullptr &&
         QelGUIRadioBoxGetToggle(Controls.surfaceRadioBox) != kTunnelThrough;
}

void InitDialog() {
  const HostLock lock;
  session = SessionRegistry::Instance().GetOrCreate();
  if (session == nullptr) return;
  session->SetPickKind(PickKind::None, false);
  RefreshTools();
  RefreshControls();
  ShowRule(session->Rule());
  RefreshControls();
  ShowTabOf(*session);
}

void CloseDialog() {
  const HostLock lock;
  if (session != nullptr) {
    session->SetPickKind(PickKind::None, true);
    RefreshTools();
    RefreshControls();
  }
  QelGUIDialogDrop(Controls.dialog);
}

void DropDialog() {
  if (!QelGUIDialogIsUp(Controls.dialog)) return;
  QelGUIDialogDrop(Controls.dialog);
  FollowShape();
}

void UnbindDialog() { session = nullptr; }

void RefreshTools() {
  const HostLock lock;
  if (session == nullptr) return;
  for (const ToolToggle& tool : kToolToggles) {
    QelGUIToggleSet(Controls.*tool.toggle, session->Kind() == tool.kind);
  }
  const CPickBoundary3d* const boundary = session->Boundary3d();
  QelGUIToggleSet(Controls.shadeToggle, boundary != nullptr && boundary->IsShadeShown());
  RefreshApplyButton();
}

void RefreshApplyButton() {
  if (session != nullptr) QelGUISetSensitivity(Controls.applyButton, session->CanApply());
}

void RefreshControls() {
  const HostLock lock;
  if (session == nullptr) return;
  RefreshApplyButton();
  QelGUISetVisibility(Controls.shadeToggle, FALSE);
  QelGUISetVisibility(Controls.seedLabel, FALSE);
  QelGUISetVisibility(Controls.surfaceRadioBox, TRUE);
  QelGUISetSensitivity(Controls.undoAlterButton, session->IsUndoAvailable());

  const ToolPage shown = PageOf(session->Kind());
  QelGUIFormSetCurrentPage(Controls.*shown.page);
  if (shown.hasShade) QelGUISetVisibility(Controls.shadeToggle, TRUE);
  if (!shown.hasSurfaceChoice) QelGUISetVisibility(Controls.surfaceRadioBox, FALSE);
  ShowBoundary();
}

void RefillVariableMenu() {
  const HostLock lock;
  QelGUIOptionMenuDeleteAllItems(Controls.variableMenu);
  if (QelUtilDataSetIsAvailable()) {
    const LgIndex_t varCount = QelUtilDataSetGetNumVars();
    for (LgIndex_t varNum = 1; varNum <= varCount; ++varNum) {
      char* varName = nullptr;
      HOST_CHECK(QelUtilVarGetName(varNum, &varName));
      const HostString owned(varName);
      // An item for every variable: they are chosen by their numbers.
      QelGUIOptionMenuAppendItem(Controls.variableMenu, varName == nullptr ? "" : varName);
    }
  }
  if (session == nullptr) return;
  const LgIndex_t chosen = session->AlterVariable();
  if (chosen >= 1 && chosen <= QelGUIOptionMenuGetItemCount(Controls.variableMenu)) {
    QelGUIOptionMenuSet(Controls.variableMenu, chosen);
  }
}

void ShowModifier() {
  if (session == nullptr) return;
  QelGUITextFieldSetString(Controls.modifierField, FormatModifier(session->Modifier()).c_str());
}

std::string TextOfNumber(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

void ShowNumber(LgIndex_t field, double value) {
  QelGUITextFieldSetString(field, TextOfNumber(value).c_str());
}

void EnterAlterPage() {
  const HostLock lock;
  if (session == nullptr) return;
  session->EnterAlterMode();
  RefillVariableMenu();
  ShowModifier();
  session->DropUndo();
  QelGUIButtonSetText(Controls.applyButton, "Apply Alteration");
}

void EnterBlankPage() {
  const HostLock lock;
  if (session == nullptr) return;
  if (session->EnterBlankMode()) {
    QelGUIToggleSet(Controls.includeBlankingToggle, QelUtilBlankingIsActive());
    QelGUISetSensitivity(Controls.includeBlankingToggle, TRUE);
    RefillVariableMenu();
  } else {
    QelUtilDialogMessageBox("Unable to initialize this data set for pick blanking.",
                            MessageBox_Information);
    QelGUISetSensitivity(Controls.includeBlankingToggle, FALSE);
  }
  QelGUIButtonSetText(Controls.applyButton, "Apply Blanking");
}

}  // namespace qelvane::qelutiltools
