#include "decoder/hex_line.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace decoder {

namespace {

using Direction = Stream::Direction;

struct Mark {
  std::string_view text;
  Direction direction;
};

constexpr std::array<Mark, 2> Marks = {{
    {"zvkprinter: <- ", Direction::ToPrinter},
    {"zvkprinter: -> ", Direction::FromPrinter},
}};

constexpr std::string_view Separators = " \t\r,;";
/// What the log has in place of a masked byte.
constexpr std::string_view Hidden = "**";
/// Bytes in a full line of a dump.
constexpr std::size_t DumpWidth = 16;

std::optional<npa::Byte> byteOf(std::string_view digits) {
  npa::Byte value = 0;
  const char* const textEnd = digits.data() + digits.size();
  const auto [end, error] = std::from_chars(digits.data(), textEnd, value, 16);
  const bool isByte = error == std::errc() && end == textEnd;
  return isByte ? std::optional(value) : std::nullopt;
}

/// Appends the bytes of a word without separators; returns whether it is one of hex digits.
bool appendWord(std::string_view word, HexLine& line) {
  if (word == Hidden) {
    line.hasHiddenBytes = true;
    line.bytes.push_back(0);
    return true;
  }
  if (word.starts_with("0x") || word.starts_with("0X")) {
    word.remove_prefix(2);
  }
  constexpr std::size_t pair = 2;
  if (word.empty() || (word.size() > 1 && word.size() % pair != 0)) {
    return false;
  }
  for (; !word.empty(); word.remove_prefix(std::min(pair, word.size()))) {
    const std::optional<npa::Byte> byte = byteOf(word.substr(0, pair));
    if (!byte) {
      return false;
    }
    line.bytes.push_back(*byte);
  }
  return true;
}

}  // namespace

std::optional<HexLine> readHexLine(std::string_view text) {
  HexLine line;
  for (const Mark& mark : Marks) {
    if (text.starts_with(mark.text)) {
      line.direction = mark.direction;
      line.endsBlock = true;
      text.remove_prefix(mark.text.size());
    }
  }
  const std::size_t bar = text.find('|');
  const bool isDump = bar != std::string_view::npos;
  text = text.substr(0, bar);
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(Separators), text.size()));
    if (text.empty()) {
      break;
    }
    const std::size_t end = std::min(text.find_first_of(Separators), text.size());
    if (!appendWord(text.substr(0, end), line)) {
      return std::nullopt;
    }
    text.remove_prefix(end);
  }
  if (line.bytes.empty()) {
    return std::nullopt;
  }
  line.endsBlock = line.endsBlock || (isDump && line.bytes.size() < DumpWidth);
  return line;
}

}  // namespace decoder
