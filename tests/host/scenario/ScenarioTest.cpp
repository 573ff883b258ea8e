// Stories from menu to values, each played back from what was recorded.
#include "Props.h"
#include "User.h"

#include "DataSetFiles.h"
#include "Journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace scenario {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

double Sum(const std::vector<double>& values) {
  double sum = 0;
  for (const double value : values) sum += value;
  return sum;
}

/// Values of a variable of the active frame's first zone.
std::vector<double> Values(const User& user, const std::string& name) {
  qelhost::DataSet& data = *user.host.frames.Active()->Data();
  const LgIndex_t var = data.VariableNumber(name);
  return var == 0 ? std::vector<double>() : ValuesOf(data)[static_cast<std::size_t>(var - 1)];
}

TEST(Story, AltersInARectangleAndTakesItBack) {
  User user(OnePlate);
  const auto before = Values(user, "p");
  user.OpenDialog();
  EXPECT_FALSE(user.IsSensitive("Undo last alter"));
  user.ChooseVariable("p");
  user.EnterModifier("*2");
  user.Tool(kRectangleTool);
  EXPECT_EQ(user.host.interaction.mouseMode, Mouse_GeomRectangle);
  EXPECT_FALSE(user.IsSensitive("Apply Alteration")) << "nothing is drawn yet";
  user.Draw("RECTANGLE X=0.5 Y=0.5 WIDTH=3 HEIGHT=2");
  user.Press("Apply Alteration");
  EXPECT_NE(Values(user, "p"), before);
  EXPECT_TRUE(user.IsSensitive("Undo last alter"));
  user.Press("Undo last alter");
  EXPECT_EQ(Values(user, "p"), before);
  EXPECT_FALSE(user.IsSensitive("Undo last alter"));
  user.Press("Apply Alteration");
  EXPECT_THAT(user.Journal(),
              ElementsAre("# marquell journal 1", "Marquell PICKGEOMETRY",
                          "$!GEOMETRY RECTANGLE X=0.5 Y=0.5 WIDTH=3 HEIGHT=2",
                          "Marquell PICKRECTANGLE ANCHORX=0.5 ANCHORY=0.5 SIZEX=3 SIZEY=2",
                          "Marquell ALTERAREA VARIABLE=\"p\" MODIFIER=\"*2\" RULE=ALLINSIDE",
                          "Marquell PICKRECTANGLE ANCHORX=0.5 ANCHORY=0.5 SIZEX=3 SIZEY=2",
                          "Marquell UNDOALTER",
                          "Marquell PICKRECTANGLE ANCHORX=0.5 ANCHORY=0.5 SIZEX=3 SIZEY=2",
                          "Marquell ALTERAREA VARIABLE=\"p\" MODIFIER=\"*2\" RULE=ALLINSIDE"));
  user.ExpectReplayGivesTheSame();
}

TEST(Story, HidesInABoxThatWasSpun) {
  User user(OneCube);
  user.OpenDialog();
  user.Page(2);
  EXPECT_GT(user.host.frames.Active()->Data()->VariableNumber("PICK_BLANK"), 0);
  user.Tool(kCubeTool);
  EXPECT_EQ(user.host.frames.Active()->Data()->FindZone(2)->name, "PICKING_CUBE");
  for (const int field : {kAnchorX, kAnchorY, kAnchorZ}) user.EnterNumber(field, "0.5");
  for (const int field : {kSizeX, kSizeY, kSizeZ}) user.EnterNumber(field, "2.75");
  user.Spin(kRotateZ, true);
  EXPECT_EQ(user.FieldText(kRotateZ), "5");
  user.AnswerNext(true);
  user.Press("Apply Blanking");
  EXPECT_THAT(user.Said(), Contains(HasSubstr("Value blanking must be on")));
  EXPECT_TRUE(user.host.frames.Active()->styles.blanking.include);
  EXPECT_GT(Sum(Values(user, "PICK_BLANK")), 0.0);
  user.Press("Undo all pick blanks");
  EXPECT_EQ(Sum(Values(user, "PICK_BLANK")), 0.0);
  user.ChooseItem("Any");
  user.Press("Apply Blanking");
  EXPECT_GT(Sum(Values(user, "PICK_BLANK")), 0.0);
  user.ExpectReplayGivesTheSame();
}

TEST(Story, HiddenCellsAreLeftAloneAfterwards) {
  User user(OneCube);
  user.OpenDialog();
  user.ChooseVariable("c");
  user.Page(2);
  user.Tool(kSphereTool);
  for (const int field : {kCenterX, kCenterY, kCenterZ}) user.EnterNumber(field, "1");
  user.EnterNumber(kRadius, "1.5");
  user.Toggle("Include Blanking", true);
  user.ChooseItem("Any");
  user.Press("Apply Blanking");
  const auto hidden = Values(user, "PICK_BLANK");
  const auto before = Values(user, "c");
  user.Page(1);
  user.EnterModifier("+100");
  user.EnterNumber(kRadius, "9");
  user.Press("Apply Alteration");
  const auto after = Values(user, "c");
  ASSERT_GT(Sum(hidden), 0.0);
  for (std::size_t cell = 0; cell < before.size(); ++cell) {
    EXPECT_EQ(after[cell], before[cell] + (hidden[cell] == 1.0 ? 0.0 : 100.0)) << cell;
  }
  user.ExpectReplayGivesTheSame();
}

TEST(Story, PicksOneCellAndOneNode) {
  User user(OneCube);
  user.OpenDialog();
  user.ChooseVariable("c");
  user.EnterModifier("=-3");
  user.Tool(kElementTool);
  user.Click(1, 7, 3, false);
  EXPECT_EQ(Values(user, "c")[6], -3.0);
  user.Click(1, 8, 3, true);
  EXPECT_THAT(user.Said(), ElementsAre(HasSubstr("You have chosen a cell centered variable")));
  user.ChooseVariable("p");
  user.EnterModifier("+0.5");
  user.Click(1, 8, 3, true);
  user.Press("Undo last alter");
  user.Click(1, 8, 4, true);
  user.ExpectReplayGivesTheSame();
}

TEST(Story, StaysOnTheSurface) {
  User user(OneCube);
  user.OpenDialog();
  user.ChooseVariable("p");
  user.EnterModifier("*3");
  user.Tool(kCircleTool);
  user.Draw("CIRCLE X=0 Y=0 RADIUS=1.6");
  user.ChooseItem("Surface only");
  user.Press("Apply Alteration");
  EXPECT_EQ(user.host.interaction.mouseMode, Mouse_Probe);
  user.Click(1, 1, 1, false);
  EXPECT_THAT(user.Said(), ElementsAre("You must use Ctrl + Click to select a single seed point."));
  const auto before = Values(user, "p");
  user.Click(1, 1, 13, true);  // the middle of the lowest layer
  EXPECT_NE(Values(user, "p"), before);
  EXPECT_THAT(user.Journal(), Contains(HasSubstr("Marquell ALTERSURFACE ")));
  user.Press("Undo last alter");
  EXPECT_EQ(Values(user, "p"), before);
  user.ChooseItem("Tunnel through");
  user.ExpectReplayGivesTheSame();
}

TEST(Story, TurnsTheViewAndCutsAPolygon) {
  User user(OneCube);
  user.OpenDialog();
  user.ChooseVariable("c");
  user.EnterModifier("-2.5");
  user.Press(" XZ ");
  user.Tool(kPolygonTool);
  user.Draw("POLYLINE X=-1.75 Y=-1.75 POINTS=\"0,0 3.5,0 1.75,1.25 0,3.5\"");
  user.ChooseItem("Any");
  user.Press("Apply Alteration");
  user.Press(" 3D ");
  user.Do("$!VIEW PSI=30 ALPHA=20 THETA=10");
  EXPECT_FALSE(user.IsSensitive("Undo last alter")) << "the area is seen from elsewhere now";
  user.Press("Apply Alteration");
  user.Press(" YZ ");
  user.Press(" XY ");
  user.Press("Apply Alteration");
  user.ExpectReplayGivesTheSame();
}

TEST(Story, GoesFromFrameToFrameAndClosesTheData) {
  User user(TwoCubes);
  user.OpenDialog();
  user.ChooseVariable("p");
  user.EnterModifier("+1");
  user.Tool(kCubeTool);
  user.Press("Apply Alteration");
  EXPECT_EQ(user.host.frames.Active()->Data()->ZoneCount(), 2);
  user.Do("$!FRAME 2");
  EXPECT_TRUE(user.IsDialogUp()) << "it follows to data of the same kind";
  EXPECT_EQ(user.host.frames.At(1)->Data()->ZoneCount(), 1) << "the box went with its session";
  user.ChooseVariable("c");
  user.EnterModifier("*4");
  user.Tool(kRectangleTool);
  user.Draw("RECTANGLE X=-2.5 Y=-2.5 WIDTH=2 HEIGHT=9");
  user.Press("Apply Alteration");
  user.Do("$!FRAME 1");
  user.Tool(kSphereTool);
  user.Press("Apply Alteration");
  user.ExpectReplayGivesTheSame();
  user.OpenDialog();
  user.CloseEverything();
  EXPECT_FALSE(user.IsDialogUp());
}

TEST(Story, OpensTheDialogAnewInAPlotOfAnotherKind) {
  User user(CubeAndPlate);
  user.OpenDialog();
  user.ChooseVariable("p");
  user.EnterModifier("+1");
  user.Tool(kCubeTool);
  user.Press("Apply Alteration");
  user.Do("$!FRAME 2");
  EXPECT_FALSE(user.IsDialogUp());
  EXPECT_EQ(user.host.frames.At(1)->Data()->ZoneCount(), 1) << "no box without a dialog";
  user.OpenDialog();
  user.ChooseVariable("c");
  user.EnterModifier("*4");
  user.Tool(kRectangleTool);
  user.Draw("RECTANGLE X=0 Y=0 WIDTH=2 HEIGHT=9");
  user.Press("Apply Alteration");
  user.ExpectReplayGivesTheSame();
}

TEST(Story, ClosesAndReopensWhereItWas) {
  User user(OneCube);
  user.OpenDialog();
  user.ChooseVariable("p");
  user.Page(2);
  user.Tool(kCubeTool);
  user.CloseDialog();
  EXPECT_FALSE(user.IsDialogUp());
  EXPECT_EQ(user.host.frames.Active()->Data()->ZoneCount(), 1) << "no box without a dialog";
  user.OpenDialog();
  EXPECT_EQ(user.host.interaction.mouseMode, Mouse_Select);
  user.Tool(kSphereTool);
  user.AnswerNext(false);
  user.Press("Apply Blanking");
  user.Do("$!PLOTTYPE POLAR");
  EXPECT_FALSE(user.IsDialogUp()) << "nothing can be picked in such a plot";
  EXPECT_THAT(user.host.helpAsked, IsEmpty());
  user.Do("$!PLOTTYPE CARTESIAN3D");
  user.OpenDialog();
  user.AskForHelp();
  EXPECT_THAT(user.host.helpAsked, ElementsAre("selvane.html"));
  user.ExpectReplayGivesTheSame();
  user.host.Quit();
}

std::string BytesOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(Story, MakesTheSameFileInTheWindowAndOnTheCommandLine) {
  const std::string input = std::string(MARQUELL_EXAMPLES) + "/part/gmsh_part.vtu";
  std::string pattern = testing::TempDir() + "marquell-story-XXXXXX";
  const std::filesystem::path folder = mkdtemp(pattern.data());
  const std::string byHand = (folder / "by-hand.vtu").string();
  const std::string journal = (folder / "session.journal").string();
  const std::string played = (folder / "played.vtu").string();
  {
    User user([&] { return std::vector<qelhost::DataSetPtr>{qelhost::ReadDataSet(input)}; });
    user.OpenDialog();
    user.ChooseVariable("phi");
    user.EnterModifier("*1.5");
    user.Tool(kRectangleTool);
    user.Draw("RECTANGLE X=-0.6 Y=-0.35 WIDTH=0.9 HEIGHT=0.5");
    user.Press("Apply Alteration");
    user.Press("Undo last alter");
    user.Press("Apply Alteration");
    user.Page(2);
    user.Press(" XZ ");
    user.Tool(kCubeTool);
    user.EnterNumber(kSizeX, "0.75");
    user.Spin(kRotateZ, false);
    user.ChooseItem("Any");
    user.AnswerNext(true);
    user.Press("Apply Blanking");
    qelhost::WriteDataSet(*user.host.frames.Active()->Data(), byHand);
    qelhost::WriteJournal(journal, user.Journal());
  }
  const std::string command = std::string(MARQUELL_PROGRAM) + " run " + journal + " " + input +
                              " -o " + played + " --force";
  ASSERT_EQ(std::system(command.c_str()), 0) << BytesOf(journal);
  EXPECT_FALSE(BytesOf(byHand).empty());
  EXPECT_EQ(BytesOf(played), BytesOf(byHand));
  EXPECT_NE(BytesOf(played), BytesOf(input));
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace scenario
