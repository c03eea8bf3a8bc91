#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <pcap/pcap.h>
#include <pcap/usb.h>
#include <string>

#include "testing/bytes.h"

namespace support {

/// One record of a usbmon capture.
struct UsbRecord {
  char event = URB_SUBMIT;
  std::uint8_t endpoint = 0x01;  ///< bit 7 is set for a transfer to the host
  std::uint64_t transfer = 1;
  std::uint32_t length = 0;        ///< bytes requested or transferred
  std::optional<Bytes> data = {};  ///< the captured bytes; nothing if the event has no data
  std::uint8_t device = 5;
  std::uint16_t bus = 1;
  std::uint8_t type = URB_BULK;
  bool flaggedEmpty = false;  ///< the header says "no data" although data follow
};

/// Builds a capture file with libpcap.
class UsbCapture {
 public:
  explicit UsbCapture(int linkType = DLT_USB_LINUX_MMAPPED) : m_LinkType(linkType) {}

  void add(const UsbRecord& record);

  /// Add a complete transfer (submission and completion) to the printer or from it.
  void out(const Bytes& data);
  void in(const Bytes& data);

  /// Returns the content of the file.
  std::string content() const;

 private:
  int m_LinkType;
  std::uint64_t m_Transfers = 0;
  std::vector<std::string> m_Records;
};

}  // namespace support
