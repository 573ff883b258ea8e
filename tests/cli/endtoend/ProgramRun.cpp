#include "ProgramRun.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace clitest {

namespace fs = std::filesystem;

namespace {

std::string FileText(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

fs::path MakeFolder() {
  std::string pattern = (fs::temp_directory_path() / "marquell-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  return pattern;
}

fs::path LogFolder(const fs::path& folder) { return folder.string() + ".logs"; }

/// In the child: becomes the program, or ends with 127.
[[noreturn]] void Become(const fs::path& folder, const std::vector<std::string>& arguments,
                         const Surroundings& surroundings, const fs::path& out,
                         const fs::path& err) {
  const auto redirect = [](const fs::path& file, int to) {
    const int from = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    return from >= 0 && dup2(from, to) == to;
  };
  if (chdir(folder.c_str()) != 0 || !redirect(out, STDOUT_FILENO) ||
      !redirect(err, STDERR_FILENO)) {
    _exit(127);
  }
  if (surroundings.fileSizeLimit >= 0) {
    const rlim_t limit = static_cast<rlim_t>(surroundings.fileSizeLimit);
    const rlimit both{limit, limit};
    if (setrlimit(RLIMIT_FSIZE, &both) != 0) _exit(127);
  }
  unsetenv("MARQUELL_ADDON_PATH");
  for (const std::string& setting : surroundings.environment) {
    const std::size_t equals = setting.find('=');
    setenv(setting.substr(0, equals).c_str(), setting.substr(equals + 1).c_str(), 1);
  }
  std::vector<char*> argv{const_cast<char*>(MARQUELL_PROGRAM)};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  execv(MARQUELL_PROGRAM, argv.data());
  _exit(127);
}

}  // namespace

Running::Running(const fs::path& folder, const std::vector<std::string>& arguments,
                 const Surroundings& surroundings) {
  static int count = 0;
  const std::string number = std::to_string(++count);
  fs::create_directories(LogFolder(folder));
  m_out = surroundings.standardOutput.empty() ? LogFolder(folder) / ("out" + number)
                                              : fs::path(surroundings.standardOutput);
  m_err = LogFolder(folder) / ("err" + number);
  m_pid = fork();
  if (m_pid < 0) throw std::runtime_error("cannot fork");
  if (m_pid == 0) Become(folder, arguments, surroundings, m_out, m_err);
}

Running::~Running() {
  if (m_isOver) return;
  kill(m_pid, SIGKILL);
  waitpid(m_pid, &m_status, 0);
}

bool Running::HasEnded() {
  if (!m_isOver) m_isOver = waitpid(m_pid, &m_status, WNOHANG) == m_pid;
  return m_isOver;
}

void Running::Send(int signal) const { kill(m_pid, signal); }

std::string Running::ErrorsSoFar() const { return FileText(m_err); }

Outcome Running::Wait() {
  while (!m_isOver) m_isOver = waitpid(m_pid, &m_status, 0) == m_pid || errno != EINTR;
  Outcome outcome;
  if (WIFEXITED(m_status)) outcome.exitCode = WEXITSTATUS(m_status);
  if (fs::is_regular_file(m_out)) outcome.out = FileText(m_out);
  outcome.err = FileText(m_err);
  return outcome;
}

ProgramTest::ProgramTest() : m_folder(MakeFolder()) {}

ProgramTest::~ProgramTest() {
  std::error_code ignored;
  fs::remove_all(m_folder, ignored);
  fs::remove_all(LogFolder(m_folder), ignored);
}

void ProgramTest::WriteText(const std::string& name, const std::string& text) const {
  std::ofstream file(m_folder / name, std::ios::binary);
  file << text;
}

std::string ProgramTest::ReadText(const std::string& name) const {
  return FileText(m_folder / name);
}

std::vector<std::string> ProgramTest::Listing() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(m_folder)) {
    names.push_back(fs::relative(entry.path(), m_folder).string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

Outcome ProgramTest::Run(const std::vector<std::string>& arguments,
                         const Surroundings& surroundings) {
  return Running(m_folder, arguments, surroundings).Wait();
}

std::string Journal(const std::vector<std::string>& lines) {
  std::string text = "# marquell journal 1\n";
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

::testing::AssertionResult IsOneLineWith(const std::string& text,
                                         const std::vector<std::string>& parts) {
  if (std::count(text.begin(), text.end(), '\n') != 1 || text.back() != '\n') {
    return ::testing::AssertionFailure() << "not one line: \"" << text << '"';
  }
  for (const std::string& part : parts) {
    if (text.find(part) == std::string::npos) {
      return ::testing::AssertionFailure() << "without \"" << part << "\": " << text;
    }
  }
  return ::testing::AssertionSuccess();
}

}  // namespace clitest
