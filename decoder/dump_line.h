#pragma once

#include <optional>
#include <string_view>

#include "decoder/hex_line.h"

namespace decoder {

/// Bytes in a full line of zvkconfig's dump.
inline constexpr std::size_t DumpWidth = 16;

// The readers of dumps, for `readHexLine`. Each returns nothing for a line of another form.

std::optional<HexLine> readXxd(std::string_view text);
/// Reads a line of `hexdump -C`. Its text column may be missing or cut.
std::optional<HexLine> readHexdump(std::string_view text);
/// Reads a line of zvkconfig's dump. Its text column, which must be whole, has a character for each
/// byte and so says where the bytes begin: a prompt, a time or the name of a program may stand in
/// front.
std::optional<HexLine> readOwnDump(std::string_view text);

}  // namespace decoder
