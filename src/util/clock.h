#pragma once

#include <ctime>
#include <functional>

/// Pauses and the time of day in whole seconds, the unit of the printer's protocol, and a short
/// pause between two attempts on a device that is not ready.
namespace util {

/// Pauses for `seconds` seconds. Returns at once if `seconds` is 0.
void pauseSeconds(unsigned int seconds);

/// Sets the function that `pauseSeconds` calls before each pause, with the length in seconds. A
/// front end can show its progress in this function. An empty function removes the observer.
///
///     util::observePauses([](unsigned int seconds) { showCountdown(seconds); });
void observePauses(std::function<void(unsigned int seconds)> observer);

/// Pauses for about one millisecond. The observer is not called.
void pauseBriefly();

/// Returns a time in whole seconds, to measure a wait: the time of day, or a steady time while a
/// `SteadyTime` exists. If the clock is set, the time of day jumps.
std::time_t nowInSeconds();

/// While this object exists, `nowInSeconds` returns a time that does not depend on the clock.
/// Create and destroy it outside of waits.
class SteadyTime {
 public:
  SteadyTime();
  ~SteadyTime();
  SteadyTime(const SteadyTime&) = delete;
  SteadyTime& operator=(const SteadyTime&) = delete;

 private:
  bool m_WasSteady;
};

/// Returns the time of day in whole seconds since 1970.
std::time_t timeOfDay();

}  // namespace util
