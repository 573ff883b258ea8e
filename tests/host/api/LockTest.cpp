#include "ApiTesting.h"

#include "qelvane/Extensions.h"
#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string Owner() {
  char* name = nullptr;
  return QelUtilLockGetCurrentOwnerName(&name) ? Taken(name) : "none";
}

QelAddOn* LoadedAddOn() {
  static QelAddOn* const addOn = QelUtilAddOnRegister(110, "Tester", "V1", "Me");
  return addOn;
}

class Lock : public ::testing::Test {
 protected:
  void SetUp() override {
    CloseEverything();
    StartListening();
  }
  void TearDown() override {
    EXPECT_FALSE(QelUtilLockIsOn());
    CloseEverything();
  }
};

TEST_F(Lock, IsAStackOfOwners) {
  EXPECT_EQ(Owner(), "none");
  QelUtilLockStart(LoadedAddOn());
  QelUtilLockStart(LoadedAddOn());
  QelUtilLockOn();
  EXPECT_EQ(Owner(), "Workbench");
  QelUtilLockOff();
  EXPECT_EQ(Owner(), "Tester");
  QelUtilLockFinish(LoadedAddOn());
  EXPECT_TRUE(QelUtilLockIsOn());
  QelUtilLockFinish(LoadedAddOn());
  EXPECT_EQ(Owner(), "none");
}

TEST_F(Lock, NobodysNameIsRefusedWithNull) {
  char text[] = "text";
  char* name = text;
  EXPECT_FALSE(QelUtilLockGetCurrentOwnerName(&name));
  EXPECT_EQ(name, nullptr);
}

TEST_F(Lock, ANullAddOnIsIgnored) {
  QelUtilLockStart(nullptr);
  EXPECT_FALSE(QelUtilLockIsOn());
  QelUtilLockFinish(nullptr);
}

TEST_F(Lock, AnAddOnHearsItsOwnChangesAsTheOwner) {
  ShowBricks(2, 2, 2);
  Heard().clear();
  QelUtilLockStart(LoadedAddOn());
  EXPECT_TRUE(QelUtilMouseSetMode(Mouse_Zoom));
  EXPECT_TRUE(QelUtilViewRotate3D(RotateAxis_Psi, 90, 0, 0, 0, RotateOriginLocation_DefinedOrigin));
  EXPECT_TRUE(QelUtilMacroExecuteCommand("$!VIEW FIT"));
  QelUtilLockFinish(LoadedAddOn());
  EXPECT_THAT(Heard(), ElementsAre("25 by Tester", "7 THREEDVIEW by Tester", "10 by Workbench"));
}

TEST_F(Lock, RegistrationRefusesAnAddOnWithoutAName) {
  EXPECT_NE(LoadedAddOn(), nullptr);
  EXPECT_EQ(QelUtilAddOnRegister(110, nullptr, "V1", "Me"), nullptr);
  EXPECT_EQ(QelUtilAddOnRegister(110, "", "V1", "Me"), nullptr);
  EXPECT_EQ(QelUtilAddOnRegister(0, "Tester", "V1", "Me"), nullptr);
  EXPECT_FALSE(QelUtilMacroAddCommandCallback("Tester", nullptr));
}

TEST_F(Lock, AnnouncementsReachEveryCallback) {
  ShowBricks(2, 2, 2);
  Heard().clear();
  QelUtilStateChanged(StateChange_VarsAdded, 0);
  QelArgList* list = QelUtilArgListAlloc();
  QelUtilArgListAppendInt(list, SV_STATECHANGE, StateChange_VarsAltered);
  QelUtilStateChangedX(list);
  QelUtilArgListClear(list);
  QelUtilStateChangedX(list);
  QelUtilArgListDealloc(&list);
  EXPECT_THAT(Heard(), ElementsAre("1", "2"));
}

TEST_F(Lock, AStateChangeCallbackMustComeWithAModeTheHostKnows) {
  QelArgList* list = QelUtilArgListAlloc();
  EXPECT_FALSE(QelUtilStateChangeAddCallbackX(list));
  QelUtilArgListAppendInt(list, SV_STATECHANGEMODE, StateChangeMode_v100);
  EXPECT_FALSE(QelUtilStateChangeAddCallbackX(list));
  QelUtilArgListAppendFunction(list, SV_CALLBACKFUNCTION, nullptr);
  EXPECT_FALSE(QelUtilStateChangeAddCallbackX(list));
  const QelStateChangeCallback_pf callback = [](QelStateChange_t change) {
    if (change == StateChange_QuitHost) Heard().emplace_back("registered");
  };
  const void* address = nullptr;
  std::memcpy(&address, &callback, sizeof address);
  QelUtilArgListAppendFunction(list, SV_CALLBACKFUNCTION, address);
  QelUtilArgListAppendInt(list, SV_STATECHANGEMODE, 99);
  EXPECT_FALSE(QelUtilStateChangeAddCallbackX(list));
  QelUtilArgListAppendInt(list, SV_STATECHANGEMODE, StateChangeMode_v100);
  QelUtilArgListAppendInt(list, SV_STATECHANGECALLBACKAPI, StateChangeCallbackAPI_ChangeOnly);
  EXPECT_TRUE(QelUtilStateChangeAddCallbackX(list));
  QelUtilArgListDealloc(&list);
  QelUtilStateChanged(StateChange_QuitHost, 0);
  EXPECT_THAT(Heard(), ElementsAre("15", "registered"));
}

TEST_F(Lock, StyleParametersExistOnlyWhileAStyleChangeIsDelivered) {
  char* parameter = nullptr;
  EXPECT_FALSE(QelUtilStateChangeGetStyleParam(1, &parameter));
  ShowBricks(2, 2, 2);
  EXPECT_EQ(Heard().back(), "7 PLOTTYPE by Workbench");
  EXPECT_FALSE(QelUtilStateChangeGetStyleParam(1, &parameter));
}

std::vector<ArbParam_t> run;

TEST_F(Lock, IdleWorkRunsOnceInOrderAndWithoutTheLock) {
  run.clear();
  const QelOnIdleCallback_pf callback = [](ArbParam_t data) {
    run.push_back(QelUtilLockIsOn() ? -data : data);
    if (data == 2) QelUtilOnIdleQueueAddCallback([](ArbParam_t more) { run.push_back(more); }, 9);
  };
  EXPECT_FALSE(QelUtilOnIdleQueueAddCallback(nullptr, 1));
  EXPECT_TRUE(QelUtilOnIdleQueueAddCallback(callback, 2));
  EXPECT_TRUE(QelUtilOnIdleQueueAddCallback(callback, 1));
  EXPECT_THAT(run, IsEmpty());
  RunIdle();
  RunIdle();
  EXPECT_THAT(run, ElementsAre(2, 1, 9));
}

TEST_F(Lock, ExtensionsThatAreNotOfferedAreNull) {
  EXPECT_EQ(QelUtilExtensionGet("qelvane.bulk-access/2"), nullptr);
  EXPECT_EQ(QelUtilExtensionGet(""), nullptr);
  EXPECT_EQ(QelUtilExtensionGet(nullptr), nullptr);
}

}  // namespace
}  // namespace qelhost
