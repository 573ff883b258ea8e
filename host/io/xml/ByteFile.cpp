#include "ByteFile.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "FileError.h"

namespace qelhost {
namespace {

std::atomic<rlim_t> g_openFiles{0};

std::int64_t ModifiedAt(const struct stat& status) {
  constexpr std::int64_t kNanoseconds = 1000000000;
  return status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec;
}

}  // namespace

ByteFile::ByteFile(const std::string& path)
    : m_path(path), m_descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (m_descriptor < 0) throw FileError(path, std::strerror(errno));
  struct stat status {};
  if (fstat(m_descriptor, &status) != 0) {
    const int reason = errno;
    close(m_descriptor);
    throw FileError(path, std::strerror(reason));
  }
  m_size = status.st_size;
  m_modified = ModifiedAt(status);
  ++g_openFiles;
}

ByteFile::~ByteFile() {
  close(m_descriptor);
  --g_openFiles;
}

bool ByteFile::MayOpenAnother() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return false;
  return g_openFiles < limit.rlim_cur / 2;
}

void ByteFile::ReadAt(std::int64_t position, char* to, std::int64_t count) const {
  while (count > 0) {
    const ssize_t now = pread(m_descriptor, to, static_cast<std::size_t>(count), position);
    if (now < 0 && errno == EINTR) continue;
    if (now < 0) throw FileError(m_path, std::strerror(errno));
    if (now == 0) throw FileError(m_path, "damaged: the file is cut off");
    position += now;
    to += now;
    count -= now;
  }
}

void ByteFile::RequireUnchanged() const {
  struct stat status {};
  if (fstat(m_descriptor, &status) != 0) throw FileError(m_path, std::strerror(errno));
  if (status.st_size != m_size || ModifiedAt(status) != m_modified) {
    throw FileError(m_path, "was changed by somebody else since it was opened");
  }
}

}  // namespace qelhost
