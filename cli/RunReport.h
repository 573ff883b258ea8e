// What a run did, line by line, as text and as JSON.
#pragma once

#include "Host.h"
#include "Journal.h"
#include "RunPlan.h"

#include <string>
#include <vector>

namespace marquell::cli {

struct PlayedLine {
  qelhost::JournalLine line;
  std::string failure;  ///< empty when the line was carried out
  std::vector<std::string> messages;
  std::vector<qelhost::Alteration> alterations;
  double seconds = 0.0;
};

struct RunRecord {
  std::vector<PlayedLine> lines;
  std::vector<std::string> written;
  double readSeconds = 0.0;
  double writeSeconds = 0.0;
};

std::string SummaryText(const RunRecord& record);

/// Writes the record as JSON, complete or not at all.
///
/// throws  TargetError
void WriteReport(const RunOptions& options, const RunRecord& record);

}  // namespace marquell::cli
