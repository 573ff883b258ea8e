// Preloaded into the program: counts its calls that change files below a folder, and at one of them
// kills it, interrupts it or lets the call fail. Told by environment variables:
//
//   FAULT_FOLDER  the folder
//   FAULT_LOG     a file that gets one line a call: its number, name, path and bytes
//   FAULT_CALL    the number of the call, from 1, or
//   FAULT_BYTE    the place in all that is written, from 0: what comes before it is still written
//   FAULT_SIGNAL  the signal to raise there, or
//   FAULT_ERRNO   the reason with which the call fails
//   FAULT_STAYS   set: so does every later call that needs room
//
// What libraries do inside one library call counts once: a stream's buffers may go to the disk in
// several writes. The program never links this.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

namespace {

long long NumberIn(const char* variable) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? -1 : std::atoll(text);
}

std::string TextIn(const char* variable) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? std::string() : text;
}

/// What a call needs: a full disk refuses room alone.
enum class Needs { kRoom, kNothing };

class Faults {
 public:
  static Faults& Get() {
    static auto* const faults = new Faults;  // calls come until the very end
    return *faults;
  }

  bool IsWatched(const std::string& path) const {
    // What has no name is nobody's file.
    static const std::string kNameless = " (deleted)";
    const std::size_t end = path.size() - std::min(path.size(), kNameless.size());
    if (path.compare(end, std::string::npos, kNameless) == 0) return false;
    return !m_folder.empty() && Absolute(path).compare(0, m_folder.size(), m_folder) == 0;
  }

  /// The bytes of a call that may still be written; below zero: it fails, errno is set.
  long long Allow(const char* call, const std::string& path, long long bytes, Needs needs) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_calls;
    Log(call, path, bytes);
    const long long before = m_bytes;
    m_bytes += bytes;
    if (m_isBroken && needs == Needs::kRoom) return Fail();
    if (m_calls == m_call) return Strike() ? bytes : Fail();
    if (bytes == 0 || m_byte < before || m_byte >= before + bytes) return bytes;
    if (m_byte > before) {  // the next call begins at that place
      m_bytes = m_byte;
      return m_byte - before;
    }
    m_byte = -1;
    return Strike() ? bytes : Fail();
  }

 private:
  Faults() {
    m_folder = TextIn("FAULT_FOLDER");
    m_call = NumberIn("FAULT_CALL");
    m_byte = NumberIn("FAULT_BYTE");
    m_signal = static_cast<int>(NumberIn("FAULT_SIGNAL"));
    m_errno = static_cast<int>(NumberIn("FAULT_ERRNO"));
    m_stays = std::getenv("FAULT_STAYS") != nullptr;
    const std::string log = TextIn("FAULT_LOG");
    if (!log.empty()) {
      m_log = static_cast<int>(syscall(SYS_openat, AT_FDCWD, log.c_str(),
                                       O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    }
  }

  static std::string Absolute(const std::string& path) {
    if (path.empty() || path.front() == '/') return path;
    char folder[PATH_MAX];
    return getcwd(folder, sizeof folder) == nullptr ? path : std::string(folder) + "/" + path;
  }

  void Log(const char* call, const std::string& path, long long bytes) const {
    if (m_log < 0) return;
    const std::string line =
        std::to_string(m_calls) + " " + call + " " + std::to_string(bytes) + " " + path + "\n";
    syscall(SYS_write, m_log, line.data(), line.size());
  }

  /// False when the call is to fail.
  bool Strike() {
    if (m_signal > 0) {
      kill(getpid(), m_signal);
      return true;
    }
    m_isBroken = m_stays;
    return m_errno <= 0;
  }

  long long Fail() const {
    errno = m_errno;
    return -1;
  }

  std::mutex m_mutex;
  std::string m_folder;
  long long m_call = -1;
  long long m_byte = -1;
  int m_signal = 0;
  int m_errno = 0;
  bool m_stays = false;
  bool m_isBroken = false;
  long long m_calls = 0;
  long long m_bytes = 0;
  int m_log = -1;
};

std::string PathOf(int file) {
  char path[PATH_MAX];
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  const ssize_t length = readlink(link.c_str(), path, sizeof path);
  return length <= 0 ? std::string() : std::string(path, static_cast<std::size_t>(length));
}

std::string PathAt(int folder, const char* path) {
  if (path[0] == '/' || folder == AT_FDCWD) return path;
  return PathOf(folder) + "/" + path;
}

bool IsForWriting(int file) {
  const int flags = fcntl(file, F_GETFL);
  return flags >= 0 && (flags & O_ACCMODE) != O_RDONLY;
}

/// False when the call fails.
bool IsAllowed(const char* call, const std::string& path, Needs needs = Needs::kNothing) {
  Faults& faults = Faults::Get();
  return !faults.IsWatched(path) || faults.Allow(call, path, 0, needs) >= 0;
}

/// The same for bytes that go to a file; below zero when the call fails.
long long Allowed(const char* call, int file, std::size_t count) {
  const auto bytes = static_cast<long long>(count);
  if (!IsForWriting(file)) return bytes;
  const std::string path = PathOf(file);
  Faults& faults = Faults::Get();
  return faults.IsWatched(path) ? faults.Allow(call, path, bytes, Needs::kRoom) : bytes;
}

template <class Function>
Function Next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// The mode of an open that has one.
#define MODE_BEHIND(flags, mode)                                    \
  mode_t mode = 0;                                                  \
  if (((flags)&O_CREAT) != 0 || ((flags)&O_TMPFILE) == O_TMPFILE) { \
    va_list rest;                                                   \
    va_start(rest, flags);                                          \
    mode = va_arg(rest, mode_t);                                    \
    va_end(rest);                                                   \
  }

bool IsAllowedToOpen(const std::string& path, int flags) {
  const bool writes = (flags & O_ACCMODE) != O_RDONLY && (flags & O_TMPFILE) != O_TMPFILE;
  return !writes || IsAllowed("open", path, Needs::kRoom);
}

bool IsAllowedToOpen(const char* path, const char* mode) {
  const bool writes = std::strpbrk(mode, "wa+") != nullptr;
  return !writes || IsAllowed("open", path, Needs::kRoom);
}

/// Closing happens all the same.
template <class Close>
int CloseAllowed(const char* call, int file, Close&& closeIt) {
  const bool isAllowed = !IsForWriting(file) || IsAllowed(call, PathOf(file));
  const int reason = errno;
  const int result = closeIt();
  if (isAllowed) return result;
  errno = reason;
  return -1;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  MODE_BEHIND(flags, mode)
  static const auto next = Next<int (*)(const char*, int, ...)>("open");
  return IsAllowedToOpen(std::string(path), flags) ? next(path, flags, mode) : -1;
}

int open64(const char* path, int flags, ...) {
  MODE_BEHIND(flags, mode)
  static const auto next = Next<int (*)(const char*, int, ...)>("open64");
  return IsAllowedToOpen(std::string(path), flags) ? next(path, flags, mode) : -1;
}

int openat(int folder, const char* path, int flags, ...) {
  MODE_BEHIND(flags, mode)
  static const auto next = Next<int (*)(int, const char*, int, ...)>("openat");
  return IsAllowedToOpen(PathAt(folder, path), flags) ? next(folder, path, flags, mode) : -1;
}

int openat64(int folder, const char* path, int flags, ...) {
  MODE_BEHIND(flags, mode)
  static const auto next = Next<int (*)(int, const char*, int, ...)>("openat64");
  return IsAllowedToOpen(PathAt(folder, path), flags) ? next(folder, path, flags, mode) : -1;
}

FILE* fopen(const char* path, const char* mode) {
  static const auto next = Next<FILE* (*)(const char*, const char*)>("fopen");
  return IsAllowedToOpen(path, mode) ? next(path, mode) : nullptr;
}

FILE* fopen64(const char* path, const char* mode) {
  static const auto next = Next<FILE* (*)(const char*, const char*)>("fopen64");
  return IsAllowedToOpen(path, mode) ? next(path, mode) : nullptr;
}

ssize_t write(int file, const void* from, size_t count) {
  static const auto next = Next<ssize_t (*)(int, const void*, size_t)>("write");
  const long long allowed = Allowed("write", file, count);
  return allowed < 0 ? -1 : next(file, from, static_cast<size_t>(allowed));
}

ssize_t writev(int file, const iovec* parts, int count) {
  static const auto next = Next<ssize_t (*)(int, const iovec*, int)>("writev");
  size_t all = 0;
  for (int n = 0; n < count; ++n) all += parts[n].iov_len;
  const long long allowed = Allowed("writev", file, all);
  if (allowed < 0 || allowed == static_cast<long long>(all)) {
    return allowed < 0 ? -1 : next(file, parts, count);
  }
  std::string bytes;
  for (int n = 0; n < count; ++n) {
    bytes.append(static_cast<const char*>(parts[n].iov_base), parts[n].iov_len);
  }
  return syscall(SYS_write, file, bytes.data(), static_cast<size_t>(allowed));
}

ssize_t pwrite(int file, const void* from, size_t count, off_t place) {
  static const auto next = Next<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite");
  const long long allowed = Allowed("pwrite", file, count);
  return allowed < 0 ? -1 : next(file, from, static_cast<size_t>(allowed), place);
}

ssize_t pwrite64(int file, const void* from, size_t count, off64_t place) {
  static const auto next = Next<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64");
  const long long allowed = Allowed("pwrite64", file, count);
  return allowed < 0 ? -1 : next(file, from, static_cast<size_t>(allowed), place);
}

ssize_t copy_file_range(int in, off64_t* from, int out, off64_t* to, size_t count,
                        unsigned int flags) {
  static const auto next =
      Next<ssize_t (*)(int, off64_t*, int, off64_t*, size_t, unsigned int)>("copy_file_range");
  const long long allowed = Allowed("copy_file_range", out, count);
  return allowed < 0 ? -1 : next(in, from, out, to, static_cast<size_t>(allowed), flags);
}

ssize_t sendfile(int out, int in, off_t* from, size_t count) noexcept {
  static const auto next = Next<ssize_t (*)(int, int, off_t*, size_t)>("sendfile");
  const long long allowed = Allowed("sendfile", out, count);
  return allowed < 0 ? -1 : next(out, in, from, static_cast<size_t>(allowed));
}

ssize_t sendfile64(int out, int in, off64_t* from, size_t count) noexcept {
  static const auto next = Next<ssize_t (*)(int, int, off64_t*, size_t)>("sendfile64");
  const long long allowed = Allowed("sendfile64", out, count);
  return allowed < 0 ? -1 : next(out, in, from, static_cast<size_t>(allowed));
}

size_t fwrite(const void* from, size_t size, size_t count, FILE* file) {
  static const auto next = Next<size_t (*)(const void*, size_t, size_t, FILE*)>("fwrite");
  if (size == 0 || count == 0) return 0;
  const long long allowed = Allowed("fwrite", fileno(file), size * count);
  if (allowed == static_cast<long long>(size * count)) return next(from, size, count, file);
  // A stream would try again at once.
  if (allowed > 0) next(from, 1, static_cast<size_t>(allowed), file);
  const auto* const rest = static_cast<const char*>(from) + (allowed > 0 ? allowed : 0);
  const size_t left = size * count - static_cast<size_t>(allowed > 0 ? allowed : 0);
  if (allowed < 0 || Allowed("fwrite", fileno(file), left) < 0) {
    return static_cast<size_t>(allowed > 0 ? allowed : 0) / size;
  }
  next(rest, 1, left, file);
  return count;
}

int ftruncate(int file, off_t size) noexcept {
  static const auto next = Next<int (*)(int, off_t)>("ftruncate");
  return IsAllowed("ftruncate", PathOf(file)) ? next(file, size) : -1;
}

int ftruncate64(int file, off64_t size) noexcept {
  static const auto next = Next<int (*)(int, off64_t)>("ftruncate64");
  return IsAllowed("ftruncate64", PathOf(file)) ? next(file, size) : -1;
}

int fsync(int file) {
  static const auto next = Next<int (*)(int)>("fsync");
  return IsAllowed("fsync", PathOf(file)) ? next(file) : -1;
}

int fdatasync(int file) {
  static const auto next = Next<int (*)(int)>("fdatasync");
  return IsAllowed("fdatasync", PathOf(file)) ? next(file) : -1;
}

int close(int file) {
  static const auto next = Next<int (*)(int)>("close");
  return CloseAllowed("close", file, [&] { return next(file); });
}

int fclose(FILE* file) {
  static const auto next = Next<int (*)(FILE*)>("fclose");
  return CloseAllowed("fclose", fileno(file), [&] { return next(file); });
}

int rename(const char* from, const char* to) noexcept {
  static const auto next = Next<int (*)(const char*, const char*)>("rename");
  return IsAllowed("rename", to) ? next(from, to) : -1;
}

int remove(const char* path) noexcept {
  static const auto next = Next<int (*)(const char*)>("remove");
  return IsAllowed("remove", path) ? next(path) : -1;
}

int unlink(const char* path) noexcept {
  static const auto next = Next<int (*)(const char*)>("unlink");
  return IsAllowed("unlink", path) ? next(path) : -1;
}

int unlinkat(int folder, const char* path, int flags) noexcept {
  static const auto next = Next<int (*)(int, const char*, int)>("unlinkat");
  return IsAllowed("unlinkat", PathAt(folder, path)) ? next(folder, path, flags) : -1;
}

int rmdir(const char* path) noexcept {
  static const auto next = Next<int (*)(const char*)>("rmdir");
  return IsAllowed("rmdir", path) ? next(path) : -1;
}

int mkdir(const char* path, mode_t mode) noexcept {
  static const auto next = Next<int (*)(const char*, mode_t)>("mkdir");
  return IsAllowed("mkdir", path, Needs::kRoom) ? next(path, mode) : -1;
}

int chmod(const char* path, mode_t mode) noexcept {
  static const auto next = Next<int (*)(const char*, mode_t)>("chmod");
  return IsAllowed("chmod", path) ? next(path, mode) : -1;
}

int chown(const char* path, uid_t owner, gid_t group) noexcept {
  static const auto next = Next<int (*)(const char*, uid_t, gid_t)>("chown");
  return IsAllowed("chown", path) ? next(path, owner, group) : -1;
}

}  // extern "C"
