#pragma once

namespace util {

/// Writes one diagnostic line: "D [ZVK] ", the text that `printf` would write, and a line end. A
/// text argument ends at its first zero byte. The line may contain a key or a password in clear.
///
///     util::debugLine("Mode = '%s'", mode.c_str());  // D [ZVK] Mode = 'Ad-Hoc'
[[gnu::format(printf, 1, 2)]] void debugLine(const char* format, ...);

}  // namespace util
