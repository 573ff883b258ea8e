#pragma once

#include "PickTypes.h"

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

// What the dialog and its controls call. Each is contained and holds the lock while it runs.

void OnInit();
void OnClose();
void OnHelp();

/// page counts from 1.
void OnPageActivated(LgIndex_t page);
void OnPageDeactivated(LgIndex_t page);

void OnElementTool(LgIndex_t isOn);
void OnRectangleTool(LgIndex_t isOn);
void OnCircleTool(LgIndex_t isOn);
void OnPolygonTool(LgIndex_t isOn);
void OnCubeTool(LgIndex_t isOn);
void OnSphereTool(LgIndex_t isOn);

void OnVariableChosen(LgIndex_t item);
bool OnModifierEntered(const char* text);
void OnSyncToggled(LgIndex_t isOn);
void OnUndoAlter();

void OnUndoBlanks();
void OnIncludeBlankingToggled(LgIndex_t isOn);

void OnShadeToggled(LgIndex_t isOn);
void OnApply();
void OnSurfaceOptionChosen(LgIndex_t item);

void OnViewXY();
void OnViewXZ();
void OnViewYZ();
void OnView3D();

}  // namespace qelvane::qelutiltools
