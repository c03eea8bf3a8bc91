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
  // 0 is a zero byte; the results for a wrong or cut character are larger than any text.
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
