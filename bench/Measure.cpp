// Runs a program and prints its wall time in seconds and its peak memory in kilobytes, in one line.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

int main(int argc, char* argv[]) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: bench_measure PROGRAM [ARGUMENT...]\n");
    return 2;
  }
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child < 0) {
    std::perror("bench_measure: fork");
    return 3;
  }
  if (child == 0) {
    // The line printed below must be the only one: the program's own text joins the errors.
    dup2(STDERR_FILENO, STDOUT_FILENO);
    execvp(argv[1], argv + 1);
    std::perror(argv[1]);
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child) {
    std::perror("bench_measure: wait4");
    return 3;
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::fprintf(stderr, "%s did not succeed\n", argv[1]);
    return 1;
  }
  std::printf("%.3f %ld\n", seconds.count(), usage.ru_maxrss);
  return 0;
}
