#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// A line of text with bytes in hex.
struct HexLine {
  enum class Form {
    Plain,    ///< only bytes, or a line of zvkconfig's dump or zvkprinter's log
    Colons,   ///< bytes with colons between them; times and hardware addresses look the same
    Counted,  ///< an offset and bytes, as xxd and hexdump write them
  };

  Form form = Form::Plain;
  Bytes bytes;
  std::uint64_t offset = 0;  ///< Counted: the offset of the first byte
  /// The direction of the bytes. It is known only in the log of the emulated printer.
  Stream::Direction direction = Stream::Direction::Unknown;
  /// True if some bytes are masked with "**". The value of such a byte is 0 in `bytes`.
  bool hasHiddenBytes = false;
  /// True if this line is the last line of its block. This is the case for a line with a "|" and
  /// fewer than 16 bytes, such as the last line of a dump, and for a line of zvkprinter's log.
  bool endsBlock = false;
};

/// Parses a line without its line end. Returns nothing if the line has none of the forms below.
/// Digits may be upper or lower case.
///
///     zvkprinter: <- A5 00 06 **            the log of zvkprinter, with "<-" or "->"
///     00000000: a500 0650 e0  ...P.         xxd, with columns and groups of any size
///     00000000  a5 00 06 50 e0  |...P.|     hexdump -C
///     A5 00 06 50 E0 |...P.                 zvkconfig's dump, after any other text
///     a5:00:06:50:e0                        a colon may also follow the last byte
///     A5 0 6, 0x50; e0d8 |...P.             pairs or single digits; text after "|" is ignored
std::optional<HexLine> readHexLine(std::string_view line);

}  // namespace decoder
