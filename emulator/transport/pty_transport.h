#pragma once

#include <optional>
#include <string>
#include <vector>

#include "emulator/adapter/adapter.h"
#include "emulator/transport/reply_queue.h"
#include "emulator/transport/transport.h"
#include "util/unique_fd.h"

namespace emulator {

/// Serves an adapter over a pseudo-terminal in raw mode. A program can open, write, poll and read
/// this character device in the same way as the device of the kernel's printer driver.
///
///     PtyTransport transport(adapter);
///     std::cout << transport.devicePath() << std::endl;  // /dev/pts/3
///     transport.carry(signals, [](int) { return false; });
class PtyTransport : public Transport {
 public:
  /// Creates the pseudo-terminal. Throws `std::system_error` on failure. The adapter must outlive
  /// the transport.
  explicit PtyTransport(Adapter& adapter);

  /// Returns the path of the device to open, such as "/dev/pts/3".
  const std::string& devicePath() const { return m_DevicePath; }

  void sendDue() override;
  void receiveAll() override;
  std::vector<pollfd> awaited() const override;
  std::optional<Clock::time_point> nextDue() const override;

 private:
  Adapter& m_Adapter;
  util::UniqueFd m_Master;
  // This end stays open, so that the device keeps its raw mode while no program has the device
  // open.
  util::UniqueFd m_Slave;
  std::string m_DevicePath;
  ReplyQueue m_Outgoing;
  bool m_DeviceIsFull = false;
};

}  // namespace emulator
