#pragma once

#include "qelvane/Extensions.h"
#include "qelvane/Types.h"

#include <deque>
#include <stdexcept>
#include <string>
#include <vector>

/// An add-on that has registered: what the contract calls its handle.
struct QelAddOn {
  std::string name;
  std::string version;
  std::string author;
};

namespace qelhost {

/// An add-on that cannot be loaded. what() is one line: the file and the reason.
class AddOnError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Everything add-ons have told the host about themselves.
class AddOnRegistry {
 public:
  /// The handle lives as long as the process. Null for an empty name.
  QelAddOn* Register(const std::string& name, const std::string& version,
                     const std::string& author);
  /// Whether the pointer is a handle that Register gave.
  bool IsHandle(const QelAddOn* addOn) const;

  bool SetMacroCallback(const std::string& name, QelMacroCommandCallback_pf callback);
  void SetCommandCheck(const std::string& name, QelCommandCheck_pf check);
  /// Null when no add-on of that name gave one.
  QelMacroCommandCallback_pf MacroCallbackOf(const std::string& name) const;
  QelCommandCheck_pf CommandCheckOf(const std::string& name) const;
  /// Those of all add-ons that gave one.
  std::vector<QelCommandCheck_pf> CommandChecks() const;

  const std::deque<QelAddOn>& All() const { return m_addOns; }

 private:
  struct Entry {
    std::string name;
    QelMacroCommandCallback_pf macroCallback = nullptr;
    QelCommandCheck_pf commandCheck = nullptr;
  };
  Entry& EntryOf(const std::string& name);
  const Entry* FindEntry(const std::string& name) const;

  std::deque<QelAddOn> m_addOns;
  std::vector<Entry> m_entries;
};

/// Loads the library, calls its entry point and leaves it loaded for the life of the process. An
/// add-on that is loaded already is not initialised again.
///
/// throws  AddOnError when there is no such file, it cannot be loaded or is no add-on
void LoadAddOnLibrary(const std::string& file);

/// The add-ons that a program finds by itself: those in MARQUELL_ADDON_PATH (folders and files
/// between colons), else the libraries without a "lib" prefix in ../lib/marquell beside the program
/// or, where there is no such folder, in ../lib.
std::vector<std::string> AddOnFilesToLoad();

}  // namespace qelhost
