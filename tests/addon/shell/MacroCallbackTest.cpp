#include "FakeHostTest.h"

namespace {

using fakehost::FakeHostTest;
using fakehost::MakeLattice;
using fakehost::PlayResult;
using fakehost::StoredType;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

constexpr char kNoCartesianData[] = "Frame does not contain data in Cartesian 2D or 3D view";
constexpr char kGeneralFailure[] = "Error processing macro command";

class MacroCallback : public FakeHostTest {
 protected:
  void SetUp() override {
    host.AddFrame(PlotType_Cartesian2D);
    host.AddZone(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
    p = host.AddVariable("p", ValueLocation_CellCentered, StoredType::Double,
                         [](LgIndex_t, LgIndex_t) { return 10.0; });
    InitQelAddOn113();
  }
  LgIndex_t p = 0;
};

class MacroInOtherPlot : public MacroCallback,
                         public ::testing::WithParamInterface<QelPlotType_e> {};

TEST_P(MacroInOtherPlot, FailsWithTheCartesianText) {
  host.ActiveFrame().plotType = GetParam();
  const PlayResult result = host.Play("UNDOALTER");
  EXPECT_FALSE(result.isDone);
  EXPECT_EQ(result.error, kNoCartesianData);
  EXPECT_EQ(result.macroErrorStrings, 0);
}

INSTANTIATE_TEST_SUITE_P(PlotTypes, MacroInOtherPlot,
                         ::testing::Values(PlotType_None, PlotType_Line, PlotType_Polar,
                                           PlotType_Sketch));

TEST_F(MacroCallback, FailsWithTheCartesianTextWithoutData) {
  host.ActiveFrame().dataSet = nullptr;
  const PlayResult result = host.Play("UNDOALTER");
  EXPECT_FALSE(result.isDone);
  EXPECT_EQ(result.error, kNoCartesianData);
}

TEST_F(MacroCallback, HandsOutTheParsersMessage) {
  EXPECT_EQ(PlayBadly("X=1"), "Invalid macro command string");
}

TEST_F(MacroCallback, HandsOutTheGeneralTextWhenThereIsNone) {
  EXPECT_EQ(PlayBadly("BLANKAREA RULE=CUBE"), kGeneralFailure);
}

TEST_F(MacroCallback, AnEmptyLineDoesNothingAndSucceeds) {
  PlayWell("");
  PlayWell("   ");
  EXPECT_THAT(host.ValuesOf(1, p), ElementsAre(10, 10));
}

TEST_F(MacroCallback, AsksForTwoBuffersOnFailure) {
  PlayBadly("X=1");
  std::vector<std::string> buffers;
  for (const fakehost::CallRecord& call : host.calls) {
    if (call.function == "QelUtilStringAlloc") buffers.push_back(call.arguments);
  }
  // "Invalid macro command string" has 28 characters.
  EXPECT_THAT(buffers, ElementsAre("29, \"Macro Error.\"", "1000, \"String for Error Message\""));
}

TEST_F(MacroCallback, DropsAnOpenDialog) {
  host.ChooseMenu("Marquell ...");
  ASSERT_TRUE(host.IsDialogUp());
  PlayWell("ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1");
  EXPECT_FALSE(host.IsDialogUp());
}

TEST_F(MacroCallback, HoldsTheLockAsMarquell) {
  PlayWell("ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1");
  EXPECT_EQ(host.CallCount("QelUtilLockStart"), host.CallCount("QelUtilLockFinish"));
  EXPECT_EQ(host.LockDepth(), 0);
}

TEST_F(MacroCallback, AnInternalErrorBecomesTheCommandsText) {
  host.FailCall("QelUtilDataSetGetInfo", 1);
  EXPECT_THAT(PlayBadly("ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+1\" ZONE=1 ELEMENT=1"),
              MatchesRegex("Assert failed: QelUtilDataSetGetInfo\\(NULL, &numZones, NULL\\) "
                           "\\([A-Za-z]+ [0-9]+\\)"));
  EXPECT_THAT(host.errorBoxes, IsEmpty());
}

TEST_F(MacroCallback, AFailedErrorBufferShowsTheErrorBox) {
  host.FailCall("QelUtilStringAlloc", 1);
  const PlayResult result = host.Play("X=1");
  EXPECT_FALSE(result.isDone);
  EXPECT_THAT(host.errorBoxes,
              ElementsAre("An error occured in the Marquell add-on. Please try again."));
}

TEST_F(MacroCallback, KeepsOneSessionPerDataSet) {
  PlayWell("ALTERELEMENT VARIABLE=\"p\" MODIFIER=\"+5\" ZONE=1 ELEMENT=1");
  host.AddFrame(PlotType_Cartesian2D);
  host.AddZone(MakeLattice(ZoneType_FEQuad, 2, 1, 0));
  const LgIndex_t q = host.AddVariable("q", ValueLocation_CellCentered, StoredType::Double,
                                       [](LgIndex_t, LgIndex_t) { return 1.0; });
  // A new session has no variable chosen yet and the modifier "+0".
  PlayWell("ALTERELEMENT ZONE=1 ELEMENT=1 VARIABLE=\"q\"");
  EXPECT_THAT(host.ValuesOf(1, q), ElementsAre(1, 1));
  // The first session has lost its undo by then, but keeps variable and modifier.
  host.ActivateFrame(0);
  EXPECT_EQ(PlayBadly("UNDOALTER"), "Macro failed to perform Undo");
  PlayWell("ALTERELEMENT ZONE=1 ELEMENT=2");
  EXPECT_THAT(host.ValuesOf(1, p), ElementsAre(15, 15));
}

}  // namespace
