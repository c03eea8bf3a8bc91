#pragma once

#include <array>
#include <string_view>

namespace npa {

/// The texts of the 802.1x authentication status. The index is the value of the setting
/// `settings::AuthStatus`. An adapter may send larger values, which have no text.
inline constexpr std::array<std::string_view, 12> AuthStatusTexts = {
    "802.1x not enabled",
    "NOT authenticated (deprecated)",
    "Authenticated",
    "Not Connected",
    "Server Cert Not Yet Valid",
    "Server Cert Expired",
    "Other Server Cert Verification Failure",
    "Client Cert Verification Failed",
    "EAP Type Mismatch",
    "Authentication Failed (general)",
    "Authentication in Progress",
    "CA Certificate Not Installed",
};

}  // namespace npa
