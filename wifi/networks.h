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

/// The largest number of networks that the guide offers.
inline constexpr std::size_t MostNetworks = 9;

/// Reads the output of `nmcli -t -f IN-USE,SSID,SECURITY,SIGNAL device wifi list`: one network per
/// line, with ":" between the fields. In a field, "\" precedes each ":" and each "\". Skips lines
/// that do not have these four fields, and networks whose names the adapter cannot take. Returns at
/// most `MostNetworks` networks and each name only once. This computer's network comes first. The
/// other networks are sorted by their signal, the strongest first.
[[nodiscard]] std::vector<Network> parseNetworks(std::string_view text);

/// Asks nmcli for the networks in reach. Returns an empty list if nmcli is not installed, fails,
/// takes more than 5 s, or writes more than 64 KiB. Throws `Interrupted`.
[[nodiscard]] std::vector<Network> visibleNetworks();

}  // namespace wifi
