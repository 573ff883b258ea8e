// Any line: it is parsed or refused with a reason, and what was parsed is recorded as a line that
// means the same.
#include "Input.h"

#include "CMacroEngine.h"
#include "FakeHost.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace qelvane::qelutiltools;

/// The line that the command is recorded as.
std::string Recorded(const MacroCommand& command) {
  fakehost::FakeHost& host = fakehost::Host();
  host.recordedLines.clear();
  MacroEngine.RecordCommand(command);
  Demand(host.recordedLines.size() == 1, "one line is recorded");
  const std::string line = host.recordedLines.front();
  return line.substr(line.find(' ') + 1);
}

void AskEveryGetter(const MacroValue& value) {
  static constexpr std::int32_t kKeywords[] = {Keyword_AllInside, Keyword_AnyOutside};
  std::string text;
  std::vector<std::string> texts;
  bool flag = false;
  double number = 0.0;
  std::int32_t integer = 0;
  const bool isAnswered[] = {MacroEngine.GetString(value, text),
                             MacroEngine.GetBoolean(value, flag),
                             MacroEngine.GetDouble(value, number)};
  Demand(MacroEngine.GetStringList(value, texts) == isAnswered[0], "a text is a list of texts");
  Demand(isAnswered[0] + isAnswered[1] + isAnswered[2] == (value.Type != MacroValue::kKeyword),
         "a value has one type");
  if (MacroEngine.GetDoubleInRange(value, -1.0, 1.0, number)) {
    Demand(!(number < -1.0 || number > 1.0), "the range is kept");
  }
  if (MacroEngine.GetIntInRange(value, 1, 5, integer)) {
    Demand(integer >= 1 && integer <= 5, "the range of integers is kept");
  }
  Demand(MacroEngine.GetInt(value, integer) == isAnswered[2], "a number is an integer too");
  MacroEngine.GetKeywordIndex(value, 2, kKeywords, integer);
  MacroEngine.GetKeywordMapped(value, &integer, Keyword_Blank, 1, Keyword_Alter, 2,
                               Keyword_EndOfList);
}

/// A number beyond the largest is recorded as "inf", which is no number of the grammar.
bool IsFinite(const MacroCommand& command) {
  return std::all_of(
      command.Attributes.begin(), command.Attributes.end(),
      [](const MacroAttribute& attribute) { return std::isfinite(attribute.Value.Number); });
}

void Try(const std::string& line) {
  MacroCommand command;
  MacroEngine.SetError("%s", "");
  if (!MacroEngine.ParseCommand(line, command)) {
    Demand(!MacroEngine.GlobalError().empty(), "a refused line has a reason");
    return;
  }
  if (command.Command == Command_None) return;
  for (const MacroAttribute& attribute : command.Attributes) AskEveryGetter(attribute.Value);
  if (!IsFinite(command)) return;

  const std::string first = Recorded(command);
  MacroCommand again;
  Demand(MacroEngine.ParseCommand(first, again), "a recorded line parses");
  Demand(again.Command == command.Command, "it is the same command");
  Demand(again.Attributes.size() == command.Attributes.size(), "with as many attributes");
  for (std::size_t n = 0; n < again.Attributes.size(); ++n) {
    const MacroValue& before = command.Attributes[n].Value;
    const MacroValue& after = again.Attributes[n].Value;
    Demand(after.Strings == before.Strings, "texts come back");
    Demand(after.Boolean == before.Boolean && after.Keyword == before.Keyword, "words come back");
  }
  // A number that rounding made a whole one is written as such from now on.
  const std::string second = Recorded(again);
  MacroCommand last;
  Demand(MacroEngine.ParseCommand(second, last), "a line recorded again parses");
  Demand(Recorded(last) == second, "a line recorded again is recorded as itself");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fakehost::FakeHost& host = fakehost::Host();
  host.keepsCalls = false;
  host.isRecording = true;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  // A host hands over C strings.
  Try(bytes.c_str());
  // What is kept longer than the run looks like a leak, and every look for one takes time.
  host.recordedLines = {};
  return 0;
}
