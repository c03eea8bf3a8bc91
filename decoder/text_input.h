#pragma once

#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// Decodes text: lines of hex between any others, in the forms that `readHexLine` knows. Lines of
/// hex that follow each other belong together; each such block is read by itself, so that one that
/// is cut does not spoil the next. What the program dumps of a reply (it begins with the command
/// byte) is understood, too.
void decodeText(std::string_view text, Report& report);

}  // namespace decoder
