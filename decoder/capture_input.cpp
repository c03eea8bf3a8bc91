// Reads captures of usbmon with libpcap.

#include "decoder/capture_input.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <map>
#include <memory>
#include <pcap/pcap.h>
#include <pcap/usb.h>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

#include "decoder/stream_decoder.h"
#include "decoder/usb_event.h"

namespace decoder {

namespace {

/// The first bytes of capture files: pcap with microseconds in both byte orders, pcap with
/// nanoseconds in both byte orders, pcapng.
constexpr std::array<std::string_view, 5> Magics = {"\xD4\xC3\xB2\xA1", "\xA1\xB2\xC3\xD4",
                                                    "\x4D\x3C\xB2\xA1", "\xA1\xB2\x3C\x4D",
                                                    "\x0A\x0D\x0D\x0A"};

struct CloseCapture {
  void operator()(::pcap_t* capture) const { ::pcap_close(capture); }
};
using Capture = std::unique_ptr<::pcap_t, CloseCapture>;

/// Opens a capture. The bytes must outlive the capture. Throws `CaptureError` if the file's header
/// cannot be read.
Capture openCapture(std::string_view bytes) {
  if (bytes.empty()) {
    throw CaptureError("the file is empty");
  }
  // The stream only reads, so the bytes do not change.
  auto* const memory = const_cast<char*>(bytes.data());
  std::FILE* const file = ::fmemopen(memory, bytes.size(), "rb");
  if (file == nullptr) {
    throw CaptureError(std::generic_category().message(errno));
  }
  std::array<char, PCAP_ERRBUF_SIZE> error{};
  Capture capture(::pcap_fopen_offline(file, error.data()));
  if (!capture) {
    std::fclose(file);
    throw CaptureError(error.data());
  }
  return capture;
}

/// Returns the size of the usbmon header of a frame. Throws `CaptureError` if the link type of
/// the capture is not one of the two that usbmon has.
std::size_t headerSizeOf(::pcap_t* capture) {
  switch (const int type = ::pcap_datalink(capture); type) {
    case DLT_USB_LINUX:
      return sizeof(::pcap_usb_header);
    case DLT_USB_LINUX_MMAPPED:
      return sizeof(::pcap_usb_header_mmapped);
    default:
      const char* const name = ::pcap_datalink_val_to_name(type);
      throw CaptureError("expected link type USB_LINUX or USB_LINUX_MMAPPED, got " +
                         (name == nullptr ? std::to_string(type) : std::string(name)));
  }
}

/// The endpoints of a capture, each with a decoder for its stream of bytes.
class Endpoints {
 public:
  explicit Endpoints(Report& report) : m_Report(report) {}

  /// Handles the next event. `frame` is the number of its frame.
  void take(const UsbEvent& event, std::size_t frame) {
    if (event.toHost()) {
      if (event.kind == UsbEvent::Kind::Complete) {
        pass(event, event.data, event.length, frame);
      }
      return;
    }
    const auto submitted = m_Submitted.find(event.transfer);
    switch (event.kind) {
      case UsbEvent::Kind::Submit:
        if (submitted != m_Submitted.end()) {
          // The completion of the earlier transfer is not in the capture.
          passWhole(submitted->second);
        }
        m_Submitted.insert_or_assign(event.transfer, submissionOf(event, frame));
        break;
      case UsbEvent::Kind::Complete:
        if (submitted == m_Submitted.end()) {
          pass(event, {}, event.length, frame);
        } else {
          const Submission& out = submitted->second;
          pass(out.event, out.data, event.length, out.frame);
        }
        [[fallthrough]];
      case UsbEvent::Kind::Error:
        m_Submitted.erase(event.transfer);
        break;
    }
  }

  /// Decodes the transfers whose completion is not in the capture, and ends all streams.
  void finish() {
    std::vector<const Submission*> open;
    open.reserve(m_Submitted.size());
    for (const auto& [transfer, submission] : m_Submitted) {
      open.push_back(&submission);
    }
    std::ranges::sort(open, {}, &Submission::frame);
    for (const Submission* const submission : open) {
      passWhole(*submission);
    }
    for (auto& [key, decoder] : m_Decoders) {
      decoder.finish();
    }
  }

 private:
  /// Bus, device and endpoint.
  using Key = std::tuple<std::uint16_t, std::uint8_t, std::uint8_t>;

  /// A transfer to the printer whose completion has not been read yet.
  struct Submission {
    UsbEvent event;  ///< without its data, because the frame is no longer in memory
    Bytes data;      ///< a copy of the data
    std::size_t frame;
  };

  static Submission submissionOf(const UsbEvent& event, std::size_t frame) {
    Submission result{event, {event.data.begin(), event.data.end()}, frame};
    result.event.data = {};
    return result;
  }

  /// Decodes a transfer whose completion is not in the capture, as if the printer had taken all
  /// bytes.
  void passWhole(const Submission& submission) {
    pass(submission.event, submission.data, submission.event.length, submission.frame);
  }

  /// Passes a transfer of `length` bytes to the decoder of its endpoint. If `data` has fewer bytes,
  /// the capture lacks the other bytes.
  void pass(const UsbEvent& event, std::span<const npa::Byte> data, std::size_t length,
            std::size_t frame) {
    if (length == 0) {
      return;
    }
    StreamDecoder& decoder = decoderOf(event);
    const std::size_t captured = std::min(length, data.size());
    decoder.feed(data.first(captured), frame);
    if (captured < length) {
      decoder.skip(length - captured, frame);
    }
  }

  StreamDecoder& decoderOf(const UsbEvent& event) {
    const auto direction =
        event.toHost() ? Stream::Direction::FromPrinter : Stream::Direction::ToPrinter;
    const Key key = {event.bus, event.device, event.endpoint};
    return m_Decoders
        .try_emplace(key, Stream{Stream::Unit::Frame, direction, event.deviceName(), false},
                     m_Report)
        .first->second;
  }

  Report& m_Report;
  std::map<Key, StreamDecoder> m_Decoders;
  std::map<std::uint64_t, Submission> m_Submitted;
};

}  // namespace

bool isCapture(std::string_view bytes) {
  return std::ranges::any_of(Magics, [&](auto magic) { return bytes.starts_with(magic); });
}

void decodeCapture(std::string_view bytes, const std::string& device, Report& report) {
  const Capture capture = openCapture(bytes);
  const std::size_t headerSize = headerSizeOf(capture.get());
  Endpoints endpoints(report);
  ::pcap_pkthdr* header = nullptr;
  const unsigned char* data = nullptr;
  std::size_t frame = 1;
  int result = 0;
  for (; (result = ::pcap_next_ex(capture.get(), &header, &data)) == 1; ++frame) {
    const auto event = readUsbEvent({data, header->caplen}, headerSize);
    if (event && (device.empty() || event->deviceName() == device)) {
      endpoints.take(*event, frame);
    }
  }
  endpoints.finish();
  if (result == PCAP_ERROR) {
    report.problem(
        {{Stream::Unit::Frame, Stream::Direction::Unknown, {}, false},
         {frame, frame},
         std::string("the rest of the capture cannot be read: ") + ::pcap_geterr(capture.get())});
  }
}

}  // namespace decoder
