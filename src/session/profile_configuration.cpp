// Converts the settings of a profile to the texts that the encoders in src/wireless expect.

#include <algorithm>
#include <array>
#include <cstddef>

#include "session/profile.h"
#include "session/secret_source.h"

namespace session {

namespace {

/// A fixed value of a profile and the text that the encoder expects for it. The encoder compares
/// exactly.
struct Word {
  std::string_view profile;
  const char* encoder;
};

/// With "auto" no encryption is sent, and the adapter chooses.
constexpr std::array Encryptions = {
    Word{"auto", ""},
    Word{"tkip", "WPA-TKIP"},
    Word{"aes", "WPA-AES"},
    Word{"wep-dynamic", "WEP-DYNAMIC"},
    Word{"wep-static", "WEP-STATIC"},
};
constexpr std::array WepAuths = {Word{"open", "OPEN"}, Word{"shared", "SHARED"}};
constexpr std::array EapMethods = {
    Word{"md5", "EAP-MD5"}, Word{"mschapv2", "MSCHAPv2"}, Word{"leap", "LEAP"},
    Word{"peap", "PEAP"},   Word{"tls", "EAP-TLS"},       Word{"ttls", "EAP-TTLS"},
};
constexpr std::array InnerMethods = {
    Word{"", ""},
    Word{"chap", "CHAP"},
    Word{"mschap", "MSCHAP"},
    Word{"mschapv2", "MSCHAPv2"},
    Word{"pap", "PAP"},
};

template <std::size_t Count>
const char* encoderWord(const std::array<Word, Count>& words, std::string_view word) {
  const auto* const found = std::ranges::find(words, word, &Word::profile);
  return found == words.end() ? "" : found->encoder;
}

std::string encoderMethods(const std::vector<std::string>& methods) {
  std::string list;
  for (const std::string& method : methods) {
    list.append(list.empty() ? "" : "|").append(encoderWord(EapMethods, method));
  }
  return list;
}

void configureWep(const Profile& profile, configDetails& settings) {
  settings.set(Setting::Security, encoderWord(WepAuths, profile.wepAuth));
  settings.set(Setting::Encryption, "WEP");
  settings.set(Setting::WepKey1, profile.secret.text());
  settings.set(Setting::WepTransmit, "1");
}

void configureWpa(const Profile& profile, configDetails& settings) {
  settings.set(Setting::Security, "WPA-PER");
  settings.set(Setting::Encryption, encoderWord(Encryptions, profile.encryption));
  settings.set(Setting::Psk, profile.secret.text());
}

void configureEnterprise(const Profile& profile, configDetails& settings) {
  settings.set(Setting::Security, "802.1x");
  settings.set(Setting::Encryption, encoderWord(Encryptions, profile.encryption));
  settings.set(Setting::AuthExt, encoderMethods(profile.eapMethods));
  settings.set(Setting::AuthInner, encoderWord(InnerMethods, profile.innerMethod));
  settings.set(Setting::Username, profile.user);
  settings.set(Setting::Password, profile.secret.text());
}

}  // namespace

std::unique_ptr<configDetails> configurationOf(const Profile& profile, const std::string& device) {
  auto settings = std::make_unique<configDetails>();
  settings->set(Setting::Usb, device);
  settings->set(Setting::Ssid, profile.ssid);
  settings->set(Setting::Mode, profile.adHoc ? "Ad-Hoc" : "Managed");
  if (profile.channel) {
    settings->set(Setting::Channel, std::to_string(*profile.channel));
  }
  switch (profile.security) {
    case Security::Open:
      settings->set(Setting::Security, "OPEN");
      break;
    case Security::Wep:
      configureWep(profile, *settings);
      break;
    case Security::Wpa:
      configureWpa(profile, *settings);
      break;
    case Security::Enterprise:
      configureEnterprise(profile, *settings);
      break;
  }
  return settings;
}

}  // namespace session
