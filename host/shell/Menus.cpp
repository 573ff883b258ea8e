#include "Menus.h"

namespace qelhost {

void Menus::AddSeparator(const std::string& path) { m_entries.push_back({path, {}, 0, nullptr}); }

void Menus::AddOption(const std::string& path, const std::string& label, int mnemonic,
                      QelMenuCallback_pf callback) {
  m_entries.push_back({path, label, mnemonic, callback});
}

void Menus::SetSensitivity(const std::string& path, const std::string& label, bool sensitive) {
  for (MenuEntry& entry : m_entries) {
    if (entry.path == path && entry.label == label) entry.isSensitive = sensitive;
  }
}

bool Menus::Choose(const std::string& path, const std::string& label) const {
  for (const MenuEntry& entry : m_entries) {
    if (entry.path != path || entry.label != label || entry.callback == nullptr) continue;
    if (!entry.isSensitive) return false;
    const QelMenuCallback_pf callback = entry.callback;
    callback();
    return true;
  }
  return false;
}

}  // namespace qelhost
