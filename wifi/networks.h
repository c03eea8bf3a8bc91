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
  bool needsWpa3 = false;                     ///< the adapter cannot join it
  bool isOwn = false;                         ///< this computer is in it
  int signal = 0;                             ///< percent

  bool operator==(const Network&) const = default;
};

/// At most so many networks are offered.
inline constexpr std::size_t MostNetworks = 9;

/// Reads the output of `nmcli -t -f IN-USE,SSID,SECURITY,SIGNAL device wifi list`: one network a
/// line, with ":" between the fields and "\" before ":" and "\" in them. Skips lines that have
/// another form and names that the adapter cannot take. Returns each name once, this computer's
/// network first and then the strongest ones.
[[nodiscard]] std::vector<Network> parseNetworks(std::string_view text);

/// Asks nmcli for the networks in reach. Returns none if there is no nmcli, or if it fails, takes
/// more than 5 s, or writes more than 64 KiB. Throws `Interrupted`.
[[nodiscard]] std::vector<Network> visibleNetworks();

}  // namespace wifi
