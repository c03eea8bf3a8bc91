#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// Big-endian numbers, as NPA packets and USB/IP messages have them.
namespace util {

/// Returns the number whose bytes are `bytes`, highest first. Of more than eight bytes the last
/// eight count.
constexpr std::uint64_t bigEndian(std::span<const std::uint8_t> bytes) {
  std::uint64_t number = 0;
  for (const std::uint8_t byte : bytes) {
    number = number << 8U | byte;
  }
  return number;
}

/// Writes `number` to all of `bytes`, highest byte first. Bytes that the number does not reach are
/// 0; higher bytes that do not fit are left out.
constexpr void putBigEndian(std::uint64_t number, std::span<std::uint8_t> bytes) {
  for (std::size_t i = bytes.size(); i-- > 0;) {
    bytes[i] = static_cast<std::uint8_t>(number & 0xFFU);
    number >>= 8U;
  }
}

/// The two bytes of a 16-bit number; higher bits are left out.
constexpr std::uint8_t highByte(std::size_t number) {
  return static_cast<std::uint8_t>(number >> 8U & 0xFFU);
}

constexpr std::uint8_t lowByte(std::size_t number) {
  return static_cast<std::uint8_t>(number & 0xFFU);
}

}  // namespace util
