// Whatever happens to a reading for trial, this process goes on and learns of it.
#include "TrialRead.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FileError.h"
#include "ReadWatch.h"

namespace {

using qelhost::FileError;
using qelhost::ReadForTrial;
using qelhost::TrialLimits;

std::string ErrorOf(const std::function<void()>& read,
                    const TrialLimits& limits = {1 << 28, 10, 10}) {
  try {
    ReadForTrial("a.exo", limits, read);
  } catch (const FileError& error) {
    return error.what();
  }
  return {};
}

bool HasChildren() { return waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD; }

TEST(TrialRead, GoodFileSaysNothing) {
  EXPECT_EQ(ErrorOf([] {}), "");
  EXPECT_FALSE(HasChildren());
}

TEST(TrialRead, DeathIsDamage) {
  const std::string damaged = "a.exo: damaged: its reader cannot get through it";
  for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGABRT, SIGKILL}) {
    EXPECT_EQ(ErrorOf([signal] { raise(signal); }), damaged) << signal;
  }
  EXPECT_EQ(ErrorOf([] { _exit(1); }), damaged);
  EXPECT_FALSE(HasChildren());
}

TEST(TrialRead, NoEndIsDamage) {
  EXPECT_EQ(ErrorOf([] { pause(); }, {1 << 28, 10, 0.2}),
            "a.exo: damaged: its reader does not get to an end");
  EXPECT_EQ(ErrorOf(
                [] {
                  for (volatile unsigned n = 0;; ++n) continue;
                },
                {1 << 28, 1, 60}),
            "a.exo: damaged: its reader does not get to an end");
  EXPECT_FALSE(HasChildren());
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(TrialRead, MemoryWithoutEndIsDamage) {
  EXPECT_EQ(
      ErrorOf([] { std::vector<std::vector<char>> all(1000, std::vector<char>(1 << 22, 1)); }),
      "a.exo: damaged: it asks for more memory than a file of its size can need");
}
#endif

TEST(TrialRead, ErrorsComeThroughWithTheirFile) {
  EXPECT_EQ(ErrorOf([] { throw FileError("b.geo", "is bad"); }), "b.geo: is bad");
  EXPECT_EQ(ErrorOf([] { throw std::runtime_error("why"); }), "a.exo: why");
}

TEST(TrialRead, ErrorsComeThroughWhereStandardStreamsAreClosed) {
  const pid_t child = fork();
  if (child == 0) {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(stream);
    const std::string error = ErrorOf([] { throw FileError("b.geo", "is bad"); });
    _exit(error == "b.geo: is bad" ? 0 : 1);
  }
  int status = 1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

TEST(TrialRead, SaysNothingItself) {
  ::testing::internal::CaptureStderr();
  ErrorOf([] {
    std::fputs("something", stderr);
    std::fflush(stderr);
  });
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(TrialRead, StopsWhenItIsAsked) {
  const qelhost::ReadWatch watch([](double) { return false; });
  EXPECT_THROW(ReadForTrial("a.exo", {1 << 28, 60, 60}, [] { pause(); }), qelhost::ReadCancelled);
  EXPECT_FALSE(HasChildren());
}

TEST(TrialRead, LimitsGrowWithTheFile) {
  const TrialLimits small = TrialLimits::For(0);
  const TrialLimits large = TrialLimits::For(std::int64_t{1} << 62);
  EXPECT_GE(small.bytes, 1 << 28);
  EXPECT_LE(small.bytes, 1 << 30);
  EXPECT_LE(small.busySeconds, 10);
  EXPECT_LE(small.seconds, 20);
  EXPECT_GT(large.bytes, std::int64_t{1} << 50);
  EXPECT_GT(large.busySeconds, 1e9);
  EXPECT_GT(large.seconds, 1e9);
}

}  // namespace
