// Splits text into lines and blocks of hex.

#include "decoder/text_input.h"

#include <algorithm>
#include <array>

#include "decoder/hex_block.h"
#include "npa/packet.h"

namespace decoder {

namespace {

/// The starts of lines that the programs write. Such a line may follow other text without a line
/// end, because zvkconfig's default run writes no line end after its dump.
constexpr std::array<std::string_view, 3> LineStarts = {
    "D [ZVK] ", "zvkprinter: ", "Configuring the printer...."};

/// Returns the first position after the start of `line` at which one of the `LineStarts` is.
/// Returns the size of `line` if there is none. Does not search the text column of a dump.
std::size_t nextStart(std::string_view line) {
  for (std::size_t i = 1; i < line.size() && line[i] != '|'; ++i) {
    const std::string_view rest = line.substr(i);
    if (std::ranges::any_of(LineStarts, [&](auto start) { return rest.starts_with(start); })) {
      return i;
    }
  }
  return line.size();
}

/// Passes a line to the block, if necessary in parts. Ends the block if a part is not hex.
void decodeLine(std::string_view line, std::size_t number, HexBlock& block) {
  if (block.take(line, number)) {
    return;
  }
  do {
    const std::size_t end = nextStart(line);
    if (!block.take(line.substr(0, end), number)) {
      block.end();
    }
    line.remove_prefix(end);
  } while (!line.empty());
}

}  // namespace

void decodeText(std::string_view text, Report& report) {
  HexBlock block(report);
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    decodeLine(text.substr(0, end), number, block);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  block.end();
}

}  // namespace decoder
