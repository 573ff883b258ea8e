// Many readings of damaged files, each batch in a process of its own, so that one that ends its
// process, takes too long or too much memory is counted, and the next ones go on.
#pragma once

#include <functional>
#include <string>

namespace filetesting {

enum Outcome { kRead, kRefused, kMoreThanVtk, kFailed, kOutcomes };

/// What both processes see of how far the trials are.
struct TrialState {
  static constexpr unsigned kMostKinds = 64;

  unsigned tried = 0;
  unsigned kind = 0;        ///< of the trial in hand, which says so
  bool isVtkAlone = false;  ///< what happens now is no fault of ours
  unsigned outcomes[kMostKinds][kOutcomes] = {};

  unsigned Sum(Outcome outcome) const;
};

/// How many, and from which number on; MUTATED_FILES and MUTATION_SEED in the environment ask for
/// more of them, or others.
struct TrialPlan {
  explicit TrialPlan(unsigned countOtherwise);

  unsigned count;
  unsigned first;
  std::string said;  ///< a file for what the processes print
  /// Tries one. Failures of the test are failures of the trial.
  std::function<Outcome(unsigned number, TrialState& state)> trial;
  /// Names one that failed; with a folder, its files are kept there.
  std::function<std::string(unsigned number, const std::string& folder)> name;
};

struct TrialResult {
  TrialState state;
  unsigned vtkFailed = 0;
  std::string failures;  ///< one after the other; "" when all survived

  unsigned Failed() const { return state.Sum(kFailed) - vtkFailed; }
};

/// What failed is kept in the folder MUTATED_KEEP of the environment, if there is one.
TrialResult RunTrials(const TrialPlan& plan);

/// No longer than a line.
bool IsOneLine(const std::string& text);

}  // namespace filetesting
