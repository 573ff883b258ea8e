// bench_measure PROGRAM ARGUMENT...: runs the program and prints "SECONDS KILOBYTES", its wall time
// and the most memory it held.
#include <chrono>
#include <cstdio>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: bench_measure PROGRAM ARGUMENT...\n");
    return 2;
  }
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child < 0) {
    std::perror("bench_measure: fork");
    return 1;
  }
  if (child == 0) {
    execv(argv[1], argv + 1);
    std::perror(argv[1]);
    _exit(127);
  }
  int status = 0;
  rusage usage = {};
  if (wait4(child, &status, 0, &usage) != child) return 1;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return 1;
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::printf("%.3f %ld\n", seconds.count(), usage.ru_maxrss);
  return 0;
}
