#pragma once

#include <ctime>

#include "util/clock.h"

namespace util {

/// A period of waiting in short pauses. It is counted in pauses as well as by the clock, which is
/// the time of day and may be set back meanwhile.
class Patience {
 public:
  explicit Patience(std::time_t seconds) : m_Seconds(seconds) { restart(); }

  void restart() {
    m_Start = nowInSeconds();
    m_Pauses = 0;
  }

  bool isOver() const {
    return m_Pauses >= m_Seconds * PausesPerSecond || nowInSeconds() - m_Start >= m_Seconds;
  }

  /// Waits for about a millisecond.
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
