#include "Peer.h"

#include "Wire.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace soak {

namespace {

Outcome OutcomeIn(const std::string& message) {
  Reader reader(message);
  Outcome outcome;
  reader.Get(outcome);
  return outcome;
}

}  // namespace

Peer::Peer(const char* program) {
  int to[2] = {};
  int from[2] = {};
  if (pipe(to) != 0 || pipe(from) != 0) throw std::runtime_error("no pipe can be made");
  std::signal(SIGPIPE, SIG_IGN);
  m_process = fork();
  if (m_process < 0) throw std::runtime_error("no process can be made");
  if (m_process == 0) {
    dup2(to[0], STDIN_FILENO);
    dup2(from[1], STDOUT_FILENO);
    for (const int file : {to[0], to[1], from[0], from[1]}) close(file);
    execl(program, program, static_cast<char*>(nullptr));
    _exit(127);
  }
  close(to[0]);
  close(from[1]);
  m_to = to[1];
  m_from = from[0];
}

Peer::~Peer() {
  close(m_to);
  close(m_from);
  waitpid(m_process, nullptr, 0);
}

std::string Peer::Ask(const std::string& message) {
  std::string answer;
  if (!Send(m_to, message) || !Receive(m_from, answer)) {
    throw std::runtime_error("the host in memory has ended");
  }
  return answer;
}

Outcome Peer::Begin(const Copy& copy, const std::string& services,
                    const std::vector<LgIndex_t>& relevantZones) {
  Writer writer;
  writer.Put(Request::Begin);
  writer.Put(copy);
  writer.Put(services);
  writer.Put(relevantZones);
  return OutcomeIn(Ask(writer.Bytes()));
}

Outcome Peer::Play(const std::string& line, const std::vector<LgIndex_t>& relevantZones) {
  Writer writer;
  writer.Put(Request::Play);
  writer.Put(line);
  writer.Put(relevantZones);
  return OutcomeIn(Ask(writer.Bytes()));
}

Peer::Ended Peer::End() {
  Writer writer;
  writer.Put(Request::End);
  Reader reader(Ask(writer.Bytes()));
  Ended ended;
  reader.Get(ended.complaints);
  reader.Get(ended.memory);
  return ended;
}

}  // namespace soak
