#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/profile.h"

namespace wifi {

/// A wireless network that this computer sees.
struct Network {
  std::string ssid;
  std::optional<session::Security> security;  ///< empty if it is unknown or not supported
  bool needsWpa3 = false;                     ///< true if the adapter cannot join the network
  bool isOwn = false;                         ///< true if this computer is in the network
  int signal = 0;                             ///< the strength in percent

  bool operator==(const Network&) const = default;
};

/// The most networks that the guide offers.
inline constexpr std::size_t MostNetworks = 9;

/// Reads the output of `nmcli -t -f IN-USE,SSID,SECURITY,SIGNAL device wifi list`: one network per
/// line, with ":" between the fields. In a field, "\" precedes each ":" and each "\". Skips lines
/// that have another form, and networks whose names the adapter cannot take. Returns each name
/// once, this computer's network first and then the strongest ones.
[[nodiscard]] std::vector<Network> parseNetworks(std::string_view text);

/// Asks nmcli for the networks in reach. Returns none if there is no nmcli, or if it fails, takes
/// more than 5 s, or writes more than 64 KiB. Throws `Interrupted`.
[[nodiscard]] std::vector<Network> visibleNetworks();

}  // namespace wifi
