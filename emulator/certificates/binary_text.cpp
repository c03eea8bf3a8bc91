// Encodes and decodes Base64 with libcrypto. The decoder of libcrypto accepts invalid texts, so its
// result is checked.

#include "emulator/certificates/binary_text.h"

#include <algorithm>
#include <limits>
#include <openssl/evp.h>
#include <stdexcept>

namespace emulator {

namespace {

/// The largest count of bytes to encode, and of characters to decode. libcrypto counts in int. The
/// encoded text is longer than the bytes, and the size of this text must also fit into an int.
constexpr std::size_t LargestSize = std::numeric_limits<int>::max() / 2;

const unsigned char* asBytes(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

unsigned char* asBytes(std::string& text) {
  return reinterpret_cast<unsigned char*>(text.data());
}

}  // namespace

std::optional<std::string> fromBase64(std::string_view text) {
  constexpr std::size_t charactersInGroup = 4;
  constexpr std::size_t bytesInGroup = 3;
  constexpr std::size_t largestPadding = 2;
  if (text.size() % charactersInGroup != 0 || text.size() > LargestSize) {
    return std::nullopt;
  }
  std::string bytes(text.size() / charactersInGroup * bytesInGroup, '\0');
  if (::EVP_DecodeBlock(asBytes(bytes), asBytes(text), static_cast<int>(text.size())) < 0) {
    return std::nullopt;
  }
  const std::size_t dataEnd = text.find_last_not_of('=') + 1;
  bytes.resize(bytes.size() - std::min({text.size() - dataEnd, bytes.size(), largestPadding}));
  // The decoder accepts blanks, line ends, misplaced padding and stray bits. The encoder writes
  // none of them, so the text is valid if encoding the bytes gives the same text.
  return toBase64(bytes) == text ? std::optional(bytes) : std::nullopt;
}

std::string toBase64(std::string_view bytes) {
  if (bytes.size() > LargestSize) {
    throw std::length_error("too many bytes for Base64");
  }
  // The buffer has one byte more than the text, for the zero byte that the encoder writes.
  std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');
  const int size = ::EVP_EncodeBlock(asBytes(text), asBytes(bytes), static_cast<int>(bytes.size()));
  text.resize(static_cast<std::size_t>(size));
  return text;
}

}  // namespace emulator
