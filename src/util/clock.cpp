// Pauses and the time of day, through system calls. The unit tests replace these calls by a virtual
// clock.

#include "util/clock.h"

#include <unistd.h>
#include <utility>

namespace util {

namespace {
constexpr useconds_t BriefPauseMicroseconds = 1000;

/// Empty if no front end observes the pauses.
std::function<void(unsigned int)> pauseObserver;

bool isSteady = false;
}  // namespace

void pauseSeconds(unsigned int seconds) {
  if (seconds > 0) {
    if (pauseObserver) {
      pauseObserver(seconds);
    }
    // In zvkconfig no handled signal ends this sleep early, because zvkconfig handles signals only
    // at the password prompt. In zvkwifi SIGINT and SIGTERM end it early, on purpose.
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
  if (!isSteady) {
    return timeOfDay();
  }
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec;
}

SteadyTime::SteadyTime() : m_WasSteady(std::exchange(isSteady, true)) {}

SteadyTime::~SteadyTime() {
  isSteady = m_WasSteady;
}

std::time_t timeOfDay() {
  return ::time(nullptr);
}

}  // namespace util
