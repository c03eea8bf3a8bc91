#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "session/profile.h"

namespace session {

/// Returns the source that "prompt", "file:PATH" or "fd:N" names, or nothing for any other text.
[[nodiscard]] std::optional<SecretSource> secretSourceIn(std::string_view text);

/// Returns a copy that is in heap memory, which is cleared when it is released. A short text would
/// otherwise be inside the string object, where nobody clears it.
[[nodiscard]] std::string secretCopy(std::string_view secret);

}  // namespace session
