#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace emulator {

/// Returns the bytes of a Base64 text (RFC 4648). Returns nothing unless the text is exactly what
/// an encoder writes: no blanks or line ends, whole groups of four, padding only at the end.
std::optional<std::string> fromBase64(std::string_view text);

/// Returns the Base64 text of bytes, without line ends. Throws `std::length_error` for 1 GiB or
/// more.
std::string toBase64(std::string_view bytes);

}  // namespace emulator
