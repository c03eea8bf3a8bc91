// The predefined entities and their replacement in place.

#include "xml/entities.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace xml {

namespace {

/// A predefined entity: its reference in a document, and the character that it stands for.
struct Entity {
  std::string_view reference;
  std::string_view character;
};

constexpr std::array<Entity, 5> Entities = {{
    {"&amp;", "&"},
    {"&quot;", "\""},
    {"&apos;", "'"},
    {"&lt;", "<"},
    {"&gt;", ">"},
}};

}  // namespace

std::string_view characterOf(std::string_view entity) {
  const auto* const found = std::ranges::find(Entities, entity, &Entity::reference);
  return found == Entities.end() ? std::string_view() : found->character;
}

// Works in place, because the result is never longer than the text: a character is shorter than its
// entity. The text before `read` has been read, and the text before `written` is final.
void replaceEntities(std::string& text) {
  std::size_t read = 0;
  std::size_t written = 0;
  const auto keepUntil = [&](std::size_t end) {
    // Before the first replacement the text is in its final place already.
    if (written < read) {
      std::copy(&text[read], &text[end], &text[written]);
    }
    written += end - read;
    read = end;
  };
  std::size_t ampersand = text.find('&');
  while (ampersand < text.size()) {
    const std::size_t semicolon = text.find(';', ampersand);
    if (semicolon == std::string::npos) {
      break;
    }
    keepUntil(ampersand);
    read = semicolon + 1;
    const std::string_view character =
        characterOf(std::string_view(text).substr(ampersand, read - ampersand));
    written += character.copy(&text[written], character.size());
    // The search continues one character after the place of the entity. If an unknown entity was
    // removed, the character after the entity moves to this place. So the search skips this
    // character, which stays even if it is "&".
    ampersand = text.find('&', character.empty() ? read + 1 : read);
  }
  keepUntil(text.size());
  text.resize(written);
}

}  // namespace xml
