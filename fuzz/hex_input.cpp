#include "hex_input.h"

#include <optional>

namespace fuzz {

namespace {

std::optional<std::uint8_t> digitValue(char c) {
  constexpr std::string_view digits = "0123456789ABCDEFabcdef";
  const std::size_t position = digits.find(c);
  if (position == std::string_view::npos) {
    return std::nullopt;
  }
  constexpr std::size_t firstLowerCase = 16;
  constexpr std::size_t lowerCaseCount = 6;
  return static_cast<std::uint8_t>(position < firstLowerCase ? position
                                                             : position - lowerCaseCount);
}

}  // namespace

std::vector<Bytes> readHexParts(std::string_view text) {
  std::vector<Bytes> parts(1);
  std::optional<std::uint8_t> highHalf;
  bool isComment = false;
  for (const char c : text) {
    isComment = c != '\n' && (isComment || c == '#');
    if (isComment) {
      continue;
    }
    const std::optional<std::uint8_t> digit = digitValue(c);
    if (c == ';') {
      parts.emplace_back();
      highHalf.reset();
    } else if (digit && highHalf) {
      parts.back().push_back(static_cast<std::uint8_t>(*highHalf << 4U | *digit));
      highHalf.reset();
    } else if (digit) {
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
