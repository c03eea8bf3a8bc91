// Parses the hex lines that are not lines of dumps, and tries the parsers of all forms in order.

#include "decoder/hex_line.h"

#include <algorithm>
#include <array>
#include <utility>

#include "decoder/dump_line.h"
#include "decoder/hex_digits.h"

namespace decoder {

namespace {

using Direction = Stream::Direction;
using Form = HexLine::Form;

/// The start of a line in the log of the emulated printer, and the direction of the bytes in it.
struct Mark {
  std::string_view text;
  Direction direction;
};

constexpr std::array<Mark, 2> Marks = {{
    {"zvkprinter: <- ", Direction::ToPrinter},
    {"zvkprinter: -> ", Direction::FromPrinter},
}};

constexpr std::string_view Separators = " \t\r,;";
/// The text of a masked byte in the log of the emulated printer.
constexpr std::string_view Hidden = "**";

/// Parses pairs of digits with colons between them.
std::optional<HexLine> readColons(std::string_view text) {
  text = trimmed(text);
  HexLine line;
  line.form = Form::Colons;
  bool hasColon = false;
  do {
    const std::string_view pair = takeAll(text, Digits);
    if (pair.size() != PairSize || !appendPairs(pair, line.bytes)) {
      return std::nullopt;
    }
    hasColon = hasColon || text.starts_with(':');
  } while (skip(text, ":") && !text.empty());
  return hasColon && text.empty() ? std::optional(std::move(line)) : std::nullopt;
}

/// Appends the bytes of a word without separators. Returns false if the word is not hex.
bool appendWord(std::string_view word, HexLine& line) {
  if (word == Hidden) {
    line.hasHiddenBytes = true;
    line.bytes.push_back(0);
    return true;
  }
  if (word.starts_with("0x") || word.starts_with("0X")) {
    word.remove_prefix(2);
  }
  if (word.size() != 1) {
    return appendPairs(word, line.bytes);
  }
  const auto digit = numberIn(word);
  if (digit) {
    line.bytes.push_back(static_cast<npa::Byte>(*digit));
  }
  return digit.has_value();
}

/// Parses words of hex digits. Ignores a "|" and the text after it.
std::optional<HexLine> readPlain(std::string_view text) {
  HexLine line;
  const std::size_t bar = text.find('|');
  text = text.substr(0, bar);
  for (takeAll(text, Separators); !text.empty(); takeAll(text, Separators)) {
    const std::size_t end = std::min(text.find_first_of(Separators), text.size());
    if (!appendWord(text.substr(0, end), line)) {
      return std::nullopt;
    }
    text.remove_prefix(end);
  }
  if (line.bytes.empty()) {
    return std::nullopt;
  }
  line.endsBlock = bar != std::string_view::npos && line.bytes.size() < DumpWidth;
  return line;
}

/// Parses a line of the emulated printer's log.
std::optional<HexLine> readLog(std::string_view text) {
  for (const Mark& mark : Marks) {
    if (skip(text, mark.text)) {
      std::optional<HexLine> line = readPlain(text);
      if (line) {
        line->direction = mark.direction;
        line->endsBlock = true;
      }
      return line;
    }
  }
  return std::nullopt;
}

/// The parsers in the order in which they are tried. The order matters, because a later parser
/// might misread a line that an earlier parser recognises.
constexpr std::array Readers = {readLog,           readXxd,    readHexdump,
                                readZvkconfigDump, readColons, readPlain};

}  // namespace

std::optional<HexLine> readHexLine(std::string_view line) {
  for (const auto& read : Readers) {
    if (std::optional<HexLine> result = read(line)) {
      return result;
    }
  }
  return std::nullopt;
}

}  // namespace decoder
