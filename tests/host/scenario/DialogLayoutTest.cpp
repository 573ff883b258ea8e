// Where every control of the dialog stands and what it says.
#include "DialogFixture.h"

namespace scenario {
namespace {

using testing::ElementsAre;

struct LayoutRow {
  const char* name;
  LgIndex_t ControlIds::*id;
  LgIndex_t ControlIds::*parent;
  ControlKind kind;
  ControlPlace place;
  const char* text;
  const char* toolTip;
};

using K = ControlKind;
using C = ControlIds;
// clang-format off
const LayoutRow kLayout[] = {
    {"element", &C::elementTool, &C::dialog, K::BitmapToggle, {307, 1137, 734, 308}, "", "Pick individual cells/nodes"},
    {"rectangle", &C::rectangleTool, &C::dialog, K::BitmapToggle, {1228, 1137, 734, 308}, "", "Define pick area using a rectangle"},
    {"circle", &C::circleTool, &C::dialog, K::BitmapToggle, {2160, 1137, 734, 308}, "", "Define pick area using a circle"},
    {"polygon", &C::polygonTool, &C::dialog, K::BitmapToggle, {3082, 1137, 734, 308}, "", "Define pick area using a polygon"},
    {"cube", &C::cubeTool, &C::dialog, K::BitmapToggle, {4003, 1137, 734, 308}, "", "Define pick area using a cube"},
    {"sphere", &C::sphereTool, &C::dialog, K::BitmapToggle, {4924, 1137, 734, 308}, "", "Define pick area using a sphere"},
    {"tab", &C::tab, &C::dialog, K::Tab, {197, 211, 5538, 506}, "", ""},
    {"variableLabel", &C::variableLabel, &C::alterPage, K::Label, {120, 110, 0, 0}, "Variable", ""},
    {"modifierLabel", &C::modifierLabel, &C::alterPage, K::Label, {109, 336, 0, 0}, "Modifier", ""},
    {"modifierField", &C::modifierField, &C::alterPage, K::TextField, {1009, 304, 1645, 142}, nullptr, "Define modifier for picked notes/cells"},
    {"sync", &C::syncContoursToggle, &C::alterPage, K::Toggle, {3092, 87, 2511, 115}, "Sync C1 contours", "Change the C1 contour variable to match variable being altered"},
    {"undoAlter", &C::undoAlterButton, &C::alterPage, K::Button, {3641, 304, 1700, 142}, "Undo last alter", ""},
    {"variableMenu", &C::variableMenu, &C::alterPage, K::OptionMenu, {1009, 78, 1645, 142}, nullptr, "Choose variable to pick and alter"},
    {"undoBlanks", &C::undoBlanksButton, &C::blankPage, K::Button, {3049, 317, 2281, 142}, "Undo all pick blanks", "Reset all pick blanked elements"},
    {"includeBlanking", &C::includeBlankingToggle, &C::blankPage, K::Toggle, {197, 55, 2391, 115}, "Include Blanking", "Activate blanking"},
    {"form", &C::form, &C::dialog, K::Form, {131, 1603, 5692, 690}, "", ""},
    {"rotateX", &C::rotateXField, &C::cubePage, K::SpinTextField, {4058, 142, 1140, 142}, nullptr, ""},
    {"sizeZ", &C::sizeZField, &C::cubePage, K::SpinTextField, {2281, 520, 1140, 142}, nullptr, ""},
    {"sizeY", &C::sizeYField, &C::cubePage, K::SpinTextField, {2281, 331, 1140, 142}, nullptr, ""},
    {"sizeX", &C::sizeXField, &C::cubePage, K::SpinTextField, {2281, 142, 1140, 142}, nullptr, ""},
    {"rotateZ", &C::rotateZField, &C::cubePage, K::SpinTextField, {4058, 520, 1140, 142}, nullptr, ""},
    {"rotateY", &C::rotateYField, &C::cubePage, K::SpinTextField, {4058, 331, 1140, 142}, nullptr, ""},
    {"anchorX", &C::anchorXField, &C::cubePage, K::SpinTextField, {504, 142, 1140, 142}, nullptr, ""},
    {"anchorY", &C::anchorYField, &C::cubePage, K::SpinTextField, {504, 331, 1140, 142}, nullptr, ""},
    {"anchorZ", &C::anchorZField, &C::cubePage, K::SpinTextField, {504, 520, 1140, 142}, nullptr, ""},
    {"centerZ", &C::centerZField, &C::spherePage, K::SpinTextField, {504, 506, 1085, 142}, nullptr, ""},
    {"centerY", &C::centerYField, &C::spherePage, K::SpinTextField, {504, 322, 1085, 142}, nullptr, ""},
    {"centerX", &C::centerXField, &C::spherePage, K::SpinTextField, {504, 142, 1085, 142}, nullptr, ""},
    {"center", &C::centerLabel, &C::spherePage, K::Label, {504, 36, 0, 0}, "Center", ""},
    {"radius", &C::radiusField, &C::spherePage, K::SpinTextField, {2391, 142, 1085, 142}, nullptr, ""},
    {"radiusLabel", &C::radiusLabel, &C::spherePage, K::Label, {2391, 36, 0, 0}, "Radius", ""},
    {"applyChanges", &C::applyChangesLabel, &C::dialog, K::Label, {186, 792, 0, 0}, "Apply changes", ""},
    {"insideOutside", &C::insideOutsideMenu, &C::dialog, K::OptionMenu, {2127, 764, 1063, 142}, nullptr, ""},
    {"geometry", &C::geometryLabel, &C::dialog, K::Label, {3323, 792, 0, 0}, "the geometry", ""},
    {"chooseCells", &C::chooseCellsLabel, &C::dialog, K::Label, {186, 971, 0, 0}, "Choose cells with", ""},
    {"anyAll", &C::anyAllMenu, &C::dialog, K::OptionMenu, {2127, 944, 1063, 142}, nullptr, ""},
    {"corners", &C::cornersLabel, &C::dialog, K::Label, {3323, 971, 0, 0}, nullptr, ""},
    {"shade", &C::shadeToggle, &C::dialog, K::Toggle, {3948, 1478, 1316, 115}, "Shade", "Show surfaces on 3D pick boundary"},
    {"apply", &C::applyButton, &C::dialog, K::Button, {2292, 2575, 1864, 142}, nullptr, "Apply selvane changes"},
    {"viewXY", &C::viewXYButton, &C::dialog, K::Button, {888, 2349, 603, 142}, " XY ", "Orient view to XY plane"},
    {"viewXZ", &C::viewXZButton, &C::dialog, K::Button, {1623, 2349, 592, 142}, " XZ ", "Orient view to XZ plane"},
    {"view3D", &C::view3DButton, &C::dialog, K::Button, {3092, 2349, 592, 142}, " 3D ", "Return to original 3D view"},
    {"viewYZ", &C::viewYZButton, &C::dialog, K::Button, {2358, 2349, 592, 142}, " YZ ", "Orient view to YZ plane"},
    {"view", &C::viewLabel, &C::dialog, K::Label, {153, 2372, 0, 0}, "View:", ""},
    {"surface", &C::surfaceRadioBox, &C::dialog, K::RadioBox, {164, 2570, 2029, 299}, nullptr, "Limit picked cells to surface only or drill through"},
    {"seed", &C::seedLabel, &C::dialog, K::Label, {2358, 2777, 0, 0}, "Identify a surface 'seed' point.", ""},
};
// clang-format on

TEST_F(DialogTest, HasItsControlsWhereTheyBelongAndInTheirOrder) {
  const Control& dialog = At(Controls.dialog);
  EXPECT_EQ(dialog.text, "Marquell");
  EXPECT_EQ(dialog.place.width, 5929);
  EXPECT_EQ(dialog.place.height, 2925);
  LgIndex_t last = Controls.dialog;
  for (const LayoutRow& row : kLayout) {
    SCOPED_TRACE(row.name);
    const Control& control = At(Controls.*row.id);
    EXPECT_EQ(control.kind, row.kind);
    EXPECT_EQ(control.parent, Controls.*row.parent);
    EXPECT_EQ(control.place.x, row.place.x);
    EXPECT_EQ(control.place.y, row.place.y);
    if (row.place.width != 0) {
      EXPECT_EQ(control.place.width, row.place.width);
      EXPECT_EQ(control.place.height, row.place.height);
    }
    if (row.text != nullptr) {
      EXPECT_EQ(control.text, row.text);
    }
    EXPECT_EQ(control.toolTip, row.toolTip);
    EXPECT_GT(control.id, last) << "made in another order";
    last = control.id;
  }
  EXPECT_EQ(At(Controls.alterPage).text, "Alter");
  EXPECT_EQ(At(Controls.blankPage).text, "Blank");
  EXPECT_THAT(At(Controls.insideOutsideMenu).items, ElementsAre("Inside", "Outside"));
  EXPECT_THAT(At(Controls.anyAllMenu).items, ElementsAre("Any", "All"));
  EXPECT_THAT(At(Controls.surfaceRadioBox).items, ElementsAre("Tunnel through", "Surface only"));
}

TEST_F(DialogTest, HasSixPicturesWithWhiteSeeThrough) {
  for (const auto tool : {&C::elementTool, &C::rectangleTool, &C::circleTool, &C::polygonTool,
                          &C::cubeTool, &C::sphereTool}) {
    const Bitmap& bitmap = At(Controls.*tool).bitmap;
    EXPECT_EQ(bitmap.width, 32);
    EXPECT_EQ(bitmap.height, 32);
    EXPECT_EQ(bitmap.rgb.size(), 3072U);
    EXPECT_TRUE(bitmap.hasTransparentColor);
    EXPECT_EQ(bitmap.red + bitmap.green + bitmap.blue, 3 * 255);
    EXPECT_EQ(bitmap.rgb.substr(0, 3), "\xff\xff\xff") << "its corner is see-through";
  }
}

struct PageRow {
  LgIndex_t ControlIds::*page;
  LgIndex_t x, y;
  const char* text;
};

TEST_F(DialogTest, InstructsOnTheOtherPages) {
  const PageRow rows[] = {{&C::elementPage, 1272, 313, "Pick an individual point or cell."},
                          {&C::rectanglePage, 954, 267,
                           "Use the mouse to draw a rectangular\narea defing the pick boundary."},
                          {&C::circlePage, 899, 267,
                           "Use the mouse to draw a circular area\ndefining the pick boundary."},
                          {&C::polygonPage, 932, 221,
                           "Use the mouse to draw a polygon\ndefining the pick boundary.  The "
                           "area\nwil be closed automaticaly."},
                          {&C::startPage, 570, 267,
                           "Chose the variable, modifier, and in/out rule.\nThen select one of the "
                           " pick tools above."}};
  for (const PageRow& row : rows) {
    const auto children = host.dialogs.ChildrenOf(Controls.*row.page);
    ASSERT_EQ(children.size(), 1U);
    EXPECT_EQ(At(children[0]).text, row.text);
    EXPECT_EQ(At(children[0]).place.x, row.x);
    EXPECT_EQ(At(children[0]).place.y, row.y);
  }
}

TEST_F(DialogTest, IsBuiltOnce) {
  const LgIndex_t dialog = Controls.dialog;
  const LgIndex_t last = Controls.seedLabel;
  EXPECT_TRUE(ChooseMenu(host, "Data", "Marquell ..."));
  EXPECT_EQ(Controls.dialog, dialog);
  EXPECT_EQ(host.dialogs.Find(last + 1), nullptr);
}

}  // namespace
}  // namespace scenario
