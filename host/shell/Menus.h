#pragma once

#include "qelvane/Types.h"

#include <string>
#include <vector>

namespace qelhost {

struct MenuEntry {
  std::string path;
  std::string label;  ///< empty: a separator
  int mnemonic = 0;
  QelMenuCallback_pf callback = nullptr;
  bool isSensitive = true;
};

/// The entries that add-ons put into the host's menus, in the order in which they came.
class Menus {
 public:
  void AddSeparator(const std::string& path);
  void AddOption(const std::string& path, const std::string& label, int mnemonic,
                 QelMenuCallback_pf callback);
  void SetSensitivity(const std::string& path, const std::string& label, bool sensitive);
  const std::vector<MenuEntry>& Entries() const { return m_entries; }
  /// A user's choice; false when there is no such entry or it is greyed.
  bool Choose(const std::string& path, const std::string& label) const;

 private:
  std::vector<MenuEntry> m_entries;
};

}  // namespace qelhost
