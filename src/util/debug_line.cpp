#include "util/debug_line.h"

#include <cstdarg>
#include <cstdio>

namespace util {

void debugLine(const char* format, ...) {
  std::fputs("D [ZVK] ", stderr);
  std::va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
  std::fputc('\n', stderr);
}

}  // namespace util
