#include "Host.h"
#include "HostCommands.h"
#include "PlotActions.h"
#include "PlotState.h"
#include "Recorder.h"
#include "TestData.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

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

ValueBlanking HidingBelow(double cutoff) {
  ValueBlanking blanking;
  blanking.include = true;
  blanking.constraints[0] = {true,  4, 0, BlankRelOp_LessThan, ConstraintOp2Mode_UseConstant,
                             cutoff};
  return blanking;
}

TEST(Recorder, ComesBackToAFrameWithWhatChangedThereAlone) {
  PlotState first = Turned(30);
  first.inactiveZones = {2, 3};
  first.solutionTime = 0.5;
  first.blanking = HidingBelow(1);
  PlotState second = Flat();
  second.frame = 2;
  Recorder recorder;
  recorder.Start(first);
  recorder.AddAddOnCommand("Name", "A", first);
  recorder.AddAddOnCommand("Name", "B", second);
  first.inactiveZones = {3};
  recorder.AddAddOnCommand("Name", "C", first);
  recorder.AddAddOnCommand("Name", "D", second);
  recorder.AddAddOnCommand("Name", "E", first);
  EXPECT_THAT(recorder.Lines(),
              ElementsAre("# marquell journal 1", "Name A", "$!FRAME 2", "$!PLOTTYPE CARTESIAN2D",
                          "$!TIME 0", "Name B", "$!FRAME 1", "$!ZONE 2 ACTIVE=YES", "Name C",
                          "$!FRAME 2", "Name D", "$!FRAME 1", "Name E"));
}

TEST(CommandsBetween, SayWhatOfBlankingDiffersAndWhetherItIsOnLast) {
  PlotState from = Flat();
  PlotState to = Flat();
  to.blanking = HidingBelow(0.1);
  to.blanking.blankEntireCell = true;
  to.blanking.cellMode = BlankCellMode_PrimaryValue;
  EXPECT_THAT(
      CommandsBetween(from, to),
      ElementsAre("$!BLANKING VALUE{CONSTRAINT 1 { INCLUDE = YES VARA = 4 RELOP = 2 "
                  "CONSTRAINTOP2MODE = 1 VALUECUTOFF = 0.1 }}",
                  "$!BLANKING VALUE{BLANKENTIRECELL = YES}",
                  "$!BLANKING VALUE{VALUEBLANKCELLMODE = 2}", "$!BLANKING VALUE{INCLUDE = YES}"));
  from = to;
  to.blanking.constraints[0].relOp = BlankRelOp_GreaterThan;
  EXPECT_THAT(CommandsBetween(from, to),
              ElementsAre("$!BLANKING VALUE{CONSTRAINT 1 { RELOP = 3 }}"));
  to.blanking.include = false;
  to.blanking.constraints[0].relOp = BlankRelOp_LessThan;
  EXPECT_THAT(CommandsBetween(from, to), ElementsAre("$!BLANKING VALUE{INCLUDE = NO}"));
}

TEST(CommandsBetween, SayNothingOfBlankingThatAnAddOnHasSetAndAllOfItOnceTheUserTookItOver) {
  PlotState from = Flat();
  PlotState to = Flat();
  to.blanking.constraints[7] = {true, 4,   0, BlankRelOp_EqualTo, ConstraintOp2Mode_UseConstant,
                                1.0,  true};
  to.blanking.blankEntireCell = true;
  to.blanking.isCellModeAddOns = true;
  EXPECT_THAT(CommandsBetween(from, to), IsEmpty());
  from = to;
  to.blanking.constraints[7].cutoff = 2.0;
  to.blanking.constraints[7].isAddOns = false;
  to.blanking.isCellModeAddOns = false;
  EXPECT_THAT(CommandsBetween(from, to),
              ElementsAre("$!BLANKING VALUE{CONSTRAINT 8 { INCLUDE = YES VARA = 4 RELOP = 4 "
                          "CONSTRAINTOP2MODE = 1 VALUECUTOFF = 2 }}",
                          "$!BLANKING VALUE{BLANKENTIRECELL = YES}",
                          "$!BLANKING VALUE{VALUEBLANKCELLMODE = 0}"));
}

/// A host with two frames of two zones each, which records from the beginning.
class RecordedSession : public ::testing::Test {
 protected:
  void SetUp() override { Begin(); }
  void TearDown() override {
    host.recorder.Stop();
    host.CloseAll();
  }
  void Begin() {
    host.recorder.Stop();
    host.CloseAll();
    for (int n = 0; n < 2; ++n) {
      host.ShowDataSet(std::make_shared<DataSet>(
          "test", std::vector<BlockEntry>{{"a", MakeBlock(3, 3, 3)}, {"b", MakeBlock(2, 2, 2)}},
          nullptr));
    }
    ActivateFrame(host, host.frames.At(1)->Id());
    host.recorder.Start(FirstStateOf(host.frames));
  }
  void Set(const char* setting, double value, LgIndex_t constraint = 0) {
    StyleAddress address{{SV_BLANKING, SV_VALUE}, constraint, {}};
    if (constraint > 0) address.path.emplace_back(SV_CONSTRAINT);
    address.path.emplace_back(setting);
    const QelSetValueResult_e result = ApplyStyle(host, address, IntegerOf(value), value);
    EXPECT_TRUE(result == SetValueResult_Ok || result == SetValueResult_Duplicate) << setting;
  }
  void AddOnSets(const char* setting, double value, LgIndex_t constraint = 0) {
    host.lock.Push("Name");
    Set(setting, value, constraint);
    host.lock.Pop("Name");
  }
  /// The lines that an add-on's command brought.
  std::vector<std::string> Say(const std::string& command) {
    const std::size_t before = host.recorder.Lines().size();
    QelUtilMacroRecordAddOnCommand("Name", command.c_str());
    return {host.recorder.Lines().begin() + static_cast<std::ptrdiff_t>(before),
            host.recorder.Lines().end()};
  }

  Host& host = Host::Instance();
};

TEST_F(RecordedSession, TellsOfTheUsersBlankingOnceAndNotOfAnAddOns) {
  Set(SV_VARA, 4, 2);
  Set(SV_INCLUDE, 1, 2);
  EXPECT_THAT(Say("A"),
              ElementsAre("$!BLANKING VALUE{CONSTRAINT 2 { INCLUDE = YES VARA = 4 }}", "Name A"));
  EXPECT_THAT(Say("B"), ElementsAre("Name B"));
  AddOnSets(SV_VARA, 4, 8);
  AddOnSets(SV_INCLUDE, 1, 8);
  AddOnSets(SV_BLANKENTIRECELL, 1);
  AddOnSets(SV_VALUEBLANKCELLMODE, 2);
  EXPECT_THAT(Say("C"), ElementsAre("Name C"));
  Set(SV_RELOP, BlankRelOp_EqualTo, 8);
  EXPECT_THAT(Say("D"), ElementsAre("$!BLANKING VALUE{CONSTRAINT 8 { INCLUDE = YES VARA = 4 "
                                    "RELOP = 4 CONSTRAINTOP2MODE = 0 VALUECUTOFF = 0 }}",
                                    "Name D"));
  EXPECT_THAT(Say("E"), ElementsAre("Name E"));
}

TEST_F(RecordedSession, DoesNotRepeatASwitchThatTheAddOnRecordedItself) {
  AddOnSets(SV_INCLUDE, 1);
  ASSERT_TRUE(QelUtilMacroRecordRawCommand("$!BLANKING VALUE{INCLUDE = YES"));
  EXPECT_THAT(Say("A"), ElementsAre("Name A"));
  AddOnSets(SV_INCLUDE, 0);
  ASSERT_TRUE(QelUtilMacroRecordRawCommand("$!BLANKING VALUE{INCLUDE = NO"));
  EXPECT_THAT(Say("B"), ElementsAre("Name B"));
  Set(SV_INCLUDE, 1);
  EXPECT_THAT(Say("C"), ElementsAre("$!BLANKING VALUE{INCLUDE = YES}", "Name C"));
  EXPECT_THAT(host.recorder.Lines(),
              ElementsAre(Recorder::kHeader, "$!BLANKING VALUE{INCLUDE = YES", "Name A",
                          "$!BLANKING VALUE{INCLUDE = NO", "Name B",
                          "$!BLANKING VALUE{INCLUDE = YES}", "Name C"));
}

TEST_F(RecordedSession, KeepsTheUsersOtherChangesWhenAnAddOnRecordsItsSwitch) {
  Set(SV_VARA, 4, 1);
  AddOnSets(SV_INCLUDE, 1);
  ASSERT_TRUE(QelUtilMacroRecordRawCommand("$!BLANKING VALUE{INCLUDE = YES"));
  EXPECT_THAT(Say("A"), ElementsAre("$!BLANKING VALUE{CONSTRAINT 1 { VARA = 4 }}", "Name A"));
}

TEST_F(RecordedSession, DoesNotRepeatBlankingThatAPlayedLineHasSet) {
  const std::string line = "$!BLANKING VALUE{CONSTRAINT 3 {VARA = 4 VALUECUTOFF = 2}}";
  host.recorder.BeginPlaying();
  RunHostCommand(host, line);
  host.recorder.EndPlaying(line, true, StateOf(host.frames));
  EXPECT_THAT(Say("A"), ElementsAre("Name A"));
  EXPECT_THAT(host.recorder.Lines(), ElementsAre(Recorder::kHeader, line, "Name A"));
}

/// What of a plot decides about a pick, as text.
std::string Meaning(const PlotState& state) {
  std::string text = "frame " + std::to_string(state.frame) + " type " +
                     std::to_string(state.plotType) + " time " +
                     ::testing::PrintToString(state.solutionTime) + " without " +
                     ::testing::PrintToString(state.inactiveZones);
  if (state.plotType == PlotType_Cartesian3D) {
    text += " view " + ::testing::PrintToString(std::vector<double>{
                           state.view.psiDeg, state.view.alphaDeg, state.view.thetaDeg,
                           state.view.origin[0], state.view.origin[1], state.view.origin[2]});
  }
  const ValueBlanking& blanking = state.blanking;
  text += " blanking " + std::to_string(blanking.include) +
          std::to_string(blanking.blankEntireCell) + std::to_string(blanking.cellMode);
  for (const BlankConstraint& c : blanking.constraints) {
    if (c.varA == 0) continue;  // never met
    text += " [" + std::to_string(c.include) + ' ' + std::to_string(c.varA) + ' ' +
            std::to_string(c.varB) + ' ' + std::to_string(c.relOp) + ' ' +
            std::to_string(c.op2Mode) + ' ' +
            ::testing::PrintToString(std::vector<double>{c.cutoff}) + ']';
  }
  return text;
}

class RandomUser {
 public:
  explicit RandomUser(unsigned seed) : m_random(seed) {}
  int Pick(int first, int last) {
    return std::uniform_int_distribution<int>(first, last)(m_random);
  }
  double Number() {
    const double mantissa = std::uniform_real_distribution<double>(-1, 1)(m_random);
    return std::ldexp(mantissa, Pick(-60, 60));
  }

 private:
  std::mt19937 m_random;
};

TEST_F(RecordedSession, RandomOnesAreReadBackToTheSameStates) {
  int blankingLines = 0;
  int returns = 0;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    Begin();
    RandomUser user(seed);
    std::vector<std::string> states;
    const auto setConstraint = [&] {
      const LgIndex_t n = user.Pick(1, 8);
      const std::size_t place = static_cast<std::size_t>(n - 1);
      const bool isNew = host.frames.Active()->styles.blanking.constraints[place].varA == 0;
      const int what = isNew ? 1 : user.Pick(0, 5);
      if (what == 0) Set(SV_INCLUDE, user.Pick(0, 1), n);
      if (what == 1) Set(SV_VARA, user.Pick(1, 4), n);
      if (what == 2) Set(SV_VARB, user.Pick(1, 4), n);
      if (what == 3) Set(SV_RELOP, user.Pick(0, 5), n);
      if (what == 4) Set(SV_CONSTRAINTOP2MODE, user.Pick(0, 1), n);
      if (what == 5) Set(SV_VALUECUTOFF, user.Number(), n);
    };
    for (int step = 0; step < 60; ++step) {
      switch (user.Pick(0, 11)) {
        case 0:
          SetZonesActive(host, {user.Pick(1, 2)},
                         user.Pick(0, 1) == 0 ? AssignOp_PlusEquals : AssignOp_MinusEquals);
          break;
        case 1:
          SetSolutionTime(host, user.Number());
          break;
        case 2:
          SetViewAngles(host, user.Number(), user.Pick(0, 90), user.Number());
          break;
        case 3:
          SetPlotType(host, user.Pick(0, 1) == 0 ? PlotType_Cartesian3D : PlotType_Cartesian2D);
          break;
        case 4:
          ActivateFrame(host, host.frames.At(user.Pick(1, 2))->Id());
          break;
        case 5:
          Set(SV_INCLUDE, user.Pick(0, 1));
          break;
        case 6:
          Set(SV_BLANKENTIRECELL, user.Pick(0, 1));
          break;
        case 7:
          Set(SV_VALUEBLANKCELLMODE, user.Pick(0, 2));
          break;
        case 8:
        case 9:
          setConstraint();
          break;
        default:
          Say(std::to_string(states.size()));
          states.push_back(Meaning(StateOf(host.frames)));
      }
    }
    const std::vector<std::string> lines = host.recorder.Lines();
    Begin();
    std::size_t played = 0;
    for (const std::string& line : lines) {
      if (line == Recorder::kHeader) continue;
      if (line.rfind("$!BLANKING", 0) == 0) ++blankingLines;
      if (line == "$!FRAME 1") ++returns;
      if (IsHostCommand(line)) {
        ASSERT_NO_THROW(RunHostCommand(host, line)) << line;
        continue;
      }
      ASSERT_EQ(line, "Name " + std::to_string(played));
      ASSERT_EQ(Meaning(StateOf(host.frames)), states[played]) << "seed " << seed;
      ++played;
    }
    ASSERT_EQ(played, states.size());
  }
  EXPECT_GT(blankingLines, 100);
  EXPECT_GT(returns, 30);
}

}  // namespace
}  // namespace qelhost
