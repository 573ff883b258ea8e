#include "NumberAttributes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qelvane::qelutiltools {
namespace {

using ::testing::ElementsAre;

/// Reads a command whose radius may be given under two names and whose angle has a default.
bool Read(const std::string& line, std::vector<double>& values) {
  MacroEngine.SetError("%s", "");
  MacroCommand command;
  EXPECT_TRUE(MacroEngine.ParseCommand(line, command)) << MacroEngine.GlobalError();
  double anchor = 1.0;
  double radius = 2.0;
  double angle = 3.0;
  constexpr bool kRequired = true;
  const bool isRead = ReadNumberAttributes(command, {{Attribute_AnchorX, &anchor},
                                                     {Attribute_Radius, &radius},
                                                     {Attribute_SizeX, &radius},
                                                     {Attribute_RotateX, &angle, !kRequired, 0.0}});
  values = {anchor, radius, angle};
  return isRead;
}

TEST(NumberAttributes, TakeTheValuesGivenInAnyOrder) {
  std::vector<double> values;
  EXPECT_TRUE(Read("PICKSPHERE ROTATEX=30 RADIUS=4 ANCHORX=-1.5", values));
  EXPECT_THAT(values, ElementsAre(-1.5, 4.0, 30.0));
}

TEST(NumberAttributes, HoldTheDefaultOfWhatNeedNotBeGiven) {
  std::vector<double> values;
  EXPECT_TRUE(Read("PICKSPHERE ANCHORX=1 RADIUS=4", values));
  EXPECT_THAT(values, ElementsAre(1.0, 4.0, 0.0));
}

TEST(NumberAttributes, TakeTheLaterOfTwoNamesForOneValue) {
  std::vector<double> values;
  EXPECT_TRUE(Read("PICKSPHERE ANCHORX=1 RADIUS=4 SIZEX=6", values));
  EXPECT_THAT(values, ElementsAre(1.0, 6.0, 0.0));
  EXPECT_TRUE(Read("PICKSPHERE ANCHORX=1 SIZEX=6 RADIUS=4", values));
  EXPECT_THAT(values, ElementsAre(1.0, 4.0, 0.0));
  EXPECT_TRUE(Read("PICKSPHERE ANCHORX=1 RADIUS=4 RADIUS=5", values));
  EXPECT_THAT(values, ElementsAre(1.0, 5.0, 0.0));
}

struct FaultRow {
  const char* rule;
  const char* line;
  const char* message;
};

class NumberFault : public ::testing::TestWithParam<FaultRow> {};

TEST_P(NumberFault, NamesTheCommand) {
  std::vector<double> values;
  EXPECT_FALSE(Read(GetParam().line, values));
  EXPECT_EQ(MacroEngine.GlobalError(), GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, NumberFault,
    ::testing::Values(FaultRow{"RefusesWhatHasNoSlot", "PICKSPHERE ANCHORX=1 RADIUS=4 ZONE=1",
                               "Bad value for parameter in PICKSPHERE macro"},
                      FaultRow{"RefusesAKeyword", "PICKCUBE ANCHORX=SPHERE",
                               "Bad value for parameter in PICKCUBE macro"},
                      FaultRow{"StopsAtTheFirstFault", "PICKCUBE ZONE=1",
                               "Bad value for parameter in PICKCUBE macro"},
                      FaultRow{"MissesTheAnchor", "PICKCUBE RADIUS=4 ROTATEX=1",
                               "Missing parameter in PICKCUBE macro"},
                      FaultRow{"MissesTheRadiusUnderBothNames", "PICKSPHERE ANCHORX=1",
                               "Missing parameter in PICKSPHERE macro"}),
    [](const auto& row) { return std::string(row.param.rule); });

TEST(NumberAttributes, ReportEachFaultWithTheCommandsKeyword) {
  MacroCommand command;
  command.Command = Command_PickRectangle;
  ReportInvalidParameter(command);
  EXPECT_EQ(MacroEngine.GlobalError(), "Invalid parameter in the PICKRECTANGLE command");
  ReportBadValue(command);
  EXPECT_EQ(MacroEngine.GlobalError(), "Bad value for parameter in PICKRECTANGLE macro");
  ReportMissingParameter(command);
  EXPECT_EQ(MacroEngine.GlobalError(), "Missing parameter in PICKRECTANGLE macro");
}

}  // namespace
}  // namespace qelvane::qelutiltools
