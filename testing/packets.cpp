#include "testing/packets.h"

#include <algorithm>
#include <cstddef>

namespace packets {

namespace {

using support::bytes;
using support::joined;

Bytes twoBytes(std::size_t number) {
  return {static_cast<std::uint8_t>(number / 256), static_cast<std::uint8_t>(number % 256)};
}

}  // namespace

Bytes framed(const Bytes& content) {
  return joined({{0xA5}, twoBytes(content.size()), content});
}

Bytes wrapped(const Bytes& packet) {
  return framed(joined({bytes("50 E0 63 02"), twoBytes(packet.size()), packet}));
}

Bytes replyOf(const Bytes& content, std::uint8_t flag) {
  return framed(joined({{flag, 0xE0}, content}));
}

std::string hexText(const Bytes& bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text.append(text.empty() ? "" : " ").append({digits[byte / 16], digits[byte % 16]});
  }
  return text;
}

std::string dumpOf(const Bytes& bytes) {
  constexpr std::size_t lineSize = 16;
  std::string text;
  for (std::size_t start = 0; start < bytes.size(); start += lineSize) {
    const std::size_t end = std::min(start + lineSize, bytes.size());
    const Bytes line(bytes.begin() + static_cast<std::ptrdiff_t>(start),
                     bytes.begin() + static_cast<std::ptrdiff_t>(end));
    std::string hex = hexText(line);
    // A short line is padded only if a full line precedes it.
    hex.resize(start == 0 ? hex.size() : 3 * lineSize - 1, ' ');
    text.append(hex).append(" |");
    for (const std::uint8_t byte : line) {
      text.push_back(byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.');
    }
    text.push_back('\n');
  }
  return text;
}

}  // namespace packets
