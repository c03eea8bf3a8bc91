#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// Binary inputs as readable text: hex digits with anything between them; "#" begins a comment that
/// goes to the end of the line.
namespace fuzz {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of a text. Other characters than hex digits are skipped, an odd last digit as well.
Bytes readHex(std::string_view text);

/// The bytes of each part of a text between its semicolons, at least one part.
std::vector<Bytes> readHexParts(std::string_view text);

/// Removes the first byte and returns it; 0 when there is none.
std::uint8_t takeByte(Bytes& bytes);

}  // namespace fuzz
