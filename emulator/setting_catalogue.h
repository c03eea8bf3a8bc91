#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "npa/packet.h"

namespace emulator {

/// What identifies one setting of the adapter.
struct SettingKey {
  npa::Byte group;
  npa::Byte object;

  bool operator==(const SettingKey&) const = default;
  friend bool operator<(SettingKey a, SettingKey b) {
    return std::pair(a.group, a.object) < std::pair(b.group, b.object);
  }
};

/// What the emulated adapter knows of one setting.
struct SettingInfo {
  enum class Kind { Text, Number, Flag, Address };

  SettingKey key;
  std::string_view name;
  Kind kind;
  bool secret;
  /// What the numbers from 0 on mean, where they are names.
  std::span<const std::string_view> numberNames;
};

namespace settings {

inline constexpr SettingKey Reset = {npa::GroupAdapter, 0x14};
inline constexpr SettingKey Descriptor = {npa::GroupAdapter, 0x1F};
inline constexpr SettingKey IpAddress = {npa::GroupNetworkAddress, 0x02};
inline constexpr SettingKey Mode = {npa::GroupWireless, 0x02};
inline constexpr SettingKey Channel = {npa::GroupWireless, 0x05};
inline constexpr SettingKey Ssid = {npa::GroupWireless, 0x08};
inline constexpr SettingKey WepKey1 = {npa::GroupWireless, 0x09};
inline constexpr SettingKey PreSharedKey = {npa::GroupWireless, 0x11};
inline constexpr SettingKey TroubleCode = {npa::GroupWireless, 0x15};
inline constexpr SettingKey Security = {npa::GroupWireless, 0x22};
inline constexpr SettingKey CaInstalled = {npa::Group8021x, 0x11};
inline constexpr SettingKey AuthEnabled = {npa::Group8021x, 0x13};
inline constexpr SettingKey AuthCommonName = {npa::Group8021x, 0x1B};
inline constexpr SettingKey AuthStatus = {npa::Group8021x, 0x1D};
inline constexpr SettingKey AllSecurity = {npa::Group8021x, 0x25};

}  // namespace settings

/// Returns what is known of a setting, or null.
const SettingInfo* findSetting(SettingKey key);

/// Whether a setting's value must not be shown: keys and passwords, and whatever is not known.
bool isSecret(SettingKey key);

/// The setting and its value in words, such as `channel = 6`, `SSID = "home"` or, masked,
/// `pre-shared key = (8 bytes)`.
std::string describeSetting(SettingKey key, std::span<const npa::Byte> value, bool showSecrets);

}  // namespace emulator
