#pragma once

#include <optional>
#include <string>
#include <vector>

#include "emulator/adapter/adapter.h"
#include "emulator/transport/reply_queue.h"
#include "emulator/transport/transport.h"
#include "util/unique_fd.h"

namespace emulator {

/// Puts an adapter behind a pseudo-terminal in raw mode: a character device that a program can
/// open, write, select on and read like the printer driver's.
class PtyTransport : public Transport {
 public:
  /// Makes the pseudo-terminal; throws `std::system_error`. The adapter must outlive the transport.
  explicit PtyTransport(Adapter& adapter);

  /// The device to open, such as "/dev/pts/3".
  const std::string& devicePath() const { return m_DevicePath; }

  void sendDue() override;
  void receiveAll() override;
  std::vector<pollfd> awaited() const override;
  std::optional<Clock::time_point> nextDue() const override;

 private:
  Adapter& m_Adapter;
  util::UniqueFd m_Master;
  // Held open, so that the device keeps its raw mode while no program has it open.
  util::UniqueFd m_Slave;
  std::string m_DevicePath;
  ReplyQueue m_Outgoing;
  bool m_DeviceIsFull = false;
};

}  // namespace emulator
