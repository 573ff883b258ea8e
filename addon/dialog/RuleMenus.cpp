#include "RuleMenus.h"

#include "Controls.h"
#include "DialogState.h"
#include "EntryPoint.h"
#include "Selvane.h"

#include "qelvane/QelGUI.h"

namespace qelvane::qelutiltools {

namespace {

constexpr LgIndex_t kInside = 1;
constexpr LgIndex_t kOutside = 2;
constexpr LgIndex_t kAny = 1;
constexpr LgIndex_t kAll = 2;

void ShowCorners(LgIndex_t side) {
  QelGUILabelSetText(Controls.cornersLabel, side == kInside ? "corners inside" : "corners outside");
}

}  // namespace

void ShowRule(PickRule rule) {
  const LgIndex_t side = TakesOutside(rule) ? kOutside : kInside;
  QelGUIOptionMenuSet(Controls.insideOutsideMenu, side);
  QelGUIOptionMenuSet(Controls.anyAllMenu, NeedsAllCorners(rule) ? kAll : kAny);
  ShowCorners(side);
}

void OnRuleChosen(LgIndex_t) {
  EntryPoint(nullptr, [] {
    Selvane* const session = DialogSession();
    if (session == nullptr) return;
    const LgIndex_t side = QelGUIOptionMenuGet(Controls.insideOutsideMenu);
    const LgIndex_t count = QelGUIOptionMenuGet(Controls.anyAllMenu);
    session->SetPickRule(side == kOutside, count == kAll);
    ShowCorners(side);
  });
}

}  // namespace qelvane::qelutiltools
