#pragma once

#include "qelvane/Types.h"

#include <string>
#include <vector>

namespace qelhost {

/// Tells every registered callback of state changes, in the order of registration.
class Notices {
 public:
  void AddCallback(QelStateChangeCallback_pf callback);
  void Send(QelStateChange_t change);
  /// A style change; its path can be asked for while it is delivered.
  void SendStyle(std::vector<std::string> path);
  /// The n-th name of the path in delivery, from 1; null when there is none.
  const std::string* StyleParameter(LgIndex_t n) const;

 private:
  std::vector<QelStateChangeCallback_pf> m_callbacks;
  std::vector<std::vector<std::string>> m_stylesInDelivery;
};

/// Work that waits until the host has nothing else to do.
class IdleQueue {
 public:
  void Add(QelOnIdleCallback_pf callback, ArbParam_t clientData);
  /// Runs what is queued, once each and in order, what a callback queues meanwhile too, up to a
  /// limit that keeps a callback which always queues itself from standing still.
  void Run();
  std::size_t Size() const { return m_waiting.size(); }

 private:
  struct Entry {
    QelOnIdleCallback_pf callback;
    ArbParam_t clientData;
  };
  std::vector<Entry> m_waiting;
};

}  // namespace qelhost
