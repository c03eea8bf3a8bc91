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

/// Returns the time of day in whole seconds since 1970. If the clock is set, this time jumps.
std::time_t nowInSeconds();

}  // namespace util
