#pragma once

#include "qelvane/Types.h"

#include <string>

namespace qelvane::qelutiltools {

class Selvane;

/// The session that the dialog edits. Null until the dialog has been bound, and after the data sets
/// have gone; the callbacks then do nothing.
Selvane* DialogSession();

/// Whether the dialog's choices ask for a click on a seed before anything is applied.
bool NeedsSeed(Selvane& picking);

/// Binds the dialog to the active frame's session, made when missing, switches its pick tool off
/// and fills the controls. Does nothing but unbind when the frame shows nothing that can be picked
/// in.
void InitDialog();

/// Ends the pick in progress, resets the controls and drops the dialog.
void CloseDialog();

/// Drops the dialog as it is, when it is up.
void DropDialog();

/// The session is about to go.
void UnbindDialog();

// Keeping the controls in step with the session. Each sets controls and runs no callback of theirs.

/// The pick-tool toggles, the shade toggle and the apply button's sensitivity.
void RefreshTools();

/// The page of the pick tool with its fields, and what is shown and sensitive with it.
void RefreshControls();

void RefreshApplyButton();

/// The names of all variables, the alter variable chosen.
void RefillVariableMenu();

/// The modifier in force.
void ShowModifier();

/// A number as the fields show it.
std::string TextOfNumber(double value);
void ShowNumber(LgIndex_t field, double value);

/// Sets the mode that the tab's page stands for, and what goes with it.
void EnterAlterPage();
void EnterBlankPage();

}  // namespace qelvane::qelutiltools
