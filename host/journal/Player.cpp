#include "Player.h"

#include "HostCommands.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

namespace qelhost {

namespace {

struct AddOnLine {
  std::string addOn;
  std::string command;
};

AddOnLine Split(const std::string& line) {
  const std::size_t blank = std::min(line.find_first_of(" \t"), line.size());
  return {line.substr(0, blank), blank < line.size() ? line.substr(blank + 1) : std::string()};
}

std::string UnknownAddOn(const std::string& name) {
  return "No add-on named " + name + " is loaded.";
}

/// Marks the time in which a line is played, for the recorder.
class Playing {
 public:
  Playing(Host& host, const std::string& line, const LineResult& result)
      : m_host(host), m_line(line), m_result(result) {
    m_host.recorder.BeginPlaying();
  }
  ~Playing() { m_host.recorder.EndPlaying(m_line, m_result.isDone, StateOf(m_host.frames)); }
  Playing(const Playing&) = delete;
  Playing& operator=(const Playing&) = delete;

 private:
  Host& m_host;
  const std::string& m_line;
  const LineResult& m_result;
};

}  // namespace

LineResult Player::Play(const std::string& line) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  LineResult result;
  const HistoryOperation operation(m_host.history, line);
  if (m_isReporting) m_host.watch.Start();
  {
    const Playing playing(m_host, line, result);
    if (IsHostCommand(line)) {
      try {
        RunHostCommand(m_host, line);
        result.isDone = true;
      } catch (const ValuesError&) {
        throw;
      } catch (const std::exception& e) {
        result.message = e.what();
      }
    } else {
      PlayAddOnLine(line, result);
    }
    m_host.idle.Run();
  }
  if (!m_host.unreadableValues.empty()) {
    m_host.watch.Finish();
    throw ValuesError(std::exchange(m_host.unreadableValues, {}));
  }
  result.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  if (m_isReporting) result.alterations = m_host.watch.Finish();
  return result;
}

void Player::PlayAddOnLine(const std::string& line, LineResult& result) {
  const AddOnLine parts = Split(line);
  const QelMacroCommandCallback_pf callback = m_host.addOns.MacroCallbackOf(parts.addOn);
  if (callback == nullptr) {
    result.message = UnknownAddOn(parts.addOn);
    return;
  }
  char* text = nullptr;
  m_host.refusedWrite.clear();
  result.isDone = callback(parts.command.c_str(), &text);
  const std::string message = m_host.strings.TakeOver(text);
  if (result.isDone) return;
  result.message = message.empty() ? "The add-on gives no reason." : message;
  if (!m_host.refusedWrite.empty()) result.message += ": " + m_host.refusedWrite;
}

void Player::BeginChecks() const {
  for (const QelCommandCheck_pf check : m_host.addOns.CommandChecks()) check(nullptr, nullptr);
}

LineCheck Player::Check(const std::string& line) const {
  if (IsHostCommand(line)) {
    try {
      ParseHostCommand(line);
    } catch (const CommandError& e) {
      return {e.what(), {}};
    }
    return {};
  }
  const AddOnLine parts = Split(line);
  if (m_host.addOns.MacroCallbackOf(parts.addOn) == nullptr) return {UnknownAddOn(parts.addOn), {}};
  const QelCommandCheck_pf check = m_host.addOns.CommandCheckOf(parts.addOn);
  if (check == nullptr) return {};
  char* text = nullptr;
  const bool isGood = check(parts.command.c_str(), &text);
  const std::string message = m_host.strings.TakeOver(text);
  if (isGood) return {{}, message};
  return {message.empty() ? "The add-on gives no reason." : message, {}};
}

}  // namespace qelhost
