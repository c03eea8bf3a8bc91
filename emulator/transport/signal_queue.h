#pragma once

#include <csignal>
#include <initializer_list>

#include "util/unique_fd.h"

namespace emulator {

/// Turns the signals that end a program, and SIGCHLD, into a queue that can be polled. While it
/// lives they are blocked, and SIGPIPE is ignored.
class SignalQueue {
 public:
  /// Takes the signals of `more` as well.
  SignalQueue(std::initializer_list<int> more = {});
  ~SignalQueue();
  SignalQueue(const SignalQueue&) = delete;
  SignalQueue& operator=(const SignalQueue&) = delete;

  /// Readable when a signal waits.
  int descriptor() const { return m_Fd.get(); }

  /// Takes the next signal; 0 when none waits.
  int next() const;

  /// Lets signals act again as programs expect; for a child before it runs another program.
  void restore() const;

 private:
  sigset_t m_Previous{};
  util::UniqueFd m_Fd;
};

}  // namespace emulator
