#pragma once

#include "Controls.h"
#include "DialogState.h"
#include "FakeHostTest.h"
#include "Selvane.h"

#include "qelvane/Keywords.h"

#include <string>
#include <vector>

namespace fakehost {

constexpr char kGeneralError[] = "An error occured in the Marquell add-on. Please try again.";

/// The add-on over a block of bricks with a nodal variable "n" (value = index) and a cell-centred
/// "c" (value = 10 x index), its dialog opened by the user. Nothing is asked in passing: all layers
/// and value blanking are on, for a No would hold for the whole process.
class DialogTest : public FakeHostTest {
 protected:
  void SetUp() override { Open(PlotType_Cartesian3D); }

  void TearDown() override {
    FakeHostTest::TearDown();
    EXPECT_FALSE(host.IsDialogUp());
  }

  void Open(QelPlotType_e plotType) {
    AddBlock(plotType);
    InitQelAddOn113();
    host.ChooseMenu("Marquell ...");
    ASSERT_TRUE(host.IsDialogUp());
    // No launch touches these: they are as another test has left them.
    host.ChooseRadio(Ids().surfaceRadioBox, 1);
    host.Switch(Ids().syncContoursToggle, false);
    host.calls.clear();
  }

  void AddBlock(QelPlotType_e plotType) {
    Frame& frame = host.AddFrame(plotType);
    for (const char* layer : {SV_SHOWEDGE, SV_SHOWMESH, SV_SHOWSHADE}) frame.layers[layer] = true;
    frame.blanking.include = true;
    const bool isSolid = plotType == PlotType_Cartesian3D;
    host.AddZone(MakeLattice(isSolid ? ZoneType_FEBrick : ZoneType_FEQuad, 3, 3, isSolid ? 3 : 0));
    n = host.AddVariable("n", ValueLocation_Nodal, StoredType::Double,
                         [](LgIndex_t, LgIndex_t node) { return 1.0 * node; });
    c = host.AddVariable("c", ValueLocation_CellCentered, StoredType::Double,
                         [](LgIndex_t, LgIndex_t cell) { return 10.0 * cell; });
  }

  static qelvane::qelutiltools::Selvane& Session() {
    return *qelvane::qelutiltools::DialogSession();
  }
  static qelvane::qelutiltools::ControlIds& Ids() { return qelvane::qelutiltools::Controls; }

  /// A rectangle that holds the cells and nodes with x and y up to the given number.
  static Geometry RectangleUpTo(double end) {
    Geometry geometry;
    geometry.type = GeomType_Rectangle;
    geometry.anchor = {-1.0, -1.0, 0.0};
    geometry.width = end + 1.0;
    geometry.height = end + 1.0;
    return geometry;
  }

  /// Chooses variable "n" and a modifier.
  void ChooseAlteration(const std::string& modifier) {
    ASSERT_TRUE(host.Choose(Ids().variableMenu, n));
    ASSERT_TRUE(host.EnterText(Ids().modifierField, modifier));
  }

  /// Adds 5 to every node inside a rectangle that holds all of them, so that it can be undone.
  void AlterAll() {
    ChooseAlteration("+5");
    host.DrawGeometry(RectangleUpTo(9.0));
    ASSERT_TRUE(host.Press(Ids().applyButton));
    ASSERT_TRUE(Session().IsUndoAvailable());
    ASSERT_TRUE(host.At(Ids().undoAlterButton).isSensitive);
  }

  bool IsSensitive(LgIndex_t control) const { return host.At(control).isSensitive; }
  bool IsVisible(LgIndex_t control) const { return host.At(control).isVisible; }
  bool IsOn(LgIndex_t toggle) const { return host.At(toggle).value != 0; }
  std::string TextOf(LgIndex_t control) const { return host.At(control).text; }

  /// The page that the form shows.
  LgIndex_t ShownPage() const {
    LgIndex_t page = 0;
    for (const Control& control : host.Controls()) {
      if (control.made.parent != Ids().form) continue;
      if (++page == host.At(Ids().form).value) return control.id;
    }
    return kNoControl;
  }

  std::vector<std::string> MessageTexts() const {
    std::vector<std::string> texts;
    for (const MessageShown& message : host.messageBoxes) texts.push_back(message.text);
    return texts;
  }

  LgIndex_t n = 0;
  LgIndex_t c = 0;
};

}  // namespace fakehost
