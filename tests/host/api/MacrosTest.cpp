#include "ApiTesting.h"

#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qelhost {
namespace {

using ::testing::ElementsAre;

class Macros : public ::testing::Test {
 protected:
  void SetUp() override {
    CloseEverything();
    ShowBricks(3, 3, 3);
  }
  void TearDown() override { CloseEverything(); }
};

constexpr char kHeader[] = "# marquell journal 1";

TEST_F(Macros, RecordNothingAndSucceedWhileNothingIsRecorded) {
  EXPECT_FALSE(QelUtilMacroIsRecordingActive());
  EXPECT_TRUE(QelUtilMacroIsBatchModeActive());
  EXPECT_TRUE(QelUtilMacroRecordAddOnCommand("Name", "A"));
  EXPECT_TRUE(QelUtilMacroRecordRawCommand("$!TIME 1"));
  StartRecording();
  EXPECT_THAT(RecordedLines(), ElementsAre(kHeader));
}

TEST_F(Macros, EndARecordedCommandAtItsLineBreak) {
  StartRecording();
  EXPECT_TRUE(QelUtilMacroIsRecordingActive());
  EXPECT_TRUE(QelUtilMacroRecordRawCommand("$!BLANKING VALUE{INCLUDE = YES\n"));
  EXPECT_TRUE(QelUtilMacroRecordAddOnCommand("Name", "A B=\"c d\""));
  EXPECT_FALSE(QelUtilMacroRecordAddOnCommand("", "A"));
  EXPECT_FALSE(QelUtilMacroRecordRawCommand(nullptr));
  EXPECT_THAT(RecordedLines(),
              ElementsAre(kHeader, "$!BLANKING VALUE{INCLUDE = YES", "Name A B=\"c d\""));
}

TEST_F(Macros, ExecuteAHostCommandAndRecordNothing) {
  StartRecording();
  EXPECT_TRUE(QelUtilMacroExecuteCommand("$!PLOTTYPE CARTESIAN2D"));
  EXPECT_EQ(QelUtilFrameGetPlotType(), PlotType_Cartesian2D);
  EXPECT_FALSE(QelUtilMacroExecuteCommand("$!FROBNICATE"));
  EXPECT_FALSE(QelUtilMacroExecuteCommand("Name A"));
  EXPECT_FALSE(QelUtilMacroExecuteCommand(""));
  EXPECT_FALSE(QelUtilLockIsOn());
  EXPECT_THAT(RecordedLines(), ElementsAre(kHeader));
}

TEST_F(Macros, SayTheViewBeforeALineThatAnAddOnTurnsItWith) {
  QelAddOn* const addOn = QelUtilAddOnRegister(110, "Turner", "V1", "Me");
  StartRecording();
  // The user's turn stands in no line when the add-on's own turn begins.
  EXPECT_TRUE(QelUtilMacroExecuteCommand("$!VIEW PSI=30"));
  QelUtilLockStart(addOn);
  EXPECT_TRUE(QelUtilViewRotate3D(RotateAxis_Psi, 60, 0, 0, 0, RotateOriginLocation_DefinedOrigin));
  EXPECT_TRUE(QelUtilMacroRecordAddOnCommand("Turner", "TURN"));
  QelUtilLockFinish(addOn);
  EXPECT_TRUE(QelUtilMacroRecordAddOnCommand("Turner", "PICK"));
  EXPECT_THAT(RecordedLines(),
              ElementsAre(kHeader, "$!VIEW PSI=30 ALPHA=0 THETA=0 ORIGINX=1 ORIGINY=1 ORIGINZ=1",
                          "Turner TURN", "Turner PICK"));
}

TEST_F(Macros, SayAViewThatWasTurnedWhileThePlotWasFlat) {
  StartRecording();
  QelUtilMacroExecuteCommand("$!PLOTTYPE CARTESIAN2D");
  QelUtilMacroExecuteCommand("$!VIEW PSI=30");
  QelUtilMacroRecordAddOnCommand("Name", "A");
  QelUtilMacroExecuteCommand("$!PLOTTYPE CARTESIAN3D");
  QelUtilMacroRecordAddOnCommand("Name", "B");
  EXPECT_THAT(RecordedLines(),
              ElementsAre(kHeader, "$!PLOTTYPE CARTESIAN2D", "Name A", "$!PLOTTYPE CARTESIAN3D",
                          "$!VIEW PSI=30 ALPHA=0 THETA=0 ORIGINX=1 ORIGINY=1 ORIGINZ=1", "Name B"));
}

TEST_F(Macros, QuestionsAreAnsweredNoUnlessAnAnswerWasQueued) {
  EXPECT_TRUE(QelUtilDialogMessageBox("text", MessageBox_Warning));
  EXPECT_FALSE(QelUtilDialogMessageBox("text", MessageBox_YesNo));
  QueueAnswer(true);
  EXPECT_TRUE(QelUtilDialogMessageBox("text", MessageBox_OkCancel));
  EXPECT_FALSE(QelUtilDialogMessageBox(nullptr, MessageBox_OkCancel));
  QelUtilDialogErrMsg(nullptr);
  QelUtilPleaseWait("text", true);
  QelUtilPleaseWait(nullptr, false);
  QelUtilHelp("marquell.html", false, 0);
  EXPECT_TRUE(QelUtilRedraw(true));
}

}  // namespace
}  // namespace qelhost
