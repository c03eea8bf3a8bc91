// SignalQueue: receives signals through a signalfd.

#include "emulator/transport/signal_queue.h"

#include <cerrno>
#include <pthread.h>
#include <sys/signalfd.h>
#include <system_error>

namespace emulator {

SignalQueue::SignalQueue(std::initializer_list<int> more) {
  sigset_t set{};
  ::sigemptyset(&set);
  for (const int signal : {SIGCHLD, SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
    ::sigaddset(&set, signal);
  }
  for (const int signal : more) {
    ::sigaddset(&set, signal);
  }
  ::pthread_sigmask(SIG_BLOCK, &set, &m_Previous);
  // If SIGCHLD is inherited as ignored, the child's exit would never be reported.
  ::signal(SIGCHLD, SIG_DFL);
  // If the program that reads the output exits, SIGPIPE must not end this program before the
  // cleanup.
  ::signal(SIGPIPE, SIG_IGN);
  m_Fd = util::UniqueFd(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
  if (!m_Fd) {
    throw std::system_error(errno, std::generic_category(), "signalfd");
  }
}

SignalQueue::~SignalQueue() {
  restore();
}

int SignalQueue::next() const {
  signalfd_siginfo info{};
  const ssize_t size = ::read(m_Fd.get(), &info, sizeof info);
  return size == static_cast<ssize_t>(sizeof info) ? static_cast<int>(info.ssi_signo) : 0;
}

void SignalQueue::restore() const {
  ::signal(SIGPIPE, SIG_DFL);
  ::pthread_sigmask(SIG_SETMASK, &m_Previous, nullptr);
}

}  // namespace emulator
