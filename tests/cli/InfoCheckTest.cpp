// What marquell info prints, what marquell check finds, and the options of the program itself.
#include "Meshes.h"
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace clitests {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

TEST(Info, NamesZonesAndVariables) {
  const TestFolder folder;
  const std::string file = folder.Path("in.vts");
  WriteMesh(MakeMesh(MeshKind::kStructured), file);
  const Outcome outcome = RunProgram({"info", file});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, ContainsRegex("ordered +5 x 4 x 4, 80 nodes, 36 cells"));
  EXPECT_THAT(outcome.out, ContainsRegex("p +nodes +1 +20.75\n"));
  EXPECT_THAT(outcome.out, ContainsRegex("both .cell. +cells +5 +13.75\n"));
}

TEST(Info, JsonSaysWhatTheFileHolds) {
  const TestFolder folder;
  const std::string file = folder.Path("in.vtm");
  WriteMesh(MakeMesh(MeshKind::kBlocks), file);
  const Outcome outcome = RunProgram({"info", "--json", file});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto json = nlohmann::json::parse(outcome.out);
  ASSERT_EQ(json.size(), 1u);
  const auto& zones = json[0]["zones"];
  ASSERT_EQ(zones.size(), 2u);
  EXPECT_EQ(zones[0]["type"], "bricks");
  EXPECT_EQ(zones[0]["nodes"], 80);
  EXPECT_EQ(zones[0]["cells"], 36);
  EXPECT_EQ(zones[1]["type"], "ordered");
  EXPECT_EQ(zones[1]["size"], nlohmann::json::array({5, 4, 4}));
}

TEST(Info, CountsWhatIsCarriedThrough) {
  const TestFolder folder;
  const std::string file = folder.Path("in.vtu");
  WriteMesh(MakeMesh(MeshKind::kMixed), file);
  const Outcome outcome = RunProgram({"info", "--json", file});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto zone = nlohmann::json::parse(outcome.out)[0]["zones"][0];
  // 18 bricks with a quadrilateral each, 18 pairs of wedges with a line each.
  EXPECT_EQ(zone["cells"], 18 + 2 * 18);
  const auto& carried = zone["carried"];
  EXPECT_EQ(carried.value("lowerDimensionCells", 0), 36) << carried;
}

TEST(Info, TimeStepsGiveStrands) {
  const Outcome outcome =
      RunProgram({"info", "--json", std::string(MARQUELL_EXAMPLES) + "/flange/flange.pvd"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  const auto zones = nlohmann::json::parse(outcome.out)[0]["zones"];
  ASSERT_EQ(zones.size(), 15u);
  for (std::size_t i = 0; i < zones.size(); ++i) {
    EXPECT_GT(zones[i]["strand"].get<int>(), 0);
    EXPECT_EQ(zones[i]["strand"], zones[i % 5]["strand"]);
    EXPECT_EQ(zones[i]["solutionTime"], static_cast<double>(i / 5 + 1));
  }
  EXPECT_EQ(zones[0]["type"], "polyhedra");
}

TEST(Check, AcceptsAGoodJournal) {
  const TestFolder folder;
  const std::string journal = folder.Write(
      "good.journal",
      "# marquell journal 1\n$!PLOTTYPE CARTESIAN3D\nMarquell PICKCIRCLE ANCHORX=0 ANCHORY=0 "
      "RADIUS=1\n");
  const Outcome outcome = RunProgram({"check", journal});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(outcome.out, journal + ": 2 commands, none bad\n");
  EXPECT_EQ(RunProgram({"check", "--quiet", journal}).out, "");
}

TEST(Check, ReportsEveryBadLineWithItsNumber) {
  const TestFolder folder;
  const std::string journal = folder.Write("bad.journal",
                                           "$!PLOTTYPE NOWHERE\n"
                                           "# fine\n"
                                           "Marquell PICKNOTHING\n"
                                           "Marquell UNDOALTER\n"
                                           "Nobody UNDOALTER\n");
  const Outcome outcome = RunProgram({"check", journal});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(LineCount(outcome.err), 3) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr("bad.journal:1: $!PLOTTYPE NOWHERE: "));
  EXPECT_THAT(outcome.err, HasSubstr("bad.journal:3: Marquell PICKNOTHING: "));
  EXPECT_THAT(outcome.err, HasSubstr("bad.journal:5: Nobody UNDOALTER: "));
}

TEST(Check, WarnsWhereUndoingBlanksWouldEraseTheAlteredVariable) {
  const TestFolder folder;
  const std::string journal = folder.Write("undo.journal",
                                           "Marquell UNDOBLANK\n"
                                           "Marquell BLANKAREA RULE=ALLINSIDE\n"
                                           "Marquell UNDOBLANK\n"
                                           "Marquell ALTERAREA VARIABLE=\"p\"\n"
                                           "Marquell PICKCIRCLE ANCHORX=0 ANCHORY=0 RADIUS=1\n"
                                           "Marquell UNDOBLANK\n");
  const Outcome outcome = RunProgram({"check", journal, journal});
  EXPECT_EQ(outcome.exitCode, 0) << "a warning is no fault";
  // Once for each of the two journals: what one left behind says nothing about the next.
  EXPECT_EQ(LineCount(outcome.err), 2) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr("undo.journal:6: Marquell UNDOBLANK: warning: UNDOBLANK after "
                                     "an ALTER command sets the altered variable to 0"));
}

TEST(Check, AcceptsTheExamples) {
  const std::string examples = MARQUELL_EXAMPLES;
  const Outcome outcome =
      RunProgram({"check", examples + "/pitzDaily/edits.journal",
                  examples + "/flange/coolant.journal", examples + "/part/trim.journal"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
}

TEST(Program, SaysItsVersionAndItsOptions) {
  EXPECT_THAT(RunProgram({"--version"}).out, StartsWith("marquell "));
  const Outcome help = RunProgram({"--help"});
  EXPECT_EQ(help.exitCode, 0);
  for (const char* word : {"run", "info", "check", ".vtu", ".exo"}) {
    EXPECT_THAT(help.out, HasSubstr(word));
  }
  EXPECT_THAT(RunProgram({"run", "--help"}).out, HasSubstr("--keep-going"));
}

}  // namespace clitests
