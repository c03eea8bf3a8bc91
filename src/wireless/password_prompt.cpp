// The password prompt. The echo of the terminal is off during the input. It is switched on again
// after the input, and before a signal of `SignalsThatEndOrStop` ends or stops the program.

#include "wireless/password_prompt.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <optional>
#include <termios.h>
#include <unistd.h>

#include "util/output.h"

namespace {

/// The signals that usually end or stop a program at a terminal. The echo is switched on before one
/// of them ends or stops the program.
constexpr std::array SignalsThatEndOrStop = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

/// The capacity in bytes that is reserved for a password. Usual passwords are shorter, so the
/// string does not reallocate its text. This capacity does not fit into the string object itself,
/// so the text is in heap memory, which the program clears before it frees the memory.
constexpr std::size_t PasswordReserve = 256;
/// How often the program tries to restore the echo.
constexpr int RestoreTries = 3;

// For the signal handler: the original state of the terminal, and 1 if it must be restored.
termios savedTerminal;
volatile std::sig_atomic_t echoIsOff = 0;

/// Switches the echo on again. Retries a failed call, because otherwise the user would have a
/// terminal that does not show typed characters.
void restoreEcho() {
  if (echoIsOff != 0) {
    int tries = RestoreTries;
    while (::tcsetattr(STDIN_FILENO, TCSAFLUSH, &savedTerminal) != 0 && --tries > 0) {
    }
    echoIsOff = 0;
  }
}

/// Switches the echo off. Discards what was typed before.
void switchEchoOff() {
  termios silent = savedTerminal;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  echoIsOff = 1;
  ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
}

extern "C" void restoreEchoForSignal(int signal);

/// Sets the handler for the next `signal` only. SA_RESETHAND restores the default action when the
/// handler starts. With SA_NODEFER, a signal that the handler raises is delivered while the handler
/// still runs.
void handleOnce(int signal) {
  struct sigaction action {};
  action.sa_handler = restoreEchoForSignal;
  action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_NODEFER | SA_RESTART;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

/// Restores the echo and raises the signal again for its default action. `raise` returns only if
/// that action is a stop and the program continues later. Then the password is not complete yet, so
/// the echo is switched off again.
extern "C" void restoreEchoForSignal(int signal) {
  const int error = errno;
  restoreEcho();
  ::raise(signal);
  handleOnce(signal);
  switchEchoOff();
  errno = error;
}

/// Handles one signal during the object's lifetime. If the signal is ignored, for example under
/// nohup, it stays ignored.
class HandledSignal {
 public:
  explicit HandledSignal(int signal) : m_Signal(signal) {
    ::sigaction(m_Signal, nullptr, &m_Previous);
    if (m_Previous.sa_handler != SIG_IGN) {
      handleOnce(m_Signal);
    }
  }
  ~HandledSignal() { ::sigaction(m_Signal, &m_Previous, nullptr); }
  HandledSignal(const HandledSignal&) = delete;
  HandledSignal& operator=(const HandledSignal&) = delete;

 private:
  int m_Signal;
  struct sigaction m_Previous {};
};

/// Switches the terminal's echo off during the object's lifetime. Does nothing if standard input is
/// not a terminal.
class EchoOff {
 public:
  EchoOff() {
    if (::tcgetattr(STDIN_FILENO, &savedTerminal) != 0) {
      return;
    }
    for (std::size_t i = 0; i < m_Signals.size(); ++i) {
      m_Signals[i].emplace(SignalsThatEndOrStop[i]);
    }
    switchEchoOff();
  }
  ~EchoOff() { restoreEcho(); }
  EchoOff(const EchoOff&) = delete;
  EchoOff& operator=(const EchoOff&) = delete;

 private:
  std::array<std::optional<HandledSignal>, SignalsThatEndOrStop.size()> m_Signals;
};

/// Reads a line byte by byte, because the buffer of a stream would keep a copy of the password.
std::string readLine() {
  std::string line;
  line.reserve(PasswordReserve);
  char c = 0;
  while (::read(STDIN_FILENO, &c, 1) == 1 && c != '\n') {
    line.push_back(c);
  }
  return line;
}

}  // namespace

std::string promptForPassword() {
  util::showProgress("Please provide the password:");
  std::string password;
  {
    const EchoOff echoOff;
    password = readLine();
  }
  util::writeAnswer("\n\n");
  return password;
}
