#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "decoder/packet.h"

/// Helper functions of the parsers of hex lines. The functions whose names begin with "take" or
/// "skip" remove the characters that they find from the front of `text`.
namespace decoder {

inline constexpr std::string_view Digits = "0123456789abcdefABCDEF";
inline constexpr std::string_view Blanks = " \t\r";
inline constexpr std::size_t PairSize = 2;

/// Returns true if the character is a hex digit.
bool isDigit(char character);

/// Returns `text` without blanks at both ends.
std::string_view trimmed(std::string_view text);

/// Skips `head`. Returns false if `text` does not begin with it.
bool skip(std::string_view& text, std::string_view head);

/// Takes the characters at the front of `text` that are in `wanted`.
std::string_view takeAll(std::string_view& text, std::string_view wanted);

/// Returns the number that 1 to 16 hex digits represent, or nothing for any other text.
std::optional<std::uint64_t> numberIn(std::string_view digits);

/// Appends a byte for each pair of hex digits. Returns false if `digits` is empty or is not a whole
/// number of pairs. Some bytes may have been appended even then.
bool appendPairs(std::string_view digits, Bytes& bytes);

/// Takes the 7 to 16 hex digits at the start of a dump line, and returns the offset that they
/// represent. Returns nothing if there is no offset.
std::optional<std::uint64_t> takeOffset(std::string_view& text);

}  // namespace decoder
