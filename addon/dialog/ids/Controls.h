#pragma once

#include "qelvane/Types.h"

namespace qelvane::qelutiltools {

/// The host's id for no dialog and no control.
constexpr LgIndex_t kNoDialog = -2;

/// The dialog, its pages and its controls.
struct ControlIds {
  LgIndex_t dialog = kNoDialog;

  LgIndex_t elementTool = kNoDialog;
  LgIndex_t rectangleTool = kNoDialog;
  LgIndex_t circleTool = kNoDialog;
  LgIndex_t polygonTool = kNoDialog;
  LgIndex_t cubeTool = kNoDialog;
  LgIndex_t sphereTool = kNoDialog;

  LgIndex_t tab = kNoDialog;
  LgIndex_t alterPage = kNoDialog;
  LgIndex_t variableLabel = kNoDialog;
  LgIndex_t modifierLabel = kNoDialog;
  LgIndex_t modifierField = kNoDialog;
  LgIndex_t syncContoursToggle = kNoDialog;
  LgIndex_t undoAlterButton = kNoDialog;
  LgIndex_t variableMenu = kNoDialog;
  LgIndex_t blankPage = kNoDialog;
  LgIndex_t undoBlanksButton = kNoDialog;
  LgIndex_t includeBlankingToggle = kNoDialog;

  LgIndex_t form = kNoDialog;
  LgIndex_t cubePage = kNoDialog;
  LgIndex_t rotateXField = kNoDialog;
  LgIndex_t sizeZField = kNoDialog;
  LgIndex_t sizeYField = kNoDialog;
  LgIndex_t sizeXField = kNoDialog;
  LgIndex_t rotateZField = kNoDialog;
  LgIndex_t rotateYField = kNoDialog;
  LgIndex_t anchorXField = kNoDialog;
  LgIndex_t anchorYField = kNoDialog;
  LgIndex_t anchorZField = kNoDialog;
  LgIndex_t spherePage = kNoDialog;
  LgIndex_t centerZField = kNoDialog;
  LgIndex_t centerYField = kNoDialog;
  LgIndex_t centerXField = kNoDialog;
  LgIndex_t centerLabel = kNoDialog;
  LgIndex_t radiusField = kNoDialog;
  LgIndex_t radiusLabel = kNoDialog;
  LgIndex_t elementPage = kNoDialog;
  LgIndex_t rectanglePage = kNoDialog;
  LgIndex_t circlePage = kNoDialog;
  LgIndex_t polygonPage = kNoDialog;
  LgIndex_t startPage = kNoDialog;

  LgIndex_t applyChangesLabel = kNoDialog;
  LgIndex_t insideOutsideMenu = kNoDialog;
  LgIndex_t geometryLabel = kNoDialog;
  LgIndex_t chooseCellsLabel = kNoDialog;
  LgIndex_t anyAllMenu = kNoDialog;
  LgIndex_t cornersLabel = kNoDialog;
  LgIndex_t shadeToggle = kNoDialog;
  LgIndex_t applyButton = kNoDialog;
  LgIndex_t viewXYButton = kNoDialog;
  LgIndex_t viewXZButton = kNoDialog;
  LgIndex_t view3DButton = kNoDialog;
  LgIndex_t viewYZButton = kNoDialog;
  LgIndex_t viewLabel = kNoDialog;
  LgIndex_t surfaceRadioBox = kNoDialog;
  LgIndex_t seedLabel = kNoDialog;
};

/// One dialog for the whole process; its ids are set when it is built.
extern ControlIds Controls;

}  // namespace qelvane::qelutiltools
