#pragma once

#include <optional>
#include <string_view>

#include "session/profile.h"

namespace session {

/// Returns the source that `text` names: "prompt", "file:PATH" or "fd:N". Returns nothing if the
/// text has another form.
[[nodiscard]] std::optional<SecretSource> secretSourceIn(std::string_view text);

}  // namespace session
