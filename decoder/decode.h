#pragma once

#include <string>
#include <string_view>

#include "decoder/options.h"
#include "decoder/packet.h"

namespace decoder {

/// Decodes the bytes of one input as text or as a capture. The options can select the form.
/// Otherwise the first bytes of the input show whether it is a capture. Throws `CaptureError` if a
/// capture cannot be read at all.
void decode(std::string_view bytes, const Options& options, Report& report);

/// Returns the message that an input contains no packet. The message lists the forms that the
/// program looked for.
std::string nothingFoundText(std::string_view bytes, const Options& options);

}  // namespace decoder
