#include "Staging.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <set>
#include <utility>

#include "FileError.h"
#include "IndexFiles.h"
#include "WriteCancel.h"

namespace qelhost {
namespace fs = std::filesystem;
namespace {

/// An open file that closes itself; Close says what a close finds.
class Descriptor {
 public:
  Descriptor(const std::string& path, int flags)
      : m_path(path), m_fd(open(path.c_str(), flags | O_CLOEXEC, 0666)) {
    if (m_fd < 0) throw FileError(path, std::strerror(errno));
  }
  ~Descriptor() {
    if (m_fd >= 0) close(m_fd);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return m_fd; }
  void Close() {
    if (close(std::exchange(m_fd, -1)) != 0) throw FileError(m_path, std::strerror(errno));
  }

 private:
  std::string m_path;
  int m_fd;
};

void WriteAll(const Descriptor& file, const std::string& path, const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t now = write(file.Get(), bytes.data() + done, bytes.size() - done);
    if (now < 0 && errno == EINTR) continue;
    if (now <= 0) throw FileError(path, std::strerror(now < 0 ? errno : ENOSPC));
    done += static_cast<std::size_t>(now);
  }
}

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

/// Only a superuser can give files away; others may be in the group at least. A file that stays the
/// user's own loses nothing.
void GiveTo(const std::string& path, uid_t owner, gid_t group) {
  constexpr auto kUnchanged = static_cast<uid_t>(-1);
  const bool isGiven =
      chown(path.c_str(), owner, group) == 0 || chown(path.c_str(), kUnchanged, group) == 0;
  static_cast<void>(isGiven);
}

/// Brings a folder's names to the disk; gives the reason when they are lost, else 0. A file system
/// that cannot do it keeps them all the same.
int SyncFolder(const std::string& path) {
  const int directory = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory < 0) return 0;
  const int reason = fsync(directory) == 0 ? 0 : errno;
  close(directory);
  return reason == EIO || reason == ENOSPC || reason == EDQUOT ? reason : 0;
}

void RequireSyncedFolder(const std::string& path) {
  if (const int reason = SyncFolder(path)) throw FileError(path, std::strerror(reason));
}

/// The file that a path leads to, which need not be there: links are followed to their end.
fs::path RealTarget(const std::string& path) {
  std::error_code error;
  fs::path at = fs::absolute(path, error);
  constexpr int kMostLinks = 40;
  for (int n = 0; n < kMostLinks && !error && fs::is_symlink(fs::symlink_status(at, error)); ++n) {
    at = at.parent_path() / fs::read_symlink(at, error);
  }
  fs::path real = fs::weakly_canonical(at, error);
  if (error) throw FileError(path, error.message());
  return real;
}

/// What the names of a target's working folders begin with; no longer than a name may be with a
/// process' number behind.
std::string StartOfWorkNames(const fs::path& target) {
  constexpr std::size_t kLongest = 200;
  return "." + target.filename().string().substr(0, kLongest) + ".";
}

constexpr char kWorkEnd[] = ".part";

/// The process that made a working folder; 0 for other names.
pid_t MakerOf(const std::string& name, const std::string& start) {
  const std::size_t ends = start.size() + std::strlen(kWorkEnd);
  if (name.size() <= ends || name.compare(0, start.size(), start) != 0) return 0;
  if (name.compare(name.size() - std::strlen(kWorkEnd), std::string::npos, kWorkEnd) != 0) return 0;
  const std::string between = name.substr(start.size(), name.size() - ends);
  const std::string number = between.substr(0, between.find('-'));
  constexpr std::size_t kMostDigits = 9;
  const bool isNumber = !number.empty() && number.size() <= kMostDigits &&
                        number.find_first_not_of("0123456789") == std::string::npos;
  return isNumber ? static_cast<pid_t>(std::stol(number)) : 0;
}

/// Whether a working folder's maker is dead: nobody holds its lock then. Its number keeps apart one
/// that has made its folder and not locked it yet. Where folders cannot be locked nobody is dead.
bool IsAbandoned(const fs::path& folder, pid_t maker) {
  if (maker <= 0) return false;
  if (maker != getpid() && (kill(maker, 0) == 0 || errno != ESRCH)) return false;
  const int at = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (at < 0) return false;
  struct stat status {};
  const bool isOurs = fstat(at, &status) == 0 && status.st_uid == geteuid();
  const bool isFree = flock(at, LOCK_EX | LOCK_NB) == 0;
  close(at);
  return isOurs && isFree;
}

/// Removes what killed processes left behind while they wrote this target.
void RemoveAbandoned(const fs::path& directory, const std::string& start) {
  std::error_code error;
  std::vector<fs::path> abandoned;
  for (fs::directory_iterator at(directory, error), end; !error && at != end; at.increment(error)) {
    const pid_t maker = MakerOf(at->path().filename().string(), start);
    if (IsAbandoned(at->path(), maker)) abandoned.push_back(at->path());
  }
  std::error_code ignored;  // what cannot be removed is in nobody's way
  for (const fs::path& folder : abandoned) fs::remove_all(folder, ignored);
}

/// Whether an index beside the folder names a file of it: a copy of the old one, or the target
/// again when somebody else has written it since.
bool IsStillNamed(const fs::path& folder) {
  std::error_code error;
  for (fs::directory_iterator at(folder.parent_path(), error), end; !error && at != end;
       at.increment(error)) {
    if (fs::is_directory(at->path())) continue;
    const std::vector<std::string> files = FilesNamedBy(at->path().string());
    const bool isNamed = std::any_of(files.begin(), files.end(), [&](const std::string& file) {
      std::error_code none;
      const fs::path relative = fs::weakly_canonical(file, none).lexically_relative(folder);
      return !relative.empty() && *relative.begin() != "..";
    });
    if (isNamed) return true;
  }
  return static_cast<bool>(error);
}

}  // namespace

StagedTarget::StagedTarget(const std::string& path, std::vector<std::string> oldPieces)
    : m_oldPieces(std::move(oldPieces)) {
  const fs::path real = RealTarget(path);
  m_path = real.string();
  m_directory = real.parent_path().string();
  // Named as the caller named it: the real name of a link is nobody's business in the index.
  m_stem = fs::path(path).stem().string();
  std::error_code error;
  const fs::file_status folder = fs::status(m_directory, error);
  if (!fs::is_directory(folder)) {
    const bool isUnknown = folder.type() == fs::file_type::none;
    throw FileError(path, isUnknown ? error.message() : "its folder does not exist");
  }
  const fs::file_status target = fs::status(real, error);
  if (fs::is_directory(target)) throw FileError(path, "Is a directory");
  // Renamed over, a pipe or a device would be gone.
  if (fs::exists(target) && !fs::is_regular_file(target)) {
    throw FileError(path, "is no regular file");
  }
  const std::string start = StartOfWorkNames(real);
  RemoveAbandoned(m_directory, start);
  MakeWorkFolder(path, start);
  // It keeps the extension, by which writers know the format.
  m_temporary = m_work + "/" + fs::path(path).filename().string();
}

void StagedTarget::MakeWorkFolder(const std::string& path, const std::string& start) {
  const std::string first = m_directory + "/" + start + std::to_string(getpid());
  m_work = first + kWorkEnd;
  constexpr mode_t kNobodyElse = 0700;
  for (int n = 2; mkdir(m_work.c_str(), kNobodyElse) != 0; ++n) {
    if (errno != EEXIST) throw FileError(path, std::strerror(errno));
    m_work = first + "-" + std::to_string(n) + kWorkEnd;
  }
  // Held until the process ends, however it ends. Where this cannot be had nobody clears up.
  m_lock = open(m_work.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (m_lock >= 0) flock(m_lock, LOCK_EX | LOCK_NB);
}

StagedTarget::~StagedTarget() {
  std::error_code ignored;  // nothing more can be done about a leftover
  fs::remove_all(m_work, ignored);
  if (!m_isCommitted && !m_folder.empty()) fs::remove_all(m_directory + "/" + m_folder, ignored);
  if (m_lock >= 0) close(m_lock);
}

std::string StagedTarget::PiecesPath() const { return m_work + "/pieces"; }

std::string StagedTarget::PlacePieces() {
  StopIfCancelled();
  const bool isReplacing = fs::exists(m_path);
  if (isReplacing) BringPiecesToDisk();
  for (;;) {
    const std::string name = FreeFolder(m_directory, m_stem);
    if (rename(PiecesPath().c_str(), (m_directory + "/" + name).c_str()) == 0) {
      m_folder = name;
      break;
    }
    // Somebody else took the name first.
    if (errno != EEXIST && errno != ENOTEMPTY && errno != ENOTDIR) {
      throw FileError(m_path, std::strerror(errno));
    }
  }
  if (isReplacing) RequireSyncedFolder(m_directory);
  return m_folder;
}

void StagedTarget::Commit() {
  StopIfCancelled();
  struct stat before {};
  const bool isReplacing = stat(m_path.c_str(), &before) == 0;
  if (isReplacing) {
    GiveTo(m_temporary, before.st_uid, before.st_gid);
    chmod(m_temporary.c_str(), before.st_mode & 07777);
    SyncFile(m_temporary);
  }
  if (rename(m_temporary.c_str(), m_path.c_str()) != 0) {
    throw FileError(m_path, std::strerror(errno));
  }
  m_isCommitted = true;
  // It has its name for everybody who asks by now; what this finds cannot be taken back.
  if (isReplacing) SyncFolder(m_directory);
  RemoveOldPieces();
}

void StagedTarget::BringPiecesToDisk() const {
  std::error_code none;  // there is no folder when no block has a piece
  for (const auto& entry : fs::recursive_directory_iterator(PiecesPath(), none)) {
    if (entry.is_directory()) RequireSyncedFolder(entry.path().string());
    if (entry.is_regular_file()) SyncFile(entry.path().string());
  }
  RequireSyncedFolder(PiecesPath());
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
  if (files.empty() || IsStillNamed(m_directory / folder)) return;
  std::set<fs::path, std::greater<>> folders;  // inner ones first
  for (const fs::path& file : files) {
    fs::remove(file, error);
    for (fs::path at = file.parent_path(); at != fs::path(m_directory); at = at.parent_path()) {
      folders.insert(at);
    }
  }
  for (const fs::path& at : folders) fs::remove(at, error);  // refused unless it is empty
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  Descriptor file(path, O_WRONLY | O_CREAT | O_TRUNC);
  WriteAll(file, path, bytes);
  file.Close();
}

void RequireRoomBehind(const std::string& path) {
  Descriptor file(path, O_RDWR | O_APPEND);
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) throw FileError(path, std::strerror(errno));
  WriteAll(file, path, std::string(1 << 16, '\0'));
  if (ftruncate(file.Get(), status.st_size) != 0) throw FileError(path, std::strerror(errno));
  file.Close();
}

}  // namespace qelhost
