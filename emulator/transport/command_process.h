#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace emulator {

/// Returns the words of a command with each {} replaced by `path`.
std::vector<std::string> withDevice(std::vector<std::string> command, const std::string& path);

/// A program that runs as a child process:
///
///     CommandProcess process({"sh", "-c", "exit 3"}, [] {});
///     while (!process.hasEnded()) { ... }  // wait for SIGCHLD
///     return process.exitStatus();         // 3
class CommandProcess {
 public:
  /// Thrown if a program cannot be started.
  struct StartError {
    enum class Step {
      Preparation,  ///< `prepare` threw, or no process could be created
      Execution,    ///< the program could not be executed
    };

    Step step;
    int error;         ///< errno
    std::string text;  ///< what failed
  };

  /// Starts `command`. Searches the program in PATH. The child process calls `prepare` first.
  /// Throws `StartError` if the program cannot be started.
  CommandProcess(const std::vector<std::string>& command, const std::function<void()>& prepare);

  /// Sends a signal to the process.
  void signal(int number) const;

  /// Returns true if the process has ended, and stores its exit status. Does not block.
  bool hasEnded();

  /// Returns the exit status as a shell shows it: 128 + N if signal N ended the process.
  int exitStatus() const { return m_ExitStatus; }

 private:
  pid_t m_Pid = -1;
  int m_ExitStatus = 0;
};

}  // namespace emulator
