#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// A line of text that holds bytes in hex.
struct HexLine {
  enum class Form {
    Plain,    ///< bytes alone, or as one of the programs logs them
    Colons,   ///< bytes with colons between them; a time or a hardware address looks the same
    Counted,  ///< bytes with their offset in front, as xxd and hexdump write them
  };

  Form form = Form::Plain;
  Bytes bytes;
  std::uint64_t offset = 0;  ///< of `Counted`
  /// From the mark that the emulated printer's log puts in front.
  Stream::Direction direction = Stream::Direction::Unknown;
  /// Whether "**" stands for some of them; they are 0 here.
  bool hasHiddenBytes = false;
  /// Whether it is the last line of a dump, judging by its size.
  bool endsBlock = false;
};

/// Reads a line, without its end. Returns nothing if it holds no bytes, or something that is in
/// none of the forms below. Upper and lower case are the same everywhere.
///
///     zvkprinter: <- A5 00 06 **            the log of zvkprinter; "->" as well
///     00000000: a500 0650 e0  ...P.         xxd, with columns and groups of any size
///     00000000  a5 00 06 50 e0  |...P.|     hexdump -C
///     A5 00 06 50 E0 |...P.                 zvkconfig's dump, after any other text
///     a5:00:06:50:e0                        a colon may follow the last one
///     A5 0 6, 0x50; e0d8 |...P.             pairs or single digits; text after "|" is ignored
std::optional<HexLine> readHexLine(std::string_view line);

/// Reads an offset that stands alone, as in the last line of hexdump.
std::optional<std::uint64_t> readOffset(std::string_view text);

/// `text` without blanks at either end.
std::string_view trimmed(std::string_view text);

}  // namespace decoder
