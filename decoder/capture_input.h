#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// A capture that cannot be read at all; the text says why.
struct CaptureError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Whether the bytes begin like a capture file (pcap or pcapng).
bool isCapture(std::string_view bytes);

/// Decodes a capture of usbmon (link types USB_LINUX and USB_LINUX_MMAPPED): the bulk transfers of
/// each endpoint, one behind the other, however packets are spread over them. Of a transfer to the
/// printer counts what its completion says has gone through. `device`, unless empty, is the only
/// device to look at, as "BUS:DEVICE".
///
/// Throws `CaptureError` when the file's head cannot be read or is of another link type; what
/// cannot be read behind it is reported.
void decodeCapture(std::string_view bytes, const std::string& device, Report& report);

}  // namespace decoder
