#include "wifi/signals.h"

#include <cstddef>

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
  arrived = 0;
  struct sigaction action {};
  action.sa_handler = noteSignal;
  // Without SA_RESTART: the signal ends a pause or a read.
  ::sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < Signals.size(); ++i) {
    ::sigaction(Signals[i], &action, &m_Previous[i]);
  }
}

Interruption::~Interruption() {
  for (std::size_t i = 0; i < Signals.size(); ++i) {
    ::sigaction(Signals[i], &m_Previous[i], nullptr);
  }
}

int Interruption::signal() {
  return arrived;
}

}  // namespace wifi
