#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// Big-endian numbers, the byte order of NPA packets and USB/IP messages.
namespace util {

/// Returns the number whose bytes are `bytes`, highest byte first. Uses only the last 8 bytes.
constexpr std::uint64_t bigEndian(std::span<const std::uint8_t> bytes) {
  std::uint64_t number = 0;
  for (const std::uint8_t byte : bytes) {
    number = number << 8U | byte;
  }
  return number;
}

/// Writes `number` to `bytes`, highest byte first. Fills all of `bytes`: writes leading zero bytes
/// before a small number, and leaves out the high bytes of a number that is too large.
constexpr void putBigEndian(std::uint64_t number, std::span<std::uint8_t> bytes) {
  for (std::size_t i = bytes.size(); i-- > 0;) {
    bytes[i] = static_cast<std::uint8_t>(number & 0xFFU);
    number >>= 8U;
  }
}

/// Returns the high byte of the low 16 bits of a number.
constexpr std::uint8_t highByte(std::size_t number) {
  return static_cast<std::uint8_t>(number >> 8U & 0xFFU);
}

/// Returns the low byte of a number.
constexpr std::uint8_t lowByte(std::size_t number) {
  return static_cast<std::uint8_t>(number & 0xFFU);
}

}  // namespace util
