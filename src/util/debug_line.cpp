#include "util/debug_line.h"

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace util {

namespace {

constexpr std::string_view Prefix = "D [ZVK] ";

}  // namespace

void debugLine(const char* format, ...) {
  // In one piece, as long as it is no longer than usual: the stream is unbuffered, and each piece
  // would be a call of the system's.
  std::array<char, 256> line;
  Prefix.copy(line.data(), Prefix.size());
  std::va_list arguments;
  va_start(arguments, format);
  const int length =
      std::vsnprintf(line.data() + Prefix.size(), line.size() - Prefix.size(), format, arguments);
  va_end(arguments);
  const std::size_t size = Prefix.size() + static_cast<std::size_t>(length < 0 ? 0 : length);
  if (length >= 0 && size < line.size()) {
    line[size] = '\n';
    std::fwrite(line.data(), 1, size + 1, stderr);
  } else {
    std::fwrite(Prefix.data(), 1, Prefix.size(), stderr);
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fputc('\n', stderr);
  }
  // Lines tell secrets.
  ::explicit_bzero(line.data(), line.size());
}

}  // namespace util
