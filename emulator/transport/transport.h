#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <poll.h>
#include <vector>

#include "emulator/transport/signal_queue.h"

namespace emulator {

/// Moves bytes between the host and an adapter. A derived class implements the four functions
/// below, and `carry` calls them in a loop.
class Transport {
 public:
  using Clock = std::chrono::steady_clock;

  virtual ~Transport() = default;
  Transport(const Transport&) = delete;
  Transport& operator=(const Transport&) = delete;

  /// Sends the bytes that are due, as many as it can without blocking.
  virtual void sendDue() = 0;
  /// Receives everything that has arrived, without blocking.
  virtual void receiveAll() = 0;
  /// Returns the descriptors to poll and the events to wait for.
  virtual std::vector<pollfd> awaited() const = 0;
  /// Returns when the next bytes are due, or nothing if the transport waits only for events.
  virtual std::optional<Clock::time_point> nextDue() const = 0;

  /// Runs the transport. Calls `goOn` with each signal that arrives. When `goOn` has returned
  /// false, receives the bytes that have already arrived and returns.
  void carry(const SignalQueue& signals, const std::function<bool(int signal)>& goOn);

 protected:
  Transport() = default;
};

}  // namespace emulator
