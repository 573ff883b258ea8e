// Whole command lines, one after the other, as a host hands them to the add-on: on one that shows
// its data by services and on one that does not, with the same answers, values and recorded lines.
#include "World.h"

#include <cstring>
#include <string>
#include <vector>

namespace {

struct Outcome {
  std::vector<std::string> said;  ///< answers, recorded lines and boxes
  std::vector<std::vector<double>> values;
};

void Say(Outcome& outcome, const std::string& text) { outcome.said.push_back(text); }

QelCommandCheck_pf offeredCheck = nullptr;
void Offer(const char*, QelCommandCheck_pf check) { offeredCheck = check; }
const QelCommandCheck_s kCheckService = {Offer};

/// What is wrong with the line, as a host without data is told; empty: it is good.
std::string Checked(const std::string& line) {
  char* text = nullptr;
  const bool isGood = offeredCheck(line.c_str(), &text);
  std::string said = text == nullptr ? "" : text;
  QelUtilStringDealloc(&text);
  Demand(isGood || !said.empty(), "a bad line has a reason");
  return isGood ? "" : said;
}

Outcome Play(Input input, Shows shows) {
  fakehost::FakeHost& host = fakehost::Host();
  MakeWorld(input, shows, {{QEL_EXTENSION_COMMAND_CHECK, &kCheckService}});
  Outcome outcome;
  while (!input.IsAtEnd()) {
    // A host hands over C strings.
    const std::string line = input.Line().c_str();
    const std::string wrong = Checked(line);
    const fakehost::PlayResult result = host.Play(line);
    Demand(wrong.empty() || result.error == wrong, "what cannot be parsed fails for that reason");
    Demand(result.isDone == result.error.empty(), "a line fails with a reason, or is done");
    DemandOrder();
    Say(outcome, result.error);
  }
  for (const std::string& line : host.recordedLines) Say(outcome, line);
  for (const std::string& box : host.errorBoxes) Say(outcome, box);
  for (const fakehost::MessageShown& box : host.messageBoxes) Say(outcome, box.text);
  for (LgIndex_t zone = 1; host.ZoneAt(zone) != nullptr; ++zone) {
    Say(outcome, host.ZoneAt(zone)->name);
    const std::size_t count = host.ActiveData()->varNames.size();
    for (std::size_t var = 1; var <= count; ++var) {
      outcome.values.push_back(host.ValuesOf(zone, static_cast<LgIndex_t>(var)));
    }
  }
  EndWorld();
  return outcome;
}

/// Bit for bit, also of what is no number.
bool AreSame(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Outcome shown = Play(Input(data, size), Shows::AsTheInputSays);
  const Outcome asked = Play(Input(data, size), Shows::Nothing);
  Demand(shown.said == asked.said, "services change nothing that is said");
  Demand(shown.values.size() == asked.values.size(), "nor how many values there are");
  for (std::size_t n = 0; n < shown.values.size(); ++n) {
    Demand(AreSame(shown.values[n], asked.values[n]), "nor any value");
  }
  return 0;
}
