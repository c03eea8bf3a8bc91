// Child processes of the radio.

#include "emulator/radio/radio_program.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <net/if.h>
#include <pthread.h>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "emulator/transport/command_process.h"

namespace emulator {

namespace {

/// Prepares the child: restores the default signals, and connects the standard streams to
/// /dev/null.
void prepareChild() {
  ::signal(SIGPIPE, SIG_DFL);
  sigset_t none{};
  ::sigemptyset(&none);
  ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  if (null >= 0) {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      ::dup2(null, stream);
    }
  }
}

class ChildProgram : public RadioProgram {
 public:
  explicit ChildProgram(const std::vector<std::string>& command)
      : m_Process(command, prepareChild) {}

  ~ChildProgram() override {
    constexpr int most = 300;
    constexpr std::chrono::milliseconds pause(10);
    if (!m_HasEnded) {
      m_Process.signal(SIGTERM);
    }
    for (int tries = 0; !hasEnded(); ++tries) {
      if (tries == most) {
        m_Process.signal(SIGKILL);
      }
      std::this_thread::sleep_for(pause);
    }
  }
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  bool hasEnded() final {
    m_HasEnded = m_HasEnded || m_Process.hasEnded();
    return m_HasEnded;
  }

 private:
  bool m_HasEnded = false;  ///< if true, the process id may belong to another process
  CommandProcess m_Process;
};

/// Returns true if the program is in a folder of PATH.
bool isInstalled(const std::string& program) {
  const char* const path = std::getenv("PATH");
  std::istringstream folders(path == nullptr ? "" : path);
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (::access(folder.append("/").append(program).c_str(), X_OK) == 0) {
      return true;
    }
  }
  return false;
}

}  // namespace

void requireRadio(const std::string& interface) {
  if (::if_nametoindex(interface.c_str()) == 0) {
    throw std::runtime_error("--radio: there is no network interface " + interface);
  }
  for (const char* const program : {"wpa_supplicant", "udhcpc", "ip"}) {
    if (!isInstalled(program)) {
      throw std::runtime_error(std::string("--radio: the program ") + program +
                               " is not in a folder of PATH");
    }
  }
}

std::unique_ptr<RadioProgram> startRadioProgram(const std::vector<std::string>& command) {
  try {
    return std::make_unique<ChildProgram>(command);
  } catch (const CommandProcess::StartError& error) {
    throw std::runtime_error("cannot start " + command.front() + ": " +
                             std::generic_category().message(error.error));
  }
}

}  // namespace emulator
