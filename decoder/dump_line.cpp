#include "decoder/dump_line.h"

#include <algorithm>
#include <string>
#include <utility>

#include "decoder/hex_digits.h"

namespace decoder {

namespace {

using Form = HexLine::Form;

/// A pair and the blank after it.
constexpr std::size_t DumpSpacing = PairSize + 1;

/// What dumps show beside the bytes.
std::string textColumn(std::span<const npa::Byte> bytes) {
  std::string text(bytes.size(), '.');
  std::ranges::transform(bytes, text.begin(), [](npa::Byte byte) {
    return byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '.';
  });
  return text;
}

/// Reads the part of a dump's line in front of its text column: `count` bytes, each with a blank
/// after it, and blanks in place of others.
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

/// Says whether the last word of `text` is a pair of digits.
bool endsWithPair(std::string_view text) {
  text = trimmed(text);
  const std::size_t start = text.find_last_of(Blanks) + 1;
  return text.size() - start == PairSize && isDigit(text[start]) && isDigit(text[start + 1]);
}

/// Reads the bytes at the end of `head`, whose last character is the bar, if they are those that
/// `column` shows.
std::optional<HexLine> readDumpOfWidth(std::size_t width, std::string_view head,
                                       std::string_view column) {
  const std::size_t size = width * DumpSpacing + 1;
  if (head.size() < size) {
    return std::nullopt;
  }
  const std::string_view other = head.substr(0, head.size() - size);
  // One more pair in front means that the text column is cut.
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
  // The text column shows whether these are bytes in their order: bits (-b) and words of another
  // byte order (-e) look similar.
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
  // Without a text column, four bytes together might stand in front of single ones. No packet
  // begins with a zero.
  const bool isDump = !line.bytes.empty() && (!text.empty() || beginsWithZeros);
  return isDump ? std::optional(std::move(line)) : std::nullopt;
}

std::optional<HexLine> readOwnDump(std::string_view text) {
  if (text.ends_with('\r')) {
    text.remove_suffix(1);
  }
  for (std::size_t count = std::min(DumpWidth, text.size()); count > 0; --count) {
    const std::string_view column = text.substr(text.size() - count);
    const std::string_view head = text.substr(0, text.size() - count);
    if (!head.ends_with('|')) {
      continue;
    }
    // All lines of a dump are as wide as its first one, which is full unless it is the only one.
    for (const std::size_t width : {DumpWidth, count}) {
      if (std::optional<HexLine> line = readDumpOfWidth(width, head, column)) {
        return line;
      }
    }
  }
  return std::nullopt;
}

}  // namespace decoder
