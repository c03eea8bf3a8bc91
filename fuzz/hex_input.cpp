// Parses hex inputs.

#include "hex_input.h"

#include <algorithm>

namespace fuzz {

namespace {

constexpr unsigned int NoDigit = 16;

/// Returns the value of a hex digit, or `NoDigit` for any other character.
unsigned int digitValue(char c) {
  constexpr std::string_view digits = "0123456789ABCDEFabcdef";
  constexpr unsigned int lowerCaseCount = 6;
  const auto position = static_cast<unsigned int>(std::min(digits.find(c), digits.size()));
  if (position == digits.size()) {
    return NoDigit;
  }
  return position < NoDigit ? position : position - lowerCaseCount;
}

}  // namespace

std::vector<Bytes> readHexParts(std::string_view text) {
  std::vector<Bytes> parts(1);
  unsigned int highHalf = NoDigit;
  bool isComment = false;
  for (const char c : text) {
    isComment = c != '\n' && (isComment || c == '#');
    if (isComment) {
      continue;
    }
    const unsigned int digit = digitValue(c);
    if (c == ';') {
      parts.emplace_back();
      highHalf = NoDigit;
    } else if (digit != NoDigit && highHalf != NoDigit) {
      parts.back().push_back(static_cast<std::uint8_t>(highHalf << 4U | digit));
      highHalf = NoDigit;
    } else if (digit != NoDigit) {
      highHalf = digit;
    }
  }
  return parts;
}

Bytes readHex(std::string_view text) {
  Bytes all;
  for (const Bytes& part : readHexParts(text)) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

std::uint8_t takeByte(Bytes& bytes) {
  if (bytes.empty()) {
    return 0;
  }
  const std::uint8_t first = bytes.front();
  bytes.erase(bytes.begin());
  return first;
}

}  // namespace fuzz
