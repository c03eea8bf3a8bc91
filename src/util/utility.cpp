// Byte helpers: big-endian numbers, hex text and the packet dump.

#include "util/utility.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <span>

#include "util/big_endian.h"
#include "util/format.h"
#include "util/output.h"

namespace {

constexpr std::array<char, 16> HexDigits = {'0', '1', '2', '3', '4', '5', '6', '7',
                                            '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'};

constexpr unsigned char NoDigit = 0xFF;

char toUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// The value of each hex digit; `NoDigit` for a character that is not a hex digit.
constexpr auto DigitValues = [] {
  std::array<unsigned char, 256> values{};
  values.fill(NoDigit);
  for (std::size_t i = 0; i < HexDigits.size(); ++i) {
    const auto digit = static_cast<unsigned char>(HexDigits[i]);
    values[digit] = static_cast<unsigned char>(i);
    if (digit >= 'A') {
      values[digit - 'A' + 'a'] = static_cast<unsigned char>(i);
    }
  }
  return values;
}();

unsigned char digitValue(char c) {
  return DigitValues[static_cast<unsigned char>(c)];
}

/// Each byte as the dump shows it: two hex digits, a space and a zero byte. The zero byte makes the
/// size 4, so that the processor can copy the characters in one step.
constexpr auto DumpedBytes = [] {
  std::array<std::array<char, 4>, 256> texts{};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    texts[i] = {HexDigits[i >> 4U], HexDigits[i & 0x0FU], ' ', '\0'};
  }
  return texts;
}();

/// Collects dump lines and writes them in blocks of up to 62 lines. Standard error has no buffer,
/// so otherwise each line would cost a system call, which takes longer than the formatting.
class DumpWriter {
 public:
  static constexpr std::size_t BytesPerLine = 16;

  explicit DumpWriter(std::size_t lineWidth) : m_LineWidth(lineWidth) {}
  ~DumpWriter() { flush(); }
  DumpWriter(const DumpWriter&) = delete;
  DumpWriter& operator=(const DumpWriter&) = delete;

  /// Adds a line for at most 16 bytes. A shorter line is padded with blanks before the "|" if a
  /// full line precedes it.
  void addLine(std::span<const unsigned char> bytes) {
    if (m_Text.size() - m_Used < LongestLine) {
      flush();
    }
    char* out = m_Text.data() + m_Used;
    for (const unsigned char byte : bytes) {
      // Copies 4 characters and advances by 3: the next text overwrites the zero byte.
      std::memcpy(out, DumpedBytes[byte].data(), DumpedBytes[byte].size());
      out += DumpedWidth;
    }
    out = std::fill_n(out, (m_LineWidth - bytes.size()) * DumpedWidth, ' ');
    *out++ = '|';
    const auto toPrintable = [](unsigned char byte) {
      return byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '.';
    };
    out = std::ranges::transform(bytes, out, toPrintable).out;
    *out++ = '\n';
    m_Used = static_cast<std::size_t>(out - m_Text.data());
  }

 private:
  static constexpr std::size_t DumpedWidth = 3;
  /// The size of a full line: each byte in hex and as a character, a "|" and a line end.
  static constexpr std::size_t LongestLine = BytesPerLine * (DumpedWidth + 1) + 2;

  /// Writes the collected lines.
  void flush() {
    util::writeDiagnostic({m_Text.data(), m_Used});
    m_Used = 0;
  }

  std::array<char, LongestLine * 62> m_Text;
  std::size_t m_Used = 0;
  std::size_t m_LineWidth;
};

}  // namespace

void Utility::CopyToBigEndianBuffer(unsigned short value, unsigned char* destination) {
  unsigned int number = value;
  unsigned int length = 2;
  IntToChar(&number, destination, &length);
}

void Utility::CopyToBigEndianBuffer(unsigned long value, unsigned char* destination) {
  auto number = static_cast<unsigned int>(value & 0xFFFFFFFFUL);
  unsigned int length = 4;
  IntToChar(&number, destination, &length);
}

unsigned short Utility::ExtractShortFromBuffer(const unsigned char* source) {
  return static_cast<unsigned short>(util::bigEndian({source, 2}));
}

unsigned long Utility::ExtractLongFromBuffer(const unsigned char* source) {
  return static_cast<unsigned long>(util::bigEndian({source, 4}));
}

int Utility::IntToChar(unsigned int* value, unsigned char* out, unsigned int* length) {
  util::putBigEndian(*value, {out, *length});
  return 0;
}

int Utility::CharToInt(unsigned int* value, unsigned char* in, unsigned int* length) {
  *value = static_cast<unsigned int>(util::bigEndian({in, *length}));
  return 0;
}

int Utility::getHexValues(const char* text, unsigned char*& buffer) {
  const std::size_t length = text == nullptr ? 0 : std::strlen(text);
  if (length < 1) {
    return 0;
  }
  const std::size_t count = length / 2;
  auto bytes = std::make_unique<unsigned char[]>(count);
  std::size_t read = 0;
  for (unsigned char* byte = bytes.get(); read + 1 < length; read += 2) {
    const unsigned char high = digitValue(text[read]);
    const unsigned char low = digitValue(text[read + 1]);
    if ((high | low) == NoDigit) {
      break;
    }
    *byte++ = static_cast<unsigned char>(high << 4U | low);
  }
  // The rest is empty, is the odd character at the end, or starts with a pair that is not hex.
  const char* const invalid =
      std::find_if(text + read, text + length, [](char c) { return digitValue(c) == NoDigit; });
  if (invalid != text + length) {
    // The character is printed as a signed number, so the byte 0x80 prints as FFFFFF80.
    const auto byte = static_cast<unsigned char>(toUpper(*invalid));
    util::writeAnswer(
        util::formatted("not valid Hex char?! '%X'\n", byte < 0x80 ? byte : 0xFFFFFF00U | byte));
    buffer = nullptr;
    return static_cast<int>(count);
  }
  buffer = bytes.release();
  return static_cast<int>(count);
}

void Utility::ShowBytes(unsigned char* data, int count) {
  if (count <= 0) {
    return;
  }
  std::span<const unsigned char> rest(data, static_cast<std::size_t>(count));
  const std::size_t width = std::min(rest.size(), DumpWriter::BytesPerLine);
  DumpWriter dump(width);
  while (!rest.empty()) {
    const auto line = rest.first(std::min(width, rest.size()));
    dump.addLine(line);
    rest = rest.subspan(line.size());
  }
}
