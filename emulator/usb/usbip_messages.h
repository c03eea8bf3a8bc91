#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string_view>

#include "catalogue/packet_reader.h"
#include "emulator/usb/usb_traits.h"
#include "emulator/usb/usb_transfer.h"

/// The messages of USB/IP, version 1.1.1, as bytes. All numbers are big-endian, except those in the
/// setup bytes.
namespace emulator {

/// Thrown if the other side breaks the protocol. The message names the fault.
struct UsbipError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The size in bytes of the header of every message about a transfer. The data of an OUT transfer
/// follow the header.
inline constexpr std::size_t UsbipHeaderSize = 48;
/// The largest transfer that is accepted, in bytes.
inline constexpr std::size_t LargestUsbipTransfer = 1U << 20U;

/// A command of the host: submit a transfer, or unlink one.
struct UsbipCommand {
  std::uint32_t device = 0;
  bool isUnlink = false;
  std::uint32_t unlinked = 0;  ///< the id of the transfer to unlink
  UsbTransfer transfer{};      ///< the transfer without its data; for an unlink only its `id` is
                               ///< set, to the id of the command
  /// The count of data bytes that follow the header.
  std::size_t dataSize = 0;
};

/// Parses the header of a command. Throws `UsbipError` if the header does not belong to a command,
/// or if the transfer is isochronous or has more than `LargestUsbipTransfer` bytes.
UsbipCommand parseUsbipCommand(std::span<const npa::Byte, UsbipHeaderSize> header);

/// Returns the message that a transfer has ended, with its data.
npa::Bytes usbipReply(const UsbCompletion& completion);
/// Returns the reply to an unlink. `status` is `UsbUnlinked` if the transfer was removed, and 0 if
/// it had already ended.
npa::Bytes usbipUnlinkReply(std::uint32_t id, std::int32_t status);

inline constexpr std::string_view UsbipBusId = "1-1";
/// The bus number in the high 16 bits, the device number in the low ones.
inline constexpr std::uint32_t UsbipDeviceId = 0x00010001;

// Sizes in bytes.
inline constexpr std::size_t UsbipRequestHeadSize = 8;
inline constexpr std::size_t UsbipBusIdSize = 32;

/// A client's request before the transfers: list the devices, or import one.
enum class UsbipRequest { List, Import };

/// The result of a request.
enum class UsbipStatus : std::uint8_t { Ok = 0, Busy = 2, NoDevice = 4 };

/// Parses the head of a request. Throws `UsbipError` if the head does not belong to a request. A
/// bus id of `UsbipBusIdSize` bytes follows the head of an import.
UsbipRequest parseUsbipRequest(std::span<const npa::Byte, UsbipRequestHeadSize> head);

/// Returns the reply with the list of devices. The list has one device with `traits` if `isThere`
/// is true. Otherwise the list is empty.
npa::Bytes usbipDeviceList(const UsbTraits& traits, bool isThere);
/// Returns the reply to an import.
npa::Bytes usbipImportReply(const UsbTraits& traits, UsbipStatus status);

/// Returns the number of a speed in USB/IP and in Linux.
unsigned usbipSpeed(UsbSpeed speed);

}  // namespace emulator
