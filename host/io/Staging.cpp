#include "Staging.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <set>
#include <utility>

#include "FileError.h"
#include "WriteCancel.h"

namespace qelhost {
namespace fs = std::filesystem;
namespace {

/// An open file that closes itself.
class Descriptor {
 public:
  Descriptor(const std::string& path, int flags) : m_fd(open(path.c_str(), flags | O_CLOEXEC)) {
    if (m_fd < 0) throw FileError(path, std::strerror(errno));
  }
  ~Descriptor() { close(m_fd); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return m_fd; }

 private:
  int m_fd;
};

std::string FreeFolder(const fs::path& directory, const std::string& stem) {
  std::string name = stem;
  for (int n = 2; fs::exists(fs::symlink_status(directory / name)); ++n) {
    name = stem + "_" + std::to_string(n);
  }
  return name;
}

bool IsNumbered(const std::string& folder, const std::string& stem) {
  if (folder == stem) return true;
  if (folder.compare(0, stem.size() + 1, stem + "_") != 0) return false;
  const std::string number = folder.substr(stem.size() + 1);
  return !number.empty() && std::all_of(number.begin(), number.end(),
                                        [](unsigned char c) { return std::isdigit(c) != 0; });
}

/// Brings a file's bytes to the disk; throws FileError when they do not arrive.
void SyncFile(const std::string& path) {
  const Descriptor file(path, O_RDONLY);
  // Pipes and some file systems have nothing to bring anywhere.
  if (fsync(file.Get()) != 0 && errno != EINVAL && errno != EROFS) {
    throw FileError(path, std::strerror(errno));
  }
}

/// Only a hint: a file system that cannot do it keeps the file all the same.
void SyncFolder(const std::string& path) {
  const int directory = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory < 0) return;
  fsync(directory);
  close(directory);
}

}  // namespace

StagedTarget::StagedTarget(const std::string& path, std::vector<std::string> oldPieces)
    : m_oldPieces(std::move(oldPieces)) {
  std::error_code error;
  const fs::path resolved = fs::weakly_canonical(fs::absolute(path), error);
  if (error) throw FileError(path, error.message());
  m_path = resolved.string();
  m_directory = resolved.parent_path().string();
  // Named as the caller named it: the real name of a link is nobody's business in the index.
  m_stem = fs::path(path).stem().string();
  if (!fs::is_directory(m_directory)) throw FileError(path, "its folder does not exist");
  m_folder = FreeFolder(m_directory, m_stem);
  // It keeps the extension, by which writers know the format.
  m_temporary = m_directory + "/." + m_stem + "." + std::to_string(getpid()) + ".part" +
                fs::path(path).extension().string();
}

StagedTarget::~StagedTarget() {
  if (m_committed) return;
  std::error_code ignored;  // nothing more can be done about a leftover
  fs::remove(m_temporary, ignored);
  fs::remove_all(FolderPath(), ignored);
}

std::string StagedTarget::FolderPath() const { return m_directory + "/" + m_folder; }

void StagedTarget::Commit() {
  StopIfCancelled();
  struct stat before {};
  const bool isReplacing = stat(m_path.c_str(), &before) == 0;
  if (isReplacing) {
    chmod(m_temporary.c_str(), before.st_mode & 07777);
    BringToDisk();
  }
  if (rename(m_temporary.c_str(), m_path.c_str()) != 0) {
    throw FileError(m_path, std::strerror(errno));
  }
  m_committed = true;
  if (isReplacing) SyncFolder(m_directory);
  RemoveOldPieces();
}

void StagedTarget::BringToDisk() const {
  SyncFile(m_temporary);
  std::error_code none;  // there is no folder when the target is a single file
  for (const auto& entry : fs::recursive_directory_iterator(FolderPath(), none)) {
    if (entry.is_regular_file()) SyncFile(entry.path().string());
  }
}

void StagedTarget::RemoveOldPieces() const {
  std::error_code error;
  std::set<fs::path> files;
  fs::path folder;
  for (const std::string& piece : m_oldPieces) {
    const fs::path file = fs::weakly_canonical(piece, error);
    const fs::path relative = file.lexically_relative(m_directory);
    // A piece that lies elsewhere may be another file's too: then all stay.
    if (error || relative.empty() || std::distance(relative.begin(), relative.end()) < 2) return;
    const fs::path top = *relative.begin();
    if (!IsNumbered(top.string(), m_stem) || top == m_folder) return;
    if (!folder.empty() && folder != top) return;
    folder = top;
    files.insert(file);
  }
  std::set<fs::path, std::greater<>> folders;  // inner ones first
  for (const fs::path& file : files) {
    fs::remove(file, error);
    for (fs::path at = file.parent_path(); at != fs::path(m_directory); at = at.parent_path()) {
      folders.insert(at);
    }
  }
  for (const fs::path& at : folders) fs::remove(at, error);  // refused unless it is empty
}

void RequireRoomBehind(const std::string& path) {
  const Descriptor file(path, O_RDWR | O_APPEND);
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) throw FileError(path, std::strerror(errno));
  const std::string padding(1 << 16, '\0');
  std::size_t written = 0;
  while (written < padding.size()) {
    const ssize_t now = write(file.Get(), padding.data() + written, padding.size() - written);
    if (now <= 0) throw FileError(path, std::strerror(now < 0 ? errno : ENOSPC));
    written += static_cast<std::size_t>(now);
  }
  if (ftruncate(file.Get(), status.st_size) != 0) throw FileError(path, std::strerror(errno));
}

}  // namespace qelhost
