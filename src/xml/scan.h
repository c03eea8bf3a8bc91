#pragma once

#include <cstddef>
#include <string_view>

#include "xml/character_class.h"

/// Looking at the text at a position, which may lie behind its end.
namespace xml {

constexpr bool isAt(CharacterClass which, std::string_view text, std::size_t position) {
  return position < text.size() && isOf(which, text[position]);
}

constexpr bool standsAt(std::string_view text, std::size_t position, std::string_view token) {
  return position < text.size() && text.substr(position).starts_with(token);
}

/// Moves `position` to the next character that is not of the class, or to the end.
constexpr void skip(CharacterClass which, std::string_view text, std::size_t& position) {
  while (isAt(which, text, position)) {
    ++position;
  }
}

constexpr void skipWhiteSpace(std::string_view text, std::size_t& position) {
  skip(WhiteSpace, text, position);
}

}  // namespace xml
