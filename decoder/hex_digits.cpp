// Parses hex digits.

#include "decoder/hex_digits.h"

#include <algorithm>
#include <charconv>

namespace decoder {

bool isDigit(char character) {
  return Digits.find(character) != std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
  takeAll(text, Blanks);
  return text.substr(0, text.find_last_not_of(Blanks) + 1);
}

bool skip(std::string_view& text, std::string_view head) {
  if (!text.starts_with(head)) {
    return false;
  }
  text.remove_prefix(head.size());
  return true;
}

std::string_view takeAll(std::string_view& text, std::string_view wanted) {
  const std::string_view taken =
      text.substr(0, std::min(text.find_first_not_of(wanted), text.size()));
  text.remove_prefix(taken.size());
  return taken;
}

std::optional<std::uint64_t> numberIn(std::string_view digits) {
  constexpr int hexadecimal = 16;
  std::uint64_t number = 0;
  const char* const textEnd = digits.data() + digits.size();
  const auto [end, error] = std::from_chars(digits.data(), textEnd, number, hexadecimal);
  return error == std::errc() && end == textEnd ? std::optional(number) : std::nullopt;
}

bool appendPairs(std::string_view digits, Bytes& bytes) {
  if (digits.empty() || digits.size() % PairSize != 0) {
    return false;
  }
  for (; !digits.empty(); digits.remove_prefix(PairSize)) {
    const auto number = numberIn(digits.substr(0, PairSize));
    if (!number) {
      return false;
    }
    bytes.push_back(static_cast<npa::Byte>(*number));
  }
  return true;
}

std::optional<std::uint64_t> takeOffset(std::string_view& text) {
  // xxd writes at least 7 or 8 digits, depending on its version, and hexdump at least 8.
  constexpr std::size_t shortest = 7;
  constexpr std::size_t longest = 16;
  const std::string_view digits = takeAll(text, Digits);
  const bool fits = digits.size() >= shortest && digits.size() <= longest;
  return fits ? numberIn(digits) : std::nullopt;
}

}  // namespace decoder
