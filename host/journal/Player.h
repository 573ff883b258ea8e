#pragma once

#include "Host.h"

#include <string>
#include <vector>

namespace qelhost {

/// What a played line did.
struct LineResult {
  bool isDone = false;
  std::string message;                  ///< why it was not done
  std::vector<Alteration> alterations;  ///< empty unless asked for
  double seconds = 0.0;
};

/// What can be said of a line without playing it; both are empty for a good one.
struct LineCheck {
  std::string fault;    ///< why it cannot be carried out
  std::string warning;  ///< what it does that its author hardly meant
};

/// Plays a journal line by line: the host's own commands, and add-on lines ("NAME COMMAND"), which
/// are handed over unchanged. After each line the idle queue runs. A line is one operation of the
/// history.
class Player {
 public:
  explicit Player(Host& host) : m_host(host) {}

  /// Whether results say what was altered; costs a pass over each field before and after.
  void ReportAlterations(bool on) { m_isReporting = on; }

  /// Throws ValuesError when values that the line needed cannot be read from their file.
  LineResult Play(const std::string& line);

  /// Checks of a journal's lines, in their order, begin.
  void BeginChecks() const;
  /// Understands the line without touching data.
  LineCheck Check(const std::string& line) const;

 private:
  void PlayAddOnLine(const std::string& line, LineResult& result);

  Host& m_host;
  bool m_isReporting = false;
};

}  // namespace qelhost
