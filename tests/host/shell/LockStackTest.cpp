#include "LockStack.h"

#include <gtest/gtest.h>

namespace qelhost {
namespace {

TEST(LockStack, TheLastToPushIsTheOwner) {
  LockStack lock;
  EXPECT_FALSE(lock.IsOn());
  EXPECT_EQ(lock.Owner(), "");
  lock.Push("A");
  lock.Push("B");
  EXPECT_EQ(lock.Owner(), "B");
  lock.Pop("B");
  EXPECT_EQ(lock.Owner(), "A");
}

TEST(LockStack, PairsOfOneOwnerNest) {
  LockStack lock;
  lock.Push("A");
  lock.Push("A");
  lock.Pop("A");
  EXPECT_TRUE(lock.IsOn());
  lock.Pop("A");
  EXPECT_FALSE(lock.IsOn());
}

TEST(LockStack, AFinishWithoutAStartTakesNobodyElsesLock) {
  LockStack lock;
  lock.Pop("A");
  lock.Push("B");
  lock.Pop("A");
  EXPECT_EQ(lock.Owner(), "B");
  EXPECT_EQ(lock.Depth(), 1U);
}

TEST(LockStack, TheHostHoldsItWhileItActs) {
  LockStack lock;
  {
    const HostAction action(lock);
    EXPECT_EQ(lock.Owner(), "Workbench");
  }
  EXPECT_FALSE(lock.IsOn());
}

}  // namespace
}  // namespace qelhost
