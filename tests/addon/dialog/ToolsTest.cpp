// The six pick tools and what the dialog shows for each.
#include "DialogTest.h"

#include <cstdio>

namespace {

using fakehost::DialogTest;
using fakehost::ZoneLayer;
using qelvane::qelutiltools::ControlIds;
using qelvane::qelutiltools::PickKind;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using IdOf = LgIndex_t ControlIds::*;

struct ToolRow {
  const char* rule;
  IdOf tool;
  PickKind kind;
  QelMouseMode_e mouseMode;
  IdOf page;
  bool hasSurfaceChoice;
  bool hasShade;
  const char* zone = "";
};

const ToolRow kTools[] = {{"Element", &ControlIds::elementTool, PickKind::Element, Mouse_Probe,
                           &ControlIds::elementPage, false, false},
                          {"Rectangle", &ControlIds::rectangleTool, PickKind::Rectangle,
                           Mouse_GeomRectangle, &ControlIds::rectanglePage, true, false},
                          {"Circle", &ControlIds::circleTool, PickKind::Circle, Mouse_GeomCircle,
                           &ControlIds::circlePage, true, false},
                          {"Polygon", &ControlIds::polygonTool, PickKind::Polygon,
                           Mouse_GeomPolyline, &ControlIds::polygonPage, true, false},
                          {"Cube", &ControlIds::cubeTool, PickKind::Cube, Mouse_Select,
                           &ControlIds::cubePage, false, true, "PICKING_CUBE"},
                          {"Sphere", &ControlIds::sphereTool, PickKind::Sphere, Mouse_Select,
                           &ControlIds::spherePage, false, true, "PICKING_SPHERE"}};

class Tools : public DialogTest {
 protected:
  void ExpectShown(const ToolRow& row) {
    SCOPED_TRACE(row.rule);
    EXPECT_EQ(Session().Kind(), row.kind);
    for (const ToolRow& other : kTools) {
      EXPECT_EQ(IsOn(Ids().*other.tool), other.kind == row.kind) << other.rule;
      if (other.zone[0] != '\0') {
        EXPECT_EQ(host.ZoneNamed(other.zone) > 0, other.kind == row.kind) << other.zone;
      }
    }
    EXPECT_EQ(host.mouseMode, row.mouseMode);
    EXPECT_EQ(ShownPage(), Ids().*row.page);
    EXPECT_EQ(IsVisible(Ids().surfaceRadioBox), row.hasSurfaceChoice);
    EXPECT_EQ(IsVisible(Ids().shadeToggle), row.hasShade);
    EXPECT_FALSE(IsVisible(Ids().seedLabel));
  }

  static std::string Shown(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
  }

  std::vector<std::string> Texts(std::initializer_list<LgIndex_t> fields) const {
    std::vector<std::string> texts;
    for (const LgIndex_t field : fields) texts.push_back(TextOf(field));
    return texts;
  }
};

class EveryTool : public Tools, public ::testing::WithParamInterface<ToolRow> {};

TEST_P(EveryTool, ShowsWhatBelongsToIt) {
  ASSERT_TRUE(host.Switch(Ids().*GetParam().tool, true));
  ExpectShown(GetParam());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

TEST_P(EveryTool, GoesBackToTheStartWhenSwitchedOff) {
  ASSERT_TRUE(host.Switch(Ids().*GetParam().tool, true));
  host.mouseMode = Mouse_Zoom;
  ASSERT_TRUE(host.Switch(Ids().*GetParam().tool, false));
  ExpectShown(
      {"None", GetParam().tool, PickKind::None, Mouse_Select, &ControlIds::startPage, true, false});
}

TEST_P(EveryTool, FollowsEveryOther) {
  for (const ToolRow& before : kTools) {
    if (before.kind == GetParam().kind) continue;
    ASSERT_TRUE(host.Switch(Ids().*before.tool, true));
    ASSERT_TRUE(host.Switch(Ids().*GetParam().tool, true));
    ExpectShown(GetParam());
    ASSERT_TRUE(host.Switch(Ids().*GetParam().tool, false));
  }
}

TEST_P(EveryTool, DropsTheUndo) {
  AlterAll();
  const bool wasOn = IsOn(Ids().*GetParam().tool);
  ASSERT_TRUE(host.Switch(Ids().*GetParam().tool, !wasOn));
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

INSTANTIATE_TEST_SUITE_P(All, EveryTool, ::testing::ValuesIn(kTools),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST_F(Tools, ProbeForSingleElements) {
  ASSERT_TRUE(host.Switch(Ids().elementTool, true));
  EXPECT_EQ(host.probeInstruction, "Click on the Cell to be blanked");
  ChooseAlteration("+100");
  host.Probe(true, 1, 0, 7);
  EXPECT_EQ(host.ValuesOf(1, n).at(6), 107.0);
  EXPECT_TRUE(IsSensitive(Ids().undoAlterButton));
}

// Whether an apply has something to work on ------------------------------------------------------

TEST_F(Tools, ApplyToAnyGeometryOfTheFrame) {
  for (const IdOf tool :
       {&ControlIds::rectangleTool, &ControlIds::circleTool, &ControlIds::polygonTool}) {
    ASSERT_TRUE(host.Switch(Ids().*tool, true));
    EXPECT_FALSE(IsSensitive(Ids().applyButton));
  }
  host.AddGeometry(RectangleUpTo(1.0));
  for (const IdOf tool :
       {&ControlIds::rectangleTool, &ControlIds::circleTool, &ControlIds::polygonTool}) {
    ASSERT_TRUE(host.Switch(Ids().*tool, true));
    EXPECT_TRUE(IsSensitive(Ids().applyButton));
    ASSERT_TRUE(host.Switch(Ids().*tool, false));
    EXPECT_TRUE(IsSensitive(Ids().applyButton));
  }
}

TEST_F(Tools, NeverApplySingleElements) {
  host.AddGeometry(RectangleUpTo(1.0));
  ASSERT_TRUE(host.Switch(Ids().elementTool, true));
  EXPECT_FALSE(IsSensitive(Ids().applyButton));
}

TEST_F(Tools, ApplyABoxOrASphereOnceItIsThere) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  EXPECT_TRUE(IsSensitive(Ids().applyButton));
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  EXPECT_TRUE(IsSensitive(Ids().applyButton));
}

class ToolsIn2d : public Tools {
 protected:
  void SetUp() override { Open(PlotType_Cartesian2D); }
};

TEST_F(ToolsIn2d, HaveNoBoxOrSphereToApply) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  EXPECT_FALSE(IsSensitive(Ids().applyButton));
  EXPECT_EQ(host.ZoneNamed("PICKING_CUBE"), 0);
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  EXPECT_FALSE(IsSensitive(Ids().applyButton));
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

// Numbers and shade ------------------------------------------------------------------------------

TEST_F(Tools, ShowTheNumbersOfTheBox) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  std::vector<std::string> numbers;
  for (const double value : Session().Cube().Definition()) numbers.push_back(Shown(value));
  EXPECT_EQ(Texts({Ids().anchorXField, Ids().anchorYField, Ids().anchorZField, Ids().sizeXField,
                   Ids().sizeYField, Ids().sizeZField, Ids().rotateXField, Ids().rotateYField,
                   Ids().rotateZField}),
            numbers);
  EXPECT_NE(numbers[3], "0");
}

TEST_F(Tools, ShowTheNumbersOfTheSphere) {
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  const auto numbers = Session().Sphere().Definition();
  EXPECT_THAT(
      Texts({Ids().centerXField, Ids().centerYField, Ids().centerZField, Ids().radiusField}),
      ElementsAre(Shown(numbers[0]), Shown(numbers[1]), Shown(numbers[2]), Shown(numbers[3])));
  EXPECT_EQ(TextOf(Ids().centerXField), "1.5");
}

TEST_F(Tools, KeepAShadeEach) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  EXPECT_FALSE(IsOn(Ids().shadeToggle));
  ASSERT_TRUE(host.Switch(Ids().shadeToggle, true));
  EXPECT_TRUE(Session().Cube().IsShadeShown());
  EXPECT_TRUE(
      host.ZoneAt(host.ZoneNamed("PICKING_CUBE"))->fieldMap.Layer(ZoneLayer::Shade).isShown);
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  EXPECT_FALSE(IsOn(Ids().shadeToggle));
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  EXPECT_TRUE(IsOn(Ids().shadeToggle));
  ASSERT_TRUE(host.Switch(Ids().rectangleTool, true));
  EXPECT_FALSE(IsOn(Ids().shadeToggle));
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  ASSERT_TRUE(host.Switch(Ids().shadeToggle, false));
  EXPECT_FALSE(Session().Cube().IsShadeShown());
  EXPECT_FALSE(
      host.ZoneAt(host.ZoneNamed("PICKING_CUBE"))->fieldMap.Layer(ZoneLayer::Shade).isShown);
}

}  // namespace
