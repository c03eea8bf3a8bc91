#include "util/clock.h"

#include <unistd.h>

namespace util {

namespace {
constexpr useconds_t BriefPauseMicroseconds = 1000;
}

void pauseSeconds(unsigned int seconds) {
  while (seconds > 0) {
    seconds = ::sleep(seconds);
  }
}

void pauseBriefly() {
  ::usleep(BriefPauseMicroseconds);
}

std::time_t nowInSeconds() {
  return ::time(nullptr);
}

}  // namespace util
