#pragma once

#include "FakeHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// The add-on's one exported function.
extern "C" void InitQelAddOn113(void);

namespace fakehost {

/// Starts every test with a fresh host. Misuse of the interface fails every test, unasked.
class FakeHostTest : public ::testing::Test {
 protected:
  FakeHostTest() : host(Host()) { host.Reset(); }

  void TearDown() override {
    // Everything is closed: whatever the add-on kept for a data set has to go.
    host.Deliver(StateChange_NewLayout);
    // Work that was put off is over with its test.
    host.RunIdleQueue();
    EXPECT_FALSE(host.HasDamagedGaps()) << "something was written between values";
    EXPECT_EQ(host.LockDepth(), 0) << "a lock was left open";
    EXPECT_EQ(host.dataLoadDepth, 0) << "a data-load bracket was left open";
    EXPECT_THAT(host.waitMessages, ::testing::IsEmpty()) << "a wait message was left on show";
    EXPECT_THAT(host.Misuse(), ::testing::IsEmpty())
        << "calls made unlocked, on stale or foreign handles";
    EXPECT_THAT(host.Leaks(), ::testing::IsEmpty());
  }

  /// Plays a line that has to be carried out.
  void PlayWell(const std::string& command) {
    const PlayResult result = host.Play(command);
    EXPECT_TRUE(result.isDone) << command << ": " << result.error;
    EXPECT_EQ(result.macroErrorStrings, 0);
  }

  /// Plays a line that has to fail in a session; exactly one replaced string is left over.
  std::string PlayBadly(const std::string& command) {
    const PlayResult result = host.Play(command);
    EXPECT_FALSE(result.isDone) << command;
    EXPECT_EQ(result.macroErrorStrings, 1) << command;
    return result.error;
  }

  FakeHost& host;
};

}  // namespace fakehost
