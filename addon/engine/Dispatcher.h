#pragma once

#include "CMacroEngine.h"

namespace qelvane::qelutiltools {

class Selvane;

/// Carries out one parsed command on the session. Attributes are all read and checked before the
/// first of them changes anything. False with the reason, which may be empty, in the macro engine's
/// error text. A command id that does not exist does nothing and succeeds.
bool DispatchMacroCommand(Selvane& engine, const MacroCommand& command);

}  // namespace qelvane::qelutiltools
