#pragma once

#include "Copy.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace soak {

/// The host in memory in a process of its own, so that its functions do not meet those of the open
/// host. Every question throws std::runtime_error when that process has ended.
class Peer {
 public:
  explicit Peer(const char* program);
  ~Peer();
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  Outcome Begin(const Copy& copy, const std::string& services,
                const std::vector<LgIndex_t>& relevantZones);
  Outcome Play(const std::string& line, const std::vector<LgIndex_t>& relevantZones);
  struct Ended {
    std::vector<std::string> complaints;
    Memory memory;
  };
  Ended End();

 private:
  std::string Ask(const std::string& message);

  pid_t m_process = 0;
  int m_to = -1;
  int m_from = -1;
};

}  // namespace soak
