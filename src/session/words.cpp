// The words (fixed values) that settings accept, in upper or lower case.

#include "session/words.h"

#include <algorithm>

#include "session/texts.h"

namespace session {

std::string_view wordIn(std::span<const std::string_view> words, std::string_view text) {
  const auto word = std::ranges::find(words, lowerCase(text));
  return word == words.end() ? std::string_view() : *word;
}

}  // namespace session
