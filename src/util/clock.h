#pragma once

#include <ctime>

/// The program's only view of time: whole-second pauses and deadlines, as the printer's protocol
/// counts them, and the short wait between tries of a device that is not ready.
namespace util {

/// Pauses for `seconds` seconds.
void pauseSeconds(unsigned int seconds);

/// Pauses for about one millisecond.
void pauseBriefly();

/// Returns the wall-clock time in whole seconds.
std::time_t nowInSeconds();

}  // namespace util
