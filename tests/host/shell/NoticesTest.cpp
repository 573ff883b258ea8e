#include "Notices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qelhost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> heard;
Notices* notices = nullptr;

std::string Parameters() {
  std::string text;
  for (LgIndex_t n = 0; n <= 4; ++n) {
    const std::string* const parameter = notices->StyleParameter(n);
    text += parameter == nullptr ? " -" : ' ' + *parameter;
  }
  return text;
}

class NoticesOfTheHost : public ::testing::Test {
 protected:
  void SetUp() override {
    heard.clear();
    notices = &m_notices;
  }
  Notices m_notices;
};

TEST_F(NoticesOfTheHost, ReachEveryCallbackInTheOrderOfRegistration) {
  m_notices.AddCallback([](QelStateChange_t c) { heard.push_back("first " + std::to_string(c)); });
  m_notices.AddCallback([](QelStateChange_t c) { heard.push_back("second " + std::to_string(c)); });
  m_notices.Send(StateChange_View);
  EXPECT_THAT(heard, ElementsAre("first 10", "second 10"));
}

TEST_F(NoticesOfTheHost, TellUpToThreeStyleParametersWhileAStyleChangeIsDelivered) {
  m_notices.AddCallback([](QelStateChange_t) { heard.push_back(Parameters()); });
  m_notices.SendStyle({"BLANKING", "VALUE", "CONSTRAINT", "VARA"});
  m_notices.SendStyle({"PLOTTYPE"});
  EXPECT_THAT(heard, ElementsAre(" - BLANKING VALUE CONSTRAINT -", " - PLOTTYPE - - -"));
  EXPECT_EQ(Parameters(), " - - - - -");
}

TEST_F(NoticesOfTheHost, KeepTheParametersOfTheOuterStyleChangeAfterAnInnerOne) {
  m_notices.AddCallback([](QelStateChange_t) {
    if (heard.empty()) {
      heard.push_back("outer" + Parameters());
      notices->SendStyle({"INNER"});
      heard.push_back("outer" + Parameters());
    } else {
      heard.push_back("inner" + Parameters());
    }
  });
  m_notices.SendStyle({"OUTER"});
  EXPECT_THAT(heard,
              ElementsAre("outer - OUTER - - -", "inner - INNER - - -", "outer - OUTER - - -"));
}

TEST_F(NoticesOfTheHost, ReachACallbackThatIsRegisteredDuringDelivery) {
  m_notices.AddCallback([](QelStateChange_t) {
    notices->AddCallback([](QelStateChange_t) { heard.emplace_back("late"); });
  });
  m_notices.Send(StateChange_View);
  EXPECT_THAT(heard, ElementsAre("late"));
}

std::vector<ArbParam_t> run;
IdleQueue* idle = nullptr;

TEST(IdleQueue, RunsEachCallbackOnceInOrder) {
  run.clear();
  IdleQueue queue;
  for (const ArbParam_t data : {3, 1, 2}) {
    queue.Add([](ArbParam_t clientData) { run.push_back(clientData); }, data);
  }
  queue.Run();
  queue.Run();
  EXPECT_THAT(run, ElementsAre(3, 1, 2));
}

TEST(IdleQueue, RunsWhatACallbackQueuesAfterWhatWaitsAlready) {
  run.clear();
  IdleQueue queue;
  idle = &queue;
  queue.Add(
      [](ArbParam_t) {
        run.push_back(1);
        idle->Add([](ArbParam_t clientData) { run.push_back(clientData); }, 3);
      },
      0);
  queue.Add([](ArbParam_t clientData) { run.push_back(clientData); }, 2);
  queue.Run();
  EXPECT_THAT(run, ElementsAre(1, 2, 3));
  EXPECT_EQ(queue.Size(), 0U);
}

void QueueItselfAgain(ArbParam_t) { idle->Add(QueueItselfAgain, 0); }

TEST(IdleQueue, ComesToAnEndWithACallbackThatAlwaysQueuesItself) {
  IdleQueue queue;
  idle = &queue;
  queue.Add(QueueItselfAgain, 0);
  queue.Run();
  EXPECT_EQ(queue.Size(), 1U);
}

}  // namespace
}  // namespace qelhost
