#pragma once

#include <array>
#include <csignal>
#include <optional>
#include <span>

namespace util {

/// Signals that end or stop a program by default.
inline constexpr std::array SignalsThatEndOrStop = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

/// Switches the echo of the terminal on standard input off during its lifetime and discards what
/// was typed before. Does nothing if standard input is not a terminal. Only one object may exist at
/// a time.
///
///     const util::EchoOff echoOff;
///     const std::string password = readLine();
///
/// The destructor switches the echo on again. A signal handler does the same before one of
/// `signals` ends or stops the program. When a stopped program continues, the echo goes off again.
/// A program with its own handler for a signal leaves that signal out of `signals`.
class EchoOff {
 public:
  explicit EchoOff(std::span<const int> signals = SignalsThatEndOrStop);
  ~EchoOff();
  EchoOff(const EchoOff&) = delete;
  EchoOff& operator=(const EchoOff&) = delete;

 private:
  /// Handles one signal while this object exists. An ignored signal, as under nohup, stays ignored.
  class HandledSignal {
   public:
    explicit HandledSignal(int signal);
    ~HandledSignal();
    HandledSignal(const HandledSignal&) = delete;
    HandledSignal& operator=(const HandledSignal&) = delete;

   private:
    int m_Signal;
    struct sigaction m_Previous {};
  };

  std::array<std::optional<HandledSignal>, SignalsThatEndOrStop.size()> m_Signals;
};

}  // namespace util
