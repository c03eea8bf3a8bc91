// The networks in the output of nmcli.

#include "wifi/networks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <tuple>

namespace wifi {

namespace {

using session::Security;

constexpr std::size_t Fields = 4;
constexpr std::size_t LongestSsid = 32;
/// nmcli writes this character for a byte that is not UTF-8. The real bytes of the name are then
/// unknown.
constexpr std::string_view ReplacementCharacter = "\xEF\xBF\xBD";

/// Removes the text up to and including the first `end` from `text`, or the whole text if there is
/// no `end`. Returns the removed text without `end`.
std::string_view takeUntil(std::string_view& text, char end) {
  const std::string_view taken = text.substr(0, text.find(end));
  text.remove_prefix(std::min(taken.size() + 1, text.size()));
  return taken;
}

std::vector<std::string> fieldsOf(std::string_view line) {
  std::vector<std::string> fields(1);
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == ':') {
      fields.emplace_back();
      continue;
    }
    if (line[i] == '\\' && i + 1 < line.size()) {
      ++i;
    }
    fields.back().push_back(line[i]);
  }
  return fields;
}

/// Returns true if the adapter can take this name of a network. A hidden network has the name "" or
/// "--".
bool isUsable(std::string_view ssid) {
  return !ssid.empty() && ssid != "--" && ssid.size() <= LongestSsid &&
         ssid.find('\0') == std::string_view::npos &&
         ssid.find(ReplacementCharacter) == std::string_view::npos;
}

void readSecurity(std::string_view words, Network& network) {
  const bool isOpen = words.find_first_not_of(" -") == std::string_view::npos;
  bool wep = false;
  bool wpa = false;
  bool wpa3 = false;
  bool enterprise = false;
  bool openToo = false;
  while (!words.empty()) {
    const std::string_view word = takeUntil(words, ' ');
    wep |= word == "WEP";
    wpa |= word == "WPA" || word == "WPA1" || word == "WPA2";
    wpa3 |= word == "WPA3" || word == "OWE";
    enterprise |= word == "802.1X";
    // Opportunistic encryption in its transition mode: older devices join without encryption.
    openToo |= word == "OWE-TM";
  }
  if (wpa3 && !wpa) {
    network.needsWpa3 = true;
  } else if (enterprise) {
    network.security = Security::Enterprise;
  } else if (wpa) {
    network.security = Security::Wpa;
  } else if (wep) {
    network.security = Security::Wep;
  } else if (isOpen || openToo) {
    network.security = Security::Open;
  }
}

std::optional<Network> networkIn(std::string_view line) {
  const std::vector<std::string> fields = fieldsOf(line);
  if (fields.size() != Fields || !isUsable(fields[1])) {
    return std::nullopt;
  }
  Network network;
  network.isOwn = fields[0] == "*";
  network.ssid = fields[1];
  readSecurity(fields[2], network);
  std::from_chars(fields[3].data(), fields[3].data() + fields[3].size(), network.signal);
  return network;
}

/// Adds `other`, another access point of the same network. The adapter needs only one access point
/// that it can join.
void join(Network& network, const Network& other) {
  network.isOwn |= other.isOwn;
  network.signal = std::max(network.signal, other.signal);
  if (network.needsWpa3 && !other.needsWpa3) {
    network.security = other.security;
    network.needsWpa3 = false;
  }
}

}  // namespace

std::vector<Network> parseNetworks(std::string_view text) {
  std::vector<Network> networks;
  while (!text.empty()) {
    const auto network = networkIn(takeUntil(text, '\n'));
    if (!network) {
      continue;
    }
    const auto known = std::ranges::find(networks, network->ssid, &Network::ssid);
    if (known == networks.end()) {
      networks.push_back(*network);
    } else {
      join(*known, *network);
    }
  }
  std::ranges::stable_sort(networks, std::ranges::greater(), [](const Network& network) {
    return std::tuple(network.isOwn, network.signal);
  });
  networks.resize(std::min(networks.size(), MostNetworks));
  return networks;
}

}  // namespace wifi
