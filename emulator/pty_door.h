#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>

#include "emulator/adapter.h"
#include "emulator/signal_queue.h"
#include "util/unique_fd.h"

namespace emulator {

/// Puts an adapter behind a pseudo-terminal in raw mode: a character device that a program can
/// open, write, select on and read like the printer driver's.
class PtyDoor {
 public:
  /// Makes the pseudo-terminal; throws `std::system_error`. The adapter must outlive the door.
  explicit PtyDoor(Adapter& adapter);

  /// The device to open, such as "/dev/pts/3".
  const std::string& devicePath() const { return m_DevicePath; }

  /// Carries bytes between the device and the adapter. `goOn` is called with each signal that
  /// arrives; once it returns false, what is already written is still received, and that is the
  /// end.
  void carry(const SignalQueue& signals, const std::function<bool(int signal)>& goOn);

 private:
  using Clock = std::chrono::steady_clock;

  struct Outgoing {
    Clock::time_point due;
    Bytes bytes;
  };

  void receiveAll();
  void sendDue();
  /// Milliseconds until something is to be sent; -1 when nothing is.
  int timeToNext() const;

  Adapter& m_Adapter;
  util::UniqueFd m_Master;
  // Held open, so that the device keeps its raw mode while no program has it open.
  util::UniqueFd m_Slave;
  std::string m_DevicePath;
  std::deque<Outgoing> m_Outgoing;
  bool m_DeviceIsFull = false;
};

}  // namespace emulator
