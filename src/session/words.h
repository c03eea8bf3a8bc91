#pragma once

#include <span>
#include <string_view>

namespace session {

/// Returns the word of the list that `text` is in any case, or an empty text if it is none. The
/// list is in lower case.
[[nodiscard]] std::string_view wordIn(std::span<const std::string_view> words,
                                      std::string_view text);

}  // namespace session
