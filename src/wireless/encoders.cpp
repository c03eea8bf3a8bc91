// The encoders of wnpaGenerator for the settings that every network needs.

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "wireless/password_prompt.h"
#include "wireless/setting_encodings.h"
#include "wireless/wnpa_generator.h"

namespace {

/// The channel that is sent for a text that is not a number from 1 to 11.
constexpr npa::Byte DefaultChannel = 6;

/// The security as configured, and the code that is sent for it. The table has no row for "OPEN",
/// because its code depends on the encryption. The code of an unknown text is 0.
constexpr std::array SecurityCodes = {
    TextCode{"WEP", 1},  TextCode{"SHARED", 1},  TextCode{"WPA", 2},    TextCode{"WPA-PER", 2},
    TextCode{"WPA2", 2}, TextCode{"WPA-ENT", 2}, TextCode{"802.1x", 3},
};

/// The names of the securities in the log. The index is the code. No configured text has the code
/// 4: "WPA2" is sent as 2, which stands for version 1 or 2 of WPA.
constexpr std::array SecurityNames = {"No Security", "WEP", "WPA PSK (Auto 1 or 2)", "802.1x",
                                      "WPA-2 only PSK"};

/// Returns the code of a security. Only the code of "OPEN" depends on the encryption.
npa::Byte securityCode(std::string_view security, std::string_view encryption) {
  if (security == "OPEN") {
    return encryption == "WEP" ? 1 : 0;
  }
  return codeOf(security, SecurityCodes);
}

/// Returns the channel 1 to 11 for its exact decimal text, or the default channel for any other
/// text.
npa::Byte channelCode(std::string_view channel) {
  constexpr std::array<std::string_view, 11> channels = {"1", "2", "3", "4",  "5", "6",
                                                         "7", "8", "9", "10", "11"};
  const auto* const found = std::ranges::find(channels, channel);
  return found == channels.end() ? DefaultChannel
                                 : static_cast<npa::Byte>(found - channels.begin() + 1);
}

}  // namespace

int wnpaGenerator::constructSSID(int* /*total*/) {
  return encode(encodings::Ssid);
}

int wnpaGenerator::constructMode(int* /*total*/) {
  return encode(encodings::Mode);
}

int wnpaGenerator::constructChannel(int* /*total*/) {
  return encodeChannel();
}

int wnpaGenerator::constructSecurity(int* /*total*/) {
  return encodeSecurity();
}

int wnpaGenerator::constructPasswd(int* /*total*/) {
  return encodePassword();
}

int wnpaGenerator::encodeChannel() {
  return appendCode(npa::settings::Channel, channelCode(m_Configuration->getChannel()));
}

int wnpaGenerator::encodeSecurity() {
  const std::string& security = m_Configuration->getSecurity();
  util::debugLine("Security = '%s'", security.c_str());
  const npa::Byte code = securityCode(security, m_Configuration->get802Encryption());
  util::debugLine("Security mode: %d (%s)", code, SecurityNames[code]);
  return appendCode(npa::settings::Security, code);
}

int wnpaGenerator::encodePassword() {
  const std::string& security = m_Configuration->getSecurity();
  if (security == "None") {
    return 0;
  }
  std::string password = m_Configuration->getPasswd();
  if (password.empty()) {
    password = promptForPassword();
  }
  // The password is not logged, unlike the other keys.
  std::vector<npa::Byte> value(password.begin(), password.end());
  value.push_back(0);
  return appendObject(security == "WEP" ? npa::settings::WepKey1 : npa::settings::PreSharedKey,
                      value);
}
