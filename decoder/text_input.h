#pragma once

#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// Decodes the lines of hex in a text, in the forms of `readHexLine`. Ignores all other lines.
/// Consecutive lines of hex form a block. Each block is decoded separately, so a cut packet does
/// not affect the next block. A block that begins with the command byte is a collected reply.
void decodeText(std::string_view text, Report& report);

}  // namespace decoder
