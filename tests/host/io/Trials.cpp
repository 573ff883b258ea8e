#include "Trials.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <system_error>

#include "FileTesting.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

namespace filetesting {
namespace {

constexpr long kMostKilobytes = 1 << 20;
/// Of work; beside it a busy machine may do others'.
constexpr unsigned kMostSeconds = 20;
constexpr unsigned kMostSecondsBeside = 120;

unsigned NumberFrom(const char* variable, unsigned otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(text, nullptr, 10));
}

/// Of this process, or of those that it started.
bool IsMemorySmall(int whose) {
  rusage used{};
  getrusage(whose, &used);
  return used.ru_maxrss <= kMostKilobytes;
}

/// Ends this process when a trial takes too long.
void LimitTime() {
  constexpr unsigned kSlower = kIsSanitized ? 10 : 1;
  itimerval work{};
  work.it_value.tv_sec = kSlower * kMostSeconds;
  setitimer(ITIMER_PROF, &work, nullptr);
  alarm(kSlower * kMostSecondsBeside);
}

/// Of the process that runs the trials.
[[noreturn]] void TryAll(const TrialPlan& plan, TrialState& state) {
  const int to = open(plan.said.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_APPEND, 0600);
  const int out = open((plan.said + ".out").c_str(), O_RDWR | O_CREAT | O_TRUNC | O_APPEND, 0600);
  dup2(to, STDERR_FILENO);
  dup2(out, STDOUT_FILENO);
  const rlimit space = {rlim_t{4} << 30, rlim_t{4} << 30};
  if (!kIsSanitized) setrlimit(RLIMIT_AS, &space);
  while (state.tried < plan.count) {
    LimitTime();
    const unsigned number = plan.first + state.tried++;
    state.isVtkAlone = false;
    Outcome outcome = kFailed;
    try {
      outcome = plan.trial(number, state);
    } catch (const std::exception& error) {
      ADD_FAILURE() << "an error of an unexpected kind: " << error.what();
    }
    const bool isSmall = IsMemorySmall(RUSAGE_SELF) && IsMemorySmall(RUSAGE_CHILDREN);
    EXPECT_TRUE(kIsSanitized || isSmall) << "it takes too much memory";
    if (::testing::Test::HasFailure()) outcome = kFailed;
    ++state.outcomes[state.kind][outcome];
    if (outcome == kFailed) break;
  }
  std::fflush(nullptr);
  _exit(0);
}

/// Runs some trials in a process of their own, up to the first that fails: why, or "".
std::string RunApart(const TrialPlan& plan, TrialState& state) {
  const unsigned failedBefore = state.Sum(kFailed);
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) throw std::system_error(errno, std::generic_category());
  if (child == 0) TryAll(plan, state);
  int status = 0;
  waitpid(child, &status, 0);
  const std::string text = Contents(plan.said) + Contents(plan.said + ".out");
  if (state.Sum(kFailed) > failedBefore) return text;
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};
  ++state.outcomes[state.kind][kFailed];
  return "the process ended by " + std::to_string(status) + "\n" + text;
}

void NameFailure(const TrialPlan& plan, unsigned number, const std::string& why,
                 std::string& failures) {
  const char* const keep = std::getenv("MUTATED_KEEP");
  const std::string folder =
      keep == nullptr ? std::string() : std::string(keep) + "/" + std::to_string(number);
  if (keep != nullptr) fs::create_directories(folder);
  const std::string name = plan.name(number, folder);
  if (keep != nullptr) Save(folder + "/why.txt", name + "\n" + why);
  failures +=
      "mutation " + std::to_string(number) + " of " + name + ": " + why.substr(0, 1500) + "\n";
}

}  // namespace

unsigned TrialState::Sum(Outcome outcome) const {
  unsigned sum = 0;
  for (const auto& ofKind : outcomes) sum += ofKind[outcome];
  return sum;
}

TrialPlan::TrialPlan(unsigned countOtherwise)
    : count(NumberFrom("MUTATED_FILES", countOtherwise)), first(NumberFrom("MUTATION_SEED", 1)) {}

TrialResult RunTrials(const TrialPlan& plan) {
  void* const memory =
      mmap(nullptr, sizeof(TrialState), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  auto& state = *new (memory) TrialState;
  TrialResult result;  // told at the end: what runs apart begins without a failure
  while (state.tried < plan.count) {
    const std::string why = RunApart(plan, state);
    if (why.empty()) continue;
    if (state.isVtkAlone) {
      ++result.vtkFailed;
    } else {
      NameFailure(plan, plan.first + state.tried - 1, why, result.failures);
    }
  }
  result.state = state;
  munmap(memory, sizeof(TrialState));
  return result;
}

bool IsOneLine(const std::string& text) {
  return !text.empty() && text.find('\n') == std::string::npos;
}

}  // namespace filetesting
