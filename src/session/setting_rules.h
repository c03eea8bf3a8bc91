#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "session/profile.h"

namespace session {

/// A word that is refused, and the text that says what is expected instead.
struct RefusedWord {
  std::string_view word;
  const char* expected;
};

/// One setting: its key, the values that it accepts, and where the value is stored. The rows are in
/// setting_rules.cpp.
struct SettingRule {
  std::string_view key;
  /// Identifies what the setting sets. Settings with the same place exclude each other. The default
  /// is the key.
  std::string_view place = key;
  /// What is allowed, as a message to translate.
  const char* expected;
  /// The allowed words (fixed values), in lower case. A given word may have upper-case letters.
  /// Empty if any text is allowed.
  std::span<const std::string_view> words = {};
  /// Wrong words for which `RefusedWord::expected` replaces `expected`.
  std::span<const RefusedWord> refused = {};
  /// The largest size of a text in bytes. Used only by `storeText` in setting_rules.cpp.
  std::size_t limit = 0;
  /// True if a wrong value may be a secret. Errors then do not show the value.
  bool hidesValue = false;
  /// True if the value is a secret. Only a private settings file may contain it.
  bool isSecret = false;
  /// Stores the value, or returns false if it is not allowed.
  bool (*store)(const SettingRule& rule, std::string_view value, ProfileReader::Draft& draft);
};

/// Returns all rules.
[[nodiscard]] std::span<const SettingRule> settingRules();

/// Returns the rule of a key, or null.
[[nodiscard]] const SettingRule* findRule(std::string_view key);

/// Returns the keys that an option may have, as a list for errors.
[[nodiscard]] const char* keysOfOptions();
/// Returns the keys that a settings file may contain, as a list for errors.
[[nodiscard]] const char* keysOfFiles();

/// Stores a value. Throws `ProfileError` if it is not allowed.
void storeSetting(const SettingRule& rule, std::string_view value, const std::string& subject,
                  ProfileReader::Draft& draft);

}  // namespace session
