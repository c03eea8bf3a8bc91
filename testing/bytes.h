#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// Byte strings for tests.
namespace support {

using Bytes = std::vector<std::uint8_t>;

/// Returns the bytes of hex pairs with single spaces between them: `bytes("A5 00 06")`. Throws an
/// exception if the text has another form.
Bytes bytes(std::string_view hexPairs);

/// Returns the characters of a text, without a terminating zero byte.
Bytes textBytes(std::string_view text);

/// Returns the pieces joined in order.
Bytes joined(std::initializer_list<Bytes> pieces);

/// Returns `text` repeated `count` times.
std::string repeated(std::string_view text, std::size_t count);

/// Returns `count` bytes that differ from their neighbours: 0, 1, 2, ... 250, 0, 1, ...
Bytes pattern(std::size_t count);

}  // namespace support
