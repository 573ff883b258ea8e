#include "PlotState.h"
#include "Recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

PlotState Flat() {
  PlotState state;
  state.frame = 1;
  state.plotType = PlotType_Cartesian2D;
  return state;
}

PlotState Turned(double psiDeg) {
  PlotState state = Flat();
  state.plotType = PlotType_Cartesian3D;
  state.view.psiDeg = psiDeg;
  return state;
}

TEST(Recorder, IsSilentUntilItIsStartedAndAfterItIsStopped) {
  Recorder recorder;
  recorder.AddRawCommand("$!REDRAW");
  EXPECT_FALSE(recorder.IsActive());
  EXPECT_THAT(recorder.Lines(), IsEmpty());
  recorder.Start(Flat());
  recorder.AddRawCommand("$!TIME 1");
  recorder.Stop();
  recorder.AddRawCommand("$!TIME 2");
  EXPECT_THAT(recorder.Lines(), ElementsAre("# marquell journal 1", "$!TIME 1"));
}

TEST(Recorder, BeginsEachJournalAnew) {
  Recorder recorder;
  recorder.Start(Flat());
  recorder.AddRawCommand("$!TIME 1");
  recorder.Start(Flat());
  EXPECT_THAT(recorder.Lines(), ElementsAre("# marquell journal 1"));
}

TEST(Recorder, EndsACommandAtItsLineBreak) {
  Recorder recorder;
  recorder.Start(Flat());
  recorder.AddRawCommand("$!TIME 1\n$!TIME 2");
  recorder.AddRawCommand("$!TIME 3\r\n");
  recorder.AddAddOnCommand("Name", "COMMAND A=1\nmore", Flat());
  EXPECT_THAT(recorder.Lines(),
              ElementsAre("# marquell journal 1", "$!TIME 1", "$!TIME 3", "Name COMMAND A=1"));
}

TEST(Recorder, WritesAPlayedLineVerbatimAndNothingThatIsRecordedMeanwhile) {
  Recorder recorder;
  recorder.Start(Flat());
  recorder.BeginPlaying();
  EXPECT_FALSE(recorder.IsActive());
  recorder.AddAddOnCommand("Name", "INNER", Flat());
  recorder.AddRawCommand("$!INNER");
  recorder.EndPlaying("Name  OUTER  a=\"1\" ", true, Flat());
  EXPECT_TRUE(recorder.IsActive());
  EXPECT_THAT(recorder.Lines(), ElementsAre("# marquell journal 1", "Name  OUTER  a=\"1\" "));
}

TEST(Recorder, LeavesOutAPlayedLineThatFailed) {
  Recorder recorder;
  recorder.Start(Flat());
  recorder.BeginPlaying();
  recorder.EndPlaying("Name BAD", false, Flat());
  EXPECT_THAT(recorder.Lines(), ElementsAre("# marquell journal 1"));
}

TEST(Recorder, WritesAChangeOfThePlotOnceAndBeforeTheAddOnsLine) {
  Recorder recorder;
  recorder.Start(Turned(0));
  recorder.AddAddOnCommand("Name", "A", Turned(0));
  recorder.AddAddOnCommand("Name", "B", Turned(90));
  recorder.AddAddOnCommand("Name", "C", Turned(90));
  EXPECT_THAT(recorder.Lines(),
              ElementsAre("# marquell journal 1", "Name A",
                          "$!VIEW PSI=90 ALPHA=0 THETA=0 ORIGINX=0 ORIGINY=0 ORIGINZ=0", "Name B",
                          "Name C"));
}

TEST(Recorder, DoesNotRepeatWhatAPlayedLineHasChanged) {
  Recorder recorder;
  recorder.Start(Turned(0));
  recorder.BeginPlaying();
  recorder.EndPlaying("$!VIEW PSI=90", true, Turned(90));
  recorder.AddAddOnCommand("Name", "A", Turned(90));
  EXPECT_THAT(recorder.Lines(), ElementsAre("# marquell journal 1", "$!VIEW PSI=90", "Name A"));
}

TEST(CommandsBetween, SayActivityTimeAndPlotType) {
  PlotState from = Turned(0);
  from.inactiveZones = {2};
  PlotState to = Flat();
  to.solutionTime = 0.1;
  to.inactiveZones = {3};
  EXPECT_THAT(CommandsBetween(from, to), ElementsAre("$!PLOTTYPE CARTESIAN2D", "$!TIME 0.1",
                                                     "$!ZONE 3 ACTIVE=NO", "$!ZONE 2 ACTIVE=YES"));
  EXPECT_THAT(CommandsBetween(to, to), IsEmpty());
}

TEST(CommandsBetween, SayNothingOfAViewThatWasOnlyZoomed) {
  PlotState to = Turned(30);
  to.view.magnification = 4;
  to.view.translation = {1, 2};
  EXPECT_THAT(CommandsBetween(Turned(30), to), IsEmpty());
}

}  // namespace
}  // namespace qelhost
