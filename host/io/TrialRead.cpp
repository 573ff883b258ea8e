#include "TrialRead.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>
#include <fstream>
#include <new>

#include "FileError.h"
#include "ReadWatch.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;  // which reserves far more memory than anybody uses
#else
constexpr bool kIsSanitized = false;
#endif

namespace qelhost {
namespace {

constexpr char kUnreadable[] = "damaged: its reader cannot get through it";
constexpr char kTooSlow[] = "damaged: its reader does not get to an end";
constexpr char kTooLarge[] = "damaged: it asks for more memory than a file of its size can need";

/// The memory that this process has mapped.
std::int64_t MappedBytes() {
  std::int64_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * sysconf(_SC_PAGESIZE);
}

void Limit(decltype(RLIMIT_AS) what, std::int64_t most) {
  rlimit limit{};
  if (kIsSanitized || getrlimit(what, &limit) != 0) return;
  limit.rlim_cur = std::min(limit.rlim_max, static_cast<rlim_t>(most));
  setrlimit(what, &limit);
}

void Obey(const TrialLimits& limits) {
  Limit(RLIMIT_AS, MappedBytes() + limits.bytes);
  Limit(RLIMIT_CPU, static_cast<std::int64_t>(std::ceil(limits.busySeconds)));
}

/// What belongs to the process that this one is a copy of must not be touched.
void StandAlone() {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (const int signal :
       {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTERM, SIGALRM, SIGXCPU, SIGXFSZ}) {
    std::signal(signal, SIG_DFL);
  }
  std::signal(SIGINT, SIG_IGN);  // the other one hears it as well, and ends this one
  const rlimit none{};
  setrlimit(RLIMIT_CORE, &none);
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
}

/// What a reading says: nothing when the file is good, else the file at fault and the reason.
std::string Said(const std::function<void()>& read) {
  try {
    read();
    return {};
  } catch (const FileError& error) {
    return error.File() + '\0' + error.Reason();
  } catch (const std::bad_alloc&) {
    return std::string(1, '\0') + kTooLarge;
  } catch (const std::exception& error) {
    return std::string(1, '\0') + error.what();
  }
}

[[noreturn]] void Try(int end, const TrialLimits& limits, const std::function<void()>& read) {
  // Whoever has closed standard streams may have got the pipe in their place.
  const int answer = fcntl(end, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  if (answer < 0) _exit(1);
  StandAlone();
  Obey(limits);
  const ReadWatch unwatched(nullptr);
  const std::string said = Said(read);
  const ssize_t written = write(answer, said.data(), said.size());
  _exit(written == static_cast<ssize_t>(said.size()) ? 0 : 1);
}

/// The other process, which ends with this.
class Trial {
 public:
  Trial(const std::string& path, const TrialLimits& limits, const std::function<void()>& read)
      : m_path(path) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw FileError(path, std::strerror(errno));
    m_answer = ends[0];
    m_child = fork();
    if (m_child == 0) Try(ends[1], limits, read);
    const int reason = errno;
    close(ends[1]);
    if (m_child > 0) return;
    close(m_answer);
    throw FileError(path, std::strerror(reason));
  }
  ~Trial() {
    if (!m_hasEnded) kill(m_child, SIGKILL);
    if (!m_hasEnded) waitpid(m_child, nullptr, 0);
    close(m_answer);
  }
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

  /// Time is counted in looks at the process, so that it stands still while both are stopped.
  void Await(double mostSeconds) {
    constexpr int kMilliseconds = 50;
    for (std::int64_t look = 1; !HasAnswered(kMilliseconds); ++look) {
      TellRead(0.0);
      if (look * kMilliseconds > mostSeconds * 1000) throw FileError(m_path, kTooSlow);
    }
    int status = 0;
    waitpid(m_child, &status, 0);
    m_hasEnded = true;
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU) throw FileError(m_path, kTooSlow);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw FileError(m_path, kUnreadable);
    const std::size_t end = m_said.find('\0');
    if (m_said.empty() || end == std::string::npos) return;
    throw FileError(end == 0 ? m_path : m_said.substr(0, end), m_said.substr(end + 1));
  }

 private:
  /// Whether the process has said all that it had to say, or is gone.
  bool HasAnswered(int milliseconds) {
    pollfd watched{m_answer, POLLIN, 0};
    if (poll(&watched, 1, milliseconds) <= 0) return false;
    char text[4096];
    const ssize_t count = read(m_answer, text, sizeof(text));
    if (count > 0) m_said.append(text, static_cast<std::size_t>(count));
    return count == 0 || (count < 0 && errno != EINTR);
  }

  const std::string& m_path;
  std::string m_said;
  int m_answer = -1;
  pid_t m_child = -1;
  bool m_hasEnded = false;
};

}  // namespace

TrialLimits TrialLimits::For(std::int64_t fileBytes) {
  constexpr std::int64_t kBytesAlways = std::int64_t{512} << 20;
  constexpr std::int64_t kBytesForEach = 64;
  constexpr double kBusyAlways = 2;
  constexpr double kAlways = 15;
  constexpr double kBytesInASecond = 1 << 20;
  constexpr std::int64_t kMost = std::int64_t{1} << 50;  // sums and products of it still fit
  const std::int64_t bytes = std::min(fileBytes, kMost);
  const double seconds = static_cast<double>(bytes) / kBytesInASecond;
  return {kBytesAlways + kBytesForEach * bytes, kBusyAlways + seconds, kAlways + seconds};
}

void ReadForTrial(const std::string& path, const TrialLimits& limits,
                  const std::function<void()>& read) {
  Trial(path, limits, read).Await(limits.seconds);
}

}  // namespace qelhost
