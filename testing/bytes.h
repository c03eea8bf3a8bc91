#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// Literal bytes for tests.
namespace support {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of hex pairs: `bytes("A5 00 06")`. A text that is anything else throws.
Bytes bytes(std::string_view hexPairs);

/// The characters of a text, without a terminating zero.
Bytes textBytes(std::string_view text);

/// One piece behind the other.
Bytes joined(std::initializer_list<Bytes> pieces);

/// Returns `text` repeated `count` times.
std::string repeated(std::string_view text, std::size_t count);

/// `count` bytes that differ from their neighbours: 0, 1, 2, ... 250, 0, 1, ...
Bytes pattern(std::size_t count);

}  // namespace support
