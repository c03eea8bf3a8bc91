#include "catalogue/hex_text.h"

#include <array>

namespace catalogue {

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

std::string escaped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char character : text) {
    if (character >= 0x20 && character <= 0x7E) {
      result.push_back(character);
    } else {
      result.append("\\x").append(hexText(std::array{static_cast<npa::Byte>(character)}));
    }
  }
  return result;
}

std::string quoted(std::string_view text) {
  return "\"" + escaped(text) + "\"";
}

std::string quoted(std::span<const npa::Byte> text) {
  return quoted(std::string(text.begin(), text.end()));
}

}  // namespace catalogue
