// Runs the built program as a user would, in a folder of its own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/types.h>

namespace clitest {

struct Outcome {
  int exitCode = -1;  ///< -1 when a signal ended the program
  std::string out;
  std::string err;
};

struct Surroundings {
  std::vector<std::string> environment;  ///< NAME=value, beside the test's own
  long long fileSizeLimit = -1;          ///< bytes; no limit when negative
  std::string standardOutput;            ///< a file for it in place of Outcome::out
};

/// A program that runs; its output goes to files beside the folder given.
class Running {
 public:
  Running(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
          const Surroundings& surroundings = {});
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running();

  bool HasEnded();
  void Send(int signal) const;
  /// What it has written to standard error so far.
  std::string ErrorsSoFar() const;
  Outcome Wait();

 private:
  std::filesystem::path m_out;
  std::filesystem::path m_err;
  pid_t m_pid = -1;
  bool m_isOver = false;
  int m_status = 0;
};

/// A test in an empty folder; paths are relative to it, for the program too.
class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest();
  ~ProgramTest() override;

  std::string Path(const std::string& name) const { return (m_folder / name).string(); }
  const std::filesystem::path& Folder() const { return m_folder; }
  void WriteText(const std::string& name, const std::string& text) const;
  std::string ReadText(const std::string& name) const;
  /// Names of everything in the folder and below, sorted.
  std::vector<std::string> Listing() const;

  Outcome Run(const std::vector<std::string>& arguments, const Surroundings& surroundings = {});

 private:
  std::filesystem::path m_folder;
};

/// The text of a journal with these lines; its header is line 1.
std::string Journal(const std::vector<std::string>& lines);

/// The text is one line and holds every one of the parts.
::testing::AssertionResult IsOneLineWith(const std::string& text,
                                         const std::vector<std::string>& parts);

}  // namespace clitest
