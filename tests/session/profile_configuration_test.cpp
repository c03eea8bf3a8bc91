#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "session/profile.h"
#include "testing/bytes.h"
#include "testing/output.h"
#include "testing/rows.h"
#include "testing/standard_input.h"
#include "testing/virtual_system.h"
#include "wireless/wnpa_generator.h"

namespace {

using session::Profile;
using session::Security;
using support::Bytes;
using support::bytes;

constexpr const char* Device = "/dev/usb/lp0";

/// Returns the packets of a profile. Expects that no device is opened and no question is asked.
std::vector<Bytes> packetsOf(const Profile& profile) {
  virtual_system::System system;
  const virtual_system::Device& device = system.device(Device);
  const support::StandardInput input("typed\n");
  std::vector<Bytes> packets;
  const support::Output output = support::outputOf([&] {
    const auto settings = session::configurationOf(profile, Device);
    wnpaGenerator generator(settings.get());
    generator.setServerValidation(true);
    packets = generator.advancedPackets();
  });
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(output.out, "");
  return packets;
}

struct PacketsRow : support::Row {
  Profile profile;
  std::vector<const char*> packets;
};

class Packets : public testing::TestWithParam<PacketsRow> {};

TEST_P(Packets, AreThoseOfTheProfile) {
  std::vector<Bytes> expected;
  for (const char* const packet : GetParam().packets) {
    expected.push_back(bytes(packet));
  }
  EXPECT_EQ(packetsOf(GetParam().profile), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Open, Packets,
    testing::Values(
        PacketsRow{{"Infrastructure"},
                   {.ssid = "home", .security = Security::Open},
                   {"A5 00 29 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 00 "
                    "28 05 00 00 04 00 00 00 06 28 08 00 00 05 68 6F 6D 65 00"}},
        PacketsRow{{"AdHoc"},
                   {.ssid = "x", .security = Security::Open, .adHoc = true, .channel = 11},
                   {"A5 00 26 50 E0 DA 01 28 02 00 00 04 00 00 00 01 28 22 00 00 04 00 00 00 00 "
                    "28 05 00 00 04 00 00 00 0B 28 08 00 00 02 78 00"}},
        PacketsRow{{"AdHocWithoutChannel"},
                   {.ssid = "x", .security = Security::Open, .adHoc = true},
                   {"A5 00 26 50 E0 DA 01 28 02 00 00 04 00 00 00 01 28 22 00 00 04 00 00 00 00 "
                    "28 05 00 00 04 00 00 00 06 28 08 00 00 02 78 00"}},
        PacketsRow{{"LongestName"},
                   {.ssid = "0123456789abcdef 123456789abcde\"", .security = Security::Open},
                   {"A5 00 45 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 00 "
                    "28 05 00 00 04 00 00 00 06 28 08 00 00 21 30 31 32 33 34 35 36 37 38 39 61 62 "
                    "63 64 65 66 20 31 32 33 34 35 36 37 38 39 61 62 63 64 65 22 00"}}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Wep, Packets,
    testing::Values(
        PacketsRow{{"OpenAuthentication"},
                   {.ssid = "x", .security = Security::Wep, .secret = session::Secret(R"(a\"' )")},
                   {"A5 00 51 50 E0 DA 01 28 09 00 00 05 61 5C 22 27 20 28 0B 00 00 00 "
                    "28 0D 00 00 00 28 0F 00 00 00 28 1F 00 00 04 00 00 00 01 "
                    "28 23 00 00 04 00 00 00 01 28 02 00 00 04 00 00 00 00 "
                    "28 22 00 00 04 00 00 00 01 28 05 00 00 04 00 00 00 06 28 08 00 00 02 78 00"}},
        PacketsRow{{"SharedKey"},
                   {.ssid = "x",
                    .security = Security::Wep,
                    .adHoc = true,
                    .channel = 1,
                    .wepAuth = "shared",
                    .secret = session::Secret("0123456789abcdefABCDEF0123")},
                   {"A5 00 66 50 E0 DA 01 28 09 00 00 1A 30 31 32 33 34 35 36 37 38 39 61 62 63 64 "
                    "65 66 41 42 43 44 45 46 30 31 32 33 28 0B 00 00 00 28 0D 00 00 00 "
                    "28 0F 00 00 00 28 1F 00 00 04 00 00 00 01 28 23 00 00 04 00 00 00 02 "
                    "28 02 00 00 04 00 00 00 01 28 22 00 00 04 00 00 00 01 "
                    "28 05 00 00 04 00 00 00 01 28 08 00 00 02 78 00"}}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Wpa, Packets,
    testing::Values(
        PacketsRow{{"Auto"},
                   {.ssid = "x", .security = Security::Wpa, .secret = session::Secret("secret88")},
                   {"A5 00 33 50 E0 DA 01 28 11 00 00 08 73 65 63 72 65 74 38 38 "
                    "28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 02 "
                    "28 05 00 00 04 00 00 00 06 28 08 00 00 02 78 00"}},
        PacketsRow{
            {"Tkip"},
            {.ssid = "x",
             .security = Security::Wpa,
             .encryption = "tkip",
             .secret = session::Secret(" \"a\\b' c")},
            {"A5 00 3C 50 E0 DA 01 28 11 00 00 08 20 22 61 5C 62 27 20 63 "
             "28 26 00 00 04 00 00 00 03 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 02 "
             "28 05 00 00 04 00 00 00 06 28 08 00 00 02 78 00"}},
        PacketsRow{{"AesWithHexKey"},
                   {.ssid = "x",
                    .security = Security::Wpa,
                    .encryption = "aes",
                    .secret = session::Secret(
                        "0123456789abcdef0123456789ABCDEF0123456789abcdef0123456789ABCDEF")},
                   {"A5 00 74 50 E0 DA 01 28 11 00 00 40 30 31 32 33 34 35 36 37 38 39 61 62 63 64 "
                    "65 66 30 31 32 33 34 35 36 37 38 39 41 42 43 44 45 46 30 31 32 33 34 35 36 37 "
                    "38 39 61 62 63 64 65 66 30 31 32 33 34 35 36 37 38 39 41 42 43 44 45 46 "
                    "28 26 00 00 04 00 00 00 04 28 02 00 00 04 00 00 00 00 "
                    "28 22 00 00 04 00 00 00 02 28 05 00 00 04 00 00 00 06 28 08 00 00 02 78 00"}}),
    support::rowName);

constexpr const char* EnterpriseNetwork =
    "A5 00 26 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 03 "
    "28 08 00 00 02 78 00 28 05 00 00 04 00 00 00 06";

INSTANTIATE_TEST_SUITE_P(
    Enterprise, Packets,
    testing::Values(
        PacketsRow{{"Peap"},
                   {.ssid = "x",
                    .security = Security::Enterprise,
                    .encryption = "aes",
                    .user = "u",
                    .eapMethods = {"peap"},
                    .innerMethod = "mschapv2",
                    .secret = session::Secret("p\"")},
                   {"A5 00 4F 50 E0 DA 01 28 26 00 00 04 00 00 00 04 2A 14 00 00 01 00 "
                    "2A 15 00 00 01 00 2A 16 00 00 01 00 2A 17 00 00 01 01 2A 18 00 00 01 00 "
                    "2A 19 00 00 01 00 2A 1A 00 00 04 00 00 00 02 2A 02 00 00 02 75 00 "
                    "2A 03 00 00 03 70 22 00 2A 24 00 00 01 01",
                    EnterpriseNetwork}},
        PacketsRow{
            {"TlsWithoutPassword"},
            {.ssid = "x", .security = Security::Enterprise, .user = "u", .eapMethods = {"tls"}},
            {"A5 00 35 50 E0 DA 01 2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 00 "
             "2A 17 00 00 01 00 2A 18 00 00 01 01 2A 19 00 00 01 00 2A 02 00 00 02 75 00 "
             "2A 24 00 00 01 01",
             EnterpriseNetwork}},
        PacketsRow{{"TtlsWithStaticWep"},
                   {.ssid = "x",
                    .security = Security::Enterprise,
                    .encryption = "wep-static",
                    .user = "u",
                    .eapMethods = {"ttls"},
                    .innerMethod = "pap",
                    .secret = session::Secret("p")},
                   {"A5 00 6B 50 E0 DA 01 28 26 00 00 04 00 00 00 02 2A 14 00 00 01 00 "
                    "2A 15 00 00 01 00 2A 16 00 00 01 00 2A 17 00 00 01 00 2A 18 00 00 01 00 "
                    "2A 19 00 00 01 01 2A 1A 00 00 04 00 00 00 03 2A 02 00 00 02 75 00 "
                    "2A 03 00 00 02 70 00 2A 24 00 00 01 01 28 09 00 00 00 28 0B 00 00 00 "
                    "28 0D 00 00 00 28 0F 00 00 00 28 1F 00 00 04 00 00 00 01",
                    EnterpriseNetwork}}),
    support::rowName);

// --- Single values ------------------------------------------------------------------------------

Profile enterprise() {
  return {.ssid = "x", .security = Security::Enterprise, .user = "u", .eapMethods = {"peap"}};
}

/// Returns true if the profile's first packet contains this object.
bool hasObject(const Profile& profile, const Bytes& object) {
  const Bytes packet = packetsOf(profile).at(0);
  return std::search(packet.begin(), packet.end(), object.begin(), object.end()) != packet.end();
}

bool hasObject(const Profile& profile, const std::string& object) {
  return hasObject(profile, bytes(object));
}

TEST(ProfileConfiguration, SendsTheCodeOfTheEncryption) {
  Profile profile = enterprise();
  EXPECT_FALSE(hasObject(profile, "28 26"));
  const std::vector<std::pair<const char*, const char*>> codes = {
      {"wep-dynamic", "01"}, {"wep-static", "02"}, {"tkip", "03"}, {"aes", "04"}};
  for (const auto& [encryption, code] : codes) {
    profile.encryption = encryption;
    EXPECT_TRUE(hasObject(profile, std::string("28 26 00 00 04 00 00 00 ") + code)) << encryption;
  }
}

TEST(ProfileConfiguration, SendsTheCodeOfTheInnerMethod) {
  Profile profile = enterprise();
  EXPECT_FALSE(hasObject(profile, "2A 1A"));
  const std::vector<std::pair<const char*, const char*>> codes = {
      {"chap", "00"}, {"mschap", "01"}, {"mschapv2", "02"}, {"pap", "03"}};
  for (const auto& [method, code] : codes) {
    profile.innerMethod = method;
    EXPECT_TRUE(hasObject(profile, std::string("2A 1A 00 00 04 00 00 00 ") + code)) << method;
  }
}

TEST(ProfileConfiguration, AllowsExactlyTheListedMethods) {
  // In the order of their objects, 2A/14 to 2A/19.
  constexpr std::array methods = {"md5", "mschapv2", "leap", "peap", "tls", "ttls"};
  for (unsigned int chosen = 1; chosen < 64; ++chosen) {
    Profile profile = enterprise();
    profile.eapMethods.clear();
    std::string flags;
    for (std::size_t i = 0; i < methods.size(); ++i) {
      const bool isAllowed = ((chosen >> i) & 1U) != 0;
      if (isAllowed) {
        // For every second choice the list of methods is in reverse order.
        profile.eapMethods.insert(
            chosen % 2 == 0 ? profile.eapMethods.begin() : profile.eapMethods.end(), methods[i]);
      }
      flags += "2A 1" + std::to_string(4 + i) + " 00 00 01 0" + (isAllowed ? "1 " : "0 ");
    }
    flags.pop_back();
    EXPECT_TRUE(hasObject(profile, flags)) << flags;
  }
}

TEST(ProfileConfiguration, SendsTheLongestPasswordWithItsLength) {
  Profile profile = enterprise();
  profile.secret = session::Secret(std::string(254, 'p'));
  EXPECT_TRUE(
      hasObject(profile, support::joined({bytes("2A 03 00 00 FF"), Bytes(254, 'p'), bytes("00")})));
}

TEST(ProfileConfiguration, SendsWithTheFirstWepKey) {
  EXPECT_EQ(
      session::configurationOf({.ssid = "x", .security = Security::Wep}, "")->getWEPTransmit(),
      "1");
}

TEST(ProfileConfiguration, NamesTheDevice) {
  EXPECT_EQ(session::configurationOf({.ssid = "x"}, "1:5")->getUSB(), "1:5");
}

}  // namespace
