// What each command costs beyond the waits that the printer's protocol demands.
//
// The waits are known to the millisecond: pauses of whole seconds, and reads that end when the
// clock's whole seconds say that 5 have gone by without a byte. So the end of a command can be
// computed from its start, and what comes on top is the program's own.
//
// Usage, with the emulated printer in front: zvkprinter run -- command_overhead ZVKCONFIG {}

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::system_clock;
using Seconds = std::chrono::duration<double>;

constexpr double SilenceSeconds = 5;
constexpr double WallBarMilliseconds = 20;
constexpr double CpuBarPercent = 2;

/// A wait of the protocol.
struct Wait {
  enum class Kind {
    Pause,    ///< so many seconds
    Silence,  ///< until the clock's seconds have advanced by 5
  };

  Kind kind;
  double seconds = 0;
};

constexpr Wait pause(double seconds) {
  return {Wait::Kind::Pause, seconds};
}

constexpr Wait Silence = {Wait::Kind::Silence};

struct Command {
  const char* name;
  std::vector<std::string> arguments;
  std::vector<Wait> waits;
};

struct Cost {
  double wallMilliseconds;
  double beyondMilliseconds;
  double cpuMilliseconds;
  long peakKibibytes;
  bool ended;
};

/// When a command that starts at `start`, in seconds, and has no cost of its own would end.
double expectedEnd(double start, const std::vector<Wait>& waits) {
  double now = start;
  for (const Wait& wait : waits) {
    now = wait.kind == Wait::Kind::Pause ? now + wait.seconds : std::floor(now) + SilenceSeconds;
  }
  return now;
}

double nowInSeconds() {
  return Seconds(Clock::now().time_since_epoch()).count();
}

/// Waits until shortly after the turn of a second, so that no whole second turns between two waits
/// of a command by accident.
void alignToSecond() {
  constexpr double offset = 0.3;
  const double fraction = nowInSeconds() - std::floor(nowInSeconds());
  const double wait = fraction <= offset ? offset - fraction : 1 + offset - fraction;
  ::usleep(static_cast<useconds_t>(wait * 1e6));
}

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

Cost measure(const std::string& program, const Command& command, const std::string& device) {
  std::vector<std::string> words = {program};
  words.insert(words.end(), command.arguments.begin(), command.arguments.end());
  words.push_back(device);
  std::vector<char*> arguments(words.size() + 1, nullptr);
  std::ranges::transform(words, arguments.begin(), [](std::string& word) { return word.data(); });
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

  alignToSecond();
  const double start = nowInSeconds();
  pid_t pid = -1;
  ::posix_spawn(&pid, program.c_str(), &actions, nullptr, arguments.data(), environ);
  int status = 0;
  rusage usage{};
  ::wait4(pid, &status, 0, &usage);
  const double end = nowInSeconds();
  ::posix_spawn_file_actions_destroy(&actions);
  return {.wallMilliseconds = (end - start) * 1e3,
          .beyondMilliseconds = (end - expectedEnd(start, command.waits)) * 1e3,
          .cpuMilliseconds = (seconds(usage.ru_utime) + seconds(usage.ru_stime)) * 1e3,
          .peakKibibytes = usage.ru_maxrss,
          .ended = WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: command_overhead ZVKCONFIG DEVICE\n");
    return 2;
  }
  const std::vector<Command> commands = {
      {"-h", {"-h"}, {}},
      {"-c", {"-c", "--ssid=home", "--security=None"}, {pause(5), Silence}},
      {"-s", {"-s"}, {pause(2), Silence}},
      {"-ip", {"-ip"}, {pause(3), Silence}},
      {"-t", {"-t"}, {pause(2), Silence}},
      {"-a", {"-a"}, {Silence}},
      {"-802s", {"-802s"}, {pause(2)}},
      {"-r", {"-r"}, {pause(5), Silence}},
      {"default run", {"-x"}, {pause(5), Silence, pause(2), Silence, pause(3), Silence}},
  };
  std::printf("%-12s %12s %18s %10s %8s %12s\n", "command", "wall (ms)", "beyond waits (ms)",
              "CPU (ms)", "CPU (%)", "peak (KiB)");
  int met = 0;
  int missed = 0;
  for (const Command& command : commands) {
    const Cost cost = measure(argv[1], command, argv[2]);
    const double percent = cost.cpuMilliseconds / cost.wallMilliseconds * 100;
    std::printf("%-12s %12.1f %18.2f %10.2f %8.2f %12ld%s\n", command.name, cost.wallMilliseconds,
                cost.beyondMilliseconds, cost.cpuMilliseconds, percent, cost.peakKibibytes,
                cost.ended ? "" : "   FAILED");
    const auto count = [&](bool good) {
      ++(good ? met : missed);
    };
    count(cost.ended && cost.beyondMilliseconds < WallBarMilliseconds);
    // Without a wait there is no time for the share to be one of.
    if (!command.waits.empty()) {
      count(cost.ended && percent < CpuBarPercent);
    }
    std::fflush(stdout);
  }
  std::printf("\nBars: under %.0f ms beyond the waits, under %.0f %% CPU while waiting.\n",
              WallBarMilliseconds, CpuBarPercent);
  std::printf("%d bars met, %d missed\n", met, missed);
  return missed == 0 ? 0 : 1;
}
