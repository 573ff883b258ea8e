// The window's undo and redo beside the add-on's own.
#include "Props.h"
#include "User.h"

#include "DataSetFiles.h"
#include "History.h"
#include "HostCommands.h"
#include "PickPreview.h"
#include "Player.h"
#include "UserActions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace scenario {
namespace {

using namespace qelhost;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using AllValues = std::vector<std::vector<double>>;

DataSet& Active(const User& user) { return *user.host.frames.Active()->Data(); }
AllValues Now(const User& user) { return ValuesOf(Active(user)); }

std::vector<std::string> UndoNames(const User& user) {
  return user.host.history.UndoNames(Active(user).Id());
}

/// As many variables as there were before one was added.
AllValues FirstOf(AllValues values, std::size_t count) {
  values.resize(std::min(count, values.size()));
  return values;
}

void AlterInARectangle(User& user, const char* variable, const char* modifier) {
  user.ChooseVariable(variable);
  user.EnterModifier(modifier);
  user.Tool(kRectangleTool);
  user.Draw("RECTANGLE X=0.5 Y=0.5 WIDTH=3 HEIGHT=2");
  user.Press("Apply Alteration");
}

TEST(History, TakesBackWhatEachDeedAlteredAndReplaysTheSame) {
  User user(OnePlate);
  std::vector<AllValues> states = {Now(user)};
  user.OpenDialog();
  AlterInARectangle(user, "p", "*3");
  states.push_back(Now(user));
  user.EnterModifier("=-0.5");
  user.Press("Apply Alteration");
  states.push_back(Now(user));
  user.ChooseVariable("c");
  user.EnterModifier("/7");
  user.Press("Apply Alteration");
  states.push_back(Now(user));
  EXPECT_THAT(UndoNames(user),
              ElementsAre("Apply Alteration: c", "Apply Alteration: p", "Apply Alteration: p"));
  for (const std::size_t n : {2U, 1U, 0U}) {
    UndoLast(user.host);
    EXPECT_EQ(Now(user), states[n]) << "an assignment cannot be inverted, only put back";
  }
  EXPECT_THROW(UndoLast(user.host), CommandError);
  for (const std::size_t n : {1U, 2U}) {
    RedoLast(user.host);
    EXPECT_EQ(Now(user), states[n]);
  }
  user.Press("Apply Alteration");
  EXPECT_THROW(RedoLast(user.host), CommandError);
  user.ExpectReplayGivesTheSame();
}

TEST(History, OfTheAddOnAndOfTheWindowReplayTogether) {
  User user(OneCube);
  user.OpenDialog();
  AlterInARectangle(user, "p", "*1.1");
  user.Press("Undo last alter");
  const AllValues undone = Now(user);
  UndoLast(user.host);
  RedoLast(user.host);
  EXPECT_EQ(Now(user), undone);
  user.Press("Apply Alteration");
  EXPECT_TRUE(user.IsSensitive("Undo last alter"));
  UndoLast(user.host);
  EXPECT_FALSE(user.IsSensitive("Undo last alter")) << "what it would take back is gone";
  user.EnterModifier("+1");
  user.Press("Apply Alteration");
  user.Press("Undo last alter");
  UndoLast(user.host);
  UndoLast(user.host);
  EXPECT_EQ(Now(user), undone);
  EXPECT_THAT(user.Journal(), Contains("$!UNDO").Times(4));
  EXPECT_THAT(user.Journal(), Contains("Marquell UNDOALTER").Times(2));
  user.ExpectReplayGivesTheSame();
}

TEST(History, OfHiddenCellsLeavesTheVariableAtZero) {
  User user(OneCube);
  const AllValues before = Now(user);
  user.OpenDialog();
  user.Page(2);
  user.Tool(kSphereTool);
  user.Toggle("Include Blanking", true);
  user.ChooseItem("Any");
  user.Press("Apply Blanking");
  const auto isHidden = [&user] {
    const BlankedItems* const blanked = user.host.frames.Active()->Blanked(1);
    return blanked != nullptr &&
           std::any_of(blanked->cells.words.begin(), blanked->cells.words.end(),
                       [](std::uint64_t word) { return word != 0; });
  };
  EXPECT_THAT(UndoNames(user), ElementsAre("Apply Blanking: PICK_BLANK"));
  EXPECT_TRUE(isHidden());
  UndoLast(user.host);
  EXPECT_FALSE(isHidden());
  EXPECT_EQ(FirstOf(Now(user), before.size()), before);
  RedoLast(user.host);
  EXPECT_TRUE(isHidden());
  user.Press("Undo all pick blanks");
  EXPECT_FALSE(isHidden());
  UndoLast(user.host);
  EXPECT_TRUE(isHidden());
  user.ExpectReplayGivesTheSame();
}

/// The bits of the cells that a preview shows in the first zone.
std::vector<bool> PreviewOfCells(const User& user) {
  const PickPreview preview = AskForPick(user.host);
  std::vector<bool> cells;
  if (preview.zones.empty()) return cells;
  EXPECT_EQ(preview.zones[0].location, ValueLocation_CellCentered);
  for (std::int64_t cell = 0; cell < preview.zones[0].items.count; ++cell) {
    cells.push_back(preview.zones[0].items.Has(cell));
  }
  return cells;
}

TEST(Preview, ShowsWhatApplyingChangesAndNoHiddenCell) {
  User user(OneCube);
  const auto cellValues = [&user] {
    return ValuesOf(Active(user))[static_cast<std::size_t>(Active(user).VariableNumber("c") - 1)];
  };
  user.OpenDialog();
  user.ChooseVariable("c");
  user.Page(2);
  user.Tool(kSphereTool);
  for (const int field : {kCenterX, kCenterY, kCenterZ}) user.EnterNumber(field, "1");
  user.EnterNumber(kRadius, "1.5");
  user.Toggle("Include Blanking", true);
  user.ChooseItem("Any");
  user.Press("Apply Blanking");
  const BlankedItems hidden = *user.host.frames.Active()->Blanked(1);
  user.Page(1);
  user.EnterModifier("+100");
  user.Tool(kRectangleTool);
  user.Draw("RECTANGLE X=-10 Y=-10 WIDTH=20 HEIGHT=20");
  const std::vector<bool> shown = PreviewOfCells(user);
  const auto before = cellValues();
  const std::size_t linesBefore = user.Journal().size();
  EXPECT_EQ(PreviewOfCells(user), shown);
  EXPECT_EQ(cellValues(), before) << "asking changes nothing";
  EXPECT_EQ(user.Journal().size(), linesBefore);
  user.Press("Apply Alteration");
  const auto after = cellValues();
  ASSERT_EQ(shown.size(), before.size());
  std::int64_t hiddenCount = 0;
  for (std::size_t cell = 0; cell < before.size(); ++cell) {
    const bool isHidden = hidden.cells.Has(static_cast<std::int64_t>(cell));
    hiddenCount += isHidden ? 1 : 0;
    EXPECT_EQ(shown[cell], after[cell] != before[cell]) << cell;
    EXPECT_EQ(shown[cell], !isHidden) << cell;
  }
  EXPECT_GT(hiddenCount, 0);
  EXPECT_EQ(
      Describe(AskForPick(user.host)),
      std::to_string(static_cast<std::int64_t>(before.size()) - hiddenCount) + " cells in 1 zone");
}

TEST(History, OfOneCellIsOneClick) {
  User user(OneCube);
  const AllValues before = Now(user);
  user.OpenDialog();
  user.ChooseVariable("c");
  user.EnterModifier("+4");
  user.Tool(kElementTool);
  user.Click(1, 5, 9, false);
  user.Click(1, 6, 9, false);
  EXPECT_THAT(UndoNames(user), ElementsAre("Click in the plot: c", "Click in the plot: c"));
  UndoLast(user.host);
  UndoLast(user.host);
  EXPECT_EQ(Now(user), before);
  user.ExpectReplayGivesTheSame();
}

TEST(History, BelongsToTheDataSetOfTheActiveFrame) {
  User user(TwoCubes);
  const AllValues first = Now(user);
  user.OpenDialog();
  AlterInARectangle(user, "p", "*2");
  user.Do("$!FRAME 2");
  const AllValues second = Now(user);
  EXPECT_THROW(UndoLast(user.host), CommandError);
  user.OpenDialog();
  AlterInARectangle(user, "c", "=3");
  UndoLast(user.host);
  EXPECT_EQ(Now(user), second);
  RedoLast(user.host);
  user.Do("$!FRAME 1");
  UndoLast(user.host);
  EXPECT_EQ(Now(user), first);
  user.ExpectReplayGivesTheSame();
}

TEST(History, OfADeedThatChangesNothingIsNone) {
  User user(OnePlate);
  user.OpenDialog();
  AlterInARectangle(user, "p", "+0");
  EXPECT_THAT(UndoNames(user), IsEmpty());
  EXPECT_EQ(user.host.history.Revision(Active(user).Id()), 0);
}

TEST(History, IsGoneWithTheData) {
  User user(OnePlate);
  user.OpenDialog();
  AlterInARectangle(user, "p", "+1");
  EXPECT_GT(user.host.history.ByteCount(), 0);
  user.CloseEverything();
  EXPECT_EQ(user.host.history.ByteCount(), 0);
  EXPECT_THROW(UndoLast(user.host), CommandError);
}

TEST(History, OfPlayedLinesHasAStepALine) {
  User user(OnePlate);
  const AllValues before = Now(user);
  Player player(user.host);
  const auto play = [&](const char* line) {
    const LineResult result = PlayLine(user.host, player, line);
    EXPECT_TRUE(result.isDone) << result.message;
  };
  play("Marquell PICKRECTANGLE ANCHORX=0.5 ANCHORY=0.5 SIZEX=3 SIZEY=2");
  play("Marquell ALTERAREA VARIABLE=\"p\" MODIFIER=\"*2\" RULE=ALLINSIDE");
  play("Marquell ALTERELEMENT VARIABLE=\"c\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1");
  EXPECT_THAT(UndoNames(user), ElementsAre("ALTERELEMENT: c", "ALTERAREA: p"));
  UndoLast(user.host);
  UndoLast(user.host);
  EXPECT_EQ(Now(user), before);
  const LineResult failed = PlayLine(user.host, player, "$!UNDO");
  EXPECT_FALSE(failed.isDone);
  EXPECT_THAT(failed.message, HasSubstr("nothing to undo"));
  EXPECT_THAT(PlayLine(user.host, player, "$!REDO").isDone, true);
}

TEST(History, OfAFileReadAsNeededGivesItsValuesBack) {
  const std::string input = std::string(MARQUELL_EXAMPLES) + "/part/gmsh_part.vtu";
  const auto output = std::filesystem::path(testing::TempDir()) / "marquell-history-given-back.vtu";
  User user([&] { return std::vector<DataSetPtr>{ReadDataSet(input)}; });
  user.OpenDialog();
  user.ChooseVariable("phi");
  user.EnterModifier("*1.5");
  user.Tool(kRectangleTool);
  user.Draw("RECTANGLE X=-0.6 Y=-0.35 WIDTH=0.9 HEIGHT=0.5");
  user.Press("Apply Alteration");
  WriteDataSet(Active(user), output.string());
  EXPECT_NE(ValuesOf(*ReadDataSet(output.string())), ValuesOf(*ReadDataSet(input)));
  UndoLast(user.host);
  EXPECT_EQ(user.host.history.Revision(Active(user).Id()), 0);
  WriteDataSet(Active(user), output.string());
  EXPECT_EQ(ValuesOf(*ReadDataSet(output.string())), ValuesOf(*ReadDataSet(input)));
  std::filesystem::remove(output);
}

TEST(History, KeepsNothingOfValuesThatCannotBeRead) {
  const auto input = std::filesystem::path(testing::TempDir()) / "marquell-history-cut-off.vtu";
  std::filesystem::copy_file(std::string(MARQUELL_EXAMPLES) + "/part/gmsh_part.vtu", input,
                             std::filesystem::copy_options::overwrite_existing);
  User user([&] { return std::vector<DataSetPtr>{ReadDataSet(input.string())}; });
  std::filesystem::resize_file(input, std::filesystem::file_size(input) / 2);
  Player player(user.host);
  const std::string line =
      "Marquell ALTERELEMENT VARIABLE=\"phi\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1";
  EXPECT_THROW(PlayLine(user.host, player, line), ValuesError);
  EXPECT_THAT(UndoNames(user), IsEmpty());
  EXPECT_EQ(user.host.history.Revision(Active(user).Id()), 0);
  // What is in memory can still be altered, and taken back.
  PlayLine(user.host, player,
           "Marquell ALTERELEMENT VARIABLE=\"X\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1");
  EXPECT_THAT(UndoNames(user), ElementsAre("ALTERELEMENT: X"));
  UndoLast(user.host);
  EXPECT_EQ(user.host.history.Revision(Active(user).Id()), 0);
  std::filesystem::remove(input);
}

}  // namespace
}  // namespace scenario
