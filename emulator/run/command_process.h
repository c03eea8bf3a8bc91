#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace emulator {

/// A command's arguments with the device's path for each {}.
std::vector<std::string> withDevice(std::vector<std::string> command, const std::string& path);

/// A program started as a child process.
class CommandProcess {
 public:
  /// Why a program could not be started.
  struct StartError {
    enum class Step {
      Preparation,  ///< `prepare` threw
      Execution,    ///< the program could not be run
    };

    Step step;
    int error;         ///< errno
    std::string text;  ///< what failed
  };

  /// Starts `command`, looked up in PATH, in a child that calls `prepare` first. Throws
  /// `StartError`.
  CommandProcess(const std::vector<std::string>& command, const std::function<void()>& prepare);

  /// Passes a signal on.
  void signal(int number) const;

  /// Collects the child when it has ended, and returns whether it has.
  bool hasEnded();

  /// The exit status as a shell gives it: 128 and the number for a signal.
  int exitStatus() const { return m_ExitStatus; }

 private:
  pid_t m_Pid = -1;
  int m_ExitStatus = 0;
};

}  // namespace emulator
