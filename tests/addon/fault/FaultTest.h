#pragma once

#include "FaultScenarios.h"

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

namespace fault {

/// What lasts for the process when it fails: work that is never asked for again.
inline const std::string kQueueing = "QelUtilOnIdleQueueAddCallback";

/// Runs the sessions with every fault and prints how many there were.
inline void ExpectAllSurvived(const std::string& what, const std::vector<Session>& sessions) {
  constexpr std::size_t kShown = 40;
  int faultCount = 0;
  int survivedCount = 0;
  std::size_t shown = 0;
  for (const Session& session : sessions) {
    FaultRunner runner(session);
    runner.RunAll({kQueueing});
    runner.RunApart(kQueueing);
    faultCount += runner.FaultCount();
    survivedCount += runner.SurvivedCount();
    for (const std::string& line : runner.Unexpected()) {
      if (++shown <= kShown) ADD_FAILURE() << line;
    }
  }
  EXPECT_GT(faultCount, 0);
  EXPECT_EQ(survivedCount, faultCount);
  std::cout << what << ": " << faultCount << " faults, " << survivedCount << " survived\n";
}

}  // namespace fault
