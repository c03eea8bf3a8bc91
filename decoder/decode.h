#pragma once

#include <string>
#include <string_view>

#include "decoder/options.h"
#include "decoder/packet.h"

namespace decoder {

/// Decodes the bytes of one input in the form that it has, or that the options force. Throws
/// `CaptureError` when a capture cannot be read at all.
void decode(std::string_view bytes, const Options& options, Report& report);

/// Says that no packet was found in an input, and what was looked for.
std::string nothingFoundText(std::string_view bytes, const Options& options);

}  // namespace decoder
