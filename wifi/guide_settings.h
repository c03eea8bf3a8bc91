#pragma once

#include <memory>
#include <string>

#include "session/profile.h"

namespace wifi {

/// Asks for the settings of a network, one after the other, and for the secret if the network needs
/// one. Returns the checked and complete settings. Throws `Interrupted` or `EndOfInput`.
[[nodiscard]] std::unique_ptr<session::Profile> askForProfile();

/// Returns the name that the questions use for a kind of security.
[[nodiscard]] std::string securityText(session::Security security);

}  // namespace wifi
