#pragma once

#include <memory>

#include "session/profile.h"
#include "wifi/arguments.h"

namespace wifi {

/// Returns the checked settings of the arguments and of their settings file, complete with the
/// secret. Asks for the secret if the arguments say so. The settings are in heap memory, because
/// the program clears heap memory when it frees it. Throws `session::ProfileError`, `SecretError`
/// or `Interrupted`.
[[nodiscard]] std::unique_ptr<session::Profile> readProfile(const Arguments& arguments);

}  // namespace wifi
