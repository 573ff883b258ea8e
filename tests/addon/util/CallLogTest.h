#pragma once

#include "CallLogHost.h"

#include <gtest/gtest.h>

/// Starts each test with a fresh host; locks and allocations must balance in every one.
class CallLogTest : public ::testing::Test {
 protected:
  void SetUp() override { callloghost::ResetHost(); }
  void TearDown() override {
    EXPECT_EQ(callloghost::Host().lockDepth, 0) << "a lock was left open";
    EXPECT_EQ(callloghost::Host().openStrings, 0);
    EXPECT_EQ(callloghost::Host().openSets, 0);
    EXPECT_EQ(callloghost::Host().openLists, 0);
  }
};
