// The settings of a profile: which values each of them accepts, and where the value is stored.

#include "session/setting_rules.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "session/profile_words.h"
#include "session/secret_source.h"
#include "session/texts.h"
#include "session/translatable.h"
#include "session/words.h"
#include "util/decimal.h"

namespace session {

namespace {

using Draft = ProfileReader::Draft;

struct SecurityName {
  std::string_view word;
  Security security;
};
constexpr auto SecurityNames = std::to_array<SecurityName>({
    {"open", Security::Open},
    {"wep", Security::Wep},
    {"wpa", Security::Wpa},
    {"wpa2", Security::Wpa},
    {"wpa-personal", Security::Wpa},
    {"802.1x", Security::Enterprise},
    {"wpa-enterprise", Security::Enterprise},
    {"eap", Security::Enterprise},
});
constexpr auto SecurityWords = [] {
  std::array<std::string_view, SecurityNames.size()> words;
  std::ranges::transform(SecurityNames, words.begin(), &SecurityName::word);
  return words;
}();

constexpr const char* NoWpa3 =
    translatable("open, wep, wpa or 802.1x (the adapter does not support WPA3)");
constexpr auto RefusedSecurities = std::to_array<RefusedWord>({
    {"wpa3", NoWpa3},
    {"wpa3-personal", NoWpa3},
    {"wpa3-enterprise", NoWpa3},
    {"sae", NoWpa3},
    {"none", translatable("open, wep, wpa or 802.1x (a network without security is \"open\", not "
                          "\"none\")")},
});

constexpr auto Modes = std::to_array<std::string_view>({"infrastructure", "ad-hoc"});
constexpr auto Channels =
    std::to_array<std::string_view>({"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"});

constexpr std::string_view ListSeparators = ", \t|";

template <std::string Profile::*Member>
bool storeText(const SettingRule& rule, std::string_view value, Draft& draft) {
  // The adapter takes a zero byte for the end of a text.
  if (value.empty() || value.size() > rule.limit || value.find('\0') != std::string_view::npos) {
    return false;
  }
  draft.profile.*Member = value;
  return true;
}

template <void (*Assign)(Profile& profile, std::string_view word)>
bool storeWord(const SettingRule& rule, std::string_view value, Draft& draft) {
  const std::string_view word = wordIn(rule.words, value);
  if (word.empty()) {
    return false;
  }
  Assign(draft.profile, word);
  return true;
}

template <std::string Profile::*Member>
void assign(Profile& profile, std::string_view word) {
  profile.*Member = word;
}

void assignSecurity(Profile& profile, std::string_view word) {
  profile.security = std::ranges::find(SecurityNames, word, &SecurityName::word)->security;
}

void assignMode(Profile& profile, std::string_view word) {
  profile.adHoc = word == "ad-hoc";
}

void assignChannel(Profile& profile, std::string_view word) {
  profile.channel = util::toInt(word);
}

/// Stores each method once, in the given order.
bool storeEapMethods(const SettingRule& rule, std::string_view value, Draft& draft) {
  std::vector<std::string> methods;
  while (!value.empty()) {
    const std::string_view word = value.substr(0, value.find_first_of(ListSeparators));
    value.remove_prefix(std::min(word.size() + 1, value.size()));
    if (word.empty()) {
      continue;
    }
    const std::string_view method = wordIn(rule.words, word);
    if (method.empty()) {
      return false;
    }
    if (std::ranges::find(methods, method) == methods.end()) {
      methods.emplace_back(method);
    }
  }
  if (methods.empty()) {
    return false;
  }
  draft.profile.eapMethods = std::move(methods);
  return true;
}

bool storeSource(const SettingRule& /*rule*/, std::string_view value, Draft& draft) {
  std::optional<SecretSource> source = secretSourceIn(value);
  if (!source) {
    return false;
  }
  draft.source = std::move(*source);
  return true;
}

bool storeSecret(const SettingRule& /*rule*/, std::string_view value, Draft& draft) {
  draft.source = SecretSource{.kind = SecretSource::Kind::Inline, .secret = Secret(value)};
  return true;
}

constexpr std::array Rules = {
    SettingRule{.key = "ssid",
                .expected = translatable("a network name of 1 to 32 bytes"),
                .limit = 32,
                .store = storeText<&Profile::ssid>},
    SettingRule{.key = "security",
                .expected = translatable("open, wep, wpa or 802.1x"),
                .words = SecurityWords,
                .refused = RefusedSecurities,
                .store = storeWord<assignSecurity>},
    SettingRule{.key = "mode",
                .expected = translatable("infrastructure or ad-hoc"),
                .words = Modes,
                .store = storeWord<assignMode>},
    SettingRule{.key = "channel",
                .expected = translatable("a number from 1 to 11"),
                .words = Channels,
                .store = storeWord<assignChannel>},
    SettingRule{.key = "encryption",
                .expected = translatable("auto, tkip, aes, wep-dynamic or wep-static"),
                .words = profile_words::InProfile<profile_words::Encryptions>,
                .store = storeWord<assign<&Profile::encryption>>},
    SettingRule{.key = "wep-auth",
                .expected = translatable("open or shared"),
                .words = profile_words::InProfile<profile_words::WepAuths>,
                .store = storeWord<assign<&Profile::wepAuth>>},
    SettingRule{.key = "user",
                .expected = translatable("a user name of 1 to 31 bytes"),
                .limit = 31,
                .store = storeText<&Profile::user>},
    SettingRule{.key = "eap",
                .expected = translatable("a list of md5, mschapv2, leap, peap, tls and ttls"),
                .words = profile_words::InProfile<profile_words::EapMethods>,
                .store = storeEapMethods},
    SettingRule{.key = "inner",
                .expected = translatable("chap, mschap, mschapv2 or pap"),
                .words = profile_words::InProfile<profile_words::InnerMethods>,
                .store = storeWord<assign<&Profile::innerMethod>>},
    SettingRule{.key = "password-from",
                .expected = translatable("prompt, file:PATH or fd:N"),
                .hidesValue = true,
                .store = storeSource},
    SettingRule{.key = "password",
                .place = "password-from",
                .expected = translatable("--password-from=prompt, --password-from=file:PATH or "
                                         "--password-from=fd:N (other users can see an argument)"),
                .hidesValue = true,
                .isSecret = true,
                .store = storeSecret},
};

std::string keyList(bool withSecret) {
  std::string list;
  for (const SettingRule& rule : Rules) {
    if (withSecret || !rule.isSecret) {
      list.append(list.empty() ? "" : ", ").append(rule.key);
    }
  }
  return list;
}

}  // namespace

std::span<const SettingRule> settingRules() {
  return Rules;
}

const SettingRule* findRule(std::string_view key) {
  const auto* const rule = std::ranges::find(Rules, key, &SettingRule::key);
  return rule == Rules.end() ? nullptr : rule;
}

const char* keysOfOptions() {
  static const std::string keys = keyList(false);
  return keys.c_str();
}

const char* keysOfFiles() {
  static const std::string keys = keyList(true);
  return keys.c_str();
}

void storeSetting(const SettingRule& rule, std::string_view value, const std::string& subject,
                  ProfileReader::Draft& draft) {
  if (rule.store(rule, value, draft)) {
    return;
  }
  const auto refused = std::ranges::find(rule.refused, lowerCase(value), &RefusedWord::word);
  throw ProfileError(subject, rule.hidesValue ? "" : std::string(value),
                     refused == rule.refused.end() ? rule.expected : refused->expected);
}

}  // namespace session
