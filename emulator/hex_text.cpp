#include "emulator/hex_text.h"

#include <string_view>

namespace emulator {

std::string hexText(std::span<const npa::Byte> bytes) {
  return hexText(bytes, {});
}

std::string hexText(std::span<const npa::Byte> bytes, const std::vector<bool>& hidden) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(bytes.size() * 3);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0) {
      text.push_back(' ');
    }
    if (i < hidden.size() && hidden[i]) {
      text.append("**");
    } else {
      text.push_back(digits[bytes[i] >> 4U]);
      text.push_back(digits[bytes[i] & 0x0FU]);
    }
  }
  return text;
}

}  // namespace emulator
