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
  SyncFile(m_temporary);
  struct stat before {};
  if (stat(m_path.c_str(), &before) == 0) chmod(m_temporary.c_str(), before.st_mode & 07777);
  if (rename(m_temporary.c_str(), m_path.c_str()) != 0) {
    throw FileError(m_path, std::strerror(errno));
  }
  m_committed = true;
  const int directory = open(m_directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory >= 0) {
    fsync(directory);
    close(directory);
  }
  RemoveOldPieces();
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

EarlyWriteback::EarlyWriteback(const std::string& path)
    : m_path(path), m_thread([this] { Run(); }) {}

EarlyWriteback::~EarlyWriteback() {
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_stop = true;
  }
  m_wake.notify_one();
  m_thread.join();
}

void EarlyWriteback::Run() {
  constexpr std::chrono::milliseconds kPause{10};
  int fd = -1;
  std::unique_lock<std::mutex> lock(m_mutex);
  while (!m_wake.wait_for(lock, kPause, [this] { return m_stop; })) {
    if (fd < 0) fd = open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    // Only a hint: what fails here fails again in the sync that is checked.
    if (fd >= 0) sync_file_range(fd, 0, 0, SYNC_FILE_RANGE_WRITE);
  }
  if (fd >= 0) close(fd);
}

void SyncFile(const std::string& path) {
  const Descriptor file(path, O_RDONLY);
  // Pipes and some file systems have nothing to bring anywhere.
  if (fsync(file.Get()) != 0 && errno != EINVAL && errno != EROFS) {
    throw FileError(path, std::strerror(errno));
  }
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
