#include "EngineTest.h"

namespace {

using fakehost::MakeLattice;
using ::testing::IsEmpty;

class View : public fakehost::EngineTest {
 protected:
  void ExpectAngles(double psi, double alpha, double theta) {
    EXPECT_NEAR(host.ActiveFrame().view.psi, psi, 1e-9);
    EXPECT_NEAR(host.ActiveFrame().view.alpha, alpha, 1e-9);
    EXPECT_NEAR(host.ActiveFrame().view.theta, theta, 1e-9);
  }
};

TEST_F(View, CommandsTurnA3DPlotAndPutItBack) {
  Load(MakeLattice(ZoneType_FEBrick, 1, 1, 1), PlotType_Cartesian3D);
  host.ActiveFrame().view.psi = 20;
  host.ActiveFrame().view.alpha = 30;
  host.ActiveFrame().view.theta = 40;
  PlayWell("VIEWXY");
  ExpectAngles(0, 0, 0);
  PlayWell("VIEWXZ");
  ExpectAngles(90, 0, 0);
  PlayWell("VIEWYZ");
  ExpectAngles(90, -90, 0);
  EXPECT_EQ(host.CallCount("QelUtilViewGet"), 1);
  PlayWell("VIEW3D");
  ExpectAngles(20, 30, 40);
  // While a macro plays, the fit is the host's own line.
  EXPECT_THAT(host.executedCommands, IsEmpty());
}

TEST_F(View, ThreeDWithNothingRememberedChangesNothing) {
  Load(MakeLattice(ZoneType_FEBrick, 1, 1, 1), PlotType_Cartesian3D);
  host.ActiveFrame().view.psi = 20;
  PlayWell("VIEW3D");
  ExpectAngles(20, 0, 0);
  EXPECT_EQ(host.CallCount("QelUtilViewSet"), 0);
}

TEST_F(View, CommandsLeaveA2DPlotAlone) {
  Load(MakeLattice(ZoneType_FEQuad, 1, 1, 0));
  PlayWell("VIEWXZ");
  ExpectAngles(0, 0, 0);
  EXPECT_EQ(host.CallCount("QelUtilViewGet"), 0);
}

TEST_F(View, TheRemainderKeepsItsSign) {
  Load(MakeLattice(ZoneType_FEBrick, 1, 1, 1), PlotType_Cartesian3D);
  host.ActiveFrame().view.psi = 350;
  PlayWell("VIEWXY");
  ExpectAngles(0, 0, 0);
}

struct ViewRow {
  int nth;
  const char* pattern;
};

class FailingRotation : public View, public ::testing::WithParamInterface<ViewRow> {};

TEST_P(FailingRotation, IsTheCommandsError) {
  Load(MakeLattice(ZoneType_FEBrick, 1, 1, 1), PlotType_Cartesian3D);
  host.FailCall("QelUtilViewRotate3D", GetParam().nth);
  EXPECT_THAT(PlayBadly("VIEWXZ"), ::testing::MatchesRegex(GetParam().pattern));
}

INSTANTIATE_TEST_SUITE_P(
    Axes, FailingRotation,
    ::testing::Values(
        ViewRow{1,
                "Assert failed: QelUtilViewRotate3D\\(RotateAxis_Psi, dPsi, 0\\.0, 0\\.0, 0\\.0, "
                "RotateOriginLocation_DefinedOrigin\\) \\(Utilities [0-9]+\\)"},
        ViewRow{2,
                "Assert failed: QelUtilViewRotate3D\\(RotateAxis_Alpha, dAlpha, 0\\.0, 0\\.0, "
                "0\\.0, RotateOriginLocation_DefinedOrigin\\) \\(Utilities [0-9]+\\)"},
        ViewRow{3,
                "Assert failed: QelUtilViewRotate3D\\(RotateAxis_Theta, dTheta, 0\\.0, 0\\.0, "
                "0\\.0, RotateOriginLocation_DefinedOrigin\\) \\(Utilities [0-9]+\\)"}));

}  // namespace
