#include "CMacroEngine.h"
#include "PolyBoundary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qelvane::qelutiltools {
namespace {

/// Parses the line and hands it to the handler of its command word.
bool Carry(CPolyBoundary& boundary, const std::string& line) {
  MacroEngine.SetError("%s", "");
  MacroCommand command;
  EXPECT_TRUE(MacroEngine.ParseCommand(line.c_str(), command)) << MacroEngine.GlobalError();
  switch (command.Command) {
    case Command_PickRectangle:
      return boundary.PickRectangle(command);
    case Command_PickCircle:
      return boundary.PickCircle(command);
    default:
      return boundary.PickPolygon(command);
  }
}

struct PointRow {
  const char* rule;
  const char* line;
  double x;
  double y;
  bool isInside;
};

class CommandPoint : public ::testing::TestWithParam<PointRow> {};

TEST_P(CommandPoint, FollowsRule) {
  CPolyBoundary boundary;
  ASSERT_TRUE(Carry(boundary, GetParam().line)) << MacroEngine.GlobalError();
  EXPECT_EQ(boundary.IsInside(GetParam().x, GetParam().y), GetParam().isInside);
}

constexpr char kNegativeSize[] = "PICKRECTANGLE ANCHORX=10 ANCHORY=0 SIZEX=-4 SIZEY=2";
constexpr char kCircle[] = "PICKCIRCLE RADIUS=-5 ANCHORX=1 ANCHORY=1";
constexpr char kSevenNumbers[] = "PICKPOLYGON CORNERS=\"1,2,3,4,5,6,7\"";
constexpr char kOneString[] = "PICKPOLYGON CORNERS=\"0, 0,10, 0,10, 5\"";
constexpr char kStringEach[] = "PICKPOLYGON CORNERS=\"0, 0\",\"10, 0\",\"10, 5\"";
constexpr char kManyCommas[] = "PICKPOLYGON CORNERS=\",0,,0,10,,,0,10,5,,\"";
constexpr char kNoNumber[] = "PICKPOLYGON CORNERS=\"none,0,10,0,10,5\"";
constexpr char kOneCorner[] = "PICKPOLYGON CORNERS=\"1,2\"";
constexpr char kTwoCorners[] = "PICKPOLYGON CORNERS=\"0,0\",\"4,4\"";

INSTANTIATE_TEST_SUITE_P(
    Rules, CommandPoint,
    ::testing::Values(PointRow{"NegativeSizeStartsAtTheFarEdge", kNegativeSize, 6, 1, true},
                      PointRow{"NegativeSizeEndsAtTheAnchor", kNegativeSize, 10, 1, true},
                      PointRow{"NegativeSizeDoesNotReachBehindTheAnchor", kNegativeSize, 10.1, 1,
                               false},
                      PointRow{"NegativeSizeEndsAtItsLength", kNegativeSize, 5.9, 1, false},
                      PointRow{"NegativeRadiusActsAsItsAbsoluteValue", kCircle, 4, 5, true},
                      PointRow{"CircleEndsAtItsRadius", kCircle, 4.1, 5, false},
                      PointRow{"OneStringHoldsAllCorners", kOneString, 9, 1, true},
                      PointRow{"OneStringEndsAtItsEdge", kOneString, 1, 1, false},
                      PointRow{"AStringEachHoldsTheSame", kStringEach, 9, 1, true},
                      PointRow{"AStringEachEndsAtTheSameEdge", kStringEach, 1, 1, false},
                      PointRow{"RunsOfCommasCountAsOne", kManyCommas, 9, 1, true},
                      PointRow{"TextThatIsNoNumberIsZero", kNoNumber, 9, 1, true},
                      PointRow{"OneCornerHoldsNothing", kOneCorner, 1, 2, false},
                      PointRow{"TwoCornersHoldNothing", kTwoCorners, 2, 2, false}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(PolyBoundaryCommands, ThreeCornersOnALineOfSevenNumbersAreTakenAndDefineNothing) {
  CPolyBoundary boundary;
  EXPECT_TRUE(Carry(boundary, kSevenNumbers));
  EXPECT_FALSE(boundary.IsDefined());
  EXPECT_FALSE(boundary.IsInside(3, 4));
}

TEST(PolyBoundaryCommands, TooFewCornersSucceedAndLeaveAnUndefinedBoundary) {
  CPolyBoundary boundary;
  ASSERT_TRUE(boundary.SetRectangle(0, 0, 5, 5));
  EXPECT_TRUE(Carry(boundary, kOneCorner));
  EXPECT_FALSE(boundary.IsDefined());
}

struct CommandFaultRow {
  const char* rule;
  const char* line;
  const char* message;
};

class CommandFault : public ::testing::TestWithParam<CommandFaultRow> {};

TEST_P(CommandFault, IsReportedAndKeepsTheBoundary) {
  CPolyBoundary boundary;
  ASSERT_TRUE(boundary.SetRectangle(0, 0, 1, 1));
  EXPECT_FALSE(Carry(boundary, GetParam().line));
  EXPECT_EQ(MacroEngine.GlobalError(), GetParam().message);
  EXPECT_TRUE(boundary.IsRectangle());
  EXPECT_TRUE(boundary.IsInside(1, 1));
}

INSTANTIATE_TEST_SUITE_P(
    Rules, CommandFault,
    ::testing::Values(
        CommandFaultRow{"RectangleRefusesRadius", "PICKRECTANGLE ANCHORX=0 RADIUS=1",
                        "Bad value for parameter in PICKRECTANGLE macro"},
        CommandFaultRow{"RectangleRefusesText", "PICKRECTANGLE ANCHORX=\"0\"",
                        "Bad value for parameter in PICKRECTANGLE macro"},
        CommandFaultRow{"RectangleNeedsItsWidth", "PICKRECTANGLE ANCHORX=0 ANCHORY=0 SIZEY=1",
                        "Missing parameter in PICKRECTANGLE macro"},
        CommandFaultRow{"RectangleNeedsItsHeight", "PICKRECTANGLE ANCHORX=0 ANCHORY=0 SIZEX=1",
                        "Missing parameter in PICKRECTANGLE macro"},
        CommandFaultRow{"RectangleNeedsItsAnchor", "PICKRECTANGLE ANCHORX=0 SIZEX=1 SIZEY=1",
                        "Missing parameter in PICKRECTANGLE macro"},
        CommandFaultRow{"RectangleTakesTheAbsentNumberAsAbsent",
                        "PICKRECTANGLE ANCHORX=-9.99e99 ANCHORY=0 SIZEX=1 SIZEY=1",
                        "Missing parameter in PICKRECTANGLE macro"},
        CommandFaultRow{"CircleRefusesSize", "PICKCIRCLE ANCHORX=0 ANCHORY=0 SIZEX=1",
                        "Bad value for parameter in PICKCIRCLE macro"},
        CommandFaultRow{"CircleRefusesABoolean", "PICKCIRCLE RADIUS=YES",
                        "Bad value for parameter in PICKCIRCLE macro"},
        CommandFaultRow{"CircleNeedsItsRadius", "PICKCIRCLE ANCHORX=0 ANCHORY=0",
                        "Missing parameter in PICKCIRCLE macro"},
        CommandFaultRow{"PolygonRefusesAnAnchor", "PICKPOLYGON ANCHORX=0",
                        "Bad value for parameter in PICKPOLYGON macro"},
        CommandFaultRow{"PolygonRefusesANumber", "PICKPOLYGON CORNERS=1",
                        "Bad value for parameter in PICKPOLYGON macro"},
        CommandFaultRow{"PolygonNeedsCorners", "PICKPOLYGON",
                        "Missing parameter in PICKPOLYGON macro"},
        CommandFaultRow{"PolygonNeedsACornerInThem", "PICKPOLYGON CORNERS=\"\"",
                        "Missing parameter in PICKPOLYGON macro"},
        CommandFaultRow{"PolygonDropsAnUnpairedNumber", "PICKPOLYGON CORNERS=\"5\"",
                        "Missing parameter in PICKPOLYGON macro"}),
    [](const auto& row) { return std::string(row.param.rule); });

}  // namespace
}  // namespace qelvane::qelutiltools
