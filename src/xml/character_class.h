#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// The classes of characters that the parser tells apart. Bytes above 127 are in none of them.
namespace xml {

enum CharacterClass : std::uint8_t { WhiteSpace = 1, NameStart = 2, NamePart = 4 };

inline constexpr auto CharacterClasses = [] {
  std::array<std::uint8_t, 256> classes{};
  const auto add = [&classes](std::string_view characters, std::uint8_t which) {
    for (const char c : characters) {
      classes[static_cast<unsigned char>(c)] |= which;
    }
  };
  add("\t\n\r ", WhiteSpace);
  add("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz:_", NameStart | NamePart);
  add("-.0123456789", NamePart);
  return classes;
}();

constexpr bool isOf(CharacterClass which, char c) {
  return (CharacterClasses[static_cast<unsigned char>(c)] & which) != 0;
}

}  // namespace xml
