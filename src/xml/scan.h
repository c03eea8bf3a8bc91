#pragma once

#include <cstddef>
#include <string_view>

#include "xml/character_class.h"

/// Tests of the text at a position. A position at or after the end is valid and matches nothing.
namespace xml {

/// Returns true if the character at `position` is in the class.
constexpr bool isAt(CharacterClass which, std::string_view text, std::size_t position) {
  return position < text.size() && isOf(which, text[position]);
}

/// Returns true if `token` is at `position`.
constexpr bool isTokenAt(std::string_view text, std::size_t position, std::string_view token) {
  return position < text.size() && text.substr(position).starts_with(token);
}

/// Moves `position` to the next character that is not in the class, or to the end.
constexpr void skip(CharacterClass which, std::string_view text, std::size_t& position) {
  while (isAt(which, text, position)) {
    ++position;
  }
}

/// Moves `position` to the next character that is not white space, or to the end.
constexpr void skipWhiteSpace(std::string_view text, std::size_t& position) {
  skip(WhiteSpace, text, position);
}

}  // namespace xml
