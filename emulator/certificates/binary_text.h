#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace emulator {

/// The bytes of a Base64 text (RFC 4648). Nothing unless it is exactly what an encoder writes: no
/// blanks or line ends, whole groups of four, padding only where it is due.
std::optional<std::string> fromBase64(std::string_view text);

/// Bytes as Base64 text, without line ends.
std::string toBase64(std::string_view bytes);

}  // namespace emulator
