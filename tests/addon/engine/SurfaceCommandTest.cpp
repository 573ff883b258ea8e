// Surface picks as journals play them.
#include "SurfaceTest.h"

#include "CMacroEngine.h"

#include <utility>

namespace {

using fakehost::kAlter;
using fakehost::kRectangle;
using qelvane::qelutiltools::MacroEngine;
using qelvane::qelutiltools::Selvane;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

class SurfaceCommand : public fakehost::SurfaceTest {};

TEST_F(SurfaceCommand, PlayedLinePicksTheOutsideOfItsZoneAlone) {
  PlayWell(kRectangle);
  PlayWell(kAlter);
  EXPECT_EQ(Changed(1, n), Outside());
  EXPECT_THAT(Changed(2, n), IsEmpty());
  EXPECT_EQ(host.CallCount("QelUtilProbeInstallCallback"), 0);
  ExpectAreasAreWholeAgain();
}

TEST_F(SurfaceCommand, PlayedLineHidesTheCells) {
  PlayWell(kRectangle);
  PlayWell("BLANKSURFACE ZONE=2 SEEDPOINT=1 RULE=ANYINSIDE");
  const LgIndex_t blankVar = c + 1;
  EXPECT_THAT(host.ValuesOf(1, blankVar), IsEmpty()) << "no values in the other zone";
  std::vector<double> expected(27, 1.0);
  expected[13] = 0.0;
  EXPECT_EQ(host.ValuesOf(2, blankVar), expected);
  EXPECT_TRUE(Session().IsBlankMode());
  EXPECT_FALSE(Session().IsUndoAvailable());
}

TEST_F(SurfaceCommand, LineWithoutZoneOrSeedKeepsTheEarlierOnes) {
  PlayWell(kRectangle);
  PlayWell("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=2 SEEDPOINT=1");
  PlayWell("ALTERSURFACE");
  EXPECT_EQ(host.ValuesOf(2, n)[0], 20.0);
  PlayWell("ALTERSURFACE ZONE=1");
  EXPECT_EQ(Changed(1, n), Outside()) << "the seed of before in another zone";
  PlayWell("ALTERSURFACE SEEDPOINT=23");
  EXPECT_EQ(host.ValuesOf(1, n)[0], 15.0) << "refused, and kept for the next";
  PlayWell("ALTERSURFACE ZONE=2");
  EXPECT_EQ(host.ValuesOf(2, n)[0], 20.0);
  PlayWell("BLANKSURFACE SEEDPOINT=64 RULE=ANYINSIDE");
  EXPECT_THAT(host.ValuesOf(2, c + 1), SizeIs(27));
  EXPECT_THAT(host.ValuesOf(1, c + 1), IsEmpty());
}

TEST_F(SurfaceCommand, LineKeepsTheSeedOfAClick) {
  Prepare();
  ClickSeed(2, 1);
  PlayWell(kRectangle);
  PlayWell("ALTERSURFACE");
  EXPECT_EQ(host.ValuesOf(2, n)[0], 20.0);
  EXPECT_THAT(Changed(1, n), IsEmpty());
}

TEST_F(SurfaceCommand, LineOfARefusedPickStillKeepsItsSeed) {
  PlayWell(kRectangle);
  EXPECT_EQ(PlayBadly("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=9 SEEDPOINT=1"),
            "Zone was not defined OR does not exist in current frame.");
  PlayWell("ALTERSURFACE ZONE=1");
  EXPECT_EQ(Changed(1, n), Outside());
}

struct RefusedRow {
  const char* name;
  const char* before;  ///< played well; empty: nothing
  const char* line;
  const char* message;
};

class RefusedSurface : public SurfaceCommand, public ::testing::WithParamInterface<RefusedRow> {};

TEST_P(RefusedSurface, SaysWhyAndChangesNothing) {
  if (*GetParam().before != '\0') PlayWell(GetParam().before);
  EXPECT_EQ(PlayBadly(GetParam().line), GetParam().message);
  ExpectNothingChanged();
  EXPECT_THAT(host.errorBoxes, IsEmpty());
  EXPECT_THAT(host.messageBoxes, IsEmpty());
  ExpectAreasAreWholeAgain();
}

constexpr char kNoZone[] = "Zone was not defined OR does not exist in current frame.";
constexpr char kNoSeed[] = "Seed point was not defined.";
constexpr char kNoBoundary[] =
    "Pick boundary not properly defined for ALTER/BLANK SURFACE command.\nMust use a 2D geometry.";

INSTANTIATE_TEST_SUITE_P(
    Texts, RefusedSurface,
    ::testing::Values(
        RefusedRow{"NoZone", kRectangle, "ALTERSURFACE SEEDPOINT=1", kNoZone},
        RefusedRow{"ZoneZero", kRectangle, "ALTERSURFACE ZONE=0 SEEDPOINT=1", kNoZone},
        RefusedRow{"ZoneNegative", kRectangle, "ALTERSURFACE ZONE=-1 SEEDPOINT=1", kNoZone},
        RefusedRow{"ZoneTooLarge", kRectangle, "ALTERSURFACE ZONE=3 SEEDPOINT=1", kNoZone},
        RefusedRow{"BlankZoneTooLarge", kRectangle, "BLANKSURFACE ZONE=3 SEEDPOINT=1", kNoZone},
        RefusedRow{"NoSeed", kRectangle, "ALTERSURFACE ZONE=1", kNoSeed},
        RefusedRow{"SeedZero", kRectangle, "ALTERSURFACE ZONE=1 SEEDPOINT=0", kNoSeed},
        RefusedRow{"BlankNoSeed", kRectangle, "BLANKSURFACE ZONE=1", kNoSeed},
        RefusedRow{"NoBoundary", "", "ALTERSURFACE ZONE=1 SEEDPOINT=1", kNoBoundary},
        RefusedRow{"BlankNoBoundary", "", "BLANKSURFACE ZONE=1 SEEDPOINT=1", kNoBoundary},
        RefusedRow{"BoundaryOfTwoCorners", "PICKPOLYGON CORNERS=\"1,2,3,4\"",
                   "ALTERSURFACE ZONE=1 SEEDPOINT=1", kNoBoundary},
        // The zone is looked at first, then the seed, then the boundary.
        RefusedRow{"ZoneFirst", "", "ALTERSURFACE", kNoZone},
        RefusedRow{"SeedSecond", "", "ALTERSURFACE ZONE=2", kNoSeed}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(SurfaceCommand, BoxAloneIsNoBoundaryOfASurface) {
  PlayWell("PICKCUBE ANCHORX=-1 ANCHORY=-1 ANCHORZ=-1 SIZEX=9 SIZEY=9 SIZEZ=9");
  EXPECT_EQ(PlayBadly("ALTERSURFACE VARIABLE=\"n\" MODIFIER=\"+5\" ZONE=1 SEEDPOINT=1"),
            kNoBoundary);
  ExpectNothingChanged();
  host.RunIdleQueue();
}

TEST_F(SurfaceCommand, ZoneCountThatTheHostDoesNotGiveIsAnInternalError) {
  PlayWell(kRectangle);
  host.FailCall("QelUtilDataSetGetInfo", 1);
  EXPECT_THAT(PlayBadly(kAlter), MatchesRegex("Assert failed: QelUtilDataSetGetInfo\\(NULL, "
                                              "&numZones, NULL\\) \\([A-Za-z]+ [0-9]+\\)"));
  ExpectNothingChanged();
}

TEST_F(SurfaceCommand, FrameWithoutDataIsExplained) {
  PlayWell(kRectangle);
  PlayWell(kAlter);
  Selvane& session = Session();
  const auto data = std::exchange(host.ActiveFrame().dataSet, nullptr);
  MacroEngine.SetError("%s", "");
  EXPECT_FALSE(session.ApplySurfaceFromMacro());
  EXPECT_EQ(MacroEngine.GlobalError(), "No data set available in current frame");
  host.ActiveFrame().dataSet = data;
  ExpectAreasAreWholeAgain();
}

TEST_F(SurfaceCommand, PlotThatIsNotCartesianIsExplained) {
  PlayWell(kRectangle);
  PlayWell(kAlter);
  Selvane& session = Session();
  host.ActiveFrame().plotType = PlotType_Line;
  MacroEngine.SetError("%s", "");
  EXPECT_FALSE(session.ApplySurfaceFromMacro());
  EXPECT_EQ(MacroEngine.GlobalError(),
            "Frame is not in Cartesian mode for ALTER/BLANK SURFACE command");
  host.ActiveFrame().plotType = PlotType_Cartesian3D;
  EXPECT_EQ(host.ValuesOf(1, n)[0], 15.0) << "not again";
  ExpectAreasAreWholeAgain();
}

}  // namespace
