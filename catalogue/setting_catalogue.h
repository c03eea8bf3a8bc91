#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "npa/setting_keys.h"

namespace catalogue {

/// One setting: its name, and the form in which its value is shown. The emulated printer, the
/// decoder and the Wireshark dissector use the same table of settings.
struct SettingInfo {
  enum class Kind { Text, Number, Flag, Address };

  npa::SettingKey key;
  std::string_view name;
  Kind kind;
  bool secret;  ///< a key or a password: masked in logs and reports
  /// The meanings of the numbers 0, 1, 2 and so on. Empty if the numbers have no meanings.
  std::span<const std::string_view> numberNames;
  /// True if the size field holds only the low byte of the value's size.
  bool sizeIsLowByte = false;
};

/// Returns all known settings, ordered by group and object.
std::span<const SettingInfo> settingCatalogue();

/// Returns the name of a group of settings, or an empty text for an unknown group.
std::string_view groupName(npa::Byte group);

/// Returns "text", "number", "flag" or "address".
std::string_view kindName(SettingInfo::Kind kind);

/// Returns the row of a setting, or null for an unknown setting.
const SettingInfo* findSetting(npa::SettingKey key);

/// Returns true if a setting's value must be masked: the setting is a key or a password, or it is
/// unknown.
bool isSecret(npa::SettingKey key);

/// Returns the value of a text setting without the zero bytes at its end.
std::span<const npa::Byte> withoutTerminator(std::span<const npa::Byte> value);

/// Returns the number in a value of 1 to 4 bytes, or nothing for a value of another size.
std::optional<std::size_t> numberOf(std::span<const npa::Byte> value);

/// Returns the bytes of an address as "192.168.1.20".
std::string addressText(std::span<const npa::Byte> value);

/// Returns a setting and its value as text, such as `channel = 6` or `SSID = "home"`. Unless
/// `showSecrets` is set, a secret value shows only its size: `pre-shared key = (8 bytes)`.
std::string describeSetting(npa::SettingKey key, std::span<const npa::Byte> value,
                            bool showSecrets);

}  // namespace catalogue
