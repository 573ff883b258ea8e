// Any text as a journal: refused by a line that says where, or cut into lines that the host's own
// parser takes or refuses by a line of text.
#include "Input.h"

#include "HostCommands.h"
#include "Journal.h"

namespace {

void DemandOneLine(const std::string& reason) {
  Demand(!reason.empty(), "there is a reason");
  Demand(reason.find_first_of("\r\n") == std::string::npos, "the reason is one line");
}

void Parse(const std::string& line) {
  qelhost::IsBlankingCommand(line);
  qelhost::NeedsHistory(line);
  try {
    // The others are handed to add-ons as they are.
    if (!qelhost::IsHostCommand(line)) return;
    Demand(qelhost::ParseHostCommand(line) != nullptr, "what is understood can be done");
  } catch (const qelhost::CommandError& e) {
    DemandOneLine(e.what());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    int last = 0;
    for (const qelhost::JournalLine& line : qelhost::ParseJournal(text, "journal")) {
      Demand(line.number > last, "lines are numbered upwards");
      Demand(!line.text.empty() && line.text.front() != '#',
             "blank lines and remarks are left out");
      Demand(line.text.find_first_of(std::string("\n\0", 2)) == std::string::npos,
             "a line is one line");
      last = line.number;
      Parse(line.text);
    }
  } catch (const qelhost::JournalError& e) {
    DemandOneLine(e.what());
  }
  return 0;
}
