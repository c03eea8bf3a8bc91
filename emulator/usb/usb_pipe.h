#pragma once

#include <deque>
#include <optional>
#include <utility>
#include <vector>

#include "emulator/usb/usb_transfer.h"

namespace emulator {

/// A bulk endpoint: the transfers that wait for it, in order, and what goes wrong with it.
class UsbPipe {
 public:
  using FaultKind = UsbFault::Kind;

  UsbPipe(UsbDirection direction, const std::vector<UsbFault>& faults);

  /// Queues a transfer.
  void add(UsbTransfer transfer);
  bool isIdle() const { return m_Transfers.empty(); }
  UsbTransfer& first() { return m_Transfers.front(); }
  const UsbTransfer& first() const { return m_Transfers.front(); }
  /// Ends the first transfer.
  UsbCompletion endFirst(std::int32_t status);
  /// Takes a transfer back; returns whether it was waiting.
  bool remove(std::uint32_t id);
  void removeAll();

  /// Counts bytes of the first transfer.
  void count(std::size_t bytes);
  /// The fault that has been reached by the bytes counted.
  std::optional<FaultKind> fault() const;
  /// How many bytes may be transferred until the next fault; at least one while there is none.
  std::size_t untilFault() const;
  /// Whether this is another fault than at the last such question.
  bool isNews(FaultKind kind) { return std::exchange(m_LastTold, kind) != kind; }
  void endFaults() { m_Faults.clear(); }

  bool isHalted() const { return m_IsHalted; }
  void halt() { m_IsHalted = true; }
  /// Ends the halt, and the stall that it came of.
  void clearHalt();

  std::size_t waiting() const { return m_Transfers.size(); }
  /// The bytes of the OUT transfers that wait.
  std::size_t waitingBytes() const { return m_WaitingBytes; }

 private:
  std::deque<UsbTransfer> m_Transfers;
  std::vector<UsbFault> m_Faults;
  std::optional<FaultKind> m_LastTold;
  std::size_t m_Counted = 0;
  std::size_t m_WaitingBytes = 0;
  bool m_IsHalted = false;
};

}  // namespace emulator
