#pragma once

#include <deque>
#include <optional>
#include <utility>
#include <vector>

#include "emulator/usb/usb_transfer.h"

namespace emulator {

/// A bulk endpoint: its waiting transfers, in order, and its faults.
class UsbPipe {
 public:
  using FaultKind = UsbFault::Kind;

  /// Copies the faults of this direction.
  UsbPipe(UsbDirection direction, const std::vector<UsbFault>& faults);

  /// Queues a transfer.
  void add(UsbTransfer transfer);
  bool isIdle() const { return m_Transfers.empty(); }
  /// Returns the first transfer. There must be one.
  UsbTransfer& first() { return m_Transfers.front(); }
  const UsbTransfer& first() const { return m_Transfers.front(); }
  /// Removes the first transfer and returns its completion.
  UsbCompletion endFirst(std::int32_t status);
  /// Removes a transfer. Returns false if no transfer has this id.
  bool remove(std::uint32_t id);
  void removeAll();

  /// Counts bytes as transferred by the first transfer.
  void count(std::size_t bytes);
  /// Returns the fault that the counted bytes have reached, or nothing if there is none.
  std::optional<FaultKind> fault() const;
  /// Returns how many bytes may be transferred before the next fault. The result is at least 1
  /// unless a fault has been reached.
  std::size_t untilFault() const;
  /// Returns true if `kind` is not the kind of the previous call.
  bool isNewKind(FaultKind kind) { return std::exchange(m_LastReported, kind) != kind; }
  void endFaults() { m_Faults.clear(); }

  bool isHalted() const { return m_IsHalted; }
  void halt() { m_IsHalted = true; }
  /// Ends a halt and removes the stall that caused it.
  void clearHalt();

  std::size_t waiting() const { return m_Transfers.size(); }
  /// Returns the count of bytes in the waiting OUT transfers.
  std::size_t waitingBytes() const { return m_WaitingBytes; }

 private:
  std::deque<UsbTransfer> m_Transfers;
  std::vector<UsbFault> m_Faults;
  std::optional<FaultKind> m_LastReported;
  std::size_t m_Counted = 0;
  std::size_t m_WaitingBytes = 0;
  bool m_IsHalted = false;
};

}  // namespace emulator
