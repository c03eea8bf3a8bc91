#pragma once

#include <cstdarg>
#include <string>

namespace util {

/// Returns the text that `printf` would write. Texts among the arguments end at their first zero
/// byte.
[[nodiscard, gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...);

/// The same for arguments that are already a list.
[[nodiscard, gnu::format(printf, 1, 0)]] std::string formattedList(const char* format,
                                                                   std::va_list arguments);

}  // namespace util
