// Measures "zvkwifi set" with 16 printers at the same time, compared with one printer, in real
// time.
//
// Usage, with the first emulated printer in another network:
// zvkprinter run --ssid=old -- wifi_several ZVKWIFI ZVKPRINTER {}

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "process_run.h"
#include "results.h"

namespace {

constexpr std::size_t PrinterCount = 16;
constexpr auto SamplePause = std::chrono::milliseconds(50);

// The bars: the largest allowed costs.
constexpr double TimeBar = 1.15;
constexpr double CpuBarPercent = 5;
constexpr double MemoryBarMebibytes = 4;

/// The printers besides the first one, at /dev/usb/lp1 and so on. The destructor ends them.
class MorePrinters {
 public:
  explicit MorePrinters(const std::string& zvkprinter) {
    for (std::size_t i = 1; i < PrinterCount; ++i) {
      const std::string path = "/dev/usb/lp" + std::to_string(i);
      m_Paths.push_back(path);
      std::vector<std::string> words = {zvkprinter, "serve", "--link=" + path, "--ssid=old",
                                        "--log=/dev/null"};
      m_Processes.push_back(started(words));
    }
  }

  ~MorePrinters() {
    for (const pid_t process : m_Processes) {
      ::kill(process, SIGTERM);
      ::waitpid(process, nullptr, 0);
    }
  }

  MorePrinters(const MorePrinters&) = delete;
  MorePrinters& operator=(const MorePrinters&) = delete;

  const std::vector<std::string>& paths() const { return m_Paths; }

  /// Waits until all printers are there. Returns false after 10 seconds.
  bool wait() const {
    constexpr int attempts = 1000;
    for (int i = 0; i < attempts; ++i) {
      if (std::ranges::all_of(m_Paths,
                              [](const auto& path) { return ::access(path.c_str(), F_OK) == 0; })) {
        return true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }

 private:
  static pid_t started(std::vector<std::string>& words) {
    std::vector<char*> arguments(words.size() + 1, nullptr);
    std::ranges::transform(words, arguments.begin(), [](std::string& word) { return word.data(); });
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    const int error = ::posix_spawn(&process, words.front().c_str(), &actions, nullptr,
                                    arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? process : -1;
  }

  std::vector<std::string> m_Paths;
  std::vector<pid_t> m_Processes;
};

/// Returns the memory of a process in KiB. The kernel divides a page that several processes share
/// among them. Returns 0 if the process is gone or has another name than `name`.
double memoryOf(const std::string& process, const std::string& name) {
  std::string word;
  std::getline(std::ifstream("/proc/" + process + "/comm"), word);
  if (word != name) {
    return 0;
  }
  std::ifstream file("/proc/" + process + "/smaps_rollup");
  double kibibytes = 0;
  while (file >> word && word != "Pss:") {
  }
  file >> kibibytes;
  return kibibytes;
}

/// Returns the memory of all processes with this name below the process `parent`, in KiB.
double memoryBelow(const std::string& parent, const std::string& name) {
  std::ifstream children("/proc/" + parent + "/task/" + parent + "/children");
  double sum = 0;
  for (std::string child; children >> child;) {
    sum += memoryOf(child, name) + memoryBelow(child, name);
  }
  return sum;
}

struct Cost {
  bench::ProcessCost process;
  double peakMebibytes;  ///< of the program and its workers together
};

Cost measure(const std::vector<std::string>& command) {
  const std::string name = std::filesystem::path(command.front()).filename();
  const std::string self = std::to_string(::getpid());
  std::atomic<bool> ended = false;
  double peak = 0;
  std::thread sampler([&] {
    while (!ended) {
      peak = std::max(peak, memoryBelow(self, name));
      std::this_thread::sleep_for(SamplePause);
    }
  });
  const bench::ProcessCost cost = bench::runProcess(command);
  ended = true;
  sampler.join();
  return {cost, peak / 1024};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: wifi_several ZVKWIFI ZVKPRINTER DEVICE\n", stderr);
    return 2;
  }
  const MorePrinters printers(argv[2]);
  if (!printers.wait()) {
    std::fputs("the printers did not start\n", stderr);
    return 1;
  }
  // With --force every printer stores the settings again.
  std::vector<std::string> command = {argv[1],           "set",     "--ssid=home",
                                      "--security=open", "--force", argv[3]};
  const Cost one = measure(command);
  command.insert(command.end(), printers.paths().begin(), printers.paths().end());
  const Cost all = measure(command);
  if (!one.process.ended || !all.process.ended) {
    std::fputs("zvkwifi set failed\n", stderr);
    return 1;
  }
  const std::string work = "zvkwifi set, 16 printers";
  bench::addRow({work, "one printer; whole run", bench::timeText(all.process.wallSeconds * 1e9),
                 bench::timeText(one.process.wallSeconds * 1e9),
                 all.process.wallSeconds / one.process.wallSeconds, TimeBar});
  bench::addRow({work, "whole run; CPU, % of one core",
                 bench::timeText(all.process.cpuSeconds * 1e9),
                 bench::timeText(all.process.wallSeconds * 1e9),
                 all.process.cpuSeconds / all.process.wallSeconds * 100, CpuBarPercent});
  bench::addRow({work, "memory for each further printer, MiB", "", "",
                 (all.peakMebibytes - one.peakMebibytes) / (PrinterCount - 1), MemoryBarMebibytes});
  return 0;
}
