// Decides whether an input is text or a capture.

#include "decoder/decode.h"

#include "decoder/capture_input.h"
#include "decoder/text_input.h"

namespace decoder {

namespace {

bool readsCapture(std::string_view bytes, const Options& options) {
  return options.form == Options::Form::Any ? isCapture(bytes)
                                            : options.form == Options::Form::Capture;
}

}  // namespace

void decode(std::string_view bytes, const Options& options, Report& report) {
  if (readsCapture(bytes, options)) {
    decodeCapture(bytes, options.device, report);
  } else {
    decodeText(bytes, report);
  }
}

std::string nothingFoundText(std::string_view bytes, const Options& options) {
  std::string text = "no NPA packet found: looked for ";
  if (readsCapture(bytes, options)) {
    const std::string device = options.device.empty() ? "any device" : "device " + options.device;
    return text + "bulk transfers of " + device + " in a capture";
  }
  text.append("hex text, xxd or hexdump -C dumps, logs of zvkconfig and zvkprinter");
  return options.form == Options::Form::Any ? text + ", captures (pcap, pcapng)" : text;
}

}  // namespace decoder
