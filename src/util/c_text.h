#pragma once

#include <string_view>

namespace util {

/// Returns a view of a C string without its zero byte. A null pointer is an empty text. The view
/// points into `text`.
constexpr std::string_view textOf(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

}  // namespace util
