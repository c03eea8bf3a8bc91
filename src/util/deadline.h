#pragma once

#include <ctime>

#include "util/clock.h"

namespace util {

/// A time limit for a loop that waits in short pauses. The time of day can be set back during the
/// wait, and then the clock reaches the limit too late. So the object also counts the pauses.
///
///     util::Deadline deadline(5);  // seconds
///     while (!isReady() && !deadline.hasPassed()) {
///       deadline.pause();
///     }
class Deadline {
 public:
  explicit Deadline(std::time_t seconds) : m_Seconds(seconds) { restart(); }

  /// Starts the whole period again.
  void restart() {
    m_Start = nowInSeconds();
    m_Pauses = 0;
  }

  /// Returns true if the period has ended according to the clock or to the count of pauses.
  bool hasPassed() const {
    return m_Pauses >= m_Seconds * PausesPerSecond || nowInSeconds() - m_Start >= m_Seconds;
  }

  /// Waits for about one millisecond.
  void pause() {
    pauseBriefly();
    ++m_Pauses;
  }

 private:
  static constexpr std::time_t PausesPerSecond = 1000;

  std::time_t m_Seconds;
  std::time_t m_Start = 0;
  std::time_t m_Pauses = 0;
};

}  // namespace util
