// Whole command lines, one after the other, as a host hands them to the add-on.
#include "World.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  MakeWorld(input);
  while (!input.IsAtEnd()) {
    // A host hands over C strings.
    const std::string line = input.Line().c_str();
    const fakehost::PlayResult result = fakehost::Host().Play(line);
    Demand(result.isDone == result.error.empty(), "a line fails with a reason, or is done");
    DemandOrder();
  }
  EndWorld();
  return 0;
}
