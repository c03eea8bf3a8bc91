#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// The classes of characters that the parser distinguishes. A character can be in several classes.
/// Bytes above 127 are in no class.
namespace xml {

/// Each class is one bit. A name starts with a `NameStart` and continues with `NamePart`s.
enum CharacterClass : std::uint8_t { WhiteSpace = 1, NameStart = 2, NamePart = 4 };

/// The classes of each character, combined with OR.
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

/// Returns true if the character is in the class.
constexpr bool isOf(CharacterClass which, char c) {
  return (CharacterClasses[static_cast<unsigned char>(c)] & which) != 0;
}

}  // namespace xml
