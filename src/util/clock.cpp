// Pauses and the clock, by system calls. Unit tests link a virtual clock in place of the calls.

#include "util/clock.h"

#include <unistd.h>
#include <utility>

namespace util {

namespace {
constexpr useconds_t BriefPauseMicroseconds = 1000;

/// Empty if no front end observes the pauses.
std::function<void(unsigned int)> pauseObserver;
}  // namespace

void pauseSeconds(unsigned int seconds) {
  if (seconds > 0) {
    if (pauseObserver) {
      pauseObserver(seconds);
    }
    // No signal ends this sleep early: the program handles signals only at the password prompt.
    ::sleep(seconds);
  }
}

void observePauses(std::function<void(unsigned int seconds)> observer) {
  pauseObserver = std::move(observer);
}

void pauseBriefly() {
  ::usleep(BriefPauseMicroseconds);
}

std::time_t nowInSeconds() {
  return ::time(nullptr);
}

}  // namespace util
