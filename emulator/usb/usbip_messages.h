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

/// The messages of USB/IP, version 1.1.1, as bytes. All numbers are big-endian, but for those in
/// the setup bytes.
namespace emulator {

/// The other side does not keep to the protocol; the text says how.
struct UsbipError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What every message about a transfer begins with, and nothing else has: it is of this size,
/// behind which the data of a transfer to the device follow.
inline constexpr std::size_t UsbipHeaderSize = 48;
/// The largest transfer that is accepted.
inline constexpr std::size_t LargestUsbipTransfer = 1U << 20U;

/// A transfer, or the wish to take one back.
struct UsbipCommand {
  std::uint32_t device = 0;
  bool isUnlink = false;
  std::uint32_t unlinked = 0;  ///< the transfer to take back
  UsbTransfer transfer{};      ///< without its data; its id is that of an unlink, too
  /// How many bytes of data follow.
  std::size_t dataSize = 0;
};

/// Reads the header of a command; throws `UsbipError` when it is none, asks for a transfer of more
/// than `LargestUsbipTransfer`, or for an isochronous one.
UsbipCommand parseUsbipCommand(std::span<const npa::Byte, UsbipHeaderSize> header);

/// Tells that a transfer has ended, with what it got.
npa::Bytes usbipReply(const UsbCompletion& completion);
/// Answers an unlink: `status` is `UsbUnlinked` when the transfer was taken back, and 0 when it had
/// ended before.
npa::Bytes usbipUnlinkReply(std::uint32_t id, std::int32_t status);

inline constexpr std::string_view UsbipBusId = "1-1";
/// Bus and device number in one.
inline constexpr std::uint32_t UsbipDeviceId = 0x00010001;

inline constexpr std::size_t UsbipRequestHeadSize = 8;
inline constexpr std::size_t UsbipBusIdSize = 32;

/// What a client asks for ahead of transfers.
enum class UsbipRequest { List, Import };

/// How a request ends.
enum class UsbipStatus : std::uint8_t { Ok = 0, Busy = 2, NoDevice = 4 };

/// Reads the head of a request; throws `UsbipError`. That of an import is followed by the
/// `UsbipBusIdSize` bytes of a bus id.
UsbipRequest parseUsbipRequest(std::span<const npa::Byte, UsbipRequestHeadSize> head);

/// The list of devices: this one, or none.
npa::Bytes usbipDeviceList(const UsbTraits& traits, bool isThere);
/// The answer to an import.
npa::Bytes usbipImportReply(const UsbTraits& traits, UsbipStatus status);

/// The number that USB/IP, and Linux, have for a speed.
unsigned usbipSpeed(UsbSpeed speed);

}  // namespace emulator
