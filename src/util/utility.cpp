#include "util/utility.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <span>

namespace {

constexpr unsigned int NumberBytes = 4;
constexpr std::array<char, 16> HexDigits = {'0', '1', '2', '3', '4', '5', '6', '7',
                                            '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'};

char toUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::optional<unsigned char> hexDigitValue(char upperCase) {
  if (upperCase >= '0' && upperCase <= '9') {
    return static_cast<unsigned char>(upperCase - '0');
  }
  if (upperCase >= 'A' && upperCase <= 'F') {
    return static_cast<unsigned char>(upperCase - 'A' + 10);
  }
  return std::nullopt;
}

/// Collects whole dump lines and hands them to standard error in blocks: the stream is unbuffered,
/// and a call for each byte would dominate the cost of a long dump.
class DumpWriter {
 public:
  static constexpr std::size_t BytesPerLine = 16;

  explicit DumpWriter(std::size_t lineWidth) : m_LineWidth(lineWidth) {}
  ~DumpWriter() { flush(); }
  DumpWriter(const DumpWriter&) = delete;
  DumpWriter& operator=(const DumpWriter&) = delete;

  void addLine(std::span<const unsigned char> bytes) {
    if (m_Text.size() - m_Used < LongestLine) {
      flush();
    }
    for (const unsigned char byte : bytes) {
      put(HexDigits[byte >> 4U]);
      put(HexDigits[byte & 0x0FU]);
      put(' ');
    }
    for (std::size_t missing = bytes.size(); missing < m_LineWidth; ++missing) {
      put(' ');
      put(' ');
      put(' ');
    }
    put('|');
    for (const unsigned char byte : bytes) {
      const bool printable = byte >= 0x20 && byte <= 0x7E;
      put(printable ? static_cast<char>(byte) : '.');
    }
    put('\n');
  }

 private:
  static constexpr std::size_t LongestLine = BytesPerLine * 4 + 2;

  void put(char c) { m_Text[m_Used++] = c; }

  void flush() {
    std::fwrite(m_Text.data(), 1, m_Used, stderr);
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
  return static_cast<unsigned short>(source[0] << 8U | source[1]);
}

unsigned long Utility::ExtractLongFromBuffer(const unsigned char* source) {
  return static_cast<unsigned long>(ExtractShortFromBuffer(source)) << 16U |
         ExtractShortFromBuffer(source + 2);
}

int Utility::IntToChar(unsigned int* value, unsigned char* out, unsigned int* length) {
  const unsigned int number = *value;
  const unsigned int count = *length;
  for (unsigned int i = 0; i < count; ++i) {
    const unsigned int bytesBelow = count - i - 1;
    out[i] = bytesBelow < NumberBytes
                 ? static_cast<unsigned char>(number >> (bytesBelow * 8U) & 0xFFU)
                 : static_cast<unsigned char>(0);
  }
  return 0;
}

int Utility::CharToInt(unsigned int* value, unsigned char* in, unsigned int* length) {
  unsigned int number = 0;
  for (unsigned int i = 0; i < *length; ++i) {
    number = number << 8U | in[i];
  }
  *value = number;
  return 0;
}

int Utility::getHexValues(const char* text, unsigned char*& buffer) {
  const std::size_t length = text == nullptr ? 0 : std::strlen(text);
  if (length < 1) {
    return 0;
  }
  const std::size_t count = length / 2;
  auto bytes = std::make_unique<unsigned char[]>(count);
  for (std::size_t i = 0; i < length; ++i) {
    const char c = toUpper(text[i]);
    const std::optional<unsigned char> digit = hexDigitValue(c);
    if (!digit) {
      // Shown as a signed character widened to an integer: a byte of 0x80 prints as FFFFFF80.
      const auto byte = static_cast<unsigned char>(c);
      std::printf("not valid Hex char?! '%X'\n", byte < 0x80 ? byte : 0xFFFFFF00U | byte);
      buffer = nullptr;
      return static_cast<int>(count);
    }
    if (i / 2 < count) {
      bytes[i / 2] = static_cast<unsigned char>(bytes[i / 2] << 4U | *digit);
    }
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
