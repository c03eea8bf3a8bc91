// Parses lines of dumps. A line counts as a line of a dump only if its byte column and its text
// column agree with each other.

#include "decoder/dump_line.h"

#include <algorithm>
#include <string>
#include <utility>

#include "decoder/hex_digits.h"

namespace decoder {

namespace {

using Form = HexLine::Form;

/// The count of characters for a byte in a dump: two digits and the blank after them.
constexpr std::size_t DumpSpacing = PairSize + 1;

/// Returns the text column of a dump: a "." for each byte that is not printable ASCII.
std::string textColumn(std::span<const npa::Byte> bytes) {
  std::string text(bytes.size(), '.');
  std::ranges::transform(bytes, text.begin(), [](npa::Byte byte) {
    return byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '.';
  });
  return text;
}

/// Parses the part of a line before its text column: `count` bytes, each followed by a blank, then
/// only blanks. Returns nothing for any other text.
std::optional<Bytes> readByteColumn(std::string_view column, std::size_t count) {
  Bytes bytes;
  for (std::size_t i = 0; i < count; ++i) {
    if (!appendPairs(column.substr(0, PairSize), bytes) || column[PairSize] != ' ') {
      return std::nullopt;
    }
    column.remove_prefix(DumpSpacing);
  }
  return trimmed(column).empty() ? std::optional(std::move(bytes)) : std::nullopt;
}

/// Returns true if the last word of `text` is a pair of hex digits.
bool endsWithPair(std::string_view text) {
  text = trimmed(text);
  const std::size_t start = text.find_last_of(Blanks) + 1;
  return text.size() - start == PairSize && isDigit(text[start]) && isDigit(text[start + 1]);
}

/// Parses the bytes at the end of `head`, in a dump of `width` bytes per line. The last character
/// of `head` is the "|" that precedes the text column, and `column` is the text column. Returns
/// nothing if the bytes and the text column disagree.
std::optional<HexLine> readDumpOfWidth(std::size_t width, std::string_view head,
                                       std::string_view column) {
  const std::size_t size = width * DumpSpacing + 1;
  if (head.size() < size) {
    return std::nullopt;
  }
  const std::string_view other = head.substr(0, head.size() - size);
  // If another pair of digits precedes the bytes, the text column is cut.
  const bool isCut = width < DumpWidth && endsWithPair(other);
  auto bytes = readByteColumn(head.substr(other.size(), size - 1), column.size());
  if (!bytes || textColumn(*bytes) != column || isCut ||
      (!other.empty() && isDigit(other.back()))) {
    return std::nullopt;
  }
  HexLine line;
  line.bytes = std::move(*bytes);
  line.endsBlock = column.size() < DumpWidth;
  return line;
}

}  // namespace

std::optional<HexLine> readXxd(std::string_view text) {
  text = trimmed(text);
  const auto offset = takeOffset(text);
  if (!offset || !skip(text, ": ")) {
    return std::nullopt;
  }
  HexLine line;
  line.form = Form::Counted;
  line.offset = *offset;
  do {
    if (!appendPairs(takeAll(text, Digits), line.bytes)) {
      return std::nullopt;
    }
  } while (skip(text, " ") && !text.starts_with(' '));
  // Compares the bytes with the text column. Dumps of bits (xxd -b) and of words in another byte
  // order (xxd -e) look similar, but their text column disagrees.
  const std::string column = textColumn(line.bytes);
  const bool isInOrder = trimmed(text).empty() || trimmed(text) == trimmed(column);
  return isInOrder ? std::optional(std::move(line)) : std::nullopt;
}

std::optional<HexLine> readHexdump(std::string_view text) {
  text = trimmed(text);
  const bool beginsWithZeros = text.starts_with("00");
  const auto offset = takeOffset(text);
  if (!offset || takeAll(text, " ").size() != 2) {
    return std::nullopt;
  }
  HexLine line;
  line.form = Form::Counted;
  line.offset = *offset;
  std::size_t blanks = 0;
  while (!text.empty() && text.front() != '|') {
    const std::string_view pair = takeAll(text, Digits);
    if (blanks > 2 || pair.size() != PairSize || !appendPairs(pair, line.bytes)) {
      return std::nullopt;
    }
    blanks = takeAll(text, " ").size();
  }
  // If the line has no text column, the digits of the offset could also be four bytes of data. If
  // these digits begin with 00, they are an offset, because no packet begins with 00.
  const bool isDump = !line.bytes.empty() && (!text.empty() || beginsWithZeros);
  return isDump ? std::optional(std::move(line)) : std::nullopt;
}

std::optional<HexLine> readZvkconfigDump(std::string_view text) {
  if (text.ends_with('\r')) {
    text.remove_suffix(1);
  }
  for (std::size_t count = std::min(DumpWidth, text.size()); count > 0; --count) {
    const std::string_view column = text.substr(text.size() - count);
    const std::string_view head = text.substr(0, text.size() - count);
    if (!head.ends_with('|')) {
      continue;
    }
    // All lines of a dump have the width of its first line. The first line has `DumpWidth` bytes,
    // unless it is the only line.
    for (const std::size_t width : {DumpWidth, count}) {
      if (std::optional<HexLine> line = readDumpOfWidth(width, head, column)) {
        return line;
      }
    }
  }
  return std::nullopt;
}

}  // namespace decoder
