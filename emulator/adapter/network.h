#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/packet_reader.h"
#include "emulator/adapter/settings_store.h"

namespace emulator {

/// A wireless network in reach of the adapter.
struct Network {
  std::string ssid;
  std::string key;  ///< the WEP key, pre-shared key or 802.1x password; empty for an open network
};

/// Whether the adapter is in a network, or why not. The values are the trouble codes. Only the
/// emulated printer gives these meanings to the codes from 2 on; other adapters have other codes.
enum class Membership : npa::Byte {
  Joined = 0,
  NoSuchNetwork = 2,  ///< no network has the stored SSID
  WrongKey = 3,       ///< no network with this SSID accepts the stored key and security
  CaMissing = 4,      ///< 802.1x needs a CA certificate, and the printer has none
  // Only with a radio:
  Refused = 5,           ///< the 802.1x authentication failed
  NoAddress = 6,         ///< no DHCP server has answered
  UnusableSettings = 7,  ///< no network can be joined with the stored settings
  Joining = 8,           ///< the radio has no result yet
};

/// What a real radio has found out about the adapter's network.
struct LiveNetwork {
  Membership membership = Membership::NoSuchNetwork;
  npa::Byte authStatus = 0;  ///< the value of the setting "802.1x authentication status"
  std::array<npa::Byte, 4> address{};

  bool operator==(const LiveNetwork&) const = default;
};

/// Returns whether one of the networks has the stored SSID and accepts the stored security and key,
/// or why not. Does not check certificates.
Membership findNetwork(std::span<const Network> networks, const SettingsStore& settings);

/// Returns true if a host has stored a setting that selects a network or its key.
bool hasStoredNetwork(const SettingsStore& settings);

/// Returns a text for the log, such as "not in a network: no such SSID".
std::string_view membershipText(Membership membership);

}  // namespace emulator
