// Measures what each command costs beyond the waits that the printer's protocol requires.
//
// The waits are known exactly. A pause lasts whole seconds. A read without data compares clock
// values in whole seconds and ends when they differ by 5. It lasts between 4 s and 5 s. So the
// earliest end of a command can be computed from its start. The time after this earliest end is the
// cost of the program.
//
// During a read the program probes for input with a `select` of one millisecond, again and again.
// The CPU time of a command is compared with that of a start of the program and of the probes
// alone. A thread makes the same probes while the command runs, because the cost of a probe depends
// on the load of the machine.
//
// Usage, with the emulated printer: zvkprinter run -- command_overhead ZVKCONFIG {}

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <string>
#include <sys/select.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "process_run.h"
#include "results.h"

namespace {

using Clock = std::chrono::system_clock;
using Seconds = std::chrono::duration<double>;

constexpr double SilenceSeconds = 5;
/// How often a command that misses a bar is measured.
constexpr std::size_t Attempts = 5;
// The bars: the largest allowed costs of a command.
constexpr double WallBarMilliseconds = 20;
constexpr double CpuBarRatio = 1.5;
/// For a command that does not probe for input: its CPU time in percent of its time. Its CPU time
/// is a few milliseconds, so its ratio to that of a start would depend on the load of the machine.
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
  double probesMilliseconds;  ///< the CPU time of the probes alone
  double peakMebibytes;
  bool ended;
};

/// What a command would take if only its waits took time. The times are in seconds.
struct Expected {
  double end;       ///< the clock's time at the end
  double silences;  ///< how long the program would probe for input
};

Expected expected(double start, const std::vector<Wait>& waits) {
  Expected result = {start, 0};
  for (const Wait& wait : waits) {
    if (wait.kind == Wait::Kind::Pause) {
      result.end += wait.seconds;
    } else {
      const double end = std::floor(result.end) + SilenceSeconds;
      result.silences += end - result.end;
      result.end = end;
    }
  }
  return result;
}

/// Probes a pipe for input during the object's lifetime, in a separate thread.
class Probes {
 public:
  /// Returns the CPU time per second of probing, and ends the probes.
  double end() {
    m_Thread.request_stop();
    m_Thread.join();
    return m_Share;
  }

 private:
  static double secondsOn(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  }

  static void probe(int descriptor) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(descriptor, &set);
    timeval limit{.tv_sec = 0, .tv_usec = 1000};
    ::select(descriptor + 1, &set, nullptr, nullptr, &limit);
  }

  void run(const std::stop_token& stop) {
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) {
      return;
    }
    const double start = secondsOn(CLOCK_MONOTONIC);
    const double cpuStart = secondsOn(CLOCK_THREAD_CPUTIME_ID);
    while (!stop.stop_requested()) {
      probe(pipe[0]);
    }
    m_Share =
        (secondsOn(CLOCK_THREAD_CPUTIME_ID) - cpuStart) / (secondsOn(CLOCK_MONOTONIC) - start);
    ::close(pipe[0]);
    ::close(pipe[1]);
  }

  double m_Share = 0;
  std::jthread m_Thread{[this](const std::stop_token& stop) {
    run(stop);
  }};
};

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
  Probes probes;
  const double start = nowInSeconds();
  const bench::ProcessCost cost = bench::runProcess(words);
  const double end = nowInSeconds();
  const Expected waits = expected(start, command.waits);
  return {.waitsMilliseconds = (waits.end - start) * 1e3,
          .beyondMilliseconds = (end - waits.end) * 1e3,
          .cpuMilliseconds = cost.cpuSeconds * 1e3,
          .probesMilliseconds = probes.end() * waits.silences * 1e3,
          .peakMebibytes = static_cast<double>(cost.peakKibibytes) / 1024,
          .ended = cost.ended};
}

/// Returns the CPU time of a start of the program, in milliseconds.
double startCost(const std::string& program) {
  constexpr int runs = 25;
  std::vector<double> milliseconds;
  for (int i = 0; i < runs; ++i) {
    milliseconds.push_back(bench::runProcess({program, "-h"}).cpuSeconds * 1e3);
  }
  return bench::Spread(milliseconds).median;
}

/// All measurements of one command.
struct Costs {
  std::vector<double> beyond;
  std::vector<double> cpu;
  std::vector<double> floor;       ///< the CPU time of a start and of the probes
  std::vector<double> cpuRatio;    ///< of the CPU time to `floor`
  std::vector<double> cpuPercent;  ///< the CPU time in percent of the command's time
  std::vector<double> peak;

  void add(const Cost& cost, double startMilliseconds) {
    beyond.push_back(cost.beyondMilliseconds);
    cpu.push_back(cost.cpuMilliseconds);
    floor.push_back(startMilliseconds + cost.probesMilliseconds);
    cpuRatio.push_back(cpu.back() / floor.back());
    cpuPercent.push_back(cpu.back() / (cost.waitsMilliseconds + cost.beyondMilliseconds) * 100);
    peak.push_back(cost.peakMebibytes);
  }

  bool meetBars(bool probes) const {
    const bool cpuMeets = probes ? bench::Spread(cpuRatio).low <= CpuBarRatio
                                 : bench::Spread(cpuPercent).low <= CpuBarPercent;
    return cpuMeets && bench::Spread(beyond).low <= WallBarMilliseconds &&
           bench::Spread(peak).low <= PeakBarMebibytes;
  }
};

/// Returns the median of figures in milliseconds as text.
std::string medianText(const std::vector<double>& milliseconds) {
  return bench::timeText(bench::Spread(milliseconds).median * 1e6);
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
  const double startMilliseconds = startCost(argv[1]);
  for (const Command& command : commands) {
    const bool probes =
        std::ranges::find(command.waits, Wait::Kind::Silence, &Wait::kind) != command.waits.end();
    Costs costs;
    double waits = 0;
    do {
      const Cost cost = measure(argv[1], command, argv[2]);
      if (!cost.ended) {
        std::fprintf(stderr, "%s failed\n", command.name);
        return 1;
      }
      waits = cost.waitsMilliseconds;
      costs.add(cost, startMilliseconds);
    } while (!costs.meetBars(probes) && costs.beyond.size() < Attempts);
    const std::string work = std::string("command ") + command.name;
    bench::addRow({work, "its waits; ms beyond them", medianText(costs.beyond),
                   bench::timeText(waits * 1e6), bench::Spread(costs.beyond), WallBarMilliseconds});
    if (probes) {
      bench::addRow({work, "CPU of a start and probes", medianText(costs.cpu),
                     medianText(costs.floor), bench::Spread(costs.cpuRatio), CpuBarRatio});
    } else if (!command.waits.empty()) {
      bench::addRow({work, "its waits; CPU, % of the time", medianText(costs.cpu),
                     bench::timeText(waits * 1e6), bench::Spread(costs.cpuPercent), CpuBarPercent});
    }
    bench::addRow({work, "peak memory, MiB", "", "", bench::Spread(costs.peak), PeakBarMebibytes});
  }
  return 0;
}
