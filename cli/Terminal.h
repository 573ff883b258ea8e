// What the program says, and the codes it ends with.
#pragma once

#include <stdexcept>
#include <string>

namespace marquell::cli {

enum ExitCode {
  kDone = 0,
  kLineFailed = 1,
  kWrongCommandLine = 2,
  kFileFailed = 3,
  kInterrupted = 130,
};

/// A command line that asks for something impossible; ends the program with kWrongCommandLine.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A file that stands in the way; ends the program with kFileFailed.
class TargetError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class Verbosity { kQuiet, kNormal, kVerbose };

/// Sends log messages to standard error, so that standard output carries only what was asked for.
void StartLog(Verbosity verbosity);

/// The text without line breaks and what else terminals obey: every message is one line.
std::string OneLine(const std::string& text);

/// Writes one line to standard error.
void PrintError(const std::string& text);

/// Writes to standard output.
///
/// throws  TargetError when it takes no more
void Print(const std::string& text);

/// A number the way people write it: six significant digits.
std::string Number(double value);

}  // namespace marquell::cli
