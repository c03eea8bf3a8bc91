#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wifi {

/// Returns a text from the printer or from a file as it may be shown on a terminal: characters that
/// print in the user's locale are unchanged, all other bytes become \xNN.
[[nodiscard]] std::string shown(std::string_view text);

/// Returns the columns that a text takes on a terminal.
[[nodiscard]] std::size_t columnsOf(std::string_view text);

}  // namespace wifi
