#pragma once

#include <optional>
#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// A line of text that consists of bytes in hex.
struct HexLine {
  Bytes bytes;
  /// From the mark that the emulated printer's log puts in front.
  Stream::Direction direction = Stream::Direction::Unknown;
  /// Whether "**" stands for some of them; they are 0 here.
  bool hasHiddenBytes = false;
  /// Whether it is the last line of a dump, told by its size.
  bool endsBlock = false;
};

/// Reads a line, without its end: pairs of hex digits or single digits, with blanks, commas or
/// semicolons between them, "0x" in front of any; a dump's column of text behind "|"; the log lines
/// of the emulated printer. Nothing when the line holds anything else, or no bytes.
std::optional<HexLine> readHexLine(std::string_view line);

}  // namespace decoder
