#pragma once

#include <string_view>

namespace util {

/// The characters of a C string; of a null pointer, none.
constexpr std::string_view textOf(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

}  // namespace util
