#include "util/clock.h"

#include <unistd.h>

namespace util {

namespace {
constexpr useconds_t BriefPauseMicroseconds = 1000;
}

void pauseSeconds(unsigned int seconds) {
  // Nothing interrupts it: the program handles signals only at the password prompt.
  ::sleep(seconds);
}

void pauseBriefly() {
  ::usleep(BriefPauseMicroseconds);
}

std::time_t nowInSeconds() {
  return ::time(nullptr);
}

}  // namespace util
