// Runs the built program as a user would.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace clitests {

struct Outcome {
  int exitCode = -1;
  std::string out;
  std::string err;
};

struct Limits {
  long fileBytes = -1;         ///< the largest file that may be written; -1: no limit
  double interruptAfter = -1;  ///< seconds until an interrupt is sent; -1: none
};

Outcome RunProgram(const std::vector<std::string>& arguments, const Limits& limits = {});

int LineCount(const std::string& text);

/// A folder of its own for one test, removed with everything in it.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  std::string Path(const std::string& name) const { return (m_folder / name).string(); }
  /// Writes a text file and returns its path.
  std::string Write(const std::string& name, const std::string& text) const;
  /// The names in the folder, sorted.
  std::vector<std::string> Names() const;

 private:
  std::filesystem::path m_folder;
};

std::string ReadText(const std::string& path);

}  // namespace clitests
