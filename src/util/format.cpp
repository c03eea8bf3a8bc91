// Formatting into a string: one pass for the size, one for the text.

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
  // vsnprintf writes its zero byte over the one that the string keeps after its text.
  std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  return text;
}

}  // namespace util
