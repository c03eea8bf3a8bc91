#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

/// Runs real programs in processes, for the end-to-end tests.
namespace support {

struct ProcessResult {
  int status = 0;  ///< exit status, or 128 plus the number of the signal that ended the program
  std::string out;
  std::string err;
};

/// Runs a program with `input` as its standard input and waits for its end. The status is 127 if
/// the program cannot be started.
ProcessResult runProcess(const std::vector<std::string>& command, std::string_view input = {});

/// A program that runs at the same time as the test. The destructor kills the program if it still
/// runs.
class BackgroundProcess {
 public:
  explicit BackgroundProcess(const std::vector<std::string>& command);
  ~BackgroundProcess();
  BackgroundProcess(const BackgroundProcess&) = delete;
  BackgroundProcess& operator=(const BackgroundProcess&) = delete;

  /// Sends a signal.
  void signal(int number) const;
  /// Sends a signal, waits until the program ends and returns the status, as in `ProcessResult`.
  int endWith(int number);

 private:
  pid_t m_Pid;
};

/// A program on a pseudo-terminal. The test types there and reads there. The destructor kills the
/// program if it still runs.
class TerminalProcess {
 public:
  explicit TerminalProcess(const std::vector<std::string>& command);
  ~TerminalProcess();
  TerminalProcess(const TerminalProcess&) = delete;
  TerminalProcess& operator=(const TerminalProcess&) = delete;

  /// Waits until the program has shown `text`, and returns true. Returns false after 2,000 reads,
  /// which take 220 seconds if the program shows nothing.
  bool waitFor(std::string_view text);
  /// Does what `waitFor` does, but searches only after the text that the last call of `waitForNext`
  /// found.
  bool waitForNext(std::string_view text);
  /// Types characters.
  void type(std::string_view text) const;
  /// Changes the size of the terminal. The program gets SIGWINCH.
  void resize(unsigned short rows, unsigned short columns) const;
  /// Returns true if the terminal echoes what is typed.
  bool echoes() const;
  /// Returns what the waits have read from the terminal so far.
  const std::string& shown() const { return m_Shown; }
  /// Waits until the program ends and returns the status, as in `ProcessResult`.
  int waitForEnd();
  pid_t pid() const { return m_Pid; }

 private:
  bool readMore();

  pid_t m_Pid;
  int m_Master = -1;
  /// The end of the terminal that the program uses. It stays open here, so that the test can read
  /// the terminal's attributes after the program has ended.
  int m_Slave = -1;
  std::string m_Shown;
  std::size_t m_Found = 0;  ///< end of the text that `waitForNext` found
};

/// Calls `condition` until it returns true, and returns true. Returns false after 2,000 calls with
/// pauses of 10 ms (20 seconds, plus the time of the calls).
template <typename Condition>
bool eventually(Condition condition);

/// Pauses for 10 ms.
void pauseBriefly();

template <typename Condition>
bool eventually(Condition condition) {
  constexpr int maxCalls = 2000;
  for (int i = 0; i < maxCalls; ++i) {
    if (condition()) {
      return true;
    }
    pauseBriefly();
  }
  return false;
}

}  // namespace support
