#include "Host.h"
#include "HostCommands.h"
#include "TestData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace qelhost {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/// Why the line is no good, or "" when it parses.
std::string ParseError(const std::string& line) {
  try {
    ParseHostCommand(line);
  } catch (const CommandError& e) {
    return e.what();
  }
  return {};
}

std::string RunError(const std::string& line) {
  try {
    RunHostCommand(Host::Instance(), line);
  } catch (const CommandError& e) {
    return e.what();
  }
  return {};
}

struct Row {
  const char* rule;
  const char* line;
};

class GoodCommand : public ::testing::TestWithParam<Row> {};

TEST_P(GoodCommand, ParsesWithoutAFrameAndIsRefusedInWordsWhenItRunsWithoutOne) {
  Host::Instance().CloseAll();
  EXPECT_EQ(ParseError(GetParam().line), "");
  EXPECT_THAT(RunError(GetParam().line), Not(IsEmpty()));
  EXPECT_FALSE(Host::Instance().lock.IsOn());
}

INSTANTIATE_TEST_SUITE_P(
    Rules, GoodCommand,
    ::testing::Values(
        Row{"PlotType", "$!PLOTTYPE CARTESIAN3D"}, Row{"Fit", "$!VIEW FIT"},
        Row{"FitSurfaces", "$!VIEW FITSURFACES"}, Row{"Angles", "$!VIEW PSI=60 ALPHA=0 THETA=240"},
        Row{"BlankingWithoutBrace", "$!BLANKING VALUE{INCLUDE = YES"},
        Row{"BlankingWithBrace", "$!BLANKING VALUE{INCLUDE = YES}"},
        Row{"Constraint", "$!BLANKING VALUE{CONSTRAINT 8 {INCLUDE = YES VARA = 1}}"},
        Row{"Rectangle", "$!GEOMETRY RECTANGLE X=0 Y=0 WIDTH=1 HEIGHT=2"},
        Row{"Square", "$!GEOMETRY SQUARE X=0 Y=0 SIZE=1"},
        Row{"Circle", "$!GEOMETRY CIRCLE X=0 Y=0 RADIUS=1"},
        Row{"Polyline", "$!GEOMETRY POLYLINE POINTS=\"0,0 1,0 1,1\""},
        Row{"Select", "$!GEOMETRY SELECT 1"}, Row{"Move", "$!GEOMETRY MOVE 1 X=2 Y=3"},
        Row{"Delete", "$!GEOMETRY DELETE 1"}, Row{"Zone", "$!ZONE 1 ACTIVE=NO"},
        Row{"Time", "$!TIME 0.5"}, Row{"Frame", "$!FRAME 1"}, Row{"Layer", "$!LAYER SHOWMESH=YES"},
        Row{"Open", "$!OPEN \"/nowhere/none.vtu\""}, Row{"Undo", "$!UNDO"}, Row{"Redo", "$!REDO"},
        Row{"LowerCase", "$!plottype cartesian2d"}),
    [](const auto& row) { return std::string(row.param.rule); });

class BadCommand : public ::testing::TestWithParam<Row> {};

TEST_P(BadCommand, IsRefusedWhenItIsParsed) {
  EXPECT_THAT(ParseError(GetParam().line), Not(IsEmpty()));
}

INSTANTIATE_TEST_SUITE_P(
    Rules, BadCommand,
    ::testing::Values(
        Row{"Unknown", "$!FROBNICATE"}, Row{"NoName", "$!"},
        Row{"NoPrefix", "PLOTTYPE CARTESIAN3D"}, Row{"UnknownPlotType", "$!PLOTTYPE CARTESIAN4D"},
        Row{"NoPlotType", "$!PLOTTYPE"}, Row{"EmptyView", "$!VIEW"},
        Row{"UnknownView", "$!VIEW NICE"}, Row{"AngleNoNumber", "$!VIEW PSI=up"},
        Row{"SurplusWord", "$!TIME 1 2"}, Row{"SurplusValue", "$!TIME 1 A=2"},
        Row{"NoRadius", "$!GEOMETRY CIRCLE X=0 Y=0"}, Row{"NoPoints", "$!GEOMETRY POLYLINE"},
        Row{"BadPoint", "$!GEOMETRY POLYLINE POINTS=\"0,0 1\""},
        Row{"SelectNothing", "$!GEOMETRY SELECT"}, Row{"ZoneNoNumber", "$!ZONE one ACTIVE=NO"},
        Row{"ZoneNoFlag", "$!ZONE 1"}, Row{"UnknownLayer", "$!LAYER SHOWSHINE=YES"},
        Row{"NoFile", "$!OPEN"}, Row{"BlankingOfNothing", "$!BLANKING VALUE{}"},
        Row{"UnknownBlankingSetting", "$!BLANKING VALUE{SHINE = 1}"},
        Row{"ConstraintSettingWithoutOne", "$!BLANKING VALUE{VARA = 1}"},
        Row{"NoConstraintNumber", "$!BLANKING VALUE{CONSTRAINT {VARA = 1}}"},
        Row{"ConstraintPastTheLast", "$!BLANKING VALUE{CONSTRAINT 9 {VARA = 1}}"},
        Row{"SurplusBlankingWord", "$!BLANKING VALUE{CONSTRAINT 1 2 {VARA = 1}}"},
        Row{"BrokenVariableNumber", "$!BLANKING VALUE{CONSTRAINT 1 {VARA = 1.5}}"},
        Row{"OtherBlanking", "$!BLANKING DEPTH{INCLUDE = NO}"},
        Row{"EmptyPoints", "$!GEOMETRY POLYLINE POINTS=\"\""},
        Row{"UnknownGeometry", "$!GEOMETRY TRIANGLE X=0 Y=0"},
        Row{"MoveWithoutPlace", "$!GEOMETRY MOVE 1 X=0"}, Row{"FitAndAngles", "$!VIEW FIT PSI=30"},
        Row{"UndoOfWhat", "$!UNDO 1"}, Row{"TimeNotFinite", "$!TIME inf"},
        Row{"BlanksForAFile", "$!OPEN   "}, Row{"NumberTooLarge", "$!FRAME 99999999999"}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(HostCommands, NameAnUnknownCommandInTheMessage) {
  EXPECT_EQ(ParseError("$!FROBNICATE now"), "there is no host command $!FROBNICATE");
}

TEST(HostCommands, AllHaveAHelpLine) {
  EXPECT_EQ(KnownHostCommands().size(), 11U);
  for (const HostCommandHelp& help : KnownHostCommands()) EXPECT_THAT(help.name, StartsWith("$!"));
}

class HostCommandsOnData : public ::testing::Test {
 protected:
  void SetUp() override {
    host.CloseAll();
    host.ShowDataSet(MakeData(2, 2, 2));
  }
  Host& host = Host::Instance();
};

TEST_F(HostCommandsOnData, ChangeWhatTheySay) {
  Frame& frame = *host.frames.Active();
  EXPECT_EQ(RunError("$!PLOTTYPE CARTESIAN2D"), "");
  EXPECT_EQ(frame.plotType, PlotType_Cartesian2D);
  EXPECT_EQ(RunError("$!VIEW PSI=60 THETA=240"), "");
  EXPECT_EQ(frame.view.psiDeg, 60);
  EXPECT_EQ(frame.view.thetaDeg, 240);
  EXPECT_EQ(RunError("$!ZONE 1 ACTIVE=NO"), "");
  EXPECT_FALSE(frame.Data()->FindZone(1)->active);
  EXPECT_EQ(RunError("$!TIME 0.5"), "");
  EXPECT_EQ(frame.solutionTime, 0.5);
}

TEST_F(HostCommandsOnData, DrawSelectMoveAndDeleteGeometries) {
  Frame& frame = *host.frames.Active();
  EXPECT_EQ(RunError("$!GEOMETRY CIRCLE X=1 Y=2 RADIUS=3"), "");
  ASSERT_NE(frame.geometries.At(1), nullptr);
  EXPECT_EQ(frame.geometries.At(1)->type, GeomType_Circle);
  EXPECT_EQ(frame.geometries.At(1)->size[0], 3);
  EXPECT_EQ(RunError("$!GEOMETRY MOVE 1 X=5 Y=6"), "");
  EXPECT_EQ(frame.geometries.At(1)->anchor[0], 5);
  EXPECT_EQ(RunError("$!GEOMETRY SELECT 1"), "");
  EXPECT_EQ(frame.picked.size(), 1U);
  EXPECT_EQ(RunError("$!GEOMETRY DELETE 1"), "");
  EXPECT_EQ(frame.geometries.Count(), 0);
  EXPECT_THAT(frame.picked, IsEmpty());
  EXPECT_THAT(RunError("$!GEOMETRY DELETE 1"), HasSubstr("there is no geometry 1"));
}

TEST_F(HostCommandsOnData, RefuseWhatDoesNotExistByName) {
  EXPECT_THAT(RunError("$!ZONE 7 ACTIVE=NO"), HasSubstr("there is no zone 7"));
  EXPECT_THAT(RunError("$!FRAME 7"), HasSubstr("there is no frame 7"));
  EXPECT_THAT(RunError("$!OPEN /nowhere/none.vtu"), HasSubstr("/nowhere/none.vtu"));
  EXPECT_THAT(RunError("$!UNDO"), HasSubstr("no history is kept"));
  EXPECT_THAT(RunError("$!REDO"), HasSubstr("no history is kept"));
  host.history.isKept = true;
  EXPECT_THAT(RunError("$!UNDO"), HasSubstr("there is nothing to undo"));
  EXPECT_THAT(RunError("$!REDO"), HasSubstr("there is nothing to redo"));
  host.history.isKept = false;
}

TEST(HostCommandsOfHistory, AreKnownByTheirName) {
  for (const char* line : {"$!UNDO", "$!redo", "$!Undo  ", "$!REDO\r\n"}) {
    EXPECT_TRUE(NeedsHistory(line)) << line;
  }
  for (const char* line : {"$!UNDOALL", "$!OPEN UNDO", "Marquell UNDOALTER", "UNDO", "$!", ""}) {
    EXPECT_FALSE(NeedsHistory(line)) << line;
  }
}

TEST_F(HostCommandsOnData, SetABlankingConstraintWithoutItsClosingBraces) {
  EXPECT_EQ(RunError("$!BLANKING VALUE{CONSTRAINT 2 {VARA = 4 RELOP = 3 VALUECUTOFF = 0.5"), "");
  const BlankConstraint& constraint = host.frames.Active()->styles.blanking.constraints[1];
  EXPECT_EQ(constraint.varA, 4);
  EXPECT_EQ(constraint.relOp, BlankRelOp_GreaterThan);
  EXPECT_EQ(constraint.cutoff, 0.5);
  EXPECT_EQ(RunError("$!BLANKING VALUE{INCLUDE = NO"), "");
  EXPECT_THAT(RunError("$!BLANKING VALUE{CONSTRAINT 2 {VARA = 5"),
              HasSubstr("VARA cannot be set to this value"));
  EXPECT_THAT(RunError("$!BLANKING VALUE{CONSTRAINT 2 {RELOP = 1e300"),
              HasSubstr("RELOP cannot be set to this value"));
}

TEST_F(HostCommandsOnData, TakeAFilesNameWithoutTheBlanksAroundIt) {
  EXPECT_THAT(RunError("$!OPEN  \"/nowhere/a b.vtu\" "), HasSubstr("/nowhere/a b.vtu:"));
  EXPECT_THAT(RunError("$!OPEN /nowhere/a b.vtu  "), HasSubstr("/nowhere/a b.vtu:"));
}

TEST_F(HostCommandsOnData, SwitchBlanking) {
  EXPECT_EQ(RunError("$!BLANKING VALUE{INCLUDE = YES"), "");
  EXPECT_TRUE(host.frames.Active()->styles.blanking.include);
  EXPECT_EQ(RunError("$!BLANKING VALUE{INCLUDE = NO}"), "");
  EXPECT_FALSE(host.frames.Active()->styles.blanking.include);
}

TEST_F(HostCommandsOnData, HoldTheLockInTheHostsNameWhileTheyTellOfIt) {
  static std::string owner;
  owner.clear();
  host.notices.AddCallback([](QelStateChange_t) { owner = Host::Instance().lock.Owner(); });
  EXPECT_EQ(RunError("$!TIME 0.25"), "");
  EXPECT_EQ(owner, "Workbench");
  EXPECT_FALSE(host.lock.IsOn());
}

}  // namespace
}  // namespace qelhost
