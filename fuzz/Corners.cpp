// Any text as CORNERS: refused with a reason, or a polygon whose own text makes it again.
#include "Input.h"

#include "FakeHost.h"
#include "PolyBoundary.h"

namespace {

using namespace qelvane::qelutiltools;

MacroCommand CommandWith(const std::vector<std::string>& corners) {
  MacroCommand command;
  command.Command = Command_PickPolygon;
  MacroAttribute attribute;
  attribute.Attribute = Attribute_Corners;
  attribute.Value.Strings = corners;
  command.Attributes.push_back(attribute);
  return command;
}

void Try(const std::uint8_t* data, std::size_t size) {
  fakehost::FakeHost& host = fakehost::Host();
  std::vector<std::string> corners;
  for (Input input(data, size); !input.IsAtEnd();) corners.push_back(input.Line());

  MacroEngine.SetError("%s", "");
  CPolyBoundary boundary;
  if (!boundary.PickPolygon(CommandWith(corners))) {
    Demand(!MacroEngine.GlobalError().empty(), "refused corners have a reason");
    Demand(!boundary.IsDefined(), "and leave the boundary as it was");
    return;
  }
  Demand(!boundary.Definition().corners.empty() || !boundary.IsDefined(), "a polygon has corners");
  boundary.RecordAsMacro();
  Demand(host.recordedLines.size() == 1, "one line is recorded");
  if (boundary.Definition().corners.empty()) return;

  // Six digits are kept: the text of the text is the same.
  const std::string line = host.recordedLines.front();
  MacroCommand command;
  Demand(MacroEngine.ParseCommand(line.substr(line.find(' ') + 1), command), "it parses");
  CPolyBoundary again;
  Demand(again.PickPolygon(command), "and is a polygon again");
  again.RecordAsMacro();
  Demand(host.recordedLines.back() == line, "with the same text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fakehost::FakeHost& host = fakehost::Host();
  host.keepsCalls = false;
  host.isRecording = true;
  Try(data, size);
  // What is kept longer than the run looks like a leak, and every look for one takes time.
  host.recordedLines = {};
  MacroEngine.CurrentCommand = {};
  return 0;
}
