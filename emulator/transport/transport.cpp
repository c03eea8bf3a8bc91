// The loop that every transport runs: send, wait, receive, and handle signals.

#include "emulator/transport/transport.h"

#include <algorithm>
#include <cerrno>
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
  while (true) {
    sendDue();
    std::vector<pollfd> polled = awaited();
    polled.push_back({signals.descriptor(), POLLIN, 0});
    if (::poll(polled.data(), polled.size(), timeUntil(nextDue())) < 0 && errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "poll");
    }
    receiveAll();
    while (const int signal = signals.next()) {
      if (!goOn(signal)) {
        receiveAll();
        return;
      }
    }
  }
}

}  // namespace emulator
