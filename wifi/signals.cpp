#include "wifi/signals.h"

#include <cerrno>
#include <cstddef>
#include <ctime>
#include <poll.h>

namespace wifi {

namespace {

volatile std::sig_atomic_t arrived = 0;

extern "C" void noteSignal(int signal) {
  if (arrived == 0) {
    arrived = signal;
  }
}

}  // namespace

Interruption::Interruption() {
  struct sigaction action {};
  action.sa_handler = noteSignal;
  // SA_RESTART is not set, so the signal ends a pause or a read.
  ::sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < Signals.size(); ++i) {
    ::sigaction(Signals[i], &action, &m_Previous[i]);
    // A shell ignores SIGINT in a background process, but kill(1) must end this program.
    if (Signals[i] == SIGHUP && m_Previous[i].sa_handler == SIG_IGN) {
      ::sigaction(SIGHUP, &m_Previous[i], nullptr);
    }
  }
}

Interruption::~Interruption() {
  // A second signal, for example one that a parent process passes on, must not end the program
  // before it has reported what was stored.
  if (arrived != 0) {
    return;
  }
  for (std::size_t i = 0; i < Signals.size(); ++i) {
    ::sigaction(Signals[i], &m_Previous[i], nullptr);
  }
}

int Interruption::signal() {
  return arrived;
}

bool Interruption::waitForInput(int descriptor) {
  sigset_t blocked;
  ::sigemptyset(&blocked);
  for (const int number : Signals) {
    ::sigaddset(&blocked, number);
  }
  sigset_t original;
  ::sigprocmask(SIG_BLOCK, &blocked, &original);
  pollfd input = {.fd = descriptor, .events = POLLIN, .revents = 0};
  // The signals are blocked until ppoll waits, so none can arrive between the check of `arrived`
  // and the wait.
  int ready = 0;
  while (arrived == 0 && (ready = ::ppoll(&input, 1, nullptr, &original)) < 0 && errno == EINTR) {
  }
  ::sigprocmask(SIG_SETMASK, &original, nullptr);
  return arrived == 0;
}

}  // namespace wifi
