// Reads and writes USB/IP messages (usbip_protocol.rst of the Linux kernel).

#include "emulator/usb/usbip_messages.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "emulator/usb/usb_descriptors.h"
#include "npa/packet.h"
#include "util/big_endian.h"

namespace emulator {

namespace {

using npa::Byte;

// The kinds of messages about transfers. The kind is the first number of a message.
constexpr std::uint32_t CommandSubmit = 1;
constexpr std::uint32_t CommandUnlink = 2;
constexpr std::uint32_t ReplySubmit = 3;
constexpr std::uint32_t ReplyUnlink = 4;

// The offsets of the fields of a command, in bytes.
constexpr std::size_t AtId = 4;
constexpr std::size_t AtDevice = 8;
constexpr std::size_t AtDirection = 12;
constexpr std::size_t AtEndpoint = 16;
constexpr std::size_t AtFlags = 20;
constexpr std::size_t AtUnlinked = 20;
constexpr std::size_t AtLength = 24;
constexpr std::size_t AtPackets = 32;
constexpr std::size_t AtSetup = 40;

/// The flag of an IN transfer that must fill the buffer of the host.
constexpr std::uint32_t FlagShortNotOk = 1;
/// A count of packets that means, like 0, that the transfer is not isochronous.
constexpr std::uint32_t NoPackets = 0xFFFFFFFF;

// Version 1.1.1, and the codes of requests and replies.
constexpr std::uint16_t Version = 0x0111;
constexpr std::uint16_t RequestList = 0x8005;
constexpr std::uint16_t RequestImport = 0x8003;
constexpr std::uint16_t ReplyList = 0x0005;
constexpr std::uint16_t ReplyImport = 0x0003;

/// The size of the field for the path, which is padded with zeros.
constexpr std::size_t PathSize = 256;
constexpr std::string_view Path = "/sys/devices/emulated/usb1/1-1";

/// Returns the 4-byte number at `offset`.
std::uint32_t longAt(std::span<const Byte> bytes, std::size_t offset) {
  return static_cast<std::uint32_t>(util::bigEndian(bytes.subspan(offset, 4)));
}

std::uint16_t littleEndianAt(std::span<const Byte> bytes, std::size_t offset) {
  return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8U);
}

/// Appends a number in `size` bytes.
void appendNumber(npa::Bytes& bytes, std::uint32_t number, std::size_t size) {
  bytes.resize(bytes.size() + size);
  util::putBigEndian(number, std::span(bytes).last(size));
}

void appendShort(npa::Bytes& bytes, std::uint16_t number) {
  appendNumber(bytes, number, 2);
}

void appendLong(npa::Bytes& bytes, std::uint32_t number) {
  appendNumber(bytes, number, 4);
}

/// Appends a text, padded with zeros to `size` bytes.
void appendText(npa::Bytes& bytes, std::string_view text, std::size_t size) {
  std::ranges::copy(text, std::back_inserter(bytes));
  bytes.resize(bytes.size() + size - text.size());
}

UsbSetup parseSetup(std::span<const Byte> bytes) {
  return {.type = bytes[0],
          .request = bytes[1],
          .value = littleEndianAt(bytes, 2),
          .index = littleEndianAt(bytes, 4),
          .length = littleEndianAt(bytes, 6)};
}

/// Returns the start of a reply, up to its status. Device, direction and endpoint are 0.
npa::Bytes replyHead(std::uint32_t kind, std::uint32_t id, std::int32_t status) {
  npa::Bytes bytes;
  bytes.reserve(UsbipHeaderSize);
  appendLong(bytes, kind);
  appendLong(bytes, id);
  bytes.resize(AtFlags);
  appendLong(bytes, static_cast<std::uint32_t>(status));
  return bytes;
}

/// Reads the fields of a command that submits a transfer.
void parseSubmit(std::span<const Byte> header, UsbipCommand& command) {
  UsbTransfer& transfer = command.transfer;
  transfer.endpoint = longAt(header, AtEndpoint);
  transfer.length = longAt(header, AtLength);
  transfer.mustBeFull = (longAt(header, AtFlags) & FlagShortNotOk) != 0;
  transfer.setup = parseSetup(header.subspan(AtSetup));
  const std::uint32_t direction = longAt(header, AtDirection);
  if (direction > 1) {
    throw UsbipError("transfer in unknown direction " + std::to_string(direction));
  }
  if (transfer.length > LargestUsbipTransfer) {
    throw UsbipError("transfer of " + std::to_string(transfer.length) +
                     " bytes, expected at most " + std::to_string(LargestUsbipTransfer));
  }
  const std::uint32_t packets = longAt(header, AtPackets);
  if (packets != 0 && packets != NoPackets) {
    throw UsbipError("isochronous transfer");
  }
  transfer.direction = direction == 0 ? UsbDirection::Out : UsbDirection::In;
  command.dataSize = direction == 0 ? transfer.length : 0;
}

/// Appends the description of the device, as in lists and import replies.
void appendDevice(npa::Bytes& bytes, const UsbTraits& traits) {
  constexpr std::uint32_t bus = UsbipDeviceId >> 16U;
  constexpr std::uint32_t device = UsbipDeviceId & 0xFFFFU;
  appendText(bytes, Path, PathSize);
  appendText(bytes, UsbipBusId, UsbipBusIdSize);
  appendLong(bytes, bus);
  appendLong(bytes, device);
  appendLong(bytes, usbipSpeed(traits.speed));
  appendShort(bytes, UsbVendor);
  appendShort(bytes, UsbProduct);
  appendShort(bytes, UsbRelease);
  // Class, subclass and protocol are 0, because the interface has them. The next three bytes are
  // the current configuration, the count of configurations and the count of interfaces. All three
  // are 1.
  const npa::Bytes rest = {0, 0, 0, UsbConfigurationValue, 1, 1};
  bytes.insert(bytes.end(), rest.begin(), rest.end());
}

/// Returns the head of the reply to a request.
npa::Bytes requestReply(std::uint16_t code, UsbipStatus status) {
  npa::Bytes bytes;
  appendShort(bytes, Version);
  appendShort(bytes, code);
  appendLong(bytes, static_cast<std::uint32_t>(status));
  return bytes;
}

}  // namespace

UsbipCommand parseUsbipCommand(std::span<const Byte, UsbipHeaderSize> header) {
  UsbipCommand command;
  command.device = longAt(header, AtDevice);
  command.transfer.id = longAt(header, AtId);
  const std::uint32_t kind = longAt(header, 0);
  if (kind == CommandUnlink) {
    command.isUnlink = true;
    command.unlinked = longAt(header, AtUnlinked);
  } else if (kind == CommandSubmit) {
    parseSubmit(header, command);
  } else {
    throw UsbipError("unknown command " + std::to_string(kind));
  }
  return command;
}

npa::Bytes usbipReply(const UsbCompletion& completion) {
  npa::Bytes bytes = replyHead(ReplySubmit, completion.id, completion.status);
  appendLong(bytes, static_cast<std::uint32_t>(completion.done));
  bytes.resize(UsbipHeaderSize);
  bytes.insert(bytes.end(), completion.data.begin(), completion.data.end());
  return bytes;
}

npa::Bytes usbipUnlinkReply(std::uint32_t id, std::int32_t status) {
  npa::Bytes bytes = replyHead(ReplyUnlink, id, status);
  bytes.resize(UsbipHeaderSize);
  return bytes;
}

UsbipRequest parseUsbipRequest(std::span<const Byte, UsbipRequestHeadSize> head) {
  if (npa::numberAt(head, 0) != Version) {
    throw UsbipError("unknown version of the protocol");
  }
  const std::size_t code = npa::numberAt(head, 2);
  if (code == RequestList) {
    return UsbipRequest::List;
  }
  if (code == RequestImport) {
    return UsbipRequest::Import;
  }
  throw UsbipError("unknown request " + std::to_string(code));
}

npa::Bytes usbipDeviceList(const UsbTraits& traits, bool isThere) {
  npa::Bytes bytes = requestReply(ReplyList, UsbipStatus::Ok);
  appendLong(bytes, isThere ? 1 : 0);
  if (isThere) {
    appendDevice(bytes, traits);
    const npa::Bytes interface = {UsbPrinterClass, UsbPrinterSubclass, interfaceProtocol(traits, 0),
                                  0};
    bytes.insert(bytes.end(), interface.begin(), interface.end());
  }
  return bytes;
}

npa::Bytes usbipImportReply(const UsbTraits& traits, UsbipStatus status) {
  npa::Bytes bytes = requestReply(ReplyImport, status);
  if (status == UsbipStatus::Ok) {
    appendDevice(bytes, traits);
  }
  return bytes;
}

unsigned usbipSpeed(UsbSpeed speed) {
  constexpr unsigned full = 2;
  constexpr unsigned high = 3;
  return speed == UsbSpeed::High ? high : full;
}

}  // namespace emulator
