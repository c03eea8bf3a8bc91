#pragma once

namespace util {

/// Writes one diagnostic line: "D [ZVK] ", the formatted text (as `printf`, so texts end at their
/// first zero byte) and a line end.
[[gnu::format(printf, 1, 2)]] void debugLine(const char* format, ...);

}  // namespace util
