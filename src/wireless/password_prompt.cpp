#include "wireless/password_prompt.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr std::array SignalsThatEnd = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
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

/// Restores the echo and lets the signal do what it does by default. The handler was installed for
/// one shot, so that it is the default action that the signal meets when this returns.
extern "C" void restoreEchoAndEnd(int signal) {
  restoreEcho();
  ::raise(signal);
}

/// Handles one signal for as long as it lives; leaves an ignored signal (nohup) ignored.
class EndingSignal {
 public:
  explicit EndingSignal(int signal) : m_Signal(signal) {
    ::sigaction(m_Signal, nullptr, &m_Previous);
    if (m_Previous.sa_handler == SIG_IGN) {
      return;
    }
    struct sigaction action {};
    action.sa_handler = restoreEchoAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    ::sigaction(m_Signal, &action, nullptr);
  }
  ~EndingSignal() { ::sigaction(m_Signal, &m_Previous, nullptr); }
  EndingSignal(const EndingSignal&) = delete;
  EndingSignal& operator=(const EndingSignal&) = delete;

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
      m_Signals[i].emplace(SignalsThatEnd[i]);
    }
    termios silent = savedTerminal;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    echoIsOff = 1;
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
  }
  ~EchoOff() { restoreEcho(); }
  EchoOff(const EchoOff&) = delete;
  EchoOff& operator=(const EchoOff&) = delete;

 private:
  std::array<std::optional<EndingSignal>, SignalsThatEnd.size()> m_Signals;
};

std::string readLine() {
  // The end of input at an earlier prompt is over: a terminal can be asked again.
  std::clearerr(stdin);
  std::string line;
  for (int c = std::getchar(); c != '\n' && c != EOF; c = std::getchar()) {
    line.push_back(static_cast<char>(c));
  }
  return line;
}

}  // namespace

std::string promptForPassword() {
  std::fputs("Please provide the password:", stdout);
  std::fflush(stdout);
  std::string password;
  {
    const EchoOff echoOff;
    password = readLine();
  }
  std::fputs("\n\n", stdout);
  return password;
}
