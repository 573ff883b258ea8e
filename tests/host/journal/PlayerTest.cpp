#include "Player.h"
#include "TestData.h"

#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

std::vector<std::string> events;

/// "FAIL text" fails with that text, "SILENT" without one, "RECORD" records a line of its own,
/// "IDLE" queues idle work; anything else succeeds.
bool OnCommand(const char* command, char** errMsg) {
  const std::string text = command;
  events.push_back("command <" + text + ">");
  if (QelUtilLockIsOn()) events.emplace_back("lock is on");
  if (QelUtilMacroIsRecordingActive()) events.emplace_back("recording is active");
  if (text == "RECORD") QelUtilMacroRecordAddOnCommand("Echo", "INNER");
  if (text == "IDLE") {
    QelUtilOnIdleQueueAddCallback([](ArbParam_t) { events.emplace_back("idle"); }, 0);
  }
  if (text == "SILENT") return false;
  if (text.rfind("FAIL ", 0) != 0) return true;
  const std::string reason = text.substr(5);
  *errMsg = QelUtilStringAlloc(static_cast<LgIndex_t>(reason.size()), "reason");
  std::memcpy(*errMsg, reason.data(), reason.size());
  return false;
}

bool CheckCommand(const char* command, char** errMsg) {
  if (std::string(command) != "BAD") return true;
  *errMsg = QelUtilStringAlloc(8, "reason");
  std::memcpy(*errMsg, "is wrong", 8);
  return false;
}

class Playing : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    Host::Instance().addOns.SetMacroCallback("Echo", OnCommand);
    Host::Instance().addOns.SetMacroCallback("Unchecked", OnCommand);
    Host::Instance().addOns.SetCommandCheck("Echo", CheckCommand);
  }
  void SetUp() override {
    host.CloseAll();
    host.ShowDataSet(MakeData(2, 2, 2));
    events.clear();
    m_strings = host.strings.Count();
  }
  void TearDown() override {
    host.recorder.Stop();
    EXPECT_EQ(host.strings.Count(), m_strings) << "a string was not taken over";
    EXPECT_FALSE(host.lock.IsOn());
  }

  Host& host = Host::Instance();
  Player player{Host::Instance()};

 private:
  std::size_t m_strings = 0;
};

TEST_F(Playing, HandsAnAddOnsCommandOverUnchangedWithoutHoldingTheLock) {
  EXPECT_TRUE(player.Play("Echo DO  A=\"b  c\"\tD").isDone);
  EXPECT_THAT(events, ElementsAre("command <DO  A=\"b  c\"\tD>"));
}

TEST_F(Playing, HandsOverAnEmptyCommandForABareName) {
  EXPECT_TRUE(player.Play("Echo").isDone);
  EXPECT_THAT(events, ElementsAre("command <>"));
}

TEST_F(Playing, TakesOverTheAddOnsErrorText) {
  const LineResult result = player.Play("Echo FAIL because of this");
  EXPECT_FALSE(result.isDone);
  EXPECT_EQ(result.message, "because of this");
}

TEST_F(Playing, SaysSomethingWhenTheAddOnGivesNoReason) {
  const LineResult result = player.Play("Echo SILENT");
  EXPECT_FALSE(result.isDone);
  EXPECT_THAT(result.message, Not(IsEmpty()));
}

TEST_F(Playing, FailsForAnAddOnThatIsNotLoaded) {
  const LineResult result = player.Play("Nobody DO IT");
  EXPECT_FALSE(result.isDone);
  EXPECT_EQ(result.message, "No add-on named Nobody is loaded.");
}

TEST_F(Playing, FailsForAnUnknownHostCommand) {
  const LineResult result = player.Play("$!FROBNICATE");
  EXPECT_FALSE(result.isDone);
  EXPECT_EQ(result.message, "there is no host command $!FROBNICATE");
}

TEST_F(Playing, RunsTheIdleQueueAfterTheLine) {
  EXPECT_TRUE(player.Play("Echo IDLE").isDone);
  EXPECT_THAT(events, ElementsAre("command <IDLE>", "idle"));
}

TEST_F(Playing, RecordsThePlayedLineItselfAndNotWhatTheAddOnRecords) {
  host.recorder.Start(StateOf(host.frames));
  EXPECT_TRUE(player.Play("Echo RECORD").isDone);
  EXPECT_FALSE(player.Play("Echo SILENT").isDone);
  EXPECT_TRUE(player.Play("$!TIME 0.5").isDone);
  EXPECT_THAT(host.recorder.Lines(),
              ElementsAre("# marquell journal 1", "Echo RECORD", "$!TIME 0.5"));
  EXPECT_THAT(events, ElementsAre("command <RECORD>", "command <SILENT>"));
}

TEST_F(Playing, WhatIsRecordedLeadsToTheSamePlotWhenItIsPlayed) {
  Frame& frame = *host.frames.Active();
  host.recorder.Start(StateOf(host.frames));
  frame.view.psiDeg = 12.345678901234567;
  frame.view.origin = {0.1, -1e-7, 3};
  frame.Data()->FindZone(1)->active = false;
  frame.solutionTime = 0.1;
  host.recorder.AddAddOnCommand("Echo", "DO", StateOf(host.frames));
  const std::vector<std::string> lines = host.recorder.Lines();
  host.recorder.Stop();
  const PlotState wanted = StateOf(host.frames);

  frame.view = frame.FirstView();
  frame.Data()->FindZone(1)->active = true;
  frame.solutionTime = 0.0;
  for (std::size_t i = 1; i < lines.size(); ++i) EXPECT_TRUE(player.Play(lines[i]).isDone);
  EXPECT_THAT(CommandsBetween(StateOf(host.frames), wanted), IsEmpty());
  EXPECT_THAT(events, ElementsAre("command <DO>"));
}

TEST_F(Playing, ReportsWhatWasAlteredOnlyWhenAsked) {
  host.addOns.SetMacroCallback("Write", [](const char*, char**) {
    const LgIndex_t p = QelUtilVarGetNumByName("p");
    QelFieldData* const field = QelUtilDataValueGetWritableNativeRef(1, p);
    QelUtilDataValueSetByRef(field, 1, 4.0);
    return true;
  });
  EXPECT_THAT(player.Play("Write NOW").alterations, IsEmpty());
  player.ReportAlterations(true);
  const LineResult result = player.Play("Write NOW");
  ASSERT_EQ(result.alterations.size(), 1U);
  EXPECT_EQ(result.alterations[0].variableName, "p");
  EXPECT_EQ(result.alterations[0].pickedCount, 1);
  EXPECT_EQ(result.alterations[0].changedCount, 0);
}

TEST_F(Playing, CheckingALineRunsNothing) {
  EXPECT_EQ(player.Check("Echo GOOD").fault, "");
  EXPECT_EQ(player.Check("Echo BAD").fault, "is wrong");
  EXPECT_EQ(player.Check("Unchecked BAD").fault, "");
  EXPECT_EQ(player.Check("Nobody DO").fault, "No add-on named Nobody is loaded.");
  EXPECT_EQ(player.Check("$!PLOTTYPE CARTESIAN2D").fault, "");
  EXPECT_EQ(player.Check("$!FROBNICATE").fault, "there is no host command $!FROBNICATE");
  EXPECT_THAT(events, IsEmpty());
  EXPECT_EQ(host.frames.Active()->plotType, PlotType_Cartesian3D);
}

}  // namespace
}  // namespace qelhost
