#pragma once

#include <array>
#include <csignal>

namespace wifi {

/// While this object exists, the program notes SIGINT, SIGTERM and SIGHUP and does not end. A
/// SIGHUP that was ignored, as under nohup(1), stays ignored. System calls that wait end early when
/// such a signal arrives. After the first signal, the program notes further signals until its end,
/// even after the destructor.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Returns the first signal that arrived, or 0.
  [[nodiscard]] static int signal();

  /// Waits until `descriptor` can be read without waiting. Returns true then. Returns false if a
  /// signal arrives, or if one arrived before the call.
  [[nodiscard]] static bool waitForInput(int descriptor);

 private:
  static constexpr std::array Signals = {SIGINT, SIGTERM, SIGHUP};

  std::array<struct sigaction, Signals.size()> m_Previous{};
};

}  // namespace wifi
