// The other process of the soak: the host in memory, asked through standard input and output.
#include "FakeSide.h"
#include "Wire.h"

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace soak;

std::string Answer(FakeSide& side, const std::string& message) {
  Reader reader(message);
  Writer answer;
  Request request{};
  std::vector<LgIndex_t> relevantZones;
  reader.Get(request);
  if (request == Request::Begin) {
    Copy copy;
    std::string services;
    reader.Get(copy);
    reader.Get(services);
    reader.Get(relevantZones);
    side.Begin(copy, services, relevantZones);
    answer.Put(side.Look(true, {}));
  } else if (request == Request::Play) {
    std::string line;
    reader.Get(line);
    reader.Get(relevantZones);
    answer.Put(side.Play(line, relevantZones));
  } else {
    answer.Put(side.End());
    answer.Put(MemoryInUse());
  }
  return answer.Bytes();
}

}  // namespace

int main() {
  try {
    FakeSide side;
    std::string message;
    while (Receive(STDIN_FILENO, message)) {
      if (!Send(STDOUT_FILENO, Answer(side, message))) return 1;
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "the host in memory ends: %s\n", error.what());
    return 1;
  }
  return 0;
}
