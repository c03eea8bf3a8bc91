#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "npa/setting_keys.h"

namespace catalogue {

/// What the emulated adapter knows of one setting.
struct SettingInfo {
  enum class Kind { Text, Number, Flag, Address };

  npa::SettingKey key;
  std::string_view name;
  Kind kind;
  bool secret;
  /// What the numbers from 0 on mean, where they are names.
  std::span<const std::string_view> numberNames;
  /// Whether the object's length field holds only the low byte of the value's size.
  bool sizeIsLowByte = false;
};

/// All that is known of settings, in the order of their numbers.
std::span<const SettingInfo> settingCatalogue();

/// The name of a group of settings, empty for one that is not known.
std::string_view groupName(npa::Byte group);

/// "text", "number", "flag" or "address".
std::string_view kindName(SettingInfo::Kind kind);

/// Returns what is known of a setting, or null.
const SettingInfo* findSetting(npa::SettingKey key);

/// Whether a setting's value must not be shown: keys and passwords, and whatever is not known.
bool isSecret(npa::SettingKey key);

/// A text without the zero bytes that end it.
std::span<const npa::Byte> withoutTerminator(std::span<const npa::Byte> value);

/// The number in a value of one to four bytes; nothing for any other.
std::optional<std::size_t> numberOf(std::span<const npa::Byte> value);

/// The bytes of an address with points between them.
std::string addressText(std::span<const npa::Byte> value);

/// The setting and its value in words, such as `channel = 6`, `SSID = "home"` or, masked,
/// `pre-shared key = (8 bytes)`.
std::string describeSetting(npa::SettingKey key, std::span<const npa::Byte> value,
                            bool showSecrets);

}  // namespace catalogue
