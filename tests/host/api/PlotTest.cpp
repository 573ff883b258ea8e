#include "ApiTesting.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr QelRotateOrigin_e kOrigin = RotateOriginLocation_DefinedOrigin;

class Plot : public ::testing::Test {
 protected:
  void SetUp() override {
    CloseEverything();
    ShowBricks(3, 3, 3);
    StartListening();
  }
  void TearDown() override { CloseEverything(); }
};

std::array<double, 3> Projected(double x, double y, double z) {
  std::array<double, 3> at{};
  QelUtilConvert3DPositionToGrid(x, y, z, &at[0], &at[1], &at[2]);
  return at;
}

TEST_F(Plot, ProjectsAlongTheThreeDirectionsFromTheMiddleOfTheData) {
  EXPECT_TRUE(QelUtilSetupTransformations());
  EXPECT_THAT(Projected(2, 3, 5), ElementsAre(1, 2, 4));
  EXPECT_TRUE(QelUtilViewRotate3D(RotateAxis_Psi, 90, 0, 0, 0, kOrigin));
  EXPECT_THAT(Projected(2, 3, 5), ElementsAre(1, 2, 4)) << "the projection is not fixed anew yet";
  EXPECT_TRUE(QelUtilSetupTransformations());
  EXPECT_THAT(Projected(2, 3, 5), ElementsAre(1, 4, -2));
  EXPECT_TRUE(QelUtilViewRotate3D(RotateAxis_Alpha, -90, 0, 0, 0, kOrigin));
  EXPECT_TRUE(QelUtilSetupTransformations());
  EXPECT_THAT(Projected(2, 3, 5), ElementsAre(2, 4, 1));
}

TEST_F(Plot, OfFlatDataProjectsOntoTheirXAndY) {
  ShowElements();
  EXPECT_TRUE(QelUtilSetupTransformations());
  EXPECT_THAT(Projected(2, 3, 0), ElementsAre(2, 3, 0));
}

TEST_F(Plot, AddsToOneAngleAndTellsIt) {
  EXPECT_TRUE(QelUtilViewRotate3D(RotateAxis_Theta, 60, 0, 0, 0, kOrigin));
  EXPECT_TRUE(QelUtilViewRotate3D(RotateAxis_Theta, 30, 0, 0, 0, RotateOriginLocation_Viewer));
  EXPECT_THAT(Heard(), ElementsAre("7 THREEDVIEW", "7 THREEDVIEW"));
  double psi = 1.0;
  double alpha = 1.0;
  double theta = 0.0;
  EXPECT_TRUE(QelUtilThreeDViewGetViewerAngle(&psi, &alpha, &theta));
  EXPECT_EQ(psi, 0);
  EXPECT_EQ(alpha, 0);
  EXPECT_DOUBLE_EQ(theta, 1.5707963267948966);
  EXPECT_FALSE(QelUtilViewRotate3D(static_cast<QelRotateAxis_e>(3), 30, 0, 0, 0, kOrigin));
  EXPECT_FALSE(QelUtilViewRotate3D(RotateAxis_Psi, 30, 0, 0, 0, static_cast<QelRotateOrigin_e>(2)));
}

TEST_F(Plot, GivesAndTakesCopiesOfTheView) {
  QelView* view = nullptr;
  ASSERT_TRUE(QelUtilViewGet(&view));
  QelUtilViewRotate3D(RotateAxis_Psi, 45, 0, 0, 0, kOrigin);
  Heard().clear();
  EXPECT_TRUE(QelUtilViewSet(view));
  EXPECT_TRUE(QelUtilViewSet(view));
  EXPECT_THAT(Heard(), ElementsAre("7 THREEDVIEW", "10"));
  double psi = 1.0;
  EXPECT_TRUE(QelUtilThreeDViewGetViewerAngle(&psi, nullptr, nullptr));
  EXPECT_EQ(psi, 0);
  const QelView* const stale = view;
  QelUtilViewDealloc(&view);
  EXPECT_EQ(view, nullptr);
  EXPECT_FALSE(QelUtilViewSet(stale));
  double magnification = 0.0;
  EXPECT_TRUE(QelUtilViewGetMagnification(&magnification));
  EXPECT_EQ(magnification, 1);
}

TEST_F(Plot, TellsOfGeometriesInCreationOrder) {
  EXPECT_EQ(QelUtilGeomGetBase(), 0);
  const QelGeomID_t circle = DrawCircle(1, 2, 3);
  const QelGeomID_t rectangle = DrawRectangle(4, 5, 6, 7);
  const QelGeomID_t line = DrawPolyline(0.5, 0.25, {0, 0, 1, 0, 1, 2});
  EXPECT_THAT(Heard(), ElementsAre("36 by Workbench", "36 by Workbench", "36"));
  EXPECT_EQ(QelUtilGeomGetBase(), circle);
  EXPECT_EQ(QelUtilGeomGetNext(circle), rectangle);
  EXPECT_EQ(QelUtilGeomGetNext(line), 0);
  EXPECT_EQ(QelUtilGeomGetType(circle), GeomType_Circle);
  EXPECT_EQ(QelUtilGeomCircleGetRadius(circle), 3);
  EXPECT_EQ(QelUtilGeomSquareGetSize(circle), 0);
  double x = 0.0;
  double y = 0.0;
  double z = 1.0;
  QelUtilGeomGetAnchorPos(rectangle, &x, &y, &z);
  EXPECT_THAT((std::array<double, 3>{x, y, z}), ElementsAre(4, 5, 0));
  QelUtilGeomRectangleGetSize(rectangle, &x, &y);
  EXPECT_EQ(x, 6);
  EXPECT_EQ(y, 7);
  EXPECT_EQ(QelUtilGeomPolyGetPointCount(line), 3);
  QelUtilGeom2DPolylineGetPoint(line, 3, &x, &y);
  EXPECT_EQ(x, 1);
  EXPECT_EQ(y, 2);
  QelUtilGeom2DPolylineGetPoint(line, 4, &x, &y);
  EXPECT_EQ(x, 0);
  QelUtilGeomSetPositionCoordSys(circle, CoordSys_Paper);
  QelUtilGeomGetAnchorPos(circle, &x, nullptr, nullptr);
  EXPECT_EQ(x, 1) << "paper is equal to grid";
  SelectGeometryNumber(2);
  EXPECT_EQ(QelUtilPickListGetCount(), 1);
  EXPECT_EQ(QelUtilPickListGetType(1), PickObject_Geom);
  EXPECT_EQ(QelUtilPickListGetGeom(1), rectangle);
  EXPECT_EQ(QelUtilPickListGetType(2), PickObject_None);
  EXPECT_EQ(QelUtilPickListGetGeom(0), 0);
  ShowElements();
  EXPECT_FALSE(QelUtilGeomIsValid(circle)) << "it is on another frame";
}

int clicks = 0;
void CountClick(bool isCtrlHeld) { clicks += isCtrlHeld ? 100 : 1; }

TEST_F(Plot, AProbeHearsClicksUntilItsModeIsLeft) {
  clicks = 0;
  EXPECT_FALSE(QelUtilProbeInstallCallback(nullptr, "text"));
  EXPECT_TRUE(QelUtilProbeInstallCallback(CountClick, "text"));
  EXPECT_EQ(QelUtilMouseGetCurrentMode(), Mouse_Probe);
  EXPECT_THAT(Heard(), ElementsAre("25"));
  EXPECT_TRUE(Click(1, 2, 3, false));
  EXPECT_EQ(QelUtilProbeFieldGetZone(), 1);
  EXPECT_EQ(QelUtilProbeFieldGetCell(), 2);
  EXPECT_EQ(QelUtilProbeGetPointIndex(), 3);
  EXPECT_TRUE(QelUtilMouseSetMode(Mouse_Probe));
  EXPECT_TRUE(Click(1, 2, 3, true));
  EXPECT_EQ(clicks, 101) << "the mode was not left";
  EXPECT_TRUE(QelUtilMouseSetMode(Mouse_Select));
  EXPECT_FALSE(Click(1, 2, 3, false));
  EXPECT_TRUE(QelUtilMouseSetMode(Mouse_Probe));
  EXPECT_TRUE(Click(1, 2, 3, false));
  EXPECT_EQ(clicks, 101);
  EXPECT_FALSE(QelUtilMouseSetMode(static_cast<QelMouseMode_e>(11)));
  EXPECT_EQ(QelUtilMouseGetCurrentMode(), Mouse_Probe);
}

QelSet* SetOf(const std::vector<SetIndex_t>& members) {
  QelSet* const set = QelUtilSetAlloc(false);
  for (const SetIndex_t member : members) QelUtilSetAddMember(set, member, false);
  return set;
}

TEST_F(Plot, ActivatesZonesBySets) {
  ShowTimeSteps();
  Heard().clear();
  QelSet* second = SetOf({2});
  QelSet* unknown = SetOf({1, 3});
  EXPECT_EQ(QelUtilZoneSetActive(second, AssignOp_MinusEquals), SetValueResult_Ok);
  EXPECT_FALSE(QelUtilZoneIsActive(2));
  EXPECT_EQ(QelUtilZoneSetActive(second, AssignOp_Equals), SetValueResult_Ok);
  EXPECT_FALSE(QelUtilZoneIsActive(1));
  EXPECT_TRUE(QelUtilZoneIsActive(2));
  EXPECT_EQ(Heard().size(), 2U);
  EXPECT_EQ(QelUtilZoneSetActive(unknown, AssignOp_PlusEquals), SetValueResult_ValueError);
  EXPECT_FALSE(QelUtilZoneIsActive(1)) << "a refused set changes nothing";
  EXPECT_EQ(Heard().size(), 2U);
  QelUtilSetDealloc(&second);
  QelUtilSetDealloc(&unknown);
}

TEST_F(Plot, SetsLayersOfZonesByAttribute) {
  QelSet* first = SetOf({1});
  QelSet* unknown = SetOf({2});
  using Function = QelSetValueResult_e (*)(const char*, const QelSet*, double, ArbParam_t);
  for (const Function set : {QelUtilZoneSetEdgeLayer, QelUtilZoneSetMesh, QelUtilZoneSetShade,
                             QelUtilZoneSetScatter, QelUtilZoneSetContour, QelUtilZoneSetVector}) {
    EXPECT_EQ(set(SV_SHOW, first, 0, 1), SetValueResult_Ok);
    EXPECT_EQ(set(SV_COLOR, first, 0, ColorIndex_Red), SetValueResult_Ok);
    EXPECT_EQ(set(SV_LINETHICKNESS, first, 0.4, 0), SetValueResult_Ok);
    EXPECT_EQ(set(SV_COLOR, first, 0, 9), SetValueResult_ValueError);
    EXPECT_EQ(set(SV_LINETHICKNESS, first, -0.1, 0), SetValueResult_ValueError);
    EXPECT_EQ(set(SV_LINETHICKNESS, first, std::nan(""), 0), SetValueResult_ValueError);
    EXPECT_EQ(set("SHINE", first, 0, 1), SetValueResult_SyntaxError);
    EXPECT_EQ(set(SV_SHOW, unknown, 0, 1), SetValueResult_ValueError);
  }
  QelUtilSetDealloc(&first);
  QelUtilSetDealloc(&unknown);
}

TEST_F(Plot, SwitchesLayersOfTheFrame) {
  EXPECT_TRUE(QelUtilFieldLayerSetIsActive(SV_SHOWMESH, true));
  EXPECT_TRUE(QelUtilFieldLayerIsActive(SV_SHOWMESH));
  EXPECT_EQ(Heard().size(), 1U);
  EXPECT_FALSE(QelUtilFieldLayerSetIsActive("SHOWSHINE", true));
  EXPECT_FALSE(QelUtilFieldLayerIsActive(nullptr));
  EXPECT_TRUE(QelUtilContourSetVariable(4));
  EXPECT_FALSE(QelUtilContourSetVariable(5));
  EXPECT_EQ(Heard().size(), 2U);
}

QelSetValueResult_e SetStyle(const std::vector<const char*>& path, LgIndex_t offset,
                             ArbParam_t value) {
  const char* const names[] = {SV_P1, SV_P2, SV_P3, SV_P4, SV_P5, SV_P6, SV_P7};
  QelArgList* list = QelUtilArgListAlloc();
  for (std::size_t i = 0; i < path.size(); ++i) {
    QelUtilArgListAppendString(list, names[i], path[i]);
  }
  if (offset != 0) QelUtilArgListAppendInt(list, SV_OFFSET1, offset);
  QelUtilArgListAppendArbParam(list, SV_IVALUE, value);
  const QelSetValueResult_e result = QelUtilStyleSetLowLevelX(list);
  if (result == SetValueResult_Ok) {
    ArbParam_t held = -1;
    QelUtilArgListAppendArbParamPtr(list, SV_IVALUE, &held);
    EXPECT_EQ(QelUtilStyleGetLowLevelX(list), SetValueResult_Ok);
    EXPECT_EQ(held, value);
  }
  QelUtilArgListDealloc(&list);
  return result;
}

TEST_F(Plot, StylesAreSetByPathAndTold) {
  const std::vector<const char*> variable = {SV_BLANKING, SV_VALUE, SV_CONSTRAINT, SV_VARA};
  EXPECT_EQ(SetStyle(variable, 1, 4), SetValueResult_Ok);
  EXPECT_EQ(SetStyle(variable, 1, 4), SetValueResult_Duplicate);
  EXPECT_EQ(SetStyle(variable, 1, 5), SetValueResult_ValueError);
  EXPECT_EQ(SetStyle(variable, 9, 4), SetValueResult_ValueError);
  EXPECT_EQ(SetStyle({SV_BLANKING, "SHINE"}, 0, 1), SetValueResult_SyntaxError);
  EXPECT_EQ(SetStyle({}, 0, 1), SetValueResult_SyntaxError);
  const std::vector<const char*> include = {SV_BLANKING, SV_VALUE, SV_INCLUDE};
  EXPECT_EQ(SetStyle(include, 0, 0), SetValueResult_Duplicate);
  EXPECT_FALSE(QelUtilBlankingIsActive());
  EXPECT_EQ(SetStyle(include, 0, 1), SetValueResult_Ok);
  EXPECT_TRUE(QelUtilBlankingIsActive());
  EXPECT_THAT(Heard(), ElementsAre("7 BLANKING VALUE CONSTRAINT", "7 BLANKING VALUE INCLUDE"));
}

TEST_F(Plot, EverythingThatExistsIsShownWithoutBlanking) {
  EXPECT_TRUE(QelUtilBlankingCheckDataPoint(1, 27));
  EXPECT_FALSE(QelUtilBlankingCheckDataPoint(1, 28));
  EXPECT_TRUE(QelUtilBlankingCheckFECell(1, 8));
  EXPECT_FALSE(QelUtilBlankingCheckFECell(1, 9));
  ShowOrdered(3, 3, 1);
  EXPECT_TRUE(QelUtilBlankingCheckIJKCell(1, 0, 4));
  EXPECT_FALSE(QelUtilBlankingCheckIJKCell(1, 0, 5));
}

TEST_F(Plot, PaperIsEqualToGrid) {
  EXPECT_EQ(QelUtilConvertXPosition(CoordSys_Grid, CoordSys_Paper, 1.5), 1.5);
  EXPECT_EQ(QelUtilConvertYPosition(CoordSys_Paper, CoordSys_Grid, -2), -2);
  EXPECT_EQ(QelUtilConvertXDimension(CoordSys_Grid, CoordSys_Paper, 0.25), 0.25);
  EXPECT_THAT(Heard(), IsEmpty());
}

}  // namespace
}  // namespace qelhost
