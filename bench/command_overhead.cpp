// Measures what each command costs beyond the waits that the printer's protocol requires.
//
// The waits are known exactly. A pause lasts whole seconds. A read without data compares clock
// values in whole seconds and ends when they differ by 5. It lasts between 4 s and 5 s. So the
// earliest end of a command can be computed from its start. The time after this earliest end is the
// cost of the program.
//
// Usage, with the emulated printer: zvkprinter run -- command_overhead ZVKCONFIG {}

#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

#include "process_run.h"
#include "results.h"

namespace {

using Clock = std::chrono::system_clock;
using Seconds = std::chrono::duration<double>;

constexpr double SilenceSeconds = 5;
// The bars: the largest allowed costs of a command.
constexpr double WallBarMilliseconds = 20;
constexpr double CpuBarPercent = 2;
constexpr double PeakBarMebibytes = 16;

/// A wait of the protocol.
struct Wait {
  enum class Kind {
    Pause,    ///< `seconds` seconds
    Silence,  ///< until the clock has advanced by 5 whole seconds
  };

  Kind kind;
  double seconds = 0;
};

constexpr Wait pause(double seconds) {
  return {Wait::Kind::Pause, seconds};
}

constexpr Wait Silence = {Wait::Kind::Silence};

/// A command and the waits of its exchanges, in order.
struct Command {
  const char* name;
  std::vector<std::string> arguments;
  std::vector<Wait> waits;
};

/// The cost of a command. `beyondMilliseconds` is how much longer the command takes than its waits.
struct Cost {
  double waitsMilliseconds;
  double beyondMilliseconds;
  double cpuMilliseconds;
  double cpuPercent;
  double peakMebibytes;
  bool ended;
};

/// Returns the time at which a command would end if only its waits took time. `start` and the
/// result are times in seconds.
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

/// Sleeps until 0.3 s after the start of a second. Otherwise the clock's next second could start
/// between two waits of a command. The later wait would then last up to 1 s longer.
void alignToSecond() {
  constexpr double offset = 0.3;
  const double fraction = nowInSeconds() - std::floor(nowInSeconds());
  const double wait = fraction <= offset ? offset - fraction : 1 + offset - fraction;
  ::usleep(static_cast<useconds_t>(wait * 1e6));
}

/// Runs a command once and measures it.
Cost measure(const std::string& program, const Command& command, const std::string& device) {
  std::vector<std::string> words = {program};
  words.insert(words.end(), command.arguments.begin(), command.arguments.end());
  words.push_back(device);
  alignToSecond();
  const double start = nowInSeconds();
  const bench::ProcessCost cost = bench::runProcess(words);
  const double end = nowInSeconds();
  return {.waitsMilliseconds = (expectedEnd(start, command.waits) - start) * 1e3,
          .beyondMilliseconds = (end - expectedEnd(start, command.waits)) * 1e3,
          .cpuMilliseconds = cost.cpuSeconds * 1e3,
          .cpuPercent = cost.cpuSeconds / (end - start) * 100,
          .peakMebibytes = static_cast<double>(cost.peakKibibytes) / 1024,
          .ended = cost.ended};
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
  for (const Command& command : commands) {
    const Cost cost = measure(argv[1], command, argv[2]);
    if (!cost.ended) {
      std::fprintf(stderr, "%s failed\n", command.name);
      return 1;
    }
    const std::string work = std::string("command ") + command.name;
    const std::string waits = bench::timeText(cost.waitsMilliseconds * 1e6);
    bench::addRow({work, "its waits; ms beyond them",
                   bench::timeText(cost.beyondMilliseconds * 1e6), waits, cost.beyondMilliseconds,
                   WallBarMilliseconds});
    // A command without waits takes almost no time, so the CPU time as a share of this time has no
    // meaning.
    if (!command.waits.empty()) {
      bench::addRow({work, "CPU, % of the time", bench::timeText(cost.cpuMilliseconds * 1e6), "",
                     cost.cpuPercent, CpuBarPercent});
    }
    bench::addRow({work, "peak memory, MiB", "", "", cost.peakMebibytes, PeakBarMebibytes});
  }
  return 0;
}
