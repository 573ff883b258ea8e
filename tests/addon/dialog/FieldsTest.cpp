// The thirteen fields of the box's and the sphere's page.
#include "DialogTest.h"
#include "HostLock.h"

#include "qelvane/QelGUI.h"

#include <algorithm>

namespace {

using fakehost::DialogTest;
using qelvane::qelutiltools::ControlIds;
using qelvane::qelutiltools::CPickBoundary3d;
using qelvane::qelutiltools::HostLock;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using IdOf = LgIndex_t ControlIds::*;

struct FieldRow {
  const char* rule;
  IdOf field;
  IdOf tool;
  int parameter;     ///< its place in the boundary's definition
  const char* name;  ///< in the message
  bool isRotation = false;
};

const FieldRow kFields[] = {
    {"AnchorX", &ControlIds::anchorXField, &ControlIds::cubeTool, 0, "X anchor"},
    {"AnchorY", &ControlIds::anchorYField, &ControlIds::cubeTool, 1, "Y anchor"},
    {"AnchorZ", &ControlIds::anchorZField, &ControlIds::cubeTool, 2, "Z anchor"},
    {"SizeX", &ControlIds::sizeXField, &ControlIds::cubeTool, 3, "X size"},
    {"SizeY", &ControlIds::sizeYField, &ControlIds::cubeTool, 4, "Y size"},
    {"SizeZ", &ControlIds::sizeZField, &ControlIds::cubeTool, 5, "Z size"},
    {"RotateX", &ControlIds::rotateXField, &ControlIds::cubeTool, 6, "X rotation", true},
    {"RotateY", &ControlIds::rotateYField, &ControlIds::cubeTool, 7, "y rotation", true},
    {"RotateZ", &ControlIds::rotateZField, &ControlIds::cubeTool, 8, "Z rotation", true},
    {"CenterX", &ControlIds::centerXField, &ControlIds::sphereTool, 0, "center X"},
    {"CenterY", &ControlIds::centerYField, &ControlIds::sphereTool, 1, "center Y"},
    {"CenterZ", &ControlIds::centerZField, &ControlIds::sphereTool, 2, "center Z"},
    {"Radius", &ControlIds::radiusField, &ControlIds::sphereTool, 3, "radius"}};

/// The data are a cube of edge 3, widened by a tenth on each side: half the diagonal of that, of
/// which a step is 4 percent.
const double kStep = 0.04 * 0.5 * 3.6 * std::sqrt(3.0);

class Fields : public DialogTest {
 protected:
  std::string ErrorFor(const std::string& typed, const char* name) const {
    return "Illegal input ( " + typed + " ) for " + name;
  }
  /// As a toolkit that still shows a field's page.
  void EnterHidden(LgIndex_t field, const char* text) {
    {
      const HostLock lock;
      QelGUITextFieldSetString(field, text);
    }
    EXPECT_TRUE(host.At(field).made.entered(text));
  }
  /// Alters what the boundary in hand takes, so that there is something to undo.
  void AlterInBoundary() {
    ChooseAlteration("+5");
    ASSERT_TRUE(host.Choose(Ids().anyAllMenu, 1));
    ASSERT_TRUE(host.Press(Ids().applyButton));
    ASSERT_TRUE(Session().IsUndoAvailable());
  }
};

class EveryField : public Fields, public ::testing::WithParamInterface<FieldRow> {
 protected:
  void SetUp() override {
    Fields::SetUp();
    field = Ids().*GetParam().field;
    ASSERT_TRUE(host.Switch(Ids().*GetParam().tool, true));
    ASSERT_TRUE(host.IsReachable(field));
    before = Definition();
    step = GetParam().isRotation ? 5.0 : kStep;
  }

  std::array<double, 9> Definition() {
    const bool isCube = GetParam().tool == &ControlIds::cubeTool;
    const CPickBoundary3d& boundary =
        isCube ? static_cast<CPickBoundary3d&>(Session().Cube()) : Session().Sphere();
    return boundary.Definition();
  }
  double Value() { return Definition()[static_cast<std::size_t>(GetParam().parameter)]; }

  /// Every other number is as before; a sphere keeps its squared radius beside the radius.
  void ExpectOthersUnchanged() {
    const std::array<double, 9> now = Definition();
    const bool isSphere = GetParam().tool == &ControlIds::sphereTool;
    for (int place = 0; place < 9; ++place) {
      if (place == GetParam().parameter || (isSphere && place == 4)) continue;
      const auto at = static_cast<std::size_t>(place);
      EXPECT_EQ(now[at], before[at]) << "number " << place;
    }
  }
  static std::string Shown(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
  }

  LgIndex_t field = 0;
  std::array<double, 9> before{};
  double step = 0.0;
};

TEST_P(EveryField, TakesTheNumberTyped) {
  ASSERT_TRUE(host.EnterText(field, " 1.23456789 "));
  EXPECT_EQ(Value(), 1.23456789);
  EXPECT_EQ(TextOf(field), "1.23457");
  ExpectOthersUnchanged();
  EXPECT_THAT(host.messageBoxes, IsEmpty());
}

TEST_P(EveryField, TakesNumbersUnchecked) {
  ASSERT_TRUE(host.EnterText(field, "-725"));
  EXPECT_EQ(Value(), -725.0);
  EXPECT_EQ(TextOf(field), "-725");
  ASSERT_TRUE(host.EnterText(field, "0"));
  EXPECT_EQ(Value(), 0.0);
  EXPECT_EQ(TextOf(field), "0");
}

TEST_P(EveryField, RefusesWhatIsNoNumberAndPutsItsOwnBack) {
  for (const std::string typed : {"abc", "", "1.5x", "1 2", "%s"}) {
    host.messageBoxes.clear();
    EXPECT_TRUE(host.EnterText(field, typed));
    ASSERT_THAT(host.messageBoxes, SizeIs(1));
    EXPECT_EQ(host.messageBoxes[0].text, ErrorFor(typed, GetParam().name));
    EXPECT_EQ(host.messageBoxes[0].kind, MessageBox_Error);
    EXPECT_EQ(TextOf(field), Shown(Value()));
    EXPECT_EQ(Definition(), before);
  }
}

TEST_P(EveryField, StepsUpAndDown) {
  const double start = Value();
  ASSERT_TRUE(host.StepUp(field));
  EXPECT_NEAR(Value(), start + step, 1e-12);
  EXPECT_EQ(TextOf(field), Shown(Value()));
  ASSERT_TRUE(host.StepDown(field));
  ASSERT_TRUE(host.StepDown(field));
  EXPECT_NEAR(Value(), start - step, 1e-12);
  EXPECT_EQ(TextOf(field), Shown(Value()));
  ExpectOthersUnchanged();
}

TEST_P(EveryField, DropsTheUndoWhenItChanges) {
  AlterInBoundary();
  ASSERT_TRUE(host.EnterText(field, "1"));
  EXPECT_FALSE(Session().IsUndoAvailable());
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_P(EveryField, DropsTheUndoWhenItSteps) {
  AlterInBoundary();
  ASSERT_TRUE(host.StepUp(field));
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
  ASSERT_TRUE(host.EnterText(field, Shown(before[static_cast<std::size_t>(GetParam().parameter)])));
  AlterInBoundary();
  ASSERT_TRUE(host.StepDown(field));
  EXPECT_FALSE(IsSensitive(Ids().undoAlterButton));
}

TEST_P(EveryField, KeepsTheUndoWhenItRefuses) {
  AlterInBoundary();
  ASSERT_TRUE(host.EnterText(field, "abc"));
  EXPECT_TRUE(Session().IsUndoAvailable());
  EXPECT_TRUE(IsSensitive(Ids().undoAlterButton));
}

TEST_P(EveryField, LetsTheZoneFollowWhenTheHostIsIdle) {
  const bool isCube = GetParam().tool == &ControlIds::cubeTool;
  const char* const name = isCube ? "PICKING_CUBE" : "PICKING_SPHERE";
  const auto points = [&] {
    std::vector<double> all;
    for (LgIndex_t var = 1; var <= 3; ++var) {
      for (const double value : host.ValuesOf(host.ZoneNamed(name), var)) all.push_back(value);
    }
    return all;
  };
  const std::vector<double> drawn = points();
  ASSERT_TRUE(host.StepUp(field));
  host.RunIdleQueue();
  const std::vector<double> stepped = points();
  EXPECT_NE(stepped, drawn);
  ASSERT_TRUE(host.EnterText(field, "0.75"));
  host.RunIdleQueue();
  EXPECT_NE(points(), stepped);
}

TEST_P(EveryField, ChangesNothingWithoutABoundaryButShowsTheNumber) {
  ASSERT_TRUE(host.Switch(Ids().elementTool, true));
  const auto cube = Session().Cube().Definition();
  const auto sphere = Session().Sphere().Definition();
  EnterHidden(field, "42.5");
  EXPECT_EQ(TextOf(field), "42.5");
  EnterHidden(field, "abc");
  EXPECT_EQ(MessageTexts(), std::vector<std::string>{ErrorFor("abc", GetParam().name)});
  EXPECT_EQ(TextOf(field), "0");
  host.At(field).made.steppedUp();
  host.At(field).made.steppedDown();
  EXPECT_EQ(Session().Cube().Definition(), cube);
  EXPECT_EQ(Session().Sphere().Definition(), sphere);
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, EveryField, ::testing::ValuesIn(kFields),
                         [](const auto& row) { return std::string(row.param.rule); });

struct WrapRow {
  const char* typed;
  bool isUp;
  const char* shown;
};

TEST_F(Fields, WrapARotationOnlyWhenItSteps) {
  ASSERT_TRUE(host.Switch(Ids().cubeTool, true));
  const WrapRow rows[] = {{"357.5", true, "2.5"}, {"2.5", false, "-2.5"},    {"355", true, "0"},
                          {"725", true, "10"},    {"-357.5", false, "-2.5"}, {"-725", false, "-10"},
                          {"359", false, "354"}};
  for (const IdOf field :
       {&ControlIds::rotateXField, &ControlIds::rotateYField, &ControlIds::rotateZField}) {
    for (const WrapRow& row : rows) {
      ASSERT_TRUE(host.EnterText(Ids().*field, row.typed));
      EXPECT_EQ(TextOf(Ids().*field), row.typed);
      ASSERT_TRUE(row.isUp ? host.StepUp(Ids().*field) : host.StepDown(Ids().*field));
      EXPECT_EQ(TextOf(Ids().*field), row.shown) << row.typed;
    }
  }
}

TEST_F(Fields, OfTheRadiusPutThePreviousOneBack) {
  ASSERT_TRUE(host.Switch(Ids().sphereTool, true));
  ASSERT_TRUE(host.EnterText(Ids().radiusField, "2.25"));
  ASSERT_TRUE(host.EnterText(Ids().radiusField, "abc"));
  EXPECT_THAT(MessageTexts(), ElementsAre("Illegal input ( abc ) for radius"));
  EXPECT_EQ(TextOf(Ids().radiusField), "2.25");
  EXPECT_EQ(Session().Sphere().Definition()[3], 2.25);
}

}  // namespace
