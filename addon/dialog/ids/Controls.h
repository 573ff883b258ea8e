#pragma once

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

/// The host's id for no dialog and no control.
constexpr LgIndex_t kNoDialog = -2;

/// The dialog and those of its controls that operations outside the dialog set.
struct ControlIds {
  LgIndex_t dialog = kNoDialog;
  LgIndex_t undoAlterButton = kNoDialog;
};

/// One dialog for the whole process; its ids are set when it is built.
extern ControlIds Controls;

}  // namespace qelvane::qelutiltools
