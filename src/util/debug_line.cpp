// Diagnostic lines. Short lines are formatted on the stack.

#include "util/debug_line.h"

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "util/format.h"
#include "util/output.h"

namespace util {

namespace {

constexpr std::string_view Prefix = "D [ZVK] ";

}  // namespace

void debugLine(const char* format, ...) {
  // A line of at most 256 bytes needs no heap memory. Each line is written with one call, because
  // standard error has no buffer.
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
    writeDiagnostic({line.data(), size + 1});
  } else {
    va_start(arguments, format);
    const std::string text = formattedList(format, arguments);
    va_end(arguments);
    writeDiagnostic(std::string(Prefix).append(text).append("\n"));
  }
  // Erase the text: it may contain a key or a password.
  ::explicit_bzero(line.data(), line.size());
}

}  // namespace util
