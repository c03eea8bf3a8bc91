// Runs nmcli, without a shell.

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "util/unique_fd.h"
#include "wifi/networks.h"
#include "wifi/secret_input.h"
#include "wifi/signals.h"

namespace wifi {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds TimeLimit(5);
constexpr std::size_t OutputLimit = 64UL * 1024;
constexpr int WaitMilliseconds = 10;

/// A process that runs nmcli. The destructor kills the process if it still runs.
class Nmcli {
 public:
  Nmcli();
  ~Nmcli();
  Nmcli(const Nmcli&) = delete;
  Nmcli& operator=(const Nmcli&) = delete;

  /// Reads until the output ends. Returns false if the time or the output exceeds its limit, or if
  /// a read fails.
  bool readOutput();
  /// Waits until nmcli ends. Returns true if it succeeded in time.
  bool waitForEnd();
  [[nodiscard]] bool hasStarted() const { return m_Pid > 0; }
  [[nodiscard]] const std::string& output() const { return m_Output; }

 private:
  [[nodiscard]] int millisecondsLeft() const;

  pid_t m_Pid = -1;
  util::UniqueFd m_Pipe;
  std::string m_Output;
  Clock::time_point m_End = Clock::now() + TimeLimit;
};

Nmcli::Nmcli() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    return;
  }
  m_Pipe = util::UniqueFd(ends[0]);
  const util::UniqueFd output(ends[1]);
  posix_spawn_file_actions_t files;
  ::posix_spawn_file_actions_init(&files);
  ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_adddup2(&files, output.get(), STDOUT_FILENO);
  ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  // nmcli gets its own process group, so that the destructor also kills the processes that nmcli
  // starts.
  posix_spawnattr_t attributes;
  ::posix_spawnattr_init(&attributes);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  std::array<std::string, 9> words = {"nmcli",  "-t",   "-f",   "IN-USE,SSID,SECURITY,SIGNAL",
                                      "device", "wifi", "list", "--rescan",
                                      "no"};
  std::array<char*, words.size() + 1> arguments{};
  for (std::size_t i = 0; i < words.size(); ++i) {
    arguments[i] = words[i].data();
  }
  if (::posix_spawnp(&m_Pid, "nmcli", &files, &attributes, arguments.data(), environ) != 0) {
    m_Pid = -1;
  }
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&files);
}

Nmcli::~Nmcli() {
  if (m_Pid > 0) {
    ::kill(-m_Pid, SIGKILL);
    while (::waitpid(m_Pid, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
}

int Nmcli::millisecondsLeft() const {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_End - Clock::now()).count();
  return left > 0 ? static_cast<int>(left) : 0;
}

bool Nmcli::readOutput() {
  while (m_Output.size() <= OutputLimit) {
    pollfd polled = {m_Pipe.get(), POLLIN, 0};
    const int ready = ::poll(&polled, 1, millisecondsLeft());
    if (Interruption::signal() != 0) {
      throw Interrupted();
    }
    if (ready == 0) {
      if (millisecondsLeft() == 0) {
        return false;
      }
      continue;
    }
    std::array<char, 4096> buffer{};
    const ssize_t count = ready < 0 ? -1 : ::read(m_Pipe.get(), buffer.data(), buffer.size());
    if (count == 0) {
      return true;
    }
    if (count > 0) {
      m_Output.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return false;
    }
  }
  return false;
}

bool Nmcli::waitForEnd() {
  int status = 0;
  while (::waitpid(m_Pid, &status, WNOHANG) == 0) {
    if (Interruption::signal() != 0) {
      throw Interrupted();
    }
    if (millisecondsLeft() == 0) {
      return false;
    }
    ::poll(nullptr, 0, WaitMilliseconds);
  }
  m_Pid = -1;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

std::vector<Network> visibleNetworks() {
  Nmcli nmcli;
  if (!nmcli.hasStarted() || !nmcli.readOutput() || !nmcli.waitForEnd()) {
    return {};
  }
  return parseNetworks(nmcli.output());
}

}  // namespace wifi
