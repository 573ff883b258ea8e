#pragma once

#include <string>
#include <vector>

namespace qelhost {

/// Who holds the host's lock: a stack of owners, the top being the one that others are told.
class LockStack {
 public:
  /// The name under which the host itself holds the lock.
  static constexpr const char* kHostName = "Workbench";

  void Push(std::string owner) { m_owners.push_back(std::move(owner)); }
  /// Takes the owner's latest entry away; ignored when it holds none.
  void Pop(const std::string& owner);
  bool IsOn() const { return !m_owners.empty(); }
  /// Empty when no lock is on.
  std::string Owner() const { return m_owners.empty() ? std::string() : m_owners.back(); }
  std::size_t Depth() const { return m_owners.size(); }

 private:
  std::vector<std::string> m_owners;
};

/// Holds the lock in the host's name while it carries out an action of its own.
class HostAction {
 public:
  explicit HostAction(LockStack& lock) : m_lock(lock) { m_lock.Push(LockStack::kHostName); }
  ~HostAction() { m_lock.Pop(LockStack::kHostName); }
  HostAction(const HostAction&) = delete;
  HostAction& operator=(const HostAction&) = delete;

 private:
  LockStack& m_lock;
};

/// Lets go of the lock that the host holds for its action while an add-on's function runs in it.
class HostPause {
 public:
  explicit HostPause(LockStack& lock)
      : m_lock(lock), m_isHeld(lock.Owner() == LockStack::kHostName) {
    if (m_isHeld) m_lock.Pop(LockStack::kHostName);
  }
  ~HostPause() {
    if (m_isHeld) m_lock.Push(LockStack::kHostName);
  }
  HostPause(const HostPause&) = delete;
  HostPause& operator=(const HostPause&) = delete;

 private:
  LockStack& m_lock;
  bool m_isHeld;
};

}  // namespace qelhost
