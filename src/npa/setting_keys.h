#pragma once

#include <cstdint>
#include <utility>
#include <vector>

/// The numbers of the adapter's settings.
namespace npa {

using Byte = std::uint8_t;
using Bytes = std::vector<Byte>;

// The groups of settings.

/// The adapter itself: its descriptor and its reset.
inline constexpr Byte GroupAdapter = 0x06;
/// The adapter's address in the network.
inline constexpr Byte GroupNetworkAddress = 0x0A;
/// The wireless network, its security and its keys.
inline constexpr Byte GroupWireless = 0x28;
/// 802.1x authentication and the adapter's certificates.
inline constexpr Byte Group8021x = 0x2A;

/// Identifies one setting of the adapter: its group, and its object number in that group.
struct SettingKey {
  Byte group;
  Byte object;

  bool operator==(const SettingKey&) const = default;
  friend bool operator<(SettingKey a, SettingKey b) {
    return std::pair(a.group, a.object) < std::pair(b.group, b.object);
  }
};

/// The settings that the code knows, ordered by group and object number. The columns are the group
/// and the object number.
namespace settings {

inline constexpr SettingKey Reset = {GroupAdapter, 0x14};
inline constexpr SettingKey Descriptor = {GroupAdapter, 0x1F};
inline constexpr SettingKey IpAddress = {GroupNetworkAddress, 0x02};
inline constexpr SettingKey Mode = {GroupWireless, 0x02};
inline constexpr SettingKey Channel = {GroupWireless, 0x05};
inline constexpr SettingKey Ssid = {GroupWireless, 0x08};
inline constexpr SettingKey WepKey1 = {GroupWireless, 0x09};
inline constexpr SettingKey WepKey2 = {GroupWireless, 0x0B};
inline constexpr SettingKey WepKey3 = {GroupWireless, 0x0D};
inline constexpr SettingKey WepKey4 = {GroupWireless, 0x0F};
inline constexpr SettingKey PreSharedKey = {GroupWireless, 0x11};
inline constexpr SettingKey TroubleCode = {GroupWireless, 0x15};
inline constexpr SettingKey WepTransmit = {GroupWireless, 0x1F};
inline constexpr SettingKey Security = {GroupWireless, 0x22};
inline constexpr SettingKey WepAuth = {GroupWireless, 0x23};
inline constexpr SettingKey Encryption = {GroupWireless, 0x26};
inline constexpr SettingKey AuthUser = {Group8021x, 0x02};
inline constexpr SettingKey AuthPassword = {Group8021x, 0x03};
inline constexpr SettingKey CertOrganization = {Group8021x, 0x06};
inline constexpr SettingKey CertUnit = {Group8021x, 0x07};
inline constexpr SettingKey CertState = {Group8021x, 0x08};
inline constexpr SettingKey CertCountry = {Group8021x, 0x09};
inline constexpr SettingKey CertCommonName = {Group8021x, 0x0A};
inline constexpr SettingKey CertCity = {Group8021x, 0x0B};
inline constexpr SettingKey CertGenerate = {Group8021x, 0x0C};
inline constexpr SettingKey CertGenerateStatus = {Group8021x, 0x0D};
inline constexpr SettingKey CertRequest = {Group8021x, 0x0E};
inline constexpr SettingKey Certificate = {Group8021x, 0x0F};
inline constexpr SettingKey CaCertificate = {Group8021x, 0x10};
inline constexpr SettingKey CaInstalled = {Group8021x, 0x11};
inline constexpr SettingKey CertSignRequest = {Group8021x, 0x12};
inline constexpr SettingKey AuthEnabled = {Group8021x, 0x13};
inline constexpr SettingKey MethodMd5 = {Group8021x, 0x14};
inline constexpr SettingKey MethodMsChapV2 = {Group8021x, 0x15};
inline constexpr SettingKey MethodLeap = {Group8021x, 0x16};
inline constexpr SettingKey MethodPeap = {Group8021x, 0x17};
inline constexpr SettingKey MethodTls = {Group8021x, 0x18};
inline constexpr SettingKey MethodTtls = {Group8021x, 0x19};
inline constexpr SettingKey InnerAuth = {Group8021x, 0x1A};
inline constexpr SettingKey AuthCommonName = {Group8021x, 0x1B};
inline constexpr SettingKey CertAlternateName = {Group8021x, 0x1C};
inline constexpr SettingKey AuthStatus = {Group8021x, 0x1D};
inline constexpr SettingKey ValidateCert = {Group8021x, 0x24};
inline constexpr SettingKey AllSecurity = {Group8021x, 0x25};
inline constexpr SettingKey CertFriendlyName = {Group8021x, 0x27};

}  // namespace settings

}  // namespace npa
