// UsbDevice: starts and ends the transfers on the bulk endpoints, and moves their data.

#include "emulator/usb/usb_device.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <string>
#include <utility>

#include "emulator/usb/usb_descriptors.h"

namespace emulator {

namespace {

using FaultKind = UsbFault::Kind;

}  // namespace

UsbDevice::UsbDevice(Adapter& adapter, UsbTraits traits, MessageLog& log,
                     std::function<Clock::time_point()> now)
    : m_Adapter(adapter),
      m_Traits(std::move(traits)),
      m_Log(log),
      m_Now(std::move(now)),
      m_Out(UsbDirection::Out, m_Traits.faults),
      m_In(UsbDirection::In, m_Traits.faults),
      m_ReplugAfter(m_Traits.replugAfter) {}

void UsbDevice::submit(UsbTransfer transfer) {
  if (transfer.endpoint == 0) {
    control(std::move(transfer));
    return;
  }
  const bool isIn = transfer.direction == UsbDirection::In;
  UsbPipe* const pipe =
      transfer.endpoint < EndpointDirectionIn
          ? pipeAt(transfer.endpoint | (isIn ? unsigned{EndpointDirectionIn} : 0U))
          : nullptr;
  // In the current configuration and alternate setting, the device does not have this endpoint.
  if (pipe == nullptr) {
    m_Ended.push_back({.id = transfer.id, .status = UsbStalled});
    return;
  }
  if (pipe == &m_Out && m_Out.isIdle()) {
    m_OutSince = m_Now();
  }
  pipe->add(std::move(transfer));
}

bool UsbDevice::unlink(std::uint32_t id) {
  return m_Out.remove(id) || m_In.remove(id);
}

std::vector<UsbCompletion> UsbDevice::advance() {
  takeOut();
  giveIn();
  leaveForRestart();
  return std::exchange(m_Ended, {});
}

std::optional<UsbDevice::Clock::time_point> UsbDevice::nextDue() const {
  std::optional<Clock::time_point> due;
  if (!m_Out.isIdle() && m_Out.fault() != FaultKind::Hold) {
    due = outDue();
  }
  const bool isRead = !m_In.isIdle() && m_In.fault() != FaultKind::Hold;
  if (const auto reply = m_Replies.nextDue(); isRead && reply && (!due || *reply < *due)) {
    due = reply;
  }
  if (m_Restart && (!due || m_Restart->begin < *due)) {
    due = m_Restart->begin;
  }
  return m_WantsUnplug ? std::nullopt : due;
}

void UsbDevice::unplug() {
  m_Out.removeAll();
  m_In.removeAll();
  m_Out.endFaults();
  m_In.endFaults();
  m_Ended.clear();
  clearHalts();
  forgetBytes();
  m_Configuration = 0;
  m_Alternate = 0;
  m_WantsUnplug = false;
  m_ReplugAfter = m_Traits.replugAfter;
  m_Restart.reset();
}

void UsbDevice::clearHalts() {
  m_Out.clearHalt();
  m_In.clearHalt();
}

void UsbDevice::forgetBytes() {
  m_Replies.clear();
  m_Adapter.forgetPartialPacket();
}

void UsbDevice::control(UsbTransfer transfer) {
  UsbCompletion end{.id = transfer.id};
  if (std::optional<npa::Bytes> data = answer(transfer.setup)) {
    const std::size_t wanted = std::min<std::size_t>(transfer.setup.length, transfer.length);
    data->resize(std::min(data->size(), wanted));
    end.done = data->size();
    end.data = std::move(*data);
  } else {
    end.status = UsbStalled;
  }
  m_Ended.push_back(std::move(end));
}

void UsbDevice::end(UsbPipe& pipe, std::int32_t status) {
  m_Ended.push_back(pipe.endFirst(status));
  if (pipe.fault() == FaultKind::Unplug) {
    m_WantsUnplug = true;
  }
}

std::optional<std::int32_t> UsbDevice::failure(UsbPipe& pipe) {
  const char* const name = &pipe == &m_In ? "IN" : "OUT";
  const std::optional<FaultKind> fault = pipe.fault();
  if (fault == FaultKind::Stall && !pipe.isHalted()) {
    m_Log.note("USB: " + std::string(name) + " stalls");
    pipe.halt();
  }
  if (pipe.isHalted()) {
    return UsbStalled;
  }
  if (fault == FaultKind::ProtocolError) {
    // Logs the error once, because some hosts retry immediately, thousands of times.
    if (pipe.isNewKind(*fault)) {
      m_Log.note("USB: protocol errors on " + std::string(name));
    }
    return UsbProtocolFault;
  }
  return std::nullopt;
}

bool UsbDevice::canTransfer(UsbPipe& pipe) {
  while (!pipe.isIdle()) {
    const std::optional<std::int32_t> status = failure(pipe);
    if (!status) {
      return !m_WantsUnplug && pipe.fault() != FaultKind::Hold;
    }
    end(pipe, *status);
  }
  return false;
}

std::size_t UsbDevice::outChunk() const {
  const UsbTransfer& transfer = m_Out.first();
  const std::size_t largest =
      m_Traits.outBytesPerSecond == 0 ? transfer.length : bulkPacketSize(m_Traits.speed);
  return std::min({largest, transfer.length - transfer.done, m_Out.untilFault()});
}

UsbDevice::Clock::time_point UsbDevice::outDue() const {
  if (m_Traits.outBytesPerSecond == 0) {
    return m_OutSince;
  }
  const std::chrono::duration<double> time(static_cast<double>(outChunk()) /
                                           static_cast<double>(m_Traits.outBytesPerSecond));
  return m_OutSince + std::chrono::ceil<Clock::duration>(time);
}

void UsbDevice::takeOut() {
  while (canTransfer(m_Out)) {
    if (m_Out.fault() == FaultKind::Unplug) {
      m_WantsUnplug = true;
      return;
    }
    const Clock::time_point due = outDue();
    const Clock::time_point now = m_Now();
    if (due > now) {
      return;
    }
    m_OutSince = due;
    const UsbTransfer& transfer = m_Out.first();
    const auto chunk = std::span(transfer.data).subspan(transfer.done, outChunk());
    m_Out.count(chunk.size());
    m_Replies.add(m_Adapter.receive(chunk), now);
    if (const auto restart = m_Adapter.postponeRestart(TimeBeforeRestart)) {
      m_Restart = restart;
    }
    if (transfer.done == transfer.length) {
      end(m_Out, UsbDone);
    }
  }
}

void UsbDevice::leaveForRestart() {
  if (m_Restart && m_Restart->begin <= m_Now()) {
    m_WantsUnplug = true;
    m_ReplugAfter = std::chrono::ceil<std::chrono::seconds>(m_Restart->end - m_Restart->begin);
  }
}

void UsbDevice::giveIn() {
  while (canTransfer(m_In)) {
    ReplyQueue::Piece* const piece = m_Replies.due(m_Now());
    if (piece == nullptr) {
      return;
    }
    if (m_In.fault() == FaultKind::Unplug) {
      m_WantsUnplug = true;
      return;
    }
    giveFrom(*piece);
  }
}

void UsbDevice::giveFrom(ReplyQueue::Piece& piece) {
  const std::size_t packet = bulkPacketSize(m_Traits.speed);
  UsbTransfer& transfer = m_In.first();
  const std::span<const npa::Byte> rest = piece.rest();
  const std::size_t wanted = std::min(rest.size(), transfer.length - transfer.done);
  const std::size_t count = std::min(wanted, m_In.untilFault());
  const bool emptyPacketIsLeft = rest.empty();
  transfer.data.insert(transfer.data.end(), rest.begin(),
                       rest.begin() + static_cast<std::ptrdiff_t>(count));
  piece.sent += count;
  m_In.count(count);
  if (count < wanted) {
    // The transfer has reached a fault. The fault ends the transfer or holds it.
    return;
  }
  const bool isFull = transfer.done == transfer.length;
  std::int32_t status = transfer.mustBeFull && !isFull ? UsbShort : UsbDone;
  if (const std::size_t cut = piece.sent % packet; cut != 0 && !piece.rest().empty()) {
    // The host's buffer ends inside a packet. The rest of the packet is lost.
    piece.sent += std::min(packet - cut, piece.rest().size());
    status = UsbTooMuch;
  }
  // If a full packet fills the transfer, the piece stays in the queue, so that the next transfer
  // gets the empty packet that follows the piece.
  const bool endsInShortPacket = piece.bytes.size() % packet != 0;
  if (piece.rest().empty() && (endsInShortPacket || !isFull || emptyPacketIsLeft)) {
    m_Replies.drop();
  }
  end(m_In, status);
}

}  // namespace emulator
