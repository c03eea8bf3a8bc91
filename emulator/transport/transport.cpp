// The loop that every transport runs: send, wait, receive, and handle signals.

#include "emulator/transport/transport.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <limits>
#include <system_error>

namespace emulator {

namespace {

/// Returns the milliseconds until `due`, for poll; -1 (no timeout) if nothing is due.
int timeUntil(std::optional<Transport::Clock::time_point> due) {
  using std::chrono::milliseconds;
  if (!due) {
    return -1;
  }
  const auto wait = std::chrono::ceil<milliseconds>(*due - Transport::Clock::now());
  return static_cast<int>(
      std::clamp<milliseconds::rep>(wait.count(), 0, std::numeric_limits<int>::max()));
}

}  // namespace

void Transport::carry(const SignalQueue& signals, const std::function<bool(int signal)>& goOn) {
  std::vector<Activity*> activities = {this};
  if (m_Companion != nullptr) {
    activities.push_back(m_Companion);
  }
  while (true) {
    std::vector<pollfd> polled = {{signals.descriptor(), POLLIN, 0}};
    std::optional<Clock::time_point> due;
    for (Activity* const activity : activities) {
      activity->sendDue();
      std::ranges::copy(activity->awaited(), std::back_inserter(polled));
      const auto its = activity->nextDue();
      due = its && (!due || *its < *due) ? its : due;
    }
    if (::poll(polled.data(), polled.size(), timeUntil(due)) < 0 && errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "poll");
    }
    for (Activity* const activity : activities) {
      activity->receiveAll();
    }
    while (const int signal = signals.next()) {
      if (!goOn(signal)) {
        receiveAll();
        return;
      }
    }
  }
}

}  // namespace emulator
