#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <termios.h>

namespace support {

/// A terminal for a child process that runs a part of the program. The test types on the terminal.
/// The terminal is not the child's controlling terminal, so typed characters such as Ctrl-C send no
/// signals; only `signal` does. The operations throw an exception if a system call fails.
class PseudoTerminal {
 public:
  PseudoTerminal();
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// Starts a child. Its standard input is the terminal and its standard output is a pipe. The
  /// child runs `action` and then ends with status 0. Before `action` runs, SIGINT, SIGTERM,
  /// SIGHUP, SIGQUIT and SIGTSTP are set to their default action.
  void run(const std::function<void()>& action);

  /// Types `text` on the terminal.
  void type(const std::string& text) const;

  /// Types a line in advance. Returns as soon as the line can be read from the terminal.
  void typeAhead(const std::string& line) const;

  /// Returns the current attributes of the terminal.
  termios attributes() const;
  bool echoes() const { return (attributes().c_lflag & ECHO) != 0; }

  /// Waits until the child has switched the echo off. Returns false if the child ends first. Polls
  /// without pauses, so that the test continues as soon as the echo is off.
  bool waitForEchoOff() const;

  /// Switches the echo off. Call it before `run`.
  void switchEchoOff() const;

  /// Waits until the child discards the input typed so far. Call this only once, after
  /// `switchEchoOff`. Returns false after 20 seconds.
  bool waitForDiscardedInput() const;

  /// Waits until the child has written `text` to standard output. Returns false if the child ends
  /// first, or after 20 seconds without output.
  bool waitForOutput(const std::string& text);

  /// Sends a signal to the child.
  void signal(int number) const;

  /// Waits until a signal has stopped the child. Returns false if the child ends first.
  bool waitForStop() const;

  /// Waits for the child's end and returns its status in the form of `waitpid`.
  int wait();

  /// Returns the text that the child has written to standard output. The text is complete only
  /// after `wait`.
  const std::string& output() const { return m_Output; }

  /// Returns the text that the terminal has shown, which is the echo of the typed characters.
  std::string shown() const;

 private:
  int m_Master = -1;
  int m_Terminal = -1;
  int m_OutputEnd = -1;
  pid_t m_Child = -1;
  std::string m_Output;
};

}  // namespace support
