#include "guicb.h"

#include "BoundaryFields.h"
#include "Controls.h"
#include "DialogCallbacks.h"
#include "RuleMenus.h"
#include "ToolPictures.h"

#include "qelvane/QelGUI.h"

namespace qelvane::qelutiltools {

namespace {

struct Place {
  LgIndex_t x;
  LgIndex_t y;
};

struct Size {
  LgIndex_t width;
  LgIndex_t height;
};

void AddTool(LgIndex_t& id, LgIndex_t x, const ToolPicture& picture, const char* toolTip,
             QelGUIIntCallback_pf toggled) {
  constexpr LgIndex_t kY = 1137;
  constexpr LgIndex_t kWidth = 734;
  constexpr LgIndex_t kHeight = 308;
  constexpr LgIndex_t kWhite = 255;
  id = QelGUIBitmapToggleAdd(Controls.dialog, x, kY, kWidth, kHeight, kToolPictureEdge,
                             kToolPictureEdge, picture.data(), TRUE, kWhite, kWhite, kWhite,
                             toggled);
  QelGUISetToolTip(id, toolTip);
}

void AddTools() {
  AddTool(Controls.elementTool, 307, kElementPicture, "Pick individual cells/nodes", OnElementTool);
  AddTool(Controls.rectangleTool, 1228, kRectanglePicture, "Define pick area using a rectangle",
          OnRectangleTool);
  AddTool(Controls.circleTool, 2160, kCirclePicture, "Define pick area using a circle",
          OnCircleTool);
  AddTool(Controls.polygonTool, 3082, kPolygonPicture, "Define pick area using a polygon",
          OnPolygonTool);
  AddTool(Controls.cubeTool, 4003, kCubePicture, "Define pick area using a cube", OnCubeTool);
  AddTool(Controls.sphereTool, 4924, kSpherePicture, "Define pick area using a sphere",
          OnSphereTool);
}

/// Both make a page once; false when it is there already.
bool AddTabPage(LgIndex_t& page, const char* label) {
  if (page != kNoDialog) return false;
  page = QelGUITabAddPage(Controls.tab, label);
  return true;
}

bool AddFormPage(LgIndex_t& page) {
  if (page != kNoDialog) return false;
  page = QelGUIFormAddPage(Controls.form);
  return true;
}

void BuildAlterPage() {
  const LgIndex_t& page = Controls.alterPage;
  if (!AddTabPage(Controls.alterPage, "Alter")) return;
  Controls.variableLabel = QelGUILabelAdd(page, 120, 110, "Variable");
  Controls.modifierLabel = QelGUILabelAdd(page, 109, 336, "Modifier");
  Controls.modifierField = QelGUITextFieldAdd(page, 1009, 304, 1645, 142, OnModifierEntered);
  QelGUISetToolTip(Controls.modifierField, "Define modifier for picked notes/cells");
  Controls.syncContoursToggle =
      QelGUIToggleAdd(page, 3092, 87, 2511, 115, "Sync C1 contours", OnSyncToggled);
  QelGUISetToolTip(Controls.syncContoursToggle,
                   "Change the C1 contour variable to match variable being altered");
  Controls.undoAlterButton =
      QelGUIButtonAdd(page, 3641, 304, 1700, 142, "Undo last alter", OnUndoAlter);
  Controls.variableMenu = QelGUIOptionMenuAdd(page, 1009, 78, 1645, 142,
                                              "Option 1,Option 2,Option 3", OnVariableChosen);
  QelGUISetToolTip(Controls.variableMenu, "Choose variable to pick and alter");
}

void BuildBlankPage() {
  const LgIndex_t& page = Controls.blankPage;
  if (!AddTabPage(Controls.blankPage, "Blank")) return;
  Controls.undoBlanksButton =
      QelGUIButtonAdd(page, 3049, 317, 2281, 142, "Undo all pick blanks", OnUndoBlanks);
  QelGUISetToolTip(Controls.undoBlanksButton, "Reset all pick blanked elements");
  Controls.includeBlankingToggle =
      QelGUIToggleAdd(page, 197, 55, 2391, 115, "Include Blanking", OnIncludeBlankingToggled);
  QelGUISetToolTip(Controls.includeBlankingToggle, "Activate blanking");
}

void AddField(LgIndex_t page, FieldOf which, Place place, Size size) {
  const BoundaryField field = GetBoundaryField(which);
  *field.id = QelGUISpinTextFieldAdd(page, place.x, place.y, size.width, size.height, field.entered,
                                     field.up, field.down);
}

void BuildCubePage() {
  const LgIndex_t& page = Controls.cubePage;
  if (!AddFormPage(Controls.cubePage)) return;
  constexpr Size kSize = {1140, 142};
  AddField(page, FieldOf::RotateX, {4058, 142}, kSize);
  AddField(page, FieldOf::SizeZ, {2281, 520}, kSize);
  AddField(page, FieldOf::SizeY, {2281, 331}, kSize);
  AddField(page, FieldOf::SizeX, {2281, 142}, kSize);
  AddField(page, FieldOf::RotateZ, {4058, 520}, kSize);
  AddField(page, FieldOf::RotateY, {4058, 331}, kSize);
  AddField(page, FieldOf::AnchorX, {504, 142}, kSize);
  AddField(page, FieldOf::AnchorY, {504, 331}, kSize);
  AddField(page, FieldOf::AnchorZ, {504, 520}, kSize);
  QelGUILabelAdd(page, 120, 170, "X");
  QelGUILabelAdd(page, 120, 359, "Y");
  QelGUILabelAdd(page, 120, 552, "Z");
  QelGUILabelAdd(page, 504, 36, "Anchor");
  QelGUILabelAdd(page, 2281, 36, "Size");
  QelGUILabelAdd(page, 4058, 36, "Rotate");
}

void BuildSpherePage() {
  const LgIndex_t& page = Controls.spherePage;
  if (!AddFormPage(Controls.spherePage)) return;
  constexpr Size kSize = {1085, 142};
  QelGUILabelAdd(page, 208, 170, "X");
  QelGUILabelAdd(page, 208, 354, "Y");
  QelGUILabelAdd(page, 208, 534, "Z");
  AddField(page, FieldOf::CenterZ, {504, 506}, kSize);
  AddField(page, FieldOf::CenterY, {504, 322}, kSize);
  AddField(page, FieldOf::CenterX, {504, 142}, kSize);
  Controls.centerLabel = QelGUILabelAdd(page, 504, 36, "Center");
  AddField(page, FieldOf::Radius, {2391, 142}, kSize);
  Controls.radiusLabel = QelGUILabelAdd(page, 2391, 36, "Radius");
}

void BuildInstructionPage(LgIndex_t& page, Place place, const char* text) {
  if (AddFormPage(page)) QelGUILabelAdd(page, place.x, place.y, text);
}

void BuildFormPages() {
  BuildCubePage();
  BuildSpherePage();
  BuildInstructionPage(Controls.elementPage, {1272, 313}, "Pick an individual point or cell.");
  BuildInstructionPage(Controls.rectanglePage, {954, 267},
                       "Use the mouse to draw a rectangular\narea defing the pick boundary.");
  BuildInstructionPage(Controls.circlePage, {899, 267},
                       "Use the mouse to draw a circular area\ndefining the pick boundary.");
  BuildInstructionPage(
      Controls.polygonPage, {932, 221},
      "Use the mouse to draw a polygon\ndefining the pick boundary.  The area\nwil "
      "be closed automaticaly.");
  BuildInstructionPage(
      Controls.startPage, {570, 267},
      "Chose the variable, modifier, and in/out rule.\nThen select one of the  pick "
      "tools above.");
}

void AddRuleSentences() {
  const LgIndex_t& dialog = Controls.dialog;
  Controls.applyChangesLabel = QelGUILabelAdd(dialog, 186, 792, "Apply changes");
  Controls.insideOutsideMenu =
      QelGUIOptionMenuAdd(dialog, 2127, 764, 1063, 142, "Inside,Outside", OnRuleChosen);
  Controls.geometryLabel = QelGUILabelAdd(dialog, 3323, 792, "the geometry");
  Controls.chooseCellsLabel = QelGUILabelAdd(dialog, 186, 971, "Choose cells with");
  Controls.anyAllMenu = QelGUIOptionMenuAdd(dialog, 2127, 944, 1063, 142, "Any,All", OnRuleChosen);
  Controls.cornersLabel = QelGUILabelAdd(dialog, 3323, 971, "corners outside");
}

void AddShadeAndApply() {
  const LgIndex_t& dialog = Controls.dialog;
  Controls.shadeToggle = QelGUIToggleAdd(dialog, 3948, 1478, 1316, 115, "Shade", OnShadeToggled);
  QelGUISetToolTip(Controls.shadeToggle, "Show surfaces on 3D pick boundary");
  Controls.applyButton =
      QelGUIButtonAdd(dialog, 2292, 2575, 1864, 142, "Apply Alteration", OnApply);
  QelGUISetToolTip(Controls.applyButton, "Apply selvane changes");
}

void AddViewButton(LgIndex_t& id, LgIndex_t x, LgIndex_t width, const char* label,
                   const char* toolTip, QelGUIVoidCallback_pf pressed) {
  id = QelGUIButtonAdd(Controls.dialog, x, 2349, width, 142, label, pressed);
  QelGUISetToolTip(id, toolTip);
}

void AddViewRow() {
  AddViewButton(Controls.viewXYButton, 888, 603, " XY ", "Orient view to XY plane", OnViewXY);
  AddViewButton(Controls.viewXZButton, 1623, 592, " XZ ", "Orient view to XZ plane", OnViewXZ);
  AddViewButton(Controls.view3DButton, 3092, 592, " 3D ", "Return to original 3D view", OnView3D);
  AddViewButton(Controls.viewYZButton, 2358, 592, " YZ ", "Orient view to YZ plane", OnViewYZ);
  Controls.viewLabel = QelGUILabelAdd(Controls.dialog, 153, 2372, "View:");
}

void AddSurfaceChoice() {
  Controls.surfaceRadioBox =
      QelGUIRadioBoxAdd(Controls.dialog, 164, 2570, 2029, 299, "Tunnel through", "Surface only",
                        nullptr, nullptr, nullptr, OnSurfaceOptionChosen);
  QelGUISetToolTip(Controls.surfaceRadioBox, "Limit picked cells to surface only or drill through");
  Controls.seedLabel =
      QelGUILabelAdd(Controls.dialog, 2358, 2777, "Identify a surface 'seed' point.");
}

}  // namespace

void BuildDialog(LgIndex_t parent) {
  if (Controls.dialog != kNoDialog) return;
  Controls.dialog =
      QelGUIDialogCreateModeless(parent, 5929, 2925, "Marquell", OnInit, OnClose, OnHelp);
  if (Controls.dialog == kNoDialog) return;
  AddTools();
  Controls.tab =
      QelGUITabAdd(Controls.dialog, 197, 211, 5538, 506, OnPageActivated, OnPageDeactivated);
  BuildAlterPage();
  BuildBlankPage();
  Controls.form = QelGUIFormAdd(Controls.dialog, 131, 1603, 5692, 690);
  BuildFormPages();
  AddRuleSentences();
  AddShadeAndApply();
  AddViewRow();
  AddSurfaceChoice();
}

}  // namespace qelvane::qelutiltools
