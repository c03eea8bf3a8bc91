// Formatting into a string. The first pass computes the size, the second pass writes the text.

#include "util/format.h"

#include <cstddef>
#include <cstdio>

namespace util {

std::string formatted(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = formattedList(format, arguments);
  va_end(arguments);
  return text;
}

std::string formattedList(const char* format, std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, again);
  va_end(again);
  std::string text(static_cast<std::size_t>(length < 0 ? 0 : length), '\0');
  // vsnprintf writes a zero byte after the text, where the string has a zero byte already.
  std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  return text;
}

}  // namespace util
