#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <termios.h>

namespace support {

/// A terminal at which a child process runs a piece of the program, and this process types. The
/// terminal is nobody's controlling terminal: signals come from `signal` alone.
class PseudoTerminal {
 public:
  PseudoTerminal();
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// Starts a child whose standard input is the terminal and whose standard output is a pipe. It
  /// ends with status 0 after `action`. The signals that end programs have their default action.
  void run(const std::function<void()>& action);

  /// Types `text` at the terminal.
  void type(const std::string& text) const;

  /// Types a line that nobody reads yet; returns when the terminal holds it ready for reading.
  void typeAhead(const std::string& line) const;

  /// The terminal's attributes now.
  termios attributes() const;
  bool echoes() const { return (attributes().c_lflag & ECHO) != 0; }

  /// Waits, without a pause in it, until the child has switched the echo off. Returns whether it
  /// did before it ended.
  bool waitForSilence() const;

  /// For a terminal that is silent from the start, before `run`.
  void switchEchoOff() const;

  /// Waits until the child makes the terminal discard what was typed so far, once after
  /// `switchEchoOff`. Returns whether it did.
  bool waitForDiscardedInput() const;

  /// Waits until `text` can be read from the child's standard output. Returns whether it came.
  bool waitForOutput(const std::string& text);

  void signal(int number) const;

  /// Waits until a signal has stopped the child. Returns whether it did before it ended.
  bool waitForStop() const;

  /// Waits for the child's end and returns its status as `waitpid` gives it.
  int wait();

  /// All that the child wrote to standard output; after `wait`.
  const std::string& output() const { return m_Output; }

  /// All that the terminal showed: the echo of what was typed.
  std::string shown() const;

 private:
  int m_Master = -1;
  int m_Terminal = -1;
  int m_OutputEnd = -1;
  pid_t m_Child = -1;
  std::string m_Output;
};

}  // namespace support
