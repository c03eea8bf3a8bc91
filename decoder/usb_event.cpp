// Parses the frames of a usbmon capture.

#include "decoder/usb_event.h"

#include <algorithm>
#include <cstring>
#include <pcap/usb.h>

namespace decoder {

std::optional<UsbEvent> readUsbEvent(std::span<const npa::Byte> frame, std::size_t headerSize) {
  ::pcap_usb_header header{};
  if (headerSize < sizeof header || frame.size() < headerSize) {
    return std::nullopt;
  }
  std::memcpy(&header, frame.data(), sizeof header);
  if (header.transfer_type != URB_BULK) {
    return std::nullopt;
  }
  UsbEvent event;
  switch (header.event_type) {
    case URB_SUBMIT:
      event.kind = UsbEvent::Kind::Submit;
      break;
    case URB_COMPLETE:
      event.kind = UsbEvent::Kind::Complete;
      break;
    case URB_ERROR:
      event.kind = UsbEvent::Kind::Error;
      break;
    default:
      return std::nullopt;
  }
  event.transfer = header.id;
  event.bus = header.bus_id;
  event.device = header.device_address;
  event.endpoint = header.endpoint_number;
  event.length = header.urb_len;
  if (header.data_flag == 0) {
    const auto captured = frame.subspan(headerSize);
    const std::size_t size = std::min<std::size_t>(header.data_len, header.urb_len);
    event.data = captured.first(std::min(size, captured.size()));
  }
  return event;
}

}  // namespace decoder
