#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace session {

/// Returns the text without control bytes and without spaces at its ends, or nothing if no
/// character is left.
[[nodiscard]] std::optional<std::string> printableText(std::string_view text);

/// Returns the number in a text of 1 to 9 decimal digits, or nothing for any other text.
[[nodiscard]] std::optional<int> decimalNumber(std::string_view text);

/// Returns the text with its ASCII letters in lower case.
[[nodiscard]] std::string lowerCase(std::string_view text);

}  // namespace session
