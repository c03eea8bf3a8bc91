#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace session {

/// Returns the text without control bytes and without spaces around it, or nothing if the rest is
/// empty.
[[nodiscard]] std::optional<std::string> printableText(std::string_view text);

/// Returns the number if the text consists of 1 to 9 decimal digits.
[[nodiscard]] std::optional<int> decimalNumber(std::string_view text);

/// Returns the text with its ASCII letters in lower case.
[[nodiscard]] std::string lowerCase(std::string_view text);

}  // namespace session
