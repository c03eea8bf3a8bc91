#pragma once

#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// Decodes text with lines of hex in the forms of `readHexLine`. Other lines may come between them.
/// Consecutive lines of hex form a block. Each block is decoded separately, so a cut packet does
/// not affect the next block. A block that begins with the command byte is a collected reply.
void decodeText(std::string_view text, Report& report);

}  // namespace decoder
