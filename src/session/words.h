#pragma once

#include <span>
#include <string_view>

namespace session {

/// Returns the word of `words` that equals `text`, or an empty text if there is none. Upper and
/// lower case of `text` make no difference. `words` is in lower case.
[[nodiscard]] std::string_view wordIn(std::span<const std::string_view> words,
                                      std::string_view text);

}  // namespace session
