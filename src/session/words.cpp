// Words of settings, which are accepted in any case.

#include "session/words.h"

#include <algorithm>

namespace session {

std::string lowered(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return lower;
}

std::string_view wordIn(std::span<const std::string_view> words, std::string_view text) {
  const auto word = std::ranges::find(words, lowered(text));
  return word == words.end() ? std::string_view() : *word;
}

}  // namespace session
