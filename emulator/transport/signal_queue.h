#pragma once

#include <csignal>
#include <initializer_list>

#include "util/unique_fd.h"

namespace emulator {

/// Turns SIGCHLD and the signals that end a program into a queue with a descriptor that can be
/// polled. While the object exists, these signals are blocked and SIGPIPE is ignored.
///
///     const SignalQueue signals({SIGUSR1});
///     while (const int signal = signals.next()) { ... }
class SignalQueue {
 public:
  /// Also queues the signals in `more`. Throws `std::system_error` on failure.
  SignalQueue(std::initializer_list<int> more = {});
  ~SignalQueue();
  SignalQueue(const SignalQueue&) = delete;
  SignalQueue& operator=(const SignalQueue&) = delete;

  /// Returns a descriptor that is readable while a signal is pending.
  int descriptor() const { return m_Fd.get(); }

  /// Removes the next signal and returns it. Returns 0 if none is pending.
  int next() const;

  /// Restores the signal mask and the default action of SIGPIPE. A child process calls this before
  /// it runs another program.
  void restore() const;

 private:
  sigset_t m_Previous{};
  util::UniqueFd m_Fd;
};

}  // namespace emulator
