// A progress bar on standard error, for people who wait.
#pragma once

#include <chrono>
#include <string>

namespace marquell::cli {

/// Shows nothing unless standard error is a terminal and the work has taken two seconds.
class Progress {
 public:
  explicit Progress(bool isWanted);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Show(std::size_t done, std::size_t all, const std::string& what);
  /// Takes the bar off the terminal, so that a message gets a line of its own.
  void Clear();

 private:
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
  bool m_isWanted;
  bool m_isShown = false;
};

}  // namespace marquell::cli
