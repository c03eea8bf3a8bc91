#include "decoder/decode.h"

#include "decoder/capture_input.h"
#include "decoder/text_input.h"

namespace decoder {

void decode(std::string_view bytes, const Options& options, Report& report) {
  const bool readsCapture = options.form == Options::Form::Any
                                ? isCapture(bytes)
                                : options.form == Options::Form::Capture;
  if (readsCapture) {
    decodeCapture(bytes, options.device, report);
  } else {
    decodeText(bytes, report);
  }
}

}  // namespace decoder
