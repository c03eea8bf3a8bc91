#pragma once

#include <ctime>
#include <functional>

/// The program's only view of time: whole-second pauses and deadlines, as the printer's protocol
/// counts them, and the short wait between tries of a device that is not ready.
namespace util {

/// Pauses for `seconds` seconds; 0 does not pause.
void pauseSeconds(unsigned int seconds);

/// Calls `observer` with the length of each pause of whole seconds, before the pause, which it
/// cannot change: for a front end that shows progress. An empty function ends that.
void observePauses(std::function<void(unsigned int seconds)> observer);

/// Pauses for about one millisecond.
void pauseBriefly();

/// Returns the wall-clock time in whole seconds.
std::time_t nowInSeconds();

}  // namespace util
