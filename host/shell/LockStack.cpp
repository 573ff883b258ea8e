#include "LockStack.h"

#include <algorithm>

namespace qelhost {

void LockStack::Pop(const std::string& owner) {
  const auto latest = std::find(m_owners.rbegin(), m_owners.rend(), owner);
  if (latest != m_owners.rend()) m_owners.erase(std::next(latest).base());
}

}  // namespace qelhost
