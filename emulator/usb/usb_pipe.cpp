// UsbPipe: the transfers that wait at an endpoint, and its faults. The faults are sorted by the
// count of bytes before them.

#include "emulator/usb/usb_pipe.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace emulator {

namespace {

/// Returns the count of bytes that an OUT transfer holds; 0 for an IN transfer.
std::size_t bytesHeld(const UsbTransfer& transfer) {
  return transfer.direction == UsbDirection::Out ? transfer.data.size() : 0;
}

}  // namespace

UsbPipe::UsbPipe(UsbDirection direction, const std::vector<UsbFault>& faults) {
  std::ranges::copy_if(faults, std::back_inserter(m_Faults),
                       [direction](const UsbFault& fault) { return fault.direction == direction; });
  std::ranges::stable_sort(m_Faults, {}, &UsbFault::afterBytes);
}

void UsbPipe::add(UsbTransfer transfer) {
  m_WaitingBytes += bytesHeld(transfer);
  m_Transfers.push_back(std::move(transfer));
}

UsbCompletion UsbPipe::endFirst(std::int32_t status) {
  UsbTransfer& transfer = first();
  m_WaitingBytes -= bytesHeld(transfer);
  UsbCompletion end{.id = transfer.id, .status = status, .done = transfer.done};
  if (transfer.direction == UsbDirection::In) {
    end.data = std::move(transfer.data);
  }
  m_Transfers.pop_front();
  return end;
}

bool UsbPipe::remove(std::uint32_t id) {
  const auto found = std::ranges::find(m_Transfers, id, &UsbTransfer::id);
  if (found == m_Transfers.end()) {
    return false;
  }
  m_WaitingBytes -= bytesHeld(*found);
  m_Transfers.erase(found);
  return true;
}

void UsbPipe::removeAll() {
  m_Transfers.clear();
  m_WaitingBytes = 0;
}

void UsbPipe::count(std::size_t bytes) {
  first().done += bytes;
  m_Counted += bytes;
}

std::optional<UsbPipe::FaultKind> UsbPipe::fault() const {
  if (m_Faults.empty() || m_Counted < m_Faults.front().afterBytes) {
    return std::nullopt;
  }
  return m_Faults.front().kind;
}

std::size_t UsbPipe::untilFault() const {
  return m_Faults.empty() ? std::numeric_limits<std::size_t>::max()
                          : m_Faults.front().afterBytes - m_Counted;
}

void UsbPipe::clearHalt() {
  if (!m_IsHalted) {
    return;
  }
  m_IsHalted = false;
  std::erase_if(m_Faults, [this](const UsbFault& fault) {
    return fault.kind == FaultKind::Stall && m_Counted >= fault.afterBytes;
  });
}

}  // namespace emulator
