#include "util/clock.h"

#include <unistd.h>

namespace util {

namespace {
constexpr useconds_t BriefPauseMicroseconds = 1000;
}

void pauseSeconds(unsigned int seconds) {
  if (seconds > 0) {
    // Nothing cuts it short: the program handles signals only at the password prompt.
    ::sleep(seconds);
  }
}

void pauseBriefly() {
  ::usleep(BriefPauseMicroseconds);
}

std::time_t nowInSeconds() {
  return ::time(nullptr);
}

}  // namespace util
