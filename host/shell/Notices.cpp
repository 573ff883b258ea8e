#include "Notices.h"

#include <algorithm>
#include <utility>

namespace qelhost {

void Notices::AddCallback(QelStateChangeCallback_pf callback) { m_callbacks.push_back(callback); }

void Notices::Send(QelStateChange_t change) {
  // By place: a callback may register another one.
  for (std::size_t i = 0; i < m_callbacks.size(); ++i) m_callbacks[i](change);
}

void Notices::SendStyle(std::vector<std::string> path) {
  m_stylesInDelivery.push_back(std::move(path));
  Send(StateChange_Style);
  m_stylesInDelivery.pop_back();
}

const std::string* Notices::StyleParameter(LgIndex_t n) const {
  constexpr LgIndex_t kParameterCount = 3;
  if (m_stylesInDelivery.empty() || n < 1 || n > kParameterCount) return nullptr;
  const std::vector<std::string>& path = m_stylesInDelivery.back();
  if (n > static_cast<LgIndex_t>(path.size())) return nullptr;
  return &path[static_cast<std::size_t>(n - 1)];
}

void IdleQueue::Add(QelOnIdleCallback_pf callback, ArbParam_t clientData) {
  m_waiting.push_back({callback, clientData});
}

void IdleQueue::Run() {
  constexpr int kMostRounds = 100;
  for (int round = 0; round < kMostRounds && !m_waiting.empty(); ++round) {
    const std::vector<Entry> batch = std::exchange(m_waiting, {});
    for (const Entry& entry : batch) entry.callback(entry.clientData);
  }
}

}  // namespace qelhost
