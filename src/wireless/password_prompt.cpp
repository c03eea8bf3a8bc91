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

constexpr std::array SignalsThatEndOrStop = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

/// More than passwords have. Enough for the text to live in heap memory, which the program clears
/// when it releases it, and never in the string object itself.
constexpr std::size_t PasswordReserve = 256;
constexpr int RestoreTries = 3;

// What a signal handler must reach: the terminal as it was, and whether it is to be restored.
termios savedTerminal;
volatile std::sig_atomic_t echoIsOff = 0;

/// Tries again when that fails: a terminal that is left silent is worse than one that is late.
void restoreEcho() {
  if (echoIsOff != 0) {
    int tries = RestoreTries;
    while (::tcsetattr(STDIN_FILENO, TCSAFLUSH, &savedTerminal) != 0 && --tries > 0) {
    }
    echoIsOff = 0;
  }
}

void switchEchoOff() {
  termios silent = savedTerminal;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  echoIsOff = 1;
  ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
}

extern "C" void restoreEchoForSignal(int signal);

/// Has the next such signal restore the echo first. That one meets the default action afterwards,
/// and is not held back while the handler runs.
void handleOnce(int signal) {
  struct sigaction action {};
  action.sa_handler = restoreEchoForSignal;
  action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_NODEFER | SA_RESTART;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

/// Restores the echo and lets the signal do what it does by default. Only a stop returns: when the
/// program goes on, the password is still to be typed.
extern "C" void restoreEchoForSignal(int signal) {
  const int error = errno;
  restoreEcho();
  ::raise(signal);
  handleOnce(signal);
  switchEchoOff();
  errno = error;
}

/// Handles one signal for as long as it lives; leaves an ignored signal (nohup) ignored.
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

/// Switches the terminal's echo off for as long as it lives; does nothing when standard input is no
/// terminal.
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

/// Byte by byte from the descriptor: a buffered stream would keep a copy.
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
