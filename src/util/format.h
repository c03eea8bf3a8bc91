#pragma once

#include <cstdarg>
#include <string>

namespace util {

/// Returns the text that `printf` would write. A text argument ends at its first zero byte. Returns
/// an empty text if the formatting fails.
[[nodiscard, gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

/// Does the same as `formatted` for an argument list. As after `vsnprintf`, the caller must not
/// read the list again.
[[nodiscard, gnu::format(printf, 1, 0)]] std::string formattedList(const char* format,
                                                                   std::va_list arguments);

}  // namespace util
