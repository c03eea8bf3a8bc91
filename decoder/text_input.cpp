#include "decoder/text_input.h"

#include <algorithm>
#include <array>

#include "decoder/hex_block.h"
#include "npa/packet.h"

namespace decoder {

namespace {

/// What lines of the programs begin with. Another line may stand unfinished in front of them: the
/// list of bytes of the default run ends without a line end.
constexpr std::array<std::string_view, 3> LineStarts = {
    "D [ZVK] ", "zvkprinter: ", "Configuring the printer...."};

/// The first place behind the start of `line` where a program's line begins. The text column of a
/// dump is not looked at.
std::size_t nextStart(std::string_view line) {
  for (std::size_t i = 1; i < line.size() && line[i] != '|'; ++i) {
    const std::string_view rest = line.substr(i);
    if (std::ranges::any_of(LineStarts, [&](auto start) { return rest.starts_with(start); })) {
      return i;
    }
  }
  return line.size();
}

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
