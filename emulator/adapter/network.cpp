// Compares the stored settings with the networks in reach.

#include "emulator/adapter/network.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace emulator {

namespace {

namespace settings = npa::settings;

/// A value of the setting "security", and the setting that holds the key for this security.
struct KeyRow {
  std::size_t security;
  npa::SettingKey key;
};

constexpr std::size_t OpenNetwork = 0;
constexpr std::array Keys = {
    KeyRow{1, settings::WepKey1},
    KeyRow{2, settings::PreSharedKey},
    KeyRow{3, settings::AuthPassword},
    KeyRow{4, settings::PreSharedKey},
};

/// The settings that select a network or its key.
constexpr std::array NetworkSettings = {settings::Ssid, settings::Security, settings::WepKey1,
                                        settings::PreSharedKey, settings::AuthPassword};

/// Returns true if the network accepts the stored security and the stored key.
bool accepts(const Network& network, const SettingsStore& store) {
  const std::size_t security = store.number(settings::Security).value_or(OpenNetwork);
  if (security == OpenNetwork) {
    return network.key.empty();
  }
  const auto* const row = std::ranges::find(Keys, security, &KeyRow::security);
  return row != Keys.end() && !network.key.empty() && store.text(row->key) == network.key;
}

}  // namespace

Membership findNetwork(std::span<const Network> networks, const SettingsStore& store) {
  const std::string ssid = store.text(settings::Ssid);
  Membership found = Membership::NoSuchNetwork;
  for (const Network& network : networks) {
    if (network.ssid == ssid) {
      if (accepts(network, store)) {
        return Membership::Joined;
      }
      found = Membership::WrongKey;
    }
  }
  return found;
}

bool hasStoredNetwork(const SettingsStore& store) {
  return std::ranges::any_of(
      NetworkSettings, [&store](npa::SettingKey key) { return store.stored().contains(key); });
}

std::string_view membershipText(Membership membership) {
  switch (membership) {
    case Membership::Joined:
      return "in a network";
    case Membership::NoSuchNetwork:
      return "not in a network: no such SSID";
    case Membership::WrongKey:
      return "not in a network: wrong key or security";
    case Membership::CaMissing:
      return "not in a network: no CA certificate";
    case Membership::Refused:
      return "not in a network: authentication refused";
    case Membership::NoAddress:
      return "in a network without an address";
    case Membership::UnusableSettings:
      return "not in a network: unusable settings";
    case Membership::Joining:
      return "not in a network yet";
  }
  return {};
}

}  // namespace emulator
