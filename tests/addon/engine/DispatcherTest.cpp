#include "EngineTest.h"

namespace {

using fakehost::MakeLattice;
using ::testing::ElementsAre;

struct Row {
  const char* rule;
  const char* line;
  const char* message;
};

class RefusedCommand : public fakehost::EngineTest, public ::testing::WithParamInterface<Row> {};

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
        Row{"UndoNothing", "UNDOALTER", "Macro failed to perform Undo"},
        Row{"RectangleMissing", "PICKRECTANGLE ANCHORX=1 ANCHORY=1 SIZEX=1",
            "Missing parameter in PICKRECTANGLE macro"},
        Row{"RectangleForeign", "PICKRECTANGLE RADIUS=1",
            "Bad value for parameter in PICKRECTANGLE macro"},
        Row{"RectangleType", "PICKRECTANGLE ANCHORX=\"1\"",
            "Bad value for parameter in PICKRECTANGLE macro"},
        Row{"CircleMissing", "PICKCIRCLE ANCHORX=1 ANCHORY=1",
            "Missing parameter in PICKCIRCLE macro"},
        Row{"CircleForeign", "PICKCIRCLE SIZEX=1", "Bad value for parameter in PICKCIRCLE macro"},
        Row{"CircleType", "PICKCIRCLE RADIUS=T", "Bad value for parameter in PICKCIRCLE macro"},
        Row{"PolygonMissing", "PICKPOLYGON", "Missing parameter in PICKPOLYGON macro"},
        Row{"PolygonForeign", "PICKPOLYGON RADIUS=1",
            "Bad value for parameter in PICKPOLYGON macro"},
        Row{"PolygonType", "PICKPOLYGON CORNERS=1", "Bad value for parameter in PICKPOLYGON macro"},
        Row{"CubeMissing", "PICKCUBE ANCHORX=1", "Missing parameter in PICKCUBE macro"},
        Row{"CubeType", "PICKCUBE ANCHORX=\"1\"", "Bad value for parameter in PICKCUBE macro"},
        Row{"CubeForeign", "PICKCUBE RADIUS=1", "Bad value for parameter in PICKCUBE macro"},
        Row{"SphereMissing", "PICKSPHERE ANCHORX=1", "Missing parameter in PICKSPHERE macro"},
        Row{"SphereForeign", "PICKSPHERE RULE=CUBE",
            "Bad value for parameter in PICKSPHERE macro"}),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    Elements, RefusedCommand,
    ::testing::Values(
        Row{"AlterRule", "ALTERELEMENT RULE=CUBE", "Bad value for RULE in ALTERELEMENT command"},
        Row{"AlterVariable", "ALTERELEMENT VARIABLE=\"none\"",
            "Bad value for VARIABLE in ALTERELEMENT command"},
        Row{"AlterVariableType", "ALTERELEMENT VARIABLE=3",
            "Bad value for VARIABLE in ALTERELEMENT command"},
        Row{"AlterModifier", "ALTERELEMENT MODIFIER=\"/0\"",
            "Bad data for MODIFIER in ALTERELEMENT command"},
        Row{"AlterZone", "ALTERELEMENT ZONE=\"1\"", "Bad data for ZONE in ALTERELEMENT command"},
        Row{"AlterElementType", "ALTERELEMENT ELEMENT=T",
            "Bad data for ELEMENT in ALTERELEMENT command"},
        Row{"AlterForeign", "ALTERELEMENT RADIUS=1",
            "Unexpected parameter in ALTERELEMENT command"},
        Row{"AlterNoElement", "ALTERELEMENT ZONE=1",
            "Missing zone or element number in ALTERELEMENT command"},
        Row{"AlterElementZero", "ALTERELEMENT ZONE=1 ELEMENT=0",
            "Missing zone or element number in ALTERELEMENT command"},
        Row{"AlterZoneZero", "ALTERELEMENT ZONE=0 ELEMENT=1",
            "Missing zone or element number in ALTERELEMENT command"},
        Row{"AlterZoneTooLarge", "ALTERELEMENT VARIABLE=\"c\" ZONE=2 ELEMENT=1",
            "Error during execution of ALTERELEMENT operation"},
        Row{"AlterElementTooLarge", "ALTERELEMENT VARIABLE=\"c\" ZONE=1 ELEMENT=3",
            "Error during execution of ALTERELEMENT operation"},
        Row{"BlankRule", "BLANKELEMENT RULE=CUBE", "Bad value for RULE in BLANKELEMENT command"},
        Row{"BlankZone", "BLANKELEMENT ZONE=\"1\"", "Bad data for ZONE in BLANKELEMENT command"},
        Row{"BlankElementType", "BLANKELEMENT ELEMENT=T",
            "Bad data for ELEMENT in BLANKELEMENT command"},
        Row{"BlankForeign", "BLANKELEMENT VARIABLE=\"c\"",
            "Unexpected parameter in BLANKELEMENT command"},
        Row{"BlankNoElement", "BLANKELEMENT ZONE=1",
            "Missing zone or element number in BLANKELEMENT command"}),
    [](const auto& row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    SurfacesAndAreas, RefusedCommand,
    ::testing::Values(
        Row{"SurfaceZone", "ALTERSURFACE ZONE=\"1\"", "Bad data for ZONE in ALTERSURFACE command"},
        Row{"SurfaceSeed", "ALTERSURFACE SEEDPOINT=\"1\"",
            "Bad data for ELEMENT in ALTERELEMENT command"},
        Row{"SurfaceModifier", "ALTERSURFACE MODIFIER=\"abc\"",
            "Bad equation for MODIFIER in ALTERSURFACE command"},
        Row{"SurfaceVariable", "ALTERSURFACE VARIABLE=\"none\"",
            "Bad/unrecognized name for VARIABLE in ALTERSURFACE command"},
        Row{"SurfaceRule", "ALTERSURFACE RULE=CUBE",
            "Illegal value for pick RULE in ALTERSURFACE command"},
        Row{"SurfaceForeign", "ALTERSURFACE RADIUS=1",
            "Unexpected parameter in the ALTERSURFACE command"},
        Row{"BlankSurfaceZone", "BLANKSURFACE ZONE=\"1\"",
            "Bad data for ZONE in ALTERSURFACE command"},
        Row{"BlankSurfaceSeed", "BLANKSURFACE SEEDPOINT=\"1\"",
            "Bad data for ELEMENT in ALTERELEMENT command"},
        Row{"BlankSurfaceForeign", "BLANKSURFACE MODIFIER=\"+1\"",
            "Unexpected parameter in the BLANKAREA command"},
        Row{"BlankSurfaceRule", "BLANKSURFACE RULE=CUBE", kGeneral},
        Row{"AreaVariable", "ALTERAREA VARIABLE=\"none\"",
            "Bad value for VARIABLE in ALTERAREA command"},
        Row{"AreaRule", "ALTERAREA RULE=CUBE", "Illegal value for pick RULE parameter"},
        Row{"AreaForeign", "ALTERAREA ZONE=1", "Unexpected parameter in the ALTERAREA command"},
        Row{"AreaModifier", "ALTERAREA MODIFIER=\"abc\"", kGeneral},
        Row{"BlankAreaForeign", "BLANKAREA VARIABLE=\"c\"",
            "Unexpected parameter in the BLANKAREA command"},
        Row{"BlankAreaRule", "BLANKAREA RULE=CUBE", kGeneral}),
    [](const auto& row) { return std::string(row.param.rule); });

struct KindRow {
  const char* rule;
  const char* line;
  QelMouseMode_e mouseMode;
};

class GeometryCommand : public fakehost::EngineTest,
                        public ::testing::WithParamInterface<KindRow> {};

TEST_P(GeometryCommand, SetsTheMouseModeOfItsKind) {
  Load(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  PlayWell(GetParam().line);
  EXPECT_EQ(host.mouseMode, GetParam().mouseMode);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, GeometryCommand,
    ::testing::Values(
        KindRow{"Rectangle", "PICKRECTANGLE ANCHORX=0 ANCHORY=0 SIZEX=1 SIZEY=1",
                Mouse_GeomRectangle},
        KindRow{"Circle", "PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=1", Mouse_GeomCircle},
        KindRow{"Polygon", "PICKPOLYGON CORNERS=\"0,0\",\"1,0\",\"0,1\"", Mouse_GeomPolyline}),
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

}  // namespace
