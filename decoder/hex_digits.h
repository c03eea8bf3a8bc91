#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "decoder/packet.h"

/// What the readers of hex lines have in common.
namespace decoder {

inline constexpr std::string_view Digits = "0123456789abcdefABCDEF";
inline constexpr std::string_view Blanks = " \t\r";
inline constexpr std::size_t PairSize = 2;

bool isDigit(char character);

/// `text` without blanks at either end.
std::string_view trimmed(std::string_view text);

/// Takes `head` from the front of `text` if it is there; returns whether it was.
bool skip(std::string_view& text, std::string_view head);

/// Takes the characters at the front of `text` that are among `wanted`.
std::string_view takeAll(std::string_view& text, std::string_view wanted);

/// Returns the number in digits; nothing if there are others among them, none or more than 16.
std::optional<std::uint64_t> numberIn(std::string_view digits);

/// Appends the bytes of pairs of digits without anything between them; returns whether there are
/// any, and nothing else.
bool appendPairs(std::string_view digits, Bytes& bytes);

/// Takes an offset from the front of `text`. xxd writes 7 or 8 digits, hexdump 8, both more if need
/// be.
std::optional<std::uint64_t> takeOffset(std::string_view& text);

}  // namespace decoder
