#pragma once

#include <optional>
#include <string_view>

#include "decoder/hex_line.h"

namespace decoder {

/// The count of bytes in a full line of zvkconfig's dump.
inline constexpr std::size_t DumpWidth = 16;

// The parsers of dump lines for `readHexLine`. Each returns nothing for a line of another form.

/// Parses a line of xxd.
std::optional<HexLine> readXxd(std::string_view text);
/// Parses a line of `hexdump -C`. The text column of the line may be missing or cut.
std::optional<HexLine> readHexdump(std::string_view text);
/// Parses a line of zvkconfig's dump. A prompt, a time or the name of a program may precede the
/// bytes. The text column must be complete: it has one character per byte, so its length gives the
/// position of the first byte.
std::optional<HexLine> readZvkconfigDump(std::string_view text);

}  // namespace decoder
