#include "wifi/shown_text.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

#include "util/format.h"

namespace wifi {

namespace {

/// The character at the start of a text.
struct Character {
  std::size_t size;  ///< bytes
  bool prints;
  std::size_t columns;
};

Character firstOf(std::string_view text) {
  std::mbstate_t state{};
  wchar_t wide = 0;
  const std::size_t size = std::mbrtowc(&wide, text.data(), text.size(), &state);
  // `mbrtowc` returns 0 for a zero byte. For an invalid or incomplete character it returns a number
  // that is larger than the size of any text.
  if (size == 0 || size > text.size() || std::iswprint(static_cast<std::wint_t>(wide)) == 0) {
    return {1, false, 0};
  }
  return {size, true, static_cast<std::size_t>(std::max(::wcwidth(wide), 0))};
}

}  // namespace

std::string shown(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Character character = firstOf(text);
    if (character.prints) {
      result.append(text.substr(0, character.size));
    } else {
      result.append(util::formatted("\\x%02X", static_cast<unsigned char>(text.front())));
    }
    text.remove_prefix(character.size);
  }
  return result;
}

std::string wrapped(std::string_view text, std::size_t columns) {
  std::string result;
  std::string line;
  std::size_t used = 0;     ///< columns of the line
  std::size_t breakAt = 0;  ///< bytes of the line before the last possible break; 0: none
  while (!text.empty()) {
    const Character character = firstOf(text);
    const std::string_view bytes = text.substr(0, character.size);
    text.remove_prefix(character.size);
    const bool isBlank = bytes == " ";
    if (bytes == "\n") {
      result.append(line).append(bytes);
      line.clear();
      used = breakAt = 0;
      continue;
    }
    if (character.columns > 1) {
      breakAt = line.size();
    }
    if (used + character.columns > columns) {
      const std::size_t end = isBlank || breakAt == 0 ? line.size() : breakAt;
      const std::size_t last = line.find_last_not_of(' ', end - 1);
      result.append(line, 0, last == std::string::npos ? end : last + 1).append("\n");
      line.erase(0, end);
      used = columnsOf(line);
      breakAt = 0;
      if (isBlank) {
        continue;
      }
    }
    line.append(bytes);
    used += character.columns;
    if (isBlank || character.columns > 1) {
      breakAt = line.size();
    }
  }
  return result + line;
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character character = firstOf(text);
    columns += character.columns;
    text.remove_prefix(character.size);
  }
  return columns;
}

}  // namespace wifi
