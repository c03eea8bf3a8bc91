// Switching the terminal's echo, also when a signal ends or stops the program.

#include "util/echo_off.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <termios.h>
#include <unistd.h>

namespace util {

namespace {

/// How many times the program tries to restore the terminal before it gives up.
constexpr int RestoreTries = 3;

// For the signal handler: the original state of the terminal, and 1 if it must be restored.
termios savedTerminal;
volatile std::sig_atomic_t echoIsOff = 0;

/// Switches the echo on again. Retries after a failure, because without echo the user cannot see
/// the typed characters.
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
/// handler starts. SA_NODEFER delivers the signal that the handler raises while the handler still
/// runs.
void handleOnce(int signal) {
  struct sigaction action {};
  action.sa_handler = restoreEchoForSignal;
  action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_NODEFER | SA_RESTART;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

/// Restores the echo and raises the signal again for its default action. `raise` returns only after
/// a stop, when the program continues. The password is not complete then, so the echo goes off
/// again.
extern "C" void restoreEchoForSignal(int signal) {
  const int error = errno;
  restoreEcho();
  ::raise(signal);
  handleOnce(signal);
  switchEchoOff();
  errno = error;
}

}  // namespace

EchoOff::HandledSignal::HandledSignal(int signal) : m_Signal(signal) {
  ::sigaction(m_Signal, nullptr, &m_Previous);
  if (m_Previous.sa_handler != SIG_IGN) {
    handleOnce(m_Signal);
  }
}

EchoOff::HandledSignal::~HandledSignal() {
  ::sigaction(m_Signal, &m_Previous, nullptr);
}

EchoOff::EchoOff(std::span<const int> signals) {
  if (::tcgetattr(STDIN_FILENO, &savedTerminal) != 0) {
    return;
  }
  for (std::size_t i = 0; i < std::min(signals.size(), m_Signals.size()); ++i) {
    m_Signals[i].emplace(signals[i]);
  }
  switchEchoOff();
}

EchoOff::~EchoOff() {
  restoreEcho();
}

}  // namespace util
