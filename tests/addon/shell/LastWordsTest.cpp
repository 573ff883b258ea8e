// What lasts for the rest of the process: once the host quits, nothing is put off any more, and
// work whose queueing was refused is never queued again. Each test leaves a mark that no other may
// depend on, in the order below.
#include "DialogTest.h"

namespace {

using fakehost::DialogTest;
using fakehost::kGeneralError;
using qelvane::qelutiltools::DialogSession;
using qelvane::qelutiltools::Selvane;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class LastWords : public DialogTest {
 protected:
  void RefuseOnce(QelStateChange_t change) {
    host.FailCall("QelUtilOnIdleQueueAddCallback", 1);
    host.Deliver(change);
    EXPECT_TRUE(host.WasFaultHit());
    EXPECT_THAT(host.errorBoxes, ElementsAre(kGeneralError));
    EXPECT_THAT(host.idleQueue, IsEmpty());
    host.calls.clear();
    host.Deliver(change);
    EXPECT_EQ(host.CallCount("QelUtilOnIdleQueueAddCallback"), 0) << "queued again";
    EXPECT_THAT(host.errorBoxes, SizeIs(1));
  }
};

TEST_F(LastWords, AfterQuittingNothingTouchesTheDialog) {
  Selvane* const first = DialogSession();
  const std::vector<std::string> items = host.At(Ids().variableMenu).items;
  host.AddVariable("new", ValueLocation_Nodal, fakehost::StoredType::Double,
                   [](LgIndex_t, LgIndex_t) { return 0.0; });
  host.Deliver(StateChange_VarsAdded);
  AddBlock(PlotType_Cartesian3D);
  host.Deliver(StateChange_NewActiveFrame);
  ASSERT_THAT(host.idleQueue, SizeIs(2));
  host.Deliver(StateChange_QuitHost);
  EXPECT_TRUE(host.IsDialogUp());
  host.calls.clear();
  host.RunIdleQueue();
  for (const fakehost::CallRecord& call : host.calls) {
    EXPECT_NE(call.function.rfind("QelGUI", 0), 0U) << call.function;
  }
  EXPECT_EQ(host.At(Ids().variableMenu).items, items);
  EXPECT_EQ(DialogSession(), first);
  EXPECT_TRUE(host.IsDialogUp());
  // Nor where nothing can be picked any more.
  host.AddFrame(PlotType_Sketch);
  host.Deliver(StateChange_NewActiveFrame);
  host.RunIdleQueue();
  EXPECT_TRUE(host.IsDialogUp());
}

TEST_F(LastWords, ARefusedRefillIsNeverQueuedAgain) {
  RefuseOnce(StateChange_VarsAdded);
  host.Deliver(StateChange_NewActiveFrame);
  EXPECT_THAT(host.idleQueue, SizeIs(1)) << "the other kind of work waits with it";
}

TEST_F(LastWords, ARefusedBindingIsNeverQueuedAgain) { RefuseOnce(StateChange_NewActiveFrame); }

}  // namespace
