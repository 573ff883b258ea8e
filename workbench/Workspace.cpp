#include "Workspace.h"

#include <exception>
#include <utility>

#include "UserActions.h"

namespace marquell::workbench {

bool Workspace::Do(const std::function<void(qelhost::Host&)>& deed) {
  std::string reason;
  ++m_depth;
  try {
    deed(m_host);
  } catch (const std::exception& e) {
    reason = e.what();
  }
  --m_depth;
  if (m_depth > 0) {
    if (!reason.empty()) throw std::runtime_error(reason);
    return true;
  }
  if (reason.empty()) reason = std::exchange(m_host.unreadableValues, {});
  const bool isDone = reason.empty();
  emit Changed();
  // Who looks at the host again may come upon values that cannot be read as well.
  if (isDone) reason = std::exchange(m_host.unreadableValues, {});
  if (!reason.empty()) emit Failed(QString::fromStdString(reason));
  return isDone;
}

bool Workspace::Act(const std::string& command) {
  return Do([&command](qelhost::Host& host) { qelhost::Act(host, command); });
}

}  // namespace marquell::workbench
