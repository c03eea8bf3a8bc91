// The setting encoders of wnpaGenerator.

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "util/utility.h"
#include "wireless/password_prompt.h"
#include "wireless/wnpa_generator.h"

namespace {

/// Numbers of the setting objects in the group of wireless-network settings.
enum WirelessObject : unsigned char {
  ModeObject = 0x02,
  ChannelObject = 0x05,
  SsidObject = 0x08,
  WepKey1Object = 0x09,
  PskObject = 0x11,
  SecurityObject = 0x22,
};

constexpr unsigned int DefaultChannel = 6;

/// What the adapter is told for a security text.
struct SecurityCode {
  std::string_view security;
  unsigned int code;
};

constexpr std::array SecurityCodes = {
    SecurityCode{"WEP", 1},     SecurityCode{"SHARED", 1}, SecurityCode{"WPA", 2},
    SecurityCode{"WPA-PER", 2}, SecurityCode{"WPA2", 2},   SecurityCode{"WPA-ENT", 2},
    SecurityCode{"802.1x", 3},
};

/// Code 4 has a name, but no text leads to it: "WPA2" is sent as 2, which takes either version.
constexpr std::array SecurityNames = {"No Security", "WEP", "WPA PSK (Auto 1 or 2)", "802.1x",
                                      "WPA-2 only PSK"};

unsigned int securityCode(std::string_view security, std::string_view encryption) {
  if (security == "OPEN") {
    return encryption == "WEP" ? 1 : 0;
  }
  const auto* const row = std::ranges::find(SecurityCodes, security, &SecurityCode::security);
  return row == SecurityCodes.end() ? 0 : row->code;
}

/// The channels 1 to 11 by their exact decimal texts; any other text is the default channel.
unsigned int channelCode(std::string_view channel) {
  constexpr std::array<std::string_view, 11> channels = {"1", "2", "3", "4",  "5", "6",
                                                         "7", "8", "9", "10", "11"};
  const auto* const found = std::ranges::find(channels, channel);
  return found == channels.end() ? DefaultChannel
                                 : static_cast<unsigned int>(found - channels.begin()) + 1;
}

}  // namespace

int wnpaGenerator::appendObject(unsigned char group, unsigned char number,
                                std::vector<char> value) {
  std::vector<unsigned char> object(npa::ObjectHeaderSize + value.size());
  const int size = static_cast<int>(object.size());
  constructHeader(object.data(), static_cast<unsigned int>(value.size()), static_cast<char>(number),
                  static_cast<char>(group));
  mergeHeaderData(value.data(), object.data(), size);
  appendDataToNPA(size, object.data());
  return size;
}

int wnpaGenerator::appendText(unsigned char group, unsigned char number, const std::string& text) {
  return appendObject(group, number,
                      std::vector<char>(text.c_str(), text.c_str() + text.size() + 1));
}

int wnpaGenerator::appendCode(unsigned char group, unsigned char number, unsigned int code) {
  return appendObject(group, number, {0, 0, 0, static_cast<char>(code)});
}

int wnpaGenerator::constructSSID(int* /*total*/) {
  const std::string& ssid = m_Configuration->getSSID();
  util::debugLine("SSID = %s", ssid.c_str());
  return ssid.empty() ? 0 : appendText(npa::GroupWireless, SsidObject, ssid);
}

int wnpaGenerator::constructMode(int* /*total*/) {
  const std::string& mode = m_Configuration->getMode();
  util::debugLine("Mode = '%s'", mode.c_str());
  // The exact spelling counts: the help text's "Ad-hoc" selects the managed mode.
  return mode.empty() ? 0 : appendCode(npa::GroupWireless, ModeObject, mode == "Ad-Hoc" ? 1 : 0);
}

int wnpaGenerator::constructChannel(int* /*total*/) {
  return appendCode(npa::GroupWireless, ChannelObject, channelCode(m_Configuration->getChannel()));
}

int wnpaGenerator::constructSecurity(int* /*total*/) {
  const std::string& security = m_Configuration->getSecurity();
  util::debugLine("Security = '%s'", security.c_str());
  const unsigned int code = securityCode(security, m_Configuration->get802Encryption());
  util::debugLine("Security mode: %u (%s)", code, SecurityNames[code]);
  return appendCode(npa::GroupWireless, SecurityObject, code);
}

int wnpaGenerator::constructPasswd(int* /*total*/) {
  const std::string& security = m_Configuration->getSecurity();
  if (security == "None") {
    return 0;
  }
  std::string password = m_Configuration->getPasswd();
  if (password.empty()) {
    password = promptForPassword();
  }
  return appendText(npa::GroupWireless, security == "WEP" ? WepKey1Object : PskObject, password);
}
