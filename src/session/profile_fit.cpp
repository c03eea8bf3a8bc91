// Which settings need each other, and which exclude each other.

#include <algorithm>
#include <array>

#include "session/profile.h"
#include "session/setting_rules.h"
#include "session/translatable.h"

namespace session {

namespace {

/// A setting that some profiles need.
struct NeededSetting {
  std::string_view key;
  bool (*isNeeded)(const Profile& profile);
};

bool always(const Profile& /*profile*/) {
  return true;
}

bool isEnterprise(const Profile& profile) {
  return profile.security == Security::Enterprise;
}

constexpr std::array NeededSettings = {
    NeededSetting{"ssid", always},
    NeededSetting{"security", always},
    NeededSetting{"user", isEnterprise},
    NeededSetting{"eap", isEnterprise},
};

/// A setting that only some profiles may have.
struct FitRule {
  std::string_view key;
  bool (*fits)(const Profile& profile);
  const char* expected;
};

bool hasEncryption(const Profile& profile) {
  return profile.security == Security::Wpa || isEnterprise(profile);
}

bool isWpaEncryption(const Profile& profile) {
  return isEnterprise(profile) || !profile.encryption.starts_with("wep-");
}

bool hasInnerMethod(const Profile& profile) {
  return std::ranges::any_of(profile.eapMethods, [](const std::string& method) {
    return method == "peap" || method == "ttls";
  });
}

constexpr const char* OnlyEnterprise = translatable("no value unless security=802.1x");

constexpr std::array FitRules = {
    // 802.1x needs an access point, because the access point asks the authentication server. An
    // ad-hoc network has no access point.
    FitRule{"mode", [](const Profile& profile) { return !profile.adHoc || !isEnterprise(profile); },
            translatable("infrastructure, because security=802.1x")},
    FitRule{"channel", [](const Profile& profile) { return profile.adHoc; },
            translatable("no value unless mode=ad-hoc")},
    FitRule{"encryption", hasEncryption,
            translatable("no value unless security=wpa or security=802.1x")},
    FitRule{"encryption", isWpaEncryption,
            translatable("auto, tkip or aes unless security=802.1x")},
    FitRule{"wep-auth", [](const Profile& profile) { return profile.security == Security::Wep; },
            translatable("no value unless security=wep")},
    FitRule{"user", isEnterprise, OnlyEnterprise},
    FitRule{"eap", isEnterprise, OnlyEnterprise},
    FitRule{"inner", isEnterprise, OnlyEnterprise},
    FitRule{"inner", hasInnerMethod, translatable("no value unless eap has peap or ttls")},
};

}  // namespace

Profile ProfileReader::finish() const {
  requireComplete();
  requireFit();
  requireSecretFits();
  return m_Draft.profile;
}

void ProfileReader::refuse(std::string_view place, const char* expected) const {
  const Given& given = m_Given.at(place);
  throw ProfileError(given.subject, given.value, expected);
}

void ProfileReader::requireComplete() const {
  for (const NeededSetting& setting : NeededSettings) {
    if (setting.isNeeded(m_Draft.profile) && !m_Given.contains(setting.key)) {
      const std::string option = "--" + std::string(setting.key);
      throw ProfileError(option, "", findRule(setting.key)->expected);
    }
  }
}

void ProfileReader::requireFit() const {
  for (const FitRule& rule : FitRules) {
    if (m_Given.contains(rule.key) && !rule.fits(m_Draft.profile)) {
      refuse(rule.key, rule.expected);
    }
  }
}

void ProfileReader::requireSecretFits() const {
  constexpr std::string_view place = "password-from";
  const SecretSource& source = m_Draft.source;
  if (!m_Given.contains(place)) {
    return;
  }
  if (!needsSecret(m_Draft.profile)) {
    refuse(place, translatable("no password, because these settings need none"));
  }
  if (source.kind == SecretSource::Kind::Inline) {
    if (const char* const expected = checkSecret(m_Draft.profile, source.secret.text())) {
      refuse(place, expected);
    }
  }
}

}  // namespace session
