#pragma once

#include "PickTypes.h"

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

/// Chooses the items of the two rule menus that say the rule, and the label behind them.
void ShowRule(PickRule rule);

/// Callback of both menus.
void OnRuleChosen(LgIndex_t item);

}  // namespace qelvane::qelutiltools
