// Runs a process with posix_spawn and measures it. Processor time and memory come from wait4.

#include "process_run.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

ProcessCost runProcess(std::vector<std::string> command) {
  std::vector<char*> arguments(command.size() + 1, nullptr);
  std::ranges::transform(command, arguments.begin(), [](std::string& word) { return word.data(); });
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

  const auto start = std::chrono::steady_clock::now();
  pid_t pid = -1;
  const bool started = ::posix_spawn(&pid, command.front().c_str(), &actions, nullptr,
                                     arguments.data(), environ) == 0;
  int status = 0;
  rusage usage{};
  if (started) {
    ::wait4(pid, &status, 0, &usage);
  }
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
  ::posix_spawn_file_actions_destroy(&actions);
  return {.wallSeconds = wall.count(),
          .cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime),
          .peakKibibytes = usage.ru_maxrss,
          .ended = started && WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

}  // namespace bench
