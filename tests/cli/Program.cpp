#include "Program.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace clitests {

namespace {

namespace fs = std::filesystem;

void Redirect(const std::string& path, int descriptor) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (file < 0 || dup2(file, descriptor) < 0) _exit(126);
  close(file);
}

[[noreturn]] void BecomeProgram(const std::vector<std::string>& arguments, const Limits& limits,
                                const std::string& out, const std::string& err) {
  Redirect(out, STDOUT_FILENO);
  Redirect(err, STDERR_FILENO);
  unsetenv("MARQUELL_ADDON_PATH");
  if (limits.fileBytes >= 0) {
    // A write past the limit fails, as on a full disk, instead of killing the process.
    std::signal(SIGXFSZ, SIG_IGN);
    const rlim_t bytes = static_cast<rlim_t>(limits.fileBytes);
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  std::vector<char*> argv = {const_cast<char*>(MARQUELL_PROGRAM)};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  execv(argv[0], argv.data());
  _exit(127);
}

}  // namespace

Outcome RunProgram(const std::vector<std::string>& arguments, const Limits& limits) {
  const TestFolder streams;
  const std::string out = streams.Path("out");
  const std::string err = streams.Path("err");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork failed");
  if (child == 0) BecomeProgram(arguments, limits, out, err);
  if (limits.interruptAfter >= 0) {
    std::this_thread::sleep_for(std::chrono::duration<double>(limits.interruptAfter));
    kill(child, SIGINT);
  }
  int status = 0;
  waitpid(child, &status, 0);
  Outcome outcome;
  outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  outcome.out = ReadText(out);
  outcome.err = ReadText(err);
  return outcome;
}

int LineCount(const std::string& text) {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

TestFolder::TestFolder() {
  std::string name = (fs::temp_directory_path() / "marquell-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  m_folder = name;
}

TestFolder::~TestFolder() {
  std::error_code error;
  fs::permissions(m_folder, fs::perms::owner_all, fs::perm_options::add, error);
  fs::remove_all(m_folder, error);
}

std::string TestFolder::Write(const std::string& name, const std::string& text) const {
  const std::string path = Path(name);
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

std::vector<std::string> TestFolder::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(m_folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string ReadText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

}  // namespace clitests
