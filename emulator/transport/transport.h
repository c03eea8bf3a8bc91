#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <poll.h>
#include <vector>

#include "emulator/transport/signal_queue.h"

namespace emulator {

/// A task that waits for descriptors or for a time. `Transport::carry` calls its functions in a
/// loop.
class Activity {
 public:
  using Clock = std::chrono::steady_clock;

  virtual ~Activity() = default;
  Activity(const Activity&) = delete;
  Activity& operator=(const Activity&) = delete;

  /// Does what is due, such as sending bytes, as far as this is possible without blocking.
  virtual void sendDue() = 0;
  /// Receives everything that has arrived, without blocking.
  virtual void receiveAll() = 0;
  /// Returns the descriptors to poll and the events to wait for.
  virtual std::vector<pollfd> awaited() const = 0;
  /// Returns the time at which `sendDue` has something to do, or nothing if the activity waits only
  /// for descriptors.
  virtual std::optional<Clock::time_point> nextDue() const = 0;

 protected:
  Activity() = default;
};

/// Moves bytes between the host and an adapter. A derived class implements the four functions of an
/// activity.
class Transport : public Activity {
 public:
  /// Lets `carry` also run `companion`, unless it is null. The companion must outlive the
  /// transport.
  void accompany(Activity* companion) { m_Companion = companion; }

  /// Runs the transport. Calls `goOn` with each signal that arrives. When `goOn` has returned
  /// false, receives the bytes that have already arrived and returns.
  void carry(const SignalQueue& signals, const std::function<bool(int signal)>& goOn);

 protected:
  Transport() = default;

 private:
  Activity* m_Companion = nullptr;
};

}  // namespace emulator
