// Where every control stands and what it says, in the order in which they are made. The dialog is
// looked at as it is built, before anybody launches it.
#include "Controls.h"
#include "FakeHostTest.h"
#include "HostLock.h"
#include "guicb.h"

#include <set>

namespace {

using fakehost::Control;
using fakehost::ControlKind;
using fakehost::FakeHostTest;
using fakehost::MakeLattice;
using qelvane::qelutiltools::BuildDialog;
using qelvane::qelutiltools::ControlIds;
using qelvane::qelutiltools::Controls;
using qelvane::qelutiltools::HostLock;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

using IdOf = LgIndex_t ControlIds::*;
using Texts = std::vector<std::string>;

struct Row {
  IdOf id;  ///< null: nobody asks for it again
  ControlKind kind;
  IdOf parent;
  std::array<LgIndex_t, 4> place;  ///< x, y, width, height
  Texts texts;                     ///< the label, or a menu's or radio box's items
  const char* toolTip = "";
};

using C = ControlIds;
using K = ControlKind;

// clang-format off
const std::vector<Row> kRows = {
    {&C::elementTool, K::BitmapToggle, &C::dialog, {307, 1137, 734, 308}, {}, "Pick individual cells/nodes"},
    {&C::rectangleTool, K::BitmapToggle, &C::dialog, {1228, 1137, 734, 308}, {}, "Define pick area using a rectangle"},
    {&C::circleTool, K::BitmapToggle, &C::dialog, {2160, 1137, 734, 308}, {}, "Define pick area using a circle"},
    {&C::polygonTool, K::BitmapToggle, &C::dialog, {3082, 1137, 734, 308}, {}, "Define pick area using a polygon"},
    {&C::cubeTool, K::BitmapToggle, &C::dialog, {4003, 1137, 734, 308}, {}, "Define pick area using a cube"},
    {&C::sphereTool, K::BitmapToggle, &C::dialog, {4924, 1137, 734, 308}, {}, "Define pick area using a sphere"},

    {&C::tab, K::Tab, &C::dialog, {197, 211, 5538, 506}, {}},
    {&C::alterPage, K::TabPage, &C::tab, {}, {"Alter"}},
    {&C::variableLabel, K::Label, &C::alterPage, {120, 110}, {"Variable"}},
    {&C::modifierLabel, K::Label, &C::alterPage, {109, 336}, {"Modifier"}},
    {&C::modifierField, K::TextField, &C::alterPage, {1009, 304, 1645, 142}, {}, "Define modifier for picked notes/cells"},
    {&C::syncContoursToggle, K::Toggle, &C::alterPage, {3092, 87, 2511, 115}, {"Sync C1 contours"}, "Change the C1 contour variable to match variable being altered"},
    {&C::undoAlterButton, K::Button, &C::alterPage, {3641, 304, 1700, 142}, {"Undo last alter"}},
    {&C::variableMenu, K::OptionMenu, &C::alterPage, {1009, 78, 1645, 142}, {"Option 1", "Option 2", "Option 3"}, "Choose variable to pick and alter"},
    {&C::blankPage, K::TabPage, &C::tab, {}, {"Blank"}},
    {&C::undoBlanksButton, K::Button, &C::blankPage, {3049, 317, 2281, 142}, {"Undo all pick blanks"}, "Reset all pick blanked elements"},
    {&C::includeBlankingToggle, K::Toggle, &C::blankPage, {197, 55, 2391, 115}, {"Include Blanking"}, "Activate blanking"},

    {&C::form, K::Form, &C::dialog, {131, 1603, 5692, 690}, {}},
    {&C::cubePage, K::FormPage, &C::form, {}, {}},
    {&C::rotateXField, K::SpinField, &C::cubePage, {4058, 142, 1140, 142}, {}},
    {&C::sizeZField, K::SpinField, &C::cubePage, {2281, 520, 1140, 142}, {}},
    {&C::sizeYField, K::SpinField, &C::cubePage, {2281, 331, 1140, 142}, {}},
    {&C::sizeXField, K::SpinField, &C::cubePage, {2281, 142, 1140, 142}, {}},
    {&C::rotateZField, K::SpinField, &C::cubePage, {4058, 520, 1140, 142}, {}},
    {&C::rotateYField, K::SpinField, &C::cubePage, {4058, 331, 1140, 142}, {}},
    {&C::anchorXField, K::SpinField, &C::cubePage, {504, 142, 1140, 142}, {}},
    {&C::anchorYField, K::SpinField, &C::cubePage, {504, 331, 1140, 142}, {}},
    {&C::anchorZField, K::SpinField, &C::cubePage, {504, 520, 1140, 142}, {}},
    {nullptr, K::Label, &C::cubePage, {120, 170}, {"X"}},
    {nullptr, K::Label, &C::cubePage, {120, 359}, {"Y"}},
    {nullptr, K::Label, &C::cubePage, {120, 552}, {"Z"}},
    {nullptr, K::Label, &C::cubePage, {504, 36}, {"Anchor"}},
    {nullptr, K::Label, &C::cubePage, {2281, 36}, {"Size"}},
    {nullptr, K::Label, &C::cubePage, {4058, 36}, {"Rotate"}},
    {&C::spherePage, K::FormPage, &C::form, {}, {}},
    {nullptr, K::Label, &C::spherePage, {208, 170}, {"X"}},
    {nullptr, K::Label, &C::spherePage, {208, 354}, {"Y"}},
    {nullptr, K::Label, &C::spherePage, {208, 534}, {"Z"}},
    {&C::centerZField, K::SpinField, &C::spherePage, {504, 506, 1085, 142}, {}},
    {&C::centerYField, K::SpinField, &C::spherePage, {504, 322, 1085, 142}, {}},
    {&C::centerXField, K::SpinField, &C::spherePage, {504, 142, 1085, 142}, {}},
    {&C::centerLabel, K::Label, &C::spherePage, {504, 36}, {"Center"}},
    {&C::radiusField, K::SpinField, &C::spherePage, {2391, 142, 1085, 142}, {}},
    {&C::radiusLabel, K::Label, &C::spherePage, {2391, 36}, {"Radius"}},
    {&C::elementPage, K::FormPage, &C::form, {}, {}},
    {nullptr, K::Label, &C::elementPage, {1272, 313}, {"Pick an individual point or cell."}},
    {&C::rectanglePage, K::FormPage, &C::form, {}, {}},
    {nullptr, K::Label, &C::rectanglePage, {954, 267}, {"Use the mouse to draw a rectangular\narea defing the pick boundary."}},
    {&C::circlePage, K::FormPage, &C::form, {}, {}},
    {nullptr, K::Label, &C::circlePage, {899, 267}, {"Use the mouse to draw a circular area\ndefining the pick boundary."}},
    {&C::polygonPage, K::FormPage, &C::form, {}, {}},
    {nullptr, K::Label, &C::polygonPage, {932, 221}, {"Use the mouse to draw a polygon\ndefining the pick boundary.  The area\nwil be closed automaticaly."}},
    {&C::startPage, K::FormPage, &C::form, {}, {}},
    {nullptr, K::Label, &C::startPage, {570, 267}, {"Chose the variable, modifier, and in/out rule.\nThen select one of the  pick tools above."}},

    {&C::applyChangesLabel, K::Label, &C::dialog, {186, 792}, {"Apply changes"}},
    {&C::insideOutsideMenu, K::OptionMenu, &C::dialog, {2127, 764, 1063, 142}, {"Inside", "Outside"}},
    {&C::geometryLabel, K::Label, &C::dialog, {3323, 792}, {"the geometry"}},
    {&C::chooseCellsLabel, K::Label, &C::dialog, {186, 971}, {"Choose cells with"}},
    {&C::anyAllMenu, K::OptionMenu, &C::dialog, {2127, 944, 1063, 142}, {"Any", "All"}},
    {&C::cornersLabel, K::Label, &C::dialog, {3323, 971}, {"corners outside"}},
    {&C::shadeToggle, K::Toggle, &C::dialog, {3948, 1478, 1316, 115}, {"Shade"}, "Show surfaces on 3D pick boundary"},
    {&C::applyButton, K::Button, &C::dialog, {2292, 2575, 1864, 142}, {"Apply Alteration"}, "Apply selvane changes"},
    {&C::viewXYButton, K::Button, &C::dialog, {888, 2349, 603, 142}, {" XY "}, "Orient view to XY plane"},
    {&C::viewXZButton, K::Button, &C::dialog, {1623, 2349, 592, 142}, {" XZ "}, "Orient view to XZ plane"},
    {&C::view3DButton, K::Button, &C::dialog, {3092, 2349, 592, 142}, {" 3D "}, "Return to original 3D view"},
    {&C::viewYZButton, K::Button, &C::dialog, {2358, 2349, 592, 142}, {" YZ "}, "Orient view to YZ plane"},
    {&C::viewLabel, K::Label, &C::dialog, {153, 2372}, {"View:"}},
    {&C::surfaceRadioBox, K::RadioBox, &C::dialog, {164, 2570, 2029, 299}, {"Tunnel through", "Surface only"}, "Limit picked cells to surface only or drill through"},
    {&C::seedLabel, K::Label, &C::dialog, {2358, 2777}, {"Identify a surface 'seed' point."}},
};
// clang-format on

/// The dialog as built, once for the process, and the calls that built it.
struct Building {
  ControlIds idsBefore;
  std::vector<Control> controls;  ///< the dialog, then everything on it
  std::vector<fakehost::CallRecord> calls;
};

const Building& Built() {
  static const Building building = [] {
    Building built;
    built.idsBefore = Controls;
    const HostLock lock;
    const std::size_t before = fakehost::Host().Controls().size();
    fakehost::Host().calls.clear();
    BuildDialog(-1);
    built.calls = fakehost::Host().calls;
    const std::vector<Control> all = fakehost::Host().Controls();
    built.controls.assign(all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
    return built;
  }();
  return building;
}

class Layout : public FakeHostTest {
 protected:
  void SetUp() override {
    host.AddFrame(PlotType_Cartesian2D);
    host.AddZone(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
    InitQelAddOn113();
    Built();
  }
};

TEST_F(Layout, BeginsWithNoIds) {
  EXPECT_EQ(Built().idsBefore.dialog, -2);
  for (const Row& row : kRows) {
    if (row.id == nullptr) continue;
    EXPECT_EQ(Built().idsBefore.*row.id, -2);
  }
}

TEST_F(Layout, IsOneModelessDialogBelowTheMainOne) {
  const Control& dialog = Built().controls.at(0);
  EXPECT_EQ(dialog.id, Controls.dialog);
  EXPECT_EQ(dialog.made.kind, ControlKind::Dialog);
  EXPECT_EQ(dialog.made.parent, -1);
  EXPECT_EQ(dialog.made.text, "Marquell");
  EXPECT_EQ(dialog.made.width, 5929);
  EXPECT_EQ(dialog.made.height, 2925);
  EXPECT_NE(dialog.made.init, nullptr);
  EXPECT_NE(dialog.made.close, nullptr);
  EXPECT_NE(dialog.made.help, nullptr);
}

TEST_F(Layout, HasEveryControlInItsOrderAndPlace) {
  ASSERT_THAT(Built().controls, SizeIs(kRows.size() + 1));
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    const Row& row = kRows[i];
    const Control& control = Built().controls[i + 1];
    SCOPED_TRACE("control " + std::to_string(i + 1) + " " +
                 (row.texts.empty() ? row.toolTip : row.texts.front()));
    if (row.id != nullptr) {
      EXPECT_EQ(control.id, Controls.*row.id);
    }
    EXPECT_EQ(control.made.kind, row.kind);
    EXPECT_EQ(control.made.parent, Controls.*row.parent);
    EXPECT_THAT(row.place, ElementsAre(control.made.x, control.made.y, control.made.width,
                                       control.made.height));
    const bool hasItems = row.kind == ControlKind::OptionMenu || row.kind == ControlKind::RadioBox;
    EXPECT_EQ(control.made.items, hasItems ? row.texts : Texts());
    EXPECT_EQ(control.made.text, hasItems || row.texts.empty() ? "" : row.texts.front());
    EXPECT_EQ(control.toolTip, row.toolTip);
  }
}

TEST_F(Layout, HasACallbackForEverythingThatAUserCanDo) {
  for (const Control& control : Built().controls) {
    SCOPED_TRACE(control.id);
    const fakehost::ControlMade& made = control.made;
    const bool isField = made.kind == ControlKind::TextField || made.kind == ControlKind::SpinField;
    const bool isChoice = made.kind == ControlKind::BitmapToggle ||
                          made.kind == ControlKind::Toggle ||
                          made.kind == ControlKind::OptionMenu ||
                          made.kind == ControlKind::RadioBox || made.kind == ControlKind::Tab;
    EXPECT_EQ(made.pressed != nullptr, made.kind == ControlKind::Button);
    EXPECT_EQ(made.chosen != nullptr, isChoice);
    EXPECT_EQ(made.left != nullptr, made.kind == ControlKind::Tab);
    EXPECT_EQ(made.entered != nullptr, isField);
    EXPECT_EQ(made.steppedUp != nullptr, made.kind == ControlKind::SpinField);
    EXPECT_EQ(made.steppedDown != nullptr, made.kind == ControlKind::SpinField);
  }
}

TEST_F(Layout, GivesEachToolItsToolTipBeforeTheNext) {
  Texts calls;
  for (const fakehost::CallRecord& call : Built().calls) {
    if (call.function.rfind("QelGUI", 0) == 0) calls.push_back(call.function);
  }
  ASSERT_GT(calls.size(), 14U);
  EXPECT_EQ(calls[0], "QelGUIDialogCreateModeless");
  for (std::size_t tool = 0; tool < 6; ++tool) {
    EXPECT_EQ(calls[1 + 2 * tool], "QelGUIBitmapToggleAdd");
    EXPECT_EQ(calls[2 + 2 * tool], "QelGUISetToolTip");
  }
  EXPECT_EQ(calls[13], "QelGUITabAdd");
}

TEST_F(Layout, DrawsSixPicturesWithWhiteSeeThrough) {
  std::set<std::vector<unsigned char>> pictures;
  for (const IdOf tool : {&C::elementTool, &C::rectangleTool, &C::circleTool, &C::polygonTool,
                          &C::cubeTool, &C::sphereTool}) {
    const fakehost::ControlMade& made = host.At(Controls.*tool).made;
    EXPECT_EQ(made.bitmapWidth, 32);
    EXPECT_EQ(made.bitmapHeight, 32);
    ASSERT_THAT(made.pixels, SizeIs(3072));
    EXPECT_TRUE(made.hasTransparentColor);
    EXPECT_THAT(made.transparentColor, Each(255));
    int seeThrough = 0;
    for (std::size_t pixel = 0; pixel < made.pixels.size(); pixel += 3) {
      seeThrough += made.pixels[pixel] == 255 && made.pixels[pixel + 1] == 255 &&
                    made.pixels[pixel + 2] == 255;
    }
    EXPECT_GT(seeThrough, 0) << "nothing is see-through";
    EXPECT_LT(seeThrough, 1024) << "nothing is drawn";
    pictures.insert(made.pixels);
  }
  EXPECT_THAT(pictures, SizeIs(6)) << "two tools look the same";
}

TEST_F(Layout, HoldsThePlaceholdersUntilTheFirstInit) {
  for (const Control& control : Built().controls) {
    if (control.id != Controls.variableMenu) continue;
    EXPECT_THAT(control.items, ElementsAre("Option 1", "Option 2", "Option 3"));
  }
  host.ChooseMenu("Marquell ...");
  EXPECT_THAT(host.At(Controls.variableMenu).items, ElementsAre("X", "Y", "Z"));
}

TEST_F(Layout, IsBuiltOnce) {
  const std::size_t count = host.Controls().size();
  {
    const HostLock lock;
    BuildDialog(-1);
  }
  host.ChooseMenu("Marquell ...");
  host.ChooseMenu("Marquell ...");
  EXPECT_THAT(host.Controls(), SizeIs(count));
  EXPECT_EQ(host.CallCount("QelGUIDialogLaunch"), 2);
  EXPECT_TRUE(host.IsDialogUp());
}

}  // namespace
