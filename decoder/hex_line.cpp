#include "decoder/hex_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace decoder {

namespace {

using Direction = Stream::Direction;
using Form = HexLine::Form;

struct Mark {
  std::string_view text;
  Direction direction;
};

constexpr std::array<Mark, 2> Marks = {{
    {"zvkprinter: <- ", Direction::ToPrinter},
    {"zvkprinter: -> ", Direction::FromPrinter},
}};

constexpr std::string_view Digits = "0123456789abcdefABCDEF";
constexpr std::string_view Blanks = " \t\r";
constexpr std::string_view Separators = " \t\r,;";
/// What the log has in place of a masked byte.
constexpr std::string_view Hidden = "**";
/// Bytes in a full line of zvkconfig's dump.
constexpr std::size_t DumpWidth = 16;
constexpr std::size_t PairSize = 2;
/// A pair and the blank after it.
constexpr std::size_t DumpSpacing = PairSize + 1;

bool isDigit(char character) {
  return Digits.find(character) != std::string_view::npos;
}

/// Takes `head` from the front of `text` if it is there; returns whether it was.
bool skip(std::string_view& text, std::string_view head) {
  if (!text.starts_with(head)) {
    return false;
  }
  text.remove_prefix(head.size());
  return true;
}

/// Takes the characters at the front of `text` that are among `wanted`.
std::string_view takeAll(std::string_view& text, std::string_view wanted) {
  const std::string_view taken =
      text.substr(0, std::min(text.find_first_not_of(wanted), text.size()));
  text.remove_prefix(taken.size());
  return taken;
}

template <typename Number>
std::optional<Number> numberOf(std::string_view digits) {
  constexpr int hexadecimal = 16;
  Number value = 0;
  const char* const textEnd = digits.data() + digits.size();
  const auto [end, error] = std::from_chars(digits.data(), textEnd, value, hexadecimal);
  return error == std::errc() && end == textEnd ? std::optional(value) : std::nullopt;
}

/// Appends the bytes of pairs of digits without anything between them; returns whether there are
/// any, and nothing else.
bool appendPairs(std::string_view digits, Bytes& bytes) {
  if (digits.empty() || digits.size() % PairSize != 0) {
    return false;
  }
  for (; !digits.empty(); digits.remove_prefix(PairSize)) {
    const auto byte = numberOf<npa::Byte>(digits.substr(0, PairSize));
    if (!byte) {
      return false;
    }
    bytes.push_back(*byte);
  }
  return true;
}

/// Takes an offset from the front of `text`. xxd writes 7 or 8 digits, hexdump 8, both more if need
/// be.
std::optional<std::uint64_t> takeOffset(std::string_view& text) {
  constexpr std::size_t shortest = 7;
  constexpr std::size_t longest = 16;
  const std::string_view digits = takeAll(text, Digits);
  const bool fits = digits.size() >= shortest && digits.size() <= longest;
  return fits ? numberOf<std::uint64_t>(digits) : std::nullopt;
}

/// What dumps show beside the bytes.
std::string textColumn(std::span<const npa::Byte> bytes) {
  std::string text(bytes.size(), '.');
  std::ranges::transform(bytes, text.begin(), [](npa::Byte byte) {
    return byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '.';
  });
  return text;
}

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

/// The text column has a character for each byte, and so says where the bytes begin: a prompt, a
/// time or the name of a program may stand in front.
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
  if (word.size() != 1) {
    return appendPairs(word, line.bytes);
  }
  const auto digit = numberOf<npa::Byte>(word);
  if (digit) {
    line.bytes.push_back(*digit);
  }
  return digit.has_value();
}

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

/// In this order: what an earlier one takes might look like something else to a later one.
constexpr std::array Readers = {readLog, readXxd, readHexdump, readOwnDump, readColons, readPlain};

}  // namespace

std::optional<HexLine> readHexLine(std::string_view line) {
  for (const auto& read : Readers) {
    if (std::optional<HexLine> result = read(line)) {
      return result;
    }
  }
  return std::nullopt;
}

std::optional<std::uint64_t> readOffset(std::string_view text) {
  const auto offset = takeOffset(text);
  return text.empty() ? offset : std::nullopt;
}

std::string_view trimmed(std::string_view text) {
  takeAll(text, Blanks);
  return text.substr(0, text.find_last_not_of(Blanks) + 1);
}

}  // namespace decoder
