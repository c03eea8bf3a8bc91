#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// Thrown if a capture cannot be read at all. The message is the reason.
struct CaptureError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Returns true if the bytes begin like a capture file (pcap or pcapng).
bool isCapture(std::string_view bytes);

/// Decodes a capture of usbmon (link types USB_LINUX and USB_LINUX_MMAPPED). The bulk transfers of
/// each endpoint form one stream, so a packet may extend over several transfers. In a transfer to
/// the printer, the decoder reads only the bytes that the printer took. The completion of the
/// transfer has the count of these bytes. If `device` is not empty, only the transfers of this
/// device ("BUS:DEVICE") are read.
///
/// Throws `CaptureError` if the header of the file cannot be read or has another link type. Errors
/// after the header are reported as problems.
void decodeCapture(std::string_view bytes, const std::string& device, Report& report);

}  // namespace decoder
