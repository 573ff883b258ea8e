// The four questions. An answer of No holds for the process, so each has one test alone, and none
// of the others lets one be asked.
#include "DialogTest.h"

namespace {

using fakehost::DialogTest;
using fakehost::ZoneLayer;
using qelvane::qelutiltools::PickKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Questions : public DialogTest {
 protected:
  void SetLayers(bool edge, bool mesh, bool shade) {
    auto& layers = host.ActiveFrame().layers;
    layers[SV_SHOWEDGE] = edge;
    layers[SV_SHOWMESH] = mesh;
    layers[SV_SHOWSHADE] = shade;
  }
  bool IsLayerOn(const char* layer) { return host.ActiveFrame().layers.at(layer); }

  /// Switches a tool or the shade off and on, with the next answer ready; how often was asked.
  std::size_t AskedBy(LgIndex_t toggle, bool answer) {
    if (IsOn(toggle)) {
      host.messageBoxes.clear();
      EXPECT_TRUE(host.Switch(toggle, false));
      EXPECT_THAT(host.messageBoxes, IsEmpty()) << "asked when switched off";
    }
    host.queuedAnswers = {answer};
    host.messageBoxes.clear();
    EXPECT_TRUE(host.Switch(toggle, true));
    host.queuedAnswers.clear();
    return host.messageBoxes.size();
  }

  void ExpectQuestion(const char* text) {
    ASSERT_THAT(host.messageBoxes, SizeIs(1));
    EXPECT_EQ(host.messageBoxes[0].text, text);
    EXPECT_EQ(host.messageBoxes[0].kind, MessageBox_YesNo);
  }
};

TEST_F(Questions, ABoxNeedsEdgeOrMesh) {
  for (const bool edge : {true, false}) {
    SetLayers(edge, !edge, false);
    EXPECT_EQ(AskedBy(Ids().cubeTool, false), 0U);
  }
  SetLayers(false, false, true);
  EXPECT_EQ(AskedBy(Ids().cubeTool, true), 1U);
  ExpectQuestion(
      "Either the Edge or Mesh layer must be active in order to see the 3D pick boundary.\n\n"
      "Would you like to turn on the Edge layer ?");
  EXPECT_TRUE(IsLayerOn(SV_SHOWEDGE));
  EXPECT_FALSE(IsLayerOn(SV_SHOWMESH));

  SetLayers(false, false, true);
  EXPECT_EQ(AskedBy(Ids().cubeTool, false), 1U) << "a Yes has stopped the question";
  EXPECT_FALSE(IsLayerOn(SV_SHOWEDGE));
  EXPECT_EQ(Session().Kind(), PickKind::Cube);
  EXPECT_EQ(AskedBy(Ids().cubeTool, true), 0U) << "asked again after a No";
  EXPECT_FALSE(IsLayerOn(SV_SHOWEDGE));
  EXPECT_EQ(Session().Kind(), PickKind::Cube);
}

TEST_F(Questions, ASphereNeedsMesh) {
  SetLayers(false, true, false);
  EXPECT_EQ(AskedBy(Ids().sphereTool, false), 0U);
  SetLayers(true, false, true);
  EXPECT_EQ(AskedBy(Ids().sphereTool, true), 1U);
  ExpectQuestion(
      "The Mesh layer must be active in order to see the 3D sphere.\n\nWould you like to turn it "
      "on ?");
  EXPECT_TRUE(IsLayerOn(SV_SHOWMESH));

  SetLayers(true, false, true);
  EXPECT_EQ(AskedBy(Ids().sphereTool, false), 1U);
  EXPECT_FALSE(IsLayerOn(SV_SHOWMESH));
  EXPECT_EQ(Session().Kind(), PickKind::Sphere);
  EXPECT_EQ(AskedBy(Ids().sphereTool, true), 0U);
  EXPECT_FALSE(IsLayerOn(SV_SHOWMESH));
  EXPECT_EQ(Session().Kind(), PickKind::Sphere);
}

TEST_F(Questions, ShadeNeedsItsLayer) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  EXPECT_EQ(AskedBy(Ids().shadeToggle, false), 0U);
  SetLayers(true, true, false);
  EXPECT_EQ(AskedBy(Ids().shadeToggle, true), 1U);
  ExpectQuestion(
      "The Shade layer must be active in order to shade the 3D pick boundary surface.\n\nWould you "
      "like to turn it on ?");
  EXPECT_TRUE(IsLayerOn(SV_SHOWSHADE));

  SetLayers(true, true, false);
  EXPECT_EQ(AskedBy(Ids().shadeToggle, false), 1U);
  EXPECT_FALSE(IsLayerOn(SV_SHOWSHADE));
  EXPECT_TRUE(Session().Cube().IsShadeShown());
  EXPECT_EQ(AskedBy(Ids().shadeToggle, true), 0U);
  EXPECT_FALSE(IsLayerOn(SV_SHOWSHADE));
  EXPECT_TRUE(Session().Cube().IsShadeShown());
  EXPECT_TRUE(
      host.ZoneAt(host.ZoneNamed("PICKING_CUBE"))->fieldMap.Layer(ZoneLayer::Shade).isShown);
}

TEST_F(Questions, BlankingNeedsValueBlanking) {
  const auto asked = [this](bool answer) {
    host.queuedAnswers = {answer};
    host.messageBoxes.clear();
    EXPECT_TRUE(host.Press(Ids().applyButton));
    host.queuedAnswers.clear();
    return host.messageBoxes.size();
  };
  const auto switchOff = [this] { EXPECT_TRUE(host.Switch(Ids().includeBlankingToggle, false)); };
  host.DrawGeometry(RectangleUpTo(9.0));
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  EXPECT_EQ(asked(false), 0U) << "it is on";
  switchOff();
  EXPECT_EQ(asked(true), 1U);
  ExpectQuestion(
      "Value blanking must be on to see the results of this operation.\n\nWould you like to turn "
      "it on ?");
  EXPECT_TRUE(host.ActiveFrame().blanking.include);
  EXPECT_TRUE(IsOn(Ids().includeBlankingToggle));

  // In alter mode nothing is hidden, so nothing is asked.
  switchOff();
  ASSERT_TRUE(host.TurnTo(Ids().tab, 1));
  EXPECT_EQ(asked(false), 0U);
  // A surface pick asks before its seed.
  ASSERT_TRUE(host.TurnTo(Ids().tab, 2));
  ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, 2));
  EXPECT_EQ(asked(true), 1U);
  EXPECT_TRUE(host.ActiveFrame().blanking.include);
  ASSERT_TRUE(host.ChooseRadio(Ids().surfaceRadioBox, 1));

  switchOff();
  EXPECT_EQ(asked(false), 1U);
  EXPECT_FALSE(host.ActiveFrame().blanking.include);
  EXPECT_FALSE(IsOn(Ids().includeBlankingToggle));
  EXPECT_EQ(asked(true), 0U);
  EXPECT_FALSE(host.ActiveFrame().blanking.include);
}

}  // namespace
