// Converts the settings of a profile to the texts that the encoders in src/wireless expect.

#include "session/profile.h"
#include "session/profile_words.h"
#include "session/secret_source.h"

namespace session {

namespace {

using profile_words::encoderWord;

std::string encoderMethods(const std::vector<std::string>& methods) {
  std::string list;
  for (const std::string& method : methods) {
    list.append(list.empty() ? "" : "|").append(encoderWord(profile_words::EapMethods, method));
  }
  return list;
}

void configureWep(const Profile& profile, configDetails& settings) {
  settings.set(Setting::Security, encoderWord(profile_words::WepAuths, profile.wepAuth));
  settings.set(Setting::Encryption, "WEP");
  settings.set(Setting::WepKey1, profile.secret.text());
  settings.set(Setting::WepTransmit, "1");
}

void configureWpa(const Profile& profile, configDetails& settings) {
  settings.set(Setting::Security, "WPA-PER");
  settings.set(Setting::Encryption, encoderWord(profile_words::Encryptions, profile.encryption));
  settings.set(Setting::Psk, profile.secret.text());
}

void configureEnterprise(const Profile& profile, configDetails& settings) {
  settings.set(Setting::Security, "802.1x");
  settings.set(Setting::Encryption, encoderWord(profile_words::Encryptions, profile.encryption));
  settings.set(Setting::AuthExt, encoderMethods(profile.eapMethods));
  settings.set(Setting::AuthInner, encoderWord(profile_words::InnerMethods, profile.innerMethod));
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
