#pragma once

#include <array>
#include <csignal>

namespace wifi {

/// Notes SIGINT and SIGTERM during its lifetime instead of ending the program. Calls that wait end
/// early when one arrives. After that, the program notes further signals until its end.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Returns the first signal that arrived, or 0.
  [[nodiscard]] static int signal();

  /// Waits until `descriptor` can be read without waiting. Returns false if a signal has arrived,
  /// also if it arrived just before the call.
  [[nodiscard]] static bool waitForInput(int descriptor);

 private:
  static constexpr std::array Signals = {SIGINT, SIGTERM};

  std::array<struct sigaction, Signals.size()> m_Previous{};
};

}  // namespace wifi
