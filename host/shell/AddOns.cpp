#include "AddOns.h"

#include <dlfcn.h>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>

namespace qelhost {

namespace {

namespace fs = std::filesystem;

constexpr char kEntryPoint[] = "InitQelAddOn113";

std::string LoaderError() {
  const char* const text = dlerror();
  return text == nullptr ? "the loader gives no reason" : text;
}

bool IsAddOnName(const fs::path& file) {
  return file.extension() == ".so" && file.filename().string().rfind("lib", 0) != 0;
}

void AddFilesOf(const fs::path& place, std::vector<std::string>& files) {
  std::error_code error;
  if (!fs::is_directory(place, error)) {
    files.push_back(place.string());
    return;
  }
  std::vector<std::string> found;
  for (const fs::directory_entry& entry : fs::directory_iterator(place, error)) {
    if (IsAddOnName(entry.path())) found.push_back(entry.path().string());
  }
  std::sort(found.begin(), found.end());
  files.insert(files.end(), found.begin(), found.end());
}

}  // namespace

QelAddOn* AddOnRegistry::Register(const std::string& name, const std::string& version,
                                  const std::string& author) {
  if (name.empty()) return nullptr;
  m_addOns.push_back({name, version, author});
  return &m_addOns.back();
}

bool AddOnRegistry::IsHandle(const QelAddOn* addOn) const {
  return std::any_of(m_addOns.begin(), m_addOns.end(),
                     [addOn](const QelAddOn& known) { return &known == addOn; });
}

AddOnRegistry::Entry& AddOnRegistry::EntryOf(const std::string& name) {
  for (Entry& entry : m_entries) {
    if (entry.name == name) return entry;
  }
  m_entries.push_back({name});
  return m_entries.back();
}

const AddOnRegistry::Entry* AddOnRegistry::FindEntry(const std::string& name) const {
  for (const Entry& entry : m_entries) {
    if (entry.name == name) return &entry;
  }
  return nullptr;
}

bool AddOnRegistry::SetMacroCallback(const std::string& name, QelMacroCommandCallback_pf callback) {
  if (name.empty() || callback == nullptr) return false;
  EntryOf(name).macroCallback = callback;
  return true;
}

void AddOnRegistry::SetCommandCheck(const std::string& name, QelCommandCheck_pf check) {
  if (!name.empty()) EntryOf(name).commandCheck = check;
}

QelMacroCommandCallback_pf AddOnRegistry::MacroCallbackOf(const std::string& name) const {
  const Entry* const entry = FindEntry(name);
  return entry == nullptr ? nullptr : entry->macroCallback;
}

QelCommandCheck_pf AddOnRegistry::CommandCheckOf(const std::string& name) const {
  const Entry* const entry = FindEntry(name);
  return entry == nullptr ? nullptr : entry->commandCheck;
}

std::vector<QelCommandCheck_pf> AddOnRegistry::CommandChecks() const {
  std::vector<QelCommandCheck_pf> checks;
  for (const Entry& entry : m_entries) {
    if (entry.commandCheck != nullptr) checks.push_back(entry.commandCheck);
  }
  return checks;
}

void LoadAddOnLibrary(const std::string& file) {
  static std::set<void*> loaded;
  std::error_code error;
  if (!fs::exists(file, error)) throw AddOnError(file + ": there is no such add-on");
  // A path without a slash would be looked for in the system's library folders.
  void* const library = dlopen(fs::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw AddOnError(file + ": cannot be loaded: " + LoaderError());
  if (!loaded.insert(library).second) return;
  void* const entryPoint = dlsym(library, kEntryPoint);
  if (entryPoint == nullptr) {
    loaded.erase(library);
    dlclose(library);
    throw AddOnError(file + ": is not an add-on (it has no " + kEntryPoint + ")");
  }
  reinterpret_cast<QelAddOnInit_pf>(entryPoint)();
}

std::vector<std::string> AddOnFilesToLoad() {
  std::vector<std::string> files;
  if (const char* const path = std::getenv("MARQUELL_ADDON_PATH")) {
    std::istringstream places(path);
    for (std::string place; std::getline(places, place, ':');) {
      if (!place.empty()) AddFilesOf(place, files);
    }
    return files;
  }
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (error) return files;
  // Where programs of all kinds are installed the first exists; the second is a build's own.
  for (const char* const folder : {"../lib/marquell", "../lib"}) {
    const fs::path place = (program.parent_path() / folder).lexically_normal();
    if (!fs::is_directory(place, error)) continue;
    AddFilesOf(place, files);
    break;
  }
  return files;
}

}  // namespace qelhost
