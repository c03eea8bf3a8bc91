#include "testing/bytes.h"

#include <charconv>
#include <cstddef>
#include <stdexcept>

namespace support {

Bytes bytes(std::string_view hexPairs) {
  Bytes result;
  while (!hexPairs.empty()) {
    std::uint8_t byte = 0;
    const char* const pairEnd = hexPairs.data() + 2;
    const bool wellFormed = (hexPairs.size() == 2 || (hexPairs.size() > 3 && hexPairs[2] == ' ')) &&
                            std::from_chars(hexPairs.data(), pairEnd, byte, 16).ptr == pairEnd;
    if (!wellFormed) {
      throw std::invalid_argument("expected hex pairs with single spaces between them");
    }
    result.push_back(byte);
    hexPairs.remove_prefix(hexPairs.size() == 2 ? 2 : 3);
  }
  return result;
}

Bytes textBytes(std::string_view text) {
  return {text.begin(), text.end()};
}

Bytes joined(std::initializer_list<Bytes> pieces) {
  Bytes result;
  for (const Bytes& piece : pieces) {
    result.insert(result.end(), piece.begin(), piece.end());
  }
  return result;
}

std::string repeated(std::string_view text, std::size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) {
    result += text;
  }
  return result;
}

Bytes pattern(std::size_t count) {
  // The period is a prime number, so the size of a packet is rarely a multiple of it. Adjacent
  // packets of one size then have different bytes.
  constexpr std::size_t period = 251;
  Bytes result(count);
  for (std::size_t i = 0; i < count; ++i) {
    result[i] = static_cast<std::uint8_t>(i % period);
  }
  return result;
}

}  // namespace support
