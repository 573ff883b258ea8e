#include "Dispatcher.h"

#include "CMacroEngine.h"
#include "EngineTest.h"

namespace {

using fakehost::MakeLattice;
using qelvane::qelutiltools::DispatchMacroCommand;
using qelvane::qelutiltools::FormatModifier;
using qelvane::qelutiltools::MacroCommand;
using qelvane::qelutiltools::MacroEngine;
using qelvane::qelutiltools::PickKind;
using qelvane::qelutiltools::PickRule;
using ::testing::ElementsAre;

struct DispatchedRow {
  const char* rule;
  const char* line;
  const char* message;
};

class RefusedCommand : public fakehost::EngineTest,
                       public ::testing::WithParamInterface<DispatchedRow> {};

TEST_P(RefusedCommand, SaysWhyAndChangesNothing) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  EXPECT_EQ(PlayBadly(GetParam().line), GetParam().message);
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
  EXPECT_THAT(host.ValuesOf(1, n), ElementsAre(1, 2, 3, 4, 5, 6));
}

constexpr char kGeneral[] = "Error processing macro command";

INSTANTIATE_TEST_SUITE_P(
    Boundaries, RefusedCommand,
    ::testing::Values(
        DispatchedRow{"UndoNothing", "UNDOALTER", "Macro failed to perform Undo"},
        DispatchedRow{"RectangleMissing", "PICKRECTANGLE ANCHORX=1 ANCHORY=1 SIZEX=1",
                      "Missing parameter in PICKRECTANGLE macro"},
        DispatchedRow{"RectangleForeign", "PICKRECTANGLE RADIUS=1",
                      "Bad value for parameter in PICKRECTANGLE macro"},
        DispatchedRow{"RectangleType", "PICKRECTANGLE ANCHORX=\"1\"",
                      "Bad value for parameter in PICKRECTANGLE macro"},
        DispatchedRow{"CircleMissing", "PICKCIRCLE ANCHORX=1 ANCHORY=1",
                      "Missing parameter in PICKCIRCLE macro"},
        DispatchedRow{"CircleForeign", "PICKCIRCLE SIZEX=1",
                      "Bad value for parameter in PICKCIRCLE macro"},
        DispatchedRow{"CircleType", "PICKCIRCLE RADIUS=T",
                      "Bad value for parameter in PICKCIRCLE macro"},
        DispatchedRow{"PolygonMissing", "PICKPOLYGON", "Missing parameter in PICKPOLYGON macro"},
        DispatchedRow{"PolygonForeign", "PICKPOLYGON RADIUS=1",
                      "Bad value for parameter in PICKPOLYGON macro"},
        DispatchedRow{"PolygonType", "PICKPOLYGON CORNERS=1",
                      "Bad value for parameter in PICKPOLYGON macro"},
        DispatchedRow{"CubeMissing", "PICKCUBE ANCHORX=1", "Missing parameter in PICKCUBE macro"},
        DispatchedRow{"CubeType", "PICKCUBE ANCHORX=\"1\"",
                      "Bad value for parameter in PICKCUBE macro"},
        DispatchedRow{"CubeForeign", "PICKCUBE RADIUS=1",
                      "Bad value for parameter in PICKCUBE macro"},
        DispatchedRow{"SphereMissing", "PICKSPHERE ANCHORX=1",
                      "Missing parameter in PICKSPHERE macro"},
        DispatchedRow{"SphereForeign", "PICKSPHERE RULE=CUBE",
                      "Bad value for parameter in PICKSPHERE macro"}),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    Elements, RefusedCommand,
    ::testing::Values(
        DispatchedRow{"AlterRule", "ALTERELEMENT RULE=CUBE",
                      "Bad value for RULE in ALTERELEMENT command"},
        DispatchedRow{"AlterVariable", "ALTERELEMENT VARIABLE=\"none\"",
                      "Bad value for VARIABLE in ALTERELEMENT command"},
        DispatchedRow{"AlterVariableType", "ALTERELEMENT VARIABLE=3",
                      "Bad value for VARIABLE in ALTERELEMENT command"},
        DispatchedRow{"AlterModifier", "ALTERELEMENT MODIFIER=\"/0\"",
                      "Bad data for MODIFIER in ALTERELEMENT command"},
        DispatchedRow{"AlterZone", "ALTERELEMENT ZONE=\"1\"",
                      "Bad data for ZONE in ALTERELEMENT command"},
        DispatchedRow{"AlterElementType", "ALTERELEMENT ELEMENT=T",
                      "Bad data for ELEMENT in ALTERELEMENT command"},
        DispatchedRow{"AlterForeign", "ALTERELEMENT RADIUS=1",
                      "Unexpected parameter in ALTERELEMENT command"},
        DispatchedRow{"AlterNoElement", "ALTERELEMENT ZONE=1",
                      "Missing zone or element number in ALTERELEMENT command"},
        DispatchedRow{"AlterElementZero", "ALTERELEMENT ZONE=1 ELEMENT=0",
                      "Missing zone or element number in ALTERELEMENT command"},
        DispatchedRow{"AlterZoneZero", "ALTERELEMENT ZONE=0 ELEMENT=1",
                      "Missing zone or element number in ALTERELEMENT command"},
        DispatchedRow{"AlterZoneTooLarge", "ALTERELEMENT VARIABLE=\"c\" ZONE=2 ELEMENT=1",
                      "Error during execution of ALTERELEMENT operation"},
        DispatchedRow{"AlterElementTooLarge", "ALTERELEMENT VARIABLE=\"c\" ZONE=1 ELEMENT=3",
                      "Error during execution of ALTERELEMENT operation"},
        DispatchedRow{"BlankRule", "BLANKELEMENT RULE=CUBE",
                      "Bad value for RULE in BLANKELEMENT command"},
        DispatchedRow{"BlankZone", "BLANKELEMENT ZONE=\"1\"",
                      "Bad data for ZONE in BLANKELEMENT command"},
        DispatchedRow{"BlankElementType", "BLANKELEMENT ELEMENT=T",
                      "Bad data for ELEMENT in BLANKELEMENT command"},
        DispatchedRow{"BlankForeign", "BLANKELEMENT VARIABLE=\"c\"",
                      "Unexpected parameter in BLANKELEMENT command"},
        DispatchedRow{"BlankNoElement", "BLANKELEMENT ZONE=1",
                      "Missing zone or element number in BLANKELEMENT command"},
        DispatchedRow{"BlankNoZone", "BLANKELEMENT ELEMENT=1",
                      "Missing zone or element number in BLANKELEMENT command"},
        DispatchedRow{"BlankElementZero", "BLANKELEMENT ZONE=1 ELEMENT=0",
                      "Missing zone or element number in BLANKELEMENT command"},
        DispatchedRow{"BlankZoneTooLarge", "BLANKELEMENT ZONE=2 ELEMENT=1",
                      "Error during execution of BLANKELEMENT operation"},
        DispatchedRow{"BlankElementTooLarge", "BLANKELEMENT ZONE=1 ELEMENT=3",
                      "Error during execution of BLANKELEMENT operation"},
        DispatchedRow{"AlterNoZone", "ALTERELEMENT ELEMENT=1",
                      "Missing zone or element number in ALTERELEMENT command"},
        DispatchedRow{"AlterFractionOfAnElement", "ALTERELEMENT ZONE=1 ELEMENT=0.9",
                      "Missing zone or element number in ALTERELEMENT command"},
        DispatchedRow{"AlterRuleNumber", "ALTERELEMENT RULE=2",
                      "Bad value for RULE in ALTERELEMENT command"},
        DispatchedRow{"AlterRuleText", "ALTERELEMENT RULE=\"ALLINSIDE\"",
                      "Bad value for RULE in ALTERELEMENT command"},
        DispatchedRow{"AlterModifierType", "ALTERELEMENT MODIFIER=5",
                      "Bad data for MODIFIER in ALTERELEMENT command"},
        DispatchedRow{"FirstOfTwoFaults", "ALTERELEMENT RULE=CUBE VARIABLE=\"none\"",
                      "Bad value for RULE in ALTERELEMENT command"},
        DispatchedRow{"FirstOfTheSameFaults", "ALTERELEMENT VARIABLE=\"none\" RULE=CUBE",
                      "Bad value for VARIABLE in ALTERELEMENT command"}),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    SurfacesAndAreas, RefusedCommand,
    ::testing::Values(DispatchedRow{"SurfaceZone", "ALTERSURFACE ZONE=\"1\"",
                                    "Bad data for ZONE in ALTERSURFACE command"},
                      DispatchedRow{"SurfaceSeed", "ALTERSURFACE SEEDPOINT=\"1\"",
                                    "Bad data for ELEMENT in ALTERELEMENT command"},
                      DispatchedRow{"SurfaceModifier", "ALTERSURFACE MODIFIER=\"abc\"",
                                    "Bad equation for MODIFIER in ALTERSURFACE command"},
                      DispatchedRow{"SurfaceVariable", "ALTERSURFACE VARIABLE=\"none\"",
                                    "Bad/unrecognized name for VARIABLE in ALTERSURFACE command"},
                      DispatchedRow{"SurfaceRule", "ALTERSURFACE RULE=CUBE",
                                    "Illegal value for pick RULE in ALTERSURFACE command"},
                      DispatchedRow{"SurfaceForeign", "ALTERSURFACE RADIUS=1",
                                    "Unexpected parameter in the ALTERSURFACE command"},
                      DispatchedRow{"BlankSurfaceZone", "BLANKSURFACE ZONE=\"1\"",
                                    "Bad data for ZONE in ALTERSURFACE command"},
                      DispatchedRow{"BlankSurfaceSeed", "BLANKSURFACE SEEDPOINT=\"1\"",
                                    "Bad data for ELEMENT in ALTERELEMENT command"},
                      DispatchedRow{"BlankSurfaceForeign", "BLANKSURFACE MODIFIER=\"+1\"",
                                    "Unexpected parameter in the BLANKAREA command"},
                      DispatchedRow{"BlankSurfaceRule", "BLANKSURFACE RULE=CUBE", kGeneral},
                      DispatchedRow{"AreaVariable", "ALTERAREA VARIABLE=\"none\"",
                                    "Bad value for VARIABLE in ALTERAREA command"},
                      DispatchedRow{"AreaRule", "ALTERAREA RULE=CUBE",
                                    "Illegal value for pick RULE parameter"},
                      DispatchedRow{"AreaForeign", "ALTERAREA ZONE=1",
                                    "Unexpected parameter in the ALTERAREA command"},
                      DispatchedRow{"AreaModifier", "ALTERAREA MODIFIER=\"abc\"", kGeneral},
                      DispatchedRow{"BlankAreaForeign", "BLANKAREA VARIABLE=\"c\"",
                                    "Unexpected parameter in the BLANKAREA command"},
                      DispatchedRow{"BlankAreaRule", "BLANKAREA RULE=CUBE", kGeneral},
                      DispatchedRow{"SurfaceZoneBoolean", "ALTERSURFACE ZONE=T",
                                    "Bad data for ZONE in ALTERSURFACE command"},
                      DispatchedRow{"SurfaceModifierType", "ALTERSURFACE MODIFIER=5",
                                    "Bad equation for MODIFIER in ALTERSURFACE command"},
                      DispatchedRow{"SurfaceVariableType", "ALTERSURFACE VARIABLE=5",
                                    "Bad/unrecognized name for VARIABLE in ALTERSURFACE command"},
                      DispatchedRow{"SurfaceRuleText", "ALTERSURFACE RULE=\"ALLINSIDE\"",
                                    "Illegal value for pick RULE in ALTERSURFACE command"},
                      DispatchedRow{"AreaRuleText", "ALTERAREA RULE=\"ALLINSIDE\"",
                                    "Illegal value for pick RULE parameter"},
                      DispatchedRow{"AreaVariableType", "ALTERAREA VARIABLE=5",
                                    "Bad value for VARIABLE in ALTERAREA command"}),
    [](const auto& row) { return std::string(row.param.rule); });

struct CommandKindRow {
  const char* rule;
  const char* line;
  QelMouseMode_e mouseMode;
};

class GeometryCommand : public fakehost::EngineTest,
                        public ::testing::WithParamInterface<CommandKindRow> {};

TEST_P(GeometryCommand, SetsTheMouseModeOfItsKind) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  PlayWell(GetParam().line);
  EXPECT_EQ(host.mouseMode, GetParam().mouseMode);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, GeometryCommand,
    ::testing::Values(
        CommandKindRow{"Rectangle", "PICKRECTANGLE ANCHORX=0 ANCHORY=0 SIZEX=1 SIZEY=1",
                       Mouse_GeomRectangle},
        CommandKindRow{"Circle", "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=1", Mouse_GeomCircle},
        CommandKindRow{"Polygon", "PICKPOLYGON CORNERS=\"0,0\",\"1,0\",\"0,1\"",
                       Mouse_GeomPolyline}),
    [](const auto& row) { return std::string(row.param.rule); });

struct ModifierRow {
  const char* text;
  double expected;  ///< of the value 10
};

class AcceptedModifier : public fakehost::EngineTest,
                         public ::testing::WithParamInterface<ModifierRow> {};

TEST_P(AcceptedModifier, ChangesTen) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  PlayWell(std::string("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"") + GetParam().text +
           "\" ZONE=1 ELEMENT=1");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(GetParam().expected, 20));
}

INSTANTIATE_TEST_SUITE_P(Table, AcceptedModifier,
                         ::testing::Values(ModifierRow{" + 1 0  ", 20}, ModifierRow{"99", 99},
                                           ModifierRow{"=-33", -33}, ModifierRow{"-0.5", 9.5},
                                           ModifierRow{"*1.4", 14}, ModifierRow{"/2.0", 5},
                                           ModifierRow{"*0", 0}, ModifierRow{"=0", 0},
                                           ModifierRow{"+", 10}, ModifierRow{"=", 0},
                                           ModifierRow{"*", 0}, ModifierRow{"5abc", 5},
                                           ModifierRow{"1e3", 1000}, ModifierRow{"--5", 15},
                                           ModifierRow{"+10abc", 20}, ModifierRow{".", 0}));

class RefusedModifier : public fakehost::EngineTest,
                        public ::testing::WithParamInterface<const char*> {};

TEST_P(RefusedModifier, KeepsTheOneInForce) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+5\" ZONE=1 ELEMENT=2");
  EXPECT_EQ(PlayBadly(std::string("ALTERELEMENT MODIFIER=\"") + GetParam() + "\" ZONE=1 ELEMENT=1"),
            "Bad data for MODIFIER in ALTERELEMENT command");
  PlayWell("ALTERELEMENT ZONE=1 ELEMENT=1");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 25));
}

INSTANTIATE_TEST_SUITE_P(Table, RefusedModifier,
                         ::testing::Values("", "   ", "/0", "/0.0", "/", "/-0", "/.", "abc", "x5",
                                           "e5", "+x", "\t5"));

// Attributes -----------------------------------------------------------------------------------

struct AttributesRow {
  const char* command;
  std::vector<std::string> accepted;
  const char* unexpected;  ///< empty: nothing is read, everything accepted
};

class Attributes : public fakehost::EngineTest,
                   public ::testing::WithParamInterface<AttributesRow> {};

TEST_P(Attributes, OfOtherCommandsAreRefusedOrNotRead) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  const std::string command = GetParam().command;
  for (const char* const attribute :
       {"MODE", "RULE", "VARIABLE", "MODIFIER", "ZONE", "SEEDPOINT", "ELEMENT", "ANCHORX",
        "ANCHORY", "ANCHORZ", "SIZEX", "SIZEY", "SIZEZ", "ROTATEX", "ROTATEY", "ROTATEZ", "RADIUS",
        "CORNERS"}) {
    if (::testing::Matches(::testing::Contains(attribute))(GetParam().accepted)) continue;
    const std::string line = command + " " + attribute + "=1";
    if (*GetParam().unexpected == '\0') {
      PlayWell(line);
    } else {
      EXPECT_EQ(PlayBadly(line), GetParam().unexpected) << line;
    }
  }
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, Attributes,
    ::testing::Values(
        AttributesRow{"UNDOBLANK", {}, ""}, AttributesRow{"VIEWXY", {}, ""},
        AttributesRow{"VIEWXZ", {}, ""}, AttributesRow{"VIEWYZ", {}, ""},
        AttributesRow{"VIEW3D", {}, ""}, AttributesRow{"PICKGEOMETRY", {}, ""},
        AttributesRow{"PICKRECTANGLE",
                      {"ANCHORX", "ANCHORY", "SIZEX", "SIZEY"},
                      "Bad value for parameter in PICKRECTANGLE macro"},
        AttributesRow{"PICKCIRCLE",
                      {"ANCHORX", "ANCHORY", "RADIUS"},
                      "Bad value for parameter in PICKCIRCLE macro"},
        AttributesRow{"PICKPOLYGON", {"CORNERS"}, "Bad value for parameter in PICKPOLYGON macro"},
        AttributesRow{"PICKCUBE",
                      {"ANCHORX", "ANCHORY", "ANCHORZ", "SIZEX", "SIZEY", "SIZEZ", "ROTATEX",
                       "ROTATEY", "ROTATEZ"},
                      "Bad value for parameter in PICKCUBE macro"},
        AttributesRow{"PICKSPHERE",
                      {"ANCHORX", "ANCHORY", "ANCHORZ", "RADIUS", "SIZEX"},
                      "Bad value for parameter in PICKSPHERE macro"},
        AttributesRow{"ALTERELEMENT",
                      {"RULE", "VARIABLE", "MODIFIER", "ZONE", "ELEMENT"},
                      "Unexpected parameter in ALTERELEMENT command"},
        AttributesRow{"BLANKELEMENT",
                      {"RULE", "ZONE", "ELEMENT"},
                      "Unexpected parameter in BLANKELEMENT command"},
        AttributesRow{"ALTERSURFACE",
                      {"ZONE", "SEEDPOINT", "MODIFIER", "VARIABLE", "RULE"},
                      "Unexpected parameter in the ALTERSURFACE command"},
        AttributesRow{"BLANKSURFACE",
                      {"ZONE", "SEEDPOINT", "RULE"},
                      "Unexpected parameter in the BLANKAREA command"},
        AttributesRow{"ALTERAREA",
                      {"VARIABLE", "MODIFIER", "RULE"},
                      "Unexpected parameter in the ALTERAREA command"},
        AttributesRow{"BLANKAREA", {"RULE"}, "Unexpected parameter in the BLANKAREA command"}),
    [](const auto& row) { return std::string(row.param.command); });

class Dispatcher : public fakehost::EngineTest {
 protected:
  void SetUp() override { Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0)); }
};

TEST_F(Dispatcher, LineThatFailsLeavesEveryChoiceAsItWas) {
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+5\" RULE=ANYOUTSIDE ZONE=1 ELEMENT=1");
  for (const char* const line :
       {"ALTERAREA VARIABLE=\"n\" MODIFIER=\"=7\" RULE=CUBE",
        "ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"=7\" RULE=ALLINSIDE ZONE=\"1\"",
        "ALTERELEMENT VARIABLE=\"n\" MODIFIER=\"=7\" RULE=ALLINSIDE ZONE=1",
        "BLANKAREA RULE=ALLINSIDE ZONE=1"}) {
    PlayBadly(line);
    EXPECT_EQ(Session().AlterVariable(), c) << line;
    EXPECT_EQ(Session().Rule(), PickRule::AnyOutside) << line;
    EXPECT_EQ(FormatModifier(Session().Modifier()), "+5") << line;
    EXPECT_FALSE(Session().IsBlankMode()) << line;
    EXPECT_TRUE(Session().IsUndoAvailable()) << line;
  }
}

TEST_F(Dispatcher, TextOfOneLineIsNotThatOfTheNext) {
  EXPECT_EQ(PlayBadly("ALTERAREA RULE=CUBE"), "Illegal value for pick RULE parameter");
  EXPECT_EQ(PlayBadly("BLANKAREA RULE=CUBE"), kGeneral);
}

TEST_F(Dispatcher, OfTheSameAttributeTheLastCounts) {
  PlayWell(
      "ALTERELEMENT VARIABLE=\"n\" VARIABLE=\"c\" MODIFIER=\"+5\" MODIFIER=\"*3\" ZONE=9 "
      "ZONE=1 ELEMENT=9 ELEMENT=2");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 60));
}

TEST_F(Dispatcher, NumbersAreCutToWholeOnes) {
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"*3\" ZONE=1.75 ELEMENT=2.999");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 60));
}

TEST_F(Dispatcher, FirstOfSeveralStringsCounts) {
  PlayWell("ALTERELEMENT VARIABLE=\"c\",\"n\" MODIFIER=\"*3\",\"abc\" ZONE=1 ELEMENT=2");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 60));
}

TEST_F(Dispatcher, CommandThatThereIsNotSucceeds) {
  for (const std::int32_t id : {-2147483647, -2, -1, 18, 19, 255, 2147483647}) {
    MacroCommand command;
    command.Command = id;
    command.Attributes.push_back({0, {}});
    MacroEngine.SetError("%s", "left over");
    EXPECT_TRUE(DispatchMacroCommand(Session(), command)) << id;
    EXPECT_EQ(MacroEngine.GlobalError(), "") << id;
  }
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(10, 20));
}

TEST_F(Dispatcher, AlteringAndHidingSetTheirModesBeforeEachOther) {
  PlayWell("BLANKELEMENT ZONE=1 ELEMENT=1");
  EXPECT_TRUE(Session().IsBlankMode());
  PlayWell("ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+5\" ZONE=1 ELEMENT=1");
  EXPECT_FALSE(Session().IsBlankMode());
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 20));
  EXPECT_THAT(host.ValuesOf(1, c + 1), ElementsAre(1, 0));
}

TEST_F(Dispatcher, RulesOfElementCommandsAreKeptForTheNextArea) {
  PlayWell("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=1.5 SIZEY=9");
  PlayWell("BLANKELEMENT RULE=ANYINSIDE ZONE=1 ELEMENT=2");
  EXPECT_EQ(Session().Rule(), PickRule::AnyInside);
  PlayWell("PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=1.5 SIZEY=9");
  PlayWell("ALTERAREA VARIABLE=\"c\" MODIFIER=\"+5\"");
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(15, 20));
}

TEST_F(Dispatcher, RecordedRectangleAlterationAndUndoPlayBackToTheSameValues) {
  host.isRecording = true;
  host.AddGeometry({0, GeomType_Rectangle, {-1, -1, 0}, 2.5, 9, {}, CoordSys_Grid});
  Session().SetPickKind(PickKind::Rectangle, true);
  Session().SetAlterVariable(c);
  for (const char* const modifier : {"*3", "+0.5"}) {
    EXPECT_TRUE(Session().ParseModifier(modifier));
    EXPECT_TRUE(Session().ApplyArea(false));
    Session().RecordArea();
  }
  EXPECT_TRUE(Session().UndoLastAlter(false));
  Session().RecordUndoAlter();
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(30, 20));
  const std::string area = "Marquell PICKRECTANGLE ANCHORX=-1 ANCHORY=-1 SIZEX=2.5 SIZEY=9";
  const std::vector<std::string> journal = host.recordedLines;
  EXPECT_THAT(
      journal,
      ElementsAre(area, "Marquell ALTERAREA VARIABLE=\"c\" MODIFIER=\"*3\" RULE=ALLINSIDE", area,
                  "Marquell ALTERAREA VARIABLE=\"c\" MODIFIER=\"+0.5\" RULE=ALLINSIDE", area,
                  "Marquell UNDOALTER"));
  host.Deliver(StateChange_NewLayout);
  host.Reset();
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  for (const std::string& line : journal) PlayWell(line.substr(std::string("Marquell ").size()));
  EXPECT_THAT(host.ValuesOf(1, c), ElementsAre(30, 20));
}

}  // namespace
