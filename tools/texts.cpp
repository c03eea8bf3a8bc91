// Fills templates.

#include "tools/texts.h"

#include <stdexcept>

namespace tools {

std::string filled(std::string_view text, const Texts& texts) {
  constexpr std::string_view opening = "{{";
  constexpr std::string_view closing = "}}";
  std::string result;
  while (true) {
    const std::size_t open = text.find(opening);
    result.append(text.substr(0, open));
    if (open == std::string_view::npos) {
      return result;
    }
    text.remove_prefix(open + opening.size());
    const std::size_t close = text.find(closing);
    const std::string_view name = text.substr(0, close);
    const auto found = texts.find(name);
    if (close == std::string_view::npos || found == texts.end()) {
      throw std::runtime_error("no text {{" + std::string(name.substr(0, name.find('\n'))) + "}}");
    }
    result.append(found->second);
    text.remove_prefix(close + closing.size());
  }
}

}  // namespace tools
