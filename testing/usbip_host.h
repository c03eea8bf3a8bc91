#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "emulator/usb/usb_transfer.h"
#include "testing/bytes.h"

/// The messages of the USB/IP protocol, as a host sends and receives them. Numbers are big-endian,
/// except in the setup data of a control request, where they are little-endian.
namespace support {

/// Returns a message of `size` bytes that starts with these numbers. The rest is zero.
inline Bytes usbipMessage(std::initializer_list<std::uint32_t> numbers, std::size_t size = 48) {
  Bytes bytes;
  for (const std::uint32_t number : numbers) {
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
      bytes.push_back(static_cast<std::uint8_t>(number >> shift & 0xFFU));
    }
  }
  bytes.resize(size);
  return bytes;
}

/// Returns the 32-bit number at `offset`.
inline std::uint32_t longAt(const Bytes& bytes, std::size_t offset) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number = number << 8U | bytes.at(offset + i);
  }
  return number;
}

/// The fields of USBIP_CMD_SUBMIT that tests vary.
struct SubmitFields {
  std::uint32_t id = 1;
  std::uint32_t device = 0x00010001;
  std::uint32_t direction = 0;  ///< 0 to the device, 1 from it
  std::uint32_t endpoint = 0;
  std::uint32_t flags = 0;
  std::uint32_t length = 0;
  std::uint32_t packets = 0;
  emulator::UsbSetup setup{};
};

/// Returns the header of USBIP_CMD_SUBMIT.
inline Bytes submitHeader(const SubmitFields& fields) {
  Bytes bytes = usbipMessage({1, fields.id, fields.device, fields.direction, fields.endpoint,
                              fields.flags, fields.length, 0, fields.packets, 0},
                             40);
  bytes.push_back(fields.setup.type);
  bytes.push_back(fields.setup.request);
  for (const std::uint16_t number : {fields.setup.value, fields.setup.index, fields.setup.length}) {
    bytes.push_back(static_cast<std::uint8_t>(number & 0xFFU));
    bytes.push_back(static_cast<std::uint8_t>(number >> 8U));
  }
  return bytes;
}

// Each of these three functions returns a USBIP_CMD_SUBMIT: for a control request, for a bulk read,
// and for a bulk write.
inline Bytes controlCommand(std::uint32_t id, const emulator::UsbSetup& setup) {
  return submitHeader({.id = id,
                       .direction = setup.type >= 0x80 ? 1U : 0U,
                       .length = setup.type >= 0x80 ? setup.length : 0U,
                       .setup = setup});
}

inline Bytes readCommand(std::uint32_t id, std::uint32_t length) {
  return submitHeader({.id = id, .direction = 1, .endpoint = 2, .length = length});
}

inline Bytes writeCommand(std::uint32_t id, const Bytes& data) {
  return joined(
      {submitHeader({.id = id, .endpoint = 1, .length = static_cast<std::uint32_t>(data.size())}),
       data});
}

/// Returns USBIP_CMD_UNLINK.
inline Bytes unlinkCommand(std::uint32_t id, std::uint32_t unlinked) {
  return usbipMessage({2, id, 0x00010001, 0, 0, unlinked});
}

/// Returns USBIP_RET_SUBMIT.
inline Bytes submitReply(std::uint32_t id, std::uint32_t status, std::uint32_t done,
                         const Bytes& data = {}) {
  return joined({usbipMessage({3, id, 0, 0, 0, status, done}), data});
}

/// Returns USBIP_RET_UNLINK.
inline Bytes unlinkReply(std::uint32_t id, std::uint32_t status) {
  return usbipMessage({4, id, 0, 0, 0, status});
}

/// Returns OP_REQ_DEVLIST.
inline Bytes listRequest() {
  return bytes("01 11 80 05 00 00 00 00");
}

/// Returns OP_REQ_IMPORT.
inline Bytes importRequest(std::string_view busId) {
  Bytes request = joined({bytes("01 11 80 03 00 00 00 00"), textBytes(busId)});
  request.resize(40);
  return request;
}

/// Returns the description of the printer in a device list and in the reply to an import. `speed`
/// is 3 for high speed or 2 for full speed.
inline Bytes describedDevice(std::uint8_t speed = 3) {
  Bytes device = textBytes("/sys/devices/emulated/usb1/1-1");
  device.resize(256);
  device = joined({device, textBytes("1-1")});
  device.resize(288);
  return joined({device,
                 bytes("00 00 00 01 00 00 00 01 00 00 00"),
                 {speed},
                 bytes("12 09 00 01 01 00 00 00 00 01 01 01")});
}

/// Return OP_REP_IMPORT for a success, and for a failure with a status.
inline Bytes imported(std::uint8_t speed = 3) {
  return joined({bytes("01 11 00 03 00 00 00 00"), describedDevice(speed)});
}
inline Bytes notImported(std::uint8_t status) {
  return joined({bytes("01 11 00 03 00 00 00"), {status}});
}

/// Return OP_REP_DEVLIST with the printer, and without a device.
inline Bytes listed(std::uint8_t speed = 3) {
  return joined(
      {bytes("01 11 00 05 00 00 00 00 00 00 00 01"), describedDevice(speed), bytes("07 01 02 00")});
}
inline Bytes nothingListed() {
  return bytes("01 11 00 05 00 00 00 00 00 00 00 00");
}

}  // namespace support
