#pragma once

#include <cstddef>
#include <optional>
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
  /// Whether the object's length field holds only the low byte of the value's size.
  bool sizeIsLowByte = false;
};

namespace settings {

inline constexpr SettingKey Reset = {npa::GroupAdapter, 0x14};
inline constexpr SettingKey Descriptor = {npa::GroupAdapter, 0x1F};
inline constexpr SettingKey IpAddress = {npa::GroupNetworkAddress, 0x02};
inline constexpr SettingKey Mode = {npa::GroupWireless, 0x02};
inline constexpr SettingKey Channel = {npa::GroupWireless, 0x05};
inline constexpr SettingKey Ssid = {npa::GroupWireless, 0x08};
inline constexpr SettingKey WepKey1 = {npa::GroupWireless, 0x09};
inline constexpr SettingKey WepKey2 = {npa::GroupWireless, 0x0B};
inline constexpr SettingKey WepKey3 = {npa::GroupWireless, 0x0D};
inline constexpr SettingKey WepKey4 = {npa::GroupWireless, 0x0F};
inline constexpr SettingKey PreSharedKey = {npa::GroupWireless, 0x11};
inline constexpr SettingKey TroubleCode = {npa::GroupWireless, 0x15};
inline constexpr SettingKey WepTransmit = {npa::GroupWireless, 0x1F};
inline constexpr SettingKey Security = {npa::GroupWireless, 0x22};
inline constexpr SettingKey WepAuth = {npa::GroupWireless, 0x23};
inline constexpr SettingKey Encryption = {npa::GroupWireless, 0x26};
inline constexpr SettingKey AuthUser = {npa::Group8021x, 0x02};
inline constexpr SettingKey AuthPassword = {npa::Group8021x, 0x03};
inline constexpr SettingKey CertOrganization = {npa::Group8021x, 0x06};
inline constexpr SettingKey CertUnit = {npa::Group8021x, 0x07};
inline constexpr SettingKey CertState = {npa::Group8021x, 0x08};
inline constexpr SettingKey CertCountry = {npa::Group8021x, 0x09};
inline constexpr SettingKey CertCommonName = {npa::Group8021x, 0x0A};
inline constexpr SettingKey CertCity = {npa::Group8021x, 0x0B};
inline constexpr SettingKey CertGenerate = {npa::Group8021x, 0x0C};
inline constexpr SettingKey CertGenerateStatus = {npa::Group8021x, 0x0D};
inline constexpr SettingKey CertRequest = {npa::Group8021x, 0x0E};
inline constexpr SettingKey Certificate = {npa::Group8021x, 0x0F};
inline constexpr SettingKey CaCertificate = {npa::Group8021x, 0x10};
inline constexpr SettingKey CaInstalled = {npa::Group8021x, 0x11};
inline constexpr SettingKey CertSignRequest = {npa::Group8021x, 0x12};
inline constexpr SettingKey AuthEnabled = {npa::Group8021x, 0x13};
inline constexpr SettingKey MethodMd5 = {npa::Group8021x, 0x14};
inline constexpr SettingKey MethodMsChapV2 = {npa::Group8021x, 0x15};
inline constexpr SettingKey MethodLeap = {npa::Group8021x, 0x16};
inline constexpr SettingKey MethodPeap = {npa::Group8021x, 0x17};
inline constexpr SettingKey MethodTls = {npa::Group8021x, 0x18};
inline constexpr SettingKey MethodTtls = {npa::Group8021x, 0x19};
inline constexpr SettingKey InnerAuth = {npa::Group8021x, 0x1A};
inline constexpr SettingKey AuthCommonName = {npa::Group8021x, 0x1B};
inline constexpr SettingKey CertAlternateName = {npa::Group8021x, 0x1C};
inline constexpr SettingKey AuthStatus = {npa::Group8021x, 0x1D};
inline constexpr SettingKey ValidateCert = {npa::Group8021x, 0x24};
inline constexpr SettingKey AllSecurity = {npa::Group8021x, 0x25};
inline constexpr SettingKey CertFriendlyName = {npa::Group8021x, 0x27};

}  // namespace settings

/// All that is known of settings, in the order of their numbers.
std::span<const SettingInfo> settingCatalogue();

/// The name of a group of settings, empty for one that is not known.
std::string_view groupName(npa::Byte group);

/// Returns what is known of a setting, or null.
const SettingInfo* findSetting(SettingKey key);

/// Whether a setting's value must not be shown: keys and passwords, and whatever is not known.
bool isSecret(SettingKey key);

/// A text without the zero bytes that end it.
std::span<const npa::Byte> withoutTerminator(std::span<const npa::Byte> value);

/// The number in a value of one to four bytes; nothing for any other.
std::optional<std::size_t> numberOf(std::span<const npa::Byte> value);

/// The bytes of an address with points between them.
std::string addressText(std::span<const npa::Byte> value);

/// The setting and its value in words, such as `channel = 6`, `SSID = "home"` or, masked,
/// `pre-shared key = (8 bytes)`.
std::string describeSetting(SettingKey key, std::span<const npa::Byte> value, bool showSecrets);

}  // namespace emulator
