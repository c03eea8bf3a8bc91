#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// Reads binary inputs from readable text, so that a person can write seeds. Characters other than
/// hex digits are ignored. "#" starts a comment that ends with the line:
///
///     A5 00 06 50  # start byte, length, flag
namespace fuzz {

using Bytes = std::vector<std::uint8_t>;

/// Returns the bytes of a text. Ignores an odd last digit.
Bytes readHex(std::string_view text);

/// Returns the bytes of each part of a text. Semicolons separate the parts. The result has at least
/// one part, which may be empty.
std::vector<Bytes> readHexParts(std::string_view text);

/// Removes the first byte and returns it. Returns 0 if `bytes` is empty.
std::uint8_t takeByte(Bytes& bytes);

}  // namespace fuzz
