#pragma once

#include "FaultScenarios.h"

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

namespace fault {

/// Runs the sessions with what `run` makes of their runners and prints how many runs there were.
template <class Run>
void ExpectAllSurvived(const std::string& what, const std::vector<Session>& sessions,
                       const char* troubles, Run run) {
  constexpr std::size_t kShown = 40;
  int faultCount = 0;
  int survivedCount = 0;
  std::size_t shown = 0;
  for (const Session& session : sessions) {
    FaultRunner runner(session);
    run(runner);
    faultCount += runner.FaultCount();
    survivedCount += runner.SurvivedCount();
    for (const std::string& line : runner.Unexpected()) {
      if (++shown <= kShown) ADD_FAILURE() << line;
    }
  }
  EXPECT_GT(faultCount, 0);
  EXPECT_EQ(survivedCount, faultCount);
  std::cout << what << ": " << faultCount << " " << troubles << ", " << survivedCount
            << " survived\n";
}

/// The same with every call refused.
inline void ExpectAllSurvived(const std::string& what, const std::vector<Session>& sessions) {
  ExpectAllSurvived(what, sessions, "faults", [](FaultRunner& runner) {
    runner.RunAll({kQueueing});
    runner.RunApart(kQueueing);
  });
}

}  // namespace fault
