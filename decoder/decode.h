#pragma once

#include <string>
#include <string_view>

#include "decoder/options.h"
#include "decoder/packet.h"

namespace decoder {

/// Decodes the bytes of one input as text or as a capture. The options select the form, or else the
/// first bytes do. Throws `CaptureError` if a capture cannot be read at all.
void decode(std::string_view bytes, const Options& options, Report& report);

/// Returns the message that an input contains no packet. It lists what was looked for.
std::string nothingFoundText(std::string_view bytes, const Options& options);

}  // namespace decoder
