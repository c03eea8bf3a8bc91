// UsbipSession: cuts the input into messages, and carries the messages out.

#include "emulator/usb/usbip_session.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace emulator {

namespace {

using npa::Byte;

/// Returns the text in `bytes` up to the first zero byte.
std::string_view paddedText(std::span<const Byte> bytes) {
  const auto end = std::ranges::find(bytes, Byte{0});
  return {reinterpret_cast<const char*>(bytes.data()),
          static_cast<std::size_t>(end - bytes.begin())};
}

}  // namespace

void UsbipSession::receive(std::span<const Byte> bytes) {
  m_Input.insert(m_Input.end(), bytes.begin(), bytes.end());
  std::span<const Byte> rest(m_Input);
  while (const std::size_t used = hasDevice() ? handleCommand(rest) : handleRequest(rest)) {
    rest = rest.subspan(used);
  }
  m_Input.erase(m_Input.begin(), m_Input.end() - static_cast<std::ptrdiff_t>(rest.size()));
}

std::size_t UsbipSession::handleRequest(std::span<const Byte> bytes) {
  if (bytes.size() < UsbipRequestHeadSize) {
    return 0;
  }
  if (parseUsbipRequest(bytes.first<UsbipRequestHeadSize>()) == UsbipRequest::List) {
    send(usbipDeviceList(m_Device.traits(), m_Offer != UsbipStatus::NoDevice));
    return UsbipRequestHeadSize;
  }
  constexpr std::size_t size = UsbipRequestHeadSize + UsbipBusIdSize;
  if (bytes.size() < size) {
    return 0;
  }
  const bool isOurs = paddedText(bytes.subspan(UsbipRequestHeadSize, UsbipBusIdSize)) == UsbipBusId;
  const UsbipStatus status = isOurs ? m_Offer : UsbipStatus::NoDevice;
  send(usbipImportReply(m_Device.traits(), status));
  if (status == UsbipStatus::Ok) {
    m_Phase = Phase::Transfers;
  }
  return size;
}

std::size_t UsbipSession::handleCommand(std::span<const Byte> bytes) {
  if (bytes.size() < UsbipHeaderSize) {
    return 0;
  }
  UsbipCommand command = parseUsbipCommand(bytes.first<UsbipHeaderSize>());
  if (command.device != UsbipDeviceId) {
    throw UsbipError("transfer for another device");
  }
  const std::size_t size = UsbipHeaderSize + command.dataSize;
  if (bytes.size() < size) {
    return 0;
  }
  carryOut(std::move(command), bytes.subspan(UsbipHeaderSize, size - UsbipHeaderSize));
  return size;
}

void UsbipSession::carryOut(UsbipCommand command, std::span<const Byte> data) {
  if (command.isUnlink) {
    // First reports the transfers that have ended, because the transfer to unlink may be one of
    // them.
    sendCompletions();
    const bool isRemoved = m_Device.unlink(command.unlinked);
    send(usbipUnlinkReply(command.transfer.id, isRemoved ? UsbUnlinked : UsbDone));
    return;
  }
  command.transfer.data.assign(data.begin(), data.end());
  m_Device.submit(std::move(command.transfer));
  sendCompletions();
  if (m_Device.waiting() > MostTransfers || m_Device.waitingBytes() > MostBytes) {
    throw UsbipError("too many waiting transfers");
  }
}

void UsbipSession::send(const npa::Bytes& bytes) {
  m_Output.insert(m_Output.end(), bytes.begin(), bytes.end());
}

void UsbipSession::sendCompletions() {
  for (const UsbCompletion& completion : m_Device.advance()) {
    send(usbipReply(completion));
  }
}

npa::Bytes UsbipSession::takeOutput() {
  if (hasDevice()) {
    sendCompletions();
  }
  return std::exchange(m_Output, {});
}

}  // namespace emulator
