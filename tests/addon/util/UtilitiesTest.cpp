#include "Utilities.h"

#include "CallLogTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

namespace qelvane::qelutiltools {
namespace {

using callloghost::Host;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr double kRadiansPerDegree = 1.0 / 57.29577951308232;

class UtilitiesTest : public CallLogTest {};

TEST_F(UtilitiesTest, ShowAddOnErrorShowsTheTextOrTheGeneralOne) {
  ShowAddOnError(std::runtime_error("secret"), "Marquell add-on failed to load.");
  ShowAddOnError(std::runtime_error("secret"), nullptr);
  EXPECT_THAT(Host().log,
              ElementsAre("Locked ErrMsg Marquell add-on failed to load.",
                          "Locked ErrMsg An error occured in the Marquell add-on. Please try "
                          "again."));
}

TEST_F(UtilitiesTest, ShowAddOnErrorShowsNothingInBatchMode) {
  Host().isBatch = true;
  ShowAddOnError(std::runtime_error("secret"), "text");
  EXPECT_THAT(Host().log, IsEmpty());
}

TEST_F(UtilitiesTest, RotateViewToTurnsByTheDifferencesInOrder) {
  Host().psi = 10.0 * kRadiansPerDegree;
  Host().alpha = 20.0 * kRadiansPerDegree;
  Host().theta = 30.0 * kRadiansPerDegree;
  RotateViewTo(90.0, -90.0, 0.0, false);
  EXPECT_THAT(Host().log, ElementsAre("Rotate psi 80", "Rotate alpha -110", "Rotate theta -30"));
}

TEST_F(UtilitiesTest, RotateViewToKeepsTheSignOfTheRemainder) {
  Host().psi = 350.0 * kRadiansPerDegree;
  Host().alpha = -500.0 * kRadiansPerDegree;
  Host().theta = 800.0 * kRadiansPerDegree;
  RotateViewTo(0.0, 0.0, 0.0, false);
  EXPECT_THAT(Host().log, ElementsAre("Rotate psi -350", "Rotate alpha 140", "Rotate theta -80"));
}

TEST_F(UtilitiesTest, RotateViewToFitsTheSurfacesAfterTheTurns) {
  RotateViewTo(90.0, 0.0, 0.0, true);
  EXPECT_THAT(Host().log, ElementsAre("Rotate psi 90", "Rotate alpha 0", "Rotate theta 0",
                                      "Execute $!VIEW FITSURFACES"));
}

TEST_F(UtilitiesTest, FindZoneByNameYieldsTheFirstOfTwoZonesOfOneName) {
  Host().zoneNames = {"a", "wing", "wing"};
  EXPECT_EQ(FindZoneByName("wing"), 2);
}

struct ZoneRow {
  const char* rule;
  const char* name;
};

class ZoneNotFound : public CallLogTest, public ::testing::WithParamInterface<ZoneRow> {};

TEST_P(ZoneNotFound, YieldsZero) {
  Host().zoneNames = {"wing", "tail"};
  EXPECT_EQ(FindZoneByName(GetParam().name), 0);
}

INSTANTIATE_TEST_SUITE_P(Rules, ZoneNotFound,
                         ::testing::Values(ZoneRow{"OtherCase", "WING"}, ZoneRow{"Part", "win"},
                                           ZoneRow{"Longer", "wings"}, ZoneRow{"Empty", ""}),
                         [](const auto& row) { return std::string(row.param.rule); });

TEST_F(UtilitiesTest, FindZoneByNameAsksNothingWithoutADataSet) {
  Host().zoneNames = {"wing"};
  Host().hasDataSet = false;
  EXPECT_EQ(FindZoneByName("wing"), 0);
  EXPECT_THAT(Host().log, IsEmpty());
}

TEST_F(UtilitiesTest, NotifyVarsAlteredSendsOneZoneAndOneVariable) {
  NotifyVarsAltered(3, 5);
  ASSERT_FALSE(Host().log.empty());
  EXPECT_EQ(Host().log.back(), "StateChangedX STATECHANGE=2 ZONELIST={ 3 } VARLIST={ 5 }");
}

TEST_F(UtilitiesTest, RedrawIfRecordingDrawsOnlyWhileRecording) {
  RedrawIfRecording();
  EXPECT_THAT(Host().log, IsEmpty());
  Host().isRecording = true;
  RedrawIfRecording();
  EXPECT_THAT(Host().log, ElementsAre("Locked Redraw 1"));
}

struct RefusedRow {
  const char* rule;
  const char* refused;  ///< as in the host's log
  const char* quoted;
  std::function<void()> operation;
};

class RefusedCall : public CallLogTest, public ::testing::WithParamInterface<RefusedRow> {};

TEST_P(RefusedCall, IsAnInternalErrorThatQuotesItAndEndsTheOperation) {
  Host().zoneNames = {"wing"};
  Host().isRecording = true;
  Host().refused = GetParam().refused;
  try {
    GetParam().operation();
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(),
                StartsWith(std::string("Assert failed: ") + GetParam().quoted + " (Utilities "));
  }
  EXPECT_EQ(Host().log.back(), GetParam().refused);
}

void Rotate() { RotateViewTo(0.0, 0.0, 0.0, true); }
void Find() { FindZoneByName("wing"); }
void Notify() { NotifyVarsAltered(3, 5); }

INSTANTIATE_TEST_SUITE_P(
    Calls, RefusedCall,
    ::testing::Values(
        RefusedRow{"RotatePsi", "Rotate psi 0",
                   "QelUtilViewRotate3D(RotateAxis_Psi, dPsi, 0.0, 0.0, 0.0, "
                   "RotateOriginLocation_DefinedOrigin)",
                   Rotate},
        RefusedRow{"RotateAlpha", "Rotate alpha 0",
                   "QelUtilViewRotate3D(RotateAxis_Alpha, dAlpha, 0.0, 0.0, 0.0, "
                   "RotateOriginLocation_DefinedOrigin)",
                   Rotate},
        RefusedRow{"RotateTheta", "Rotate theta 0",
                   "QelUtilViewRotate3D(RotateAxis_Theta, dTheta, 0.0, 0.0, 0.0, "
                   "RotateOriginLocation_DefinedOrigin)",
                   Rotate},
        RefusedRow{"Fit", "Execute $!VIEW FITSURFACES",
                   "QelUtilMacroExecuteCommand(\"$!VIEW FITSURFACES\")", Rotate},
        RefusedRow{"DataSetInfo", "DataSetGetInfo", "QelUtilDataSetGetInfo(NULL, &nZones, NULL)",
                   Find},
        RefusedRow{"ZoneName", "ZoneGetName 1", "QelUtilZoneGetName(zone, &zname)", Find},
        RefusedRow{"ZoneSet", "SetAlloc 1", "zoneSet = QelUtilSetAlloc(FALSE)", Notify},
        RefusedRow{"VarSet", "SetAlloc 2", "varSet = QelUtilSetAlloc(FALSE)", Notify},
        RefusedRow{"ZoneMember", "SetAddMember 3",
                   "QelUtilSetAddMember(zoneSet, static_cast<SetIndex_t>(zoneNum), FALSE)", Notify},
        RefusedRow{"VarMember", "SetAddMember 5",
                   "QelUtilSetAddMember(varSet, static_cast<SetIndex_t>( varNum), FALSE)", Notify},
        RefusedRow{"ArgList", "ArgListAlloc", "argList = QelUtilArgListAlloc()", Notify},
        RefusedRow{"StateChange", "Append STATECHANGE=2",
                   "QelUtilArgListAppendInt(argList, SV_STATECHANGE, StateChange_VarsAltered)",
                   Notify},
        RefusedRow{"ZoneList", "Append ZONELIST={ 3 }",
                   "QelUtilArgListAppendSet(argList, SV_ZONELIST, zoneSet)", Notify},
        RefusedRow{"VarList", "Append VARLIST={ 5 }",
                   "QelUtilArgListAppendSet(argList, SV_VARLIST, varSet)", Notify},
        RefusedRow{"Redraw", "Locked Redraw 1", "QelUtilRedraw(TRUE)", RedrawIfRecording}),
    [](const auto& row) { return std::string(row.param.rule); });

}  // namespace
}  // namespace qelvane::qelutiltools
