#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <poll.h>
#include <vector>

#include "emulator/transport/signal_queue.h"

namespace emulator {

/// Where an adapter's bytes come in and go out.
class Transport {
 public:
  using Clock = std::chrono::steady_clock;

  virtual ~Transport() = default;
  Transport(const Transport&) = delete;
  Transport& operator=(const Transport&) = delete;

  /// Sends what is due, as far as it can be sent without waiting.
  virtual void sendDue() = 0;
  /// Takes in all that has arrived, without waiting.
  virtual void receiveAll() = 0;
  /// The descriptors to wait for, and what for.
  virtual std::vector<pollfd> awaited() const = 0;
  /// When something is to be sent that nobody has to be waited for.
  virtual std::optional<Clock::time_point> nextDue() const = 0;

  /// Carries bytes through the transport. `goOn` is called with each signal that arrives; once it
  /// returns false, what has already arrived is still received, and that is the end.
  void carry(const SignalQueue& signals, const std::function<bool(int signal)>& goOn);

 protected:
  Transport() = default;
};

}  // namespace emulator
