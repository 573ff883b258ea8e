// How far the reading or the writing of files is.
#pragma once

#include <algorithm>
#include <functional>
#include <utility>

namespace qelhost {

/// Whom a thread tells how far its work is, and which part of the whole the work in hand is. The
/// answer false stops the work.
struct FileProgress {
  std::function<bool(double fraction)> tell;
  double first = 0.0;
  double last = 1.0;
  bool isCancelled = false;
  double told = 0.0;

  /// fraction: of the part in hand. What was told is never taken back: some readers begin anew with
  /// each section of a file.
  void Say(double fraction) {
    if (!tell || isCancelled) return;
    told = std::max(told, first + fraction * (last - first));
    isCancelled = !tell(told);
  }
};

/// Has somebody be told while it lives.
class ProgressTold {
 public:
  ProgressTold(FileProgress& progress, std::function<bool(double)> tell)
      : m_progress(progress), m_before(std::exchange(progress, FileProgress{std::move(tell)})) {}
  ~ProgressTold() { m_progress = std::move(m_before); }
  ProgressTold(const ProgressTold&) = delete;
  ProgressTold& operator=(const ProgressTold&) = delete;

 private:
  FileProgress& m_progress;
  FileProgress m_before;
};

/// What is done while it lives is the part from one fraction to another of the part before.
class ProgressPart {
 public:
  ProgressPart(FileProgress& progress, double from, double to)
      : m_progress(progress), m_first(progress.first), m_last(progress.last) {
    progress.first = m_first + from * (m_last - m_first);
    progress.last = m_first + to * (m_last - m_first);
  }
  ~ProgressPart() {
    m_progress.first = m_first;
    m_progress.last = m_last;
  }
  ProgressPart(const ProgressPart&) = delete;
  ProgressPart& operator=(const ProgressPart&) = delete;

 private:
  FileProgress& m_progress;
  double m_first;
  double m_last;
};

}  // namespace qelhost
