#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wifi {

/// Returns a text from the printer or from a file in a form that is safe on a terminal. Characters
/// that print in the user's locale are unchanged. All other bytes become \xNN.
[[nodiscard]] std::string shown(std::string_view text);

/// Returns the columns that a text takes on a terminal.
[[nodiscard]] std::size_t columnsOf(std::string_view text);

/// The largest number of columns of a line for a terminal.
inline constexpr std::size_t TerminalColumns = 79;

/// Returns a text with line breaks added, so that no line takes more than `columns` columns. Breaks
/// at blanks and next to wide characters, and elsewhere only in a word that is wider than a line.
[[nodiscard]] std::string wrapped(std::string_view text, std::size_t columns = TerminalColumns);

}  // namespace wifi
