#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

/// Running real programs, for the end-to-end tests.
namespace support {

struct ProcessResult {
  int status = 0;  ///< exit status; 128 and the number for a signal
  std::string out;
  std::string err;
};

/// Runs a program to its end with `input` as its standard input.
ProcessResult runProcess(const std::vector<std::string>& command, std::string_view input = {});

/// A program that runs beside the test; killed when destroyed, if it still runs.
class BackgroundProcess {
 public:
  explicit BackgroundProcess(const std::vector<std::string>& command);
  ~BackgroundProcess();
  BackgroundProcess(const BackgroundProcess&) = delete;
  BackgroundProcess& operator=(const BackgroundProcess&) = delete;

  /// Sends a signal.
  void signal(int number) const;
  /// The same, then waits for the end and returns the exit status.
  int endWith(int number);

 private:
  pid_t m_Pid;
};

/// A program whose terminal is a pseudo-terminal of the test's.
class TerminalProcess {
 public:
  explicit TerminalProcess(const std::vector<std::string>& command);
  ~TerminalProcess();
  TerminalProcess(const TerminalProcess&) = delete;
  TerminalProcess& operator=(const TerminalProcess&) = delete;

  /// Reads what the program shows until `text` was shown, and returns whether it was.
  bool waitFor(std::string_view text);
  /// Types characters.
  void type(std::string_view text) const;
  /// Whether the terminal echoes what is typed.
  bool echoes() const;
  /// All that was shown so far.
  const std::string& shown() const { return m_Shown; }
  /// Reads to the end of the program, and returns its exit status as `ProcessResult` has it.
  int waitForEnd();
  pid_t pid() const { return m_Pid; }

 private:
  bool readMore();

  pid_t m_Pid;
  int m_Master = -1;
  /// Held open, so that the terminal can be looked at when the program is gone.
  int m_Slave = -1;
  std::string m_Shown;
};

/// Calls `condition` until it is true, for at most 20 seconds; returns whether it was.
template <typename Condition>
bool eventually(Condition condition);

/// A hundredth of a second.
void waitAMoment();

template <typename Condition>
bool eventually(Condition condition) {
  constexpr int tries = 2000;
  for (int i = 0; i < tries; ++i) {
    if (condition()) {
      return true;
    }
    waitAMoment();
  }
  return false;
}

}  // namespace support
