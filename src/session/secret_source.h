#pragma once

#include <optional>
#include <string_view>

#include "session/profile.h"

namespace session {

/// Returns the source that "prompt", "file:PATH" or "fd:N" names, or nothing for any other text.
[[nodiscard]] std::optional<SecretSource> secretSourceIn(std::string_view text);

}  // namespace session
