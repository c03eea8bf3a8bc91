#include "catalogue/setting_catalogue.h"

#include <gtest/gtest.h>
#include <span>
#include <string>
#include <string_view>

#include "testing/packets.h"
#include "testing/rows.h"

namespace {

using npa::SettingKey;
using support::bytes;

struct WordsRow : support::Row {
  SettingKey key;
  const char* value;
  std::string words;
  std::string shown;  ///< the words if secrets are shown
};

WordsRow plainRow(const char* name, SettingKey key, const char* value, const std::string& words) {
  return {{name}, key, value, words, words};
}

class DescribeSetting : public testing::TestWithParam<WordsRow> {};

TEST_P(DescribeSetting, ReturnsNameAndValueInWords) {
  const auto value = bytes(GetParam().value);
  EXPECT_EQ(catalogue::describeSetting(GetParam().key, value, false), GetParam().words);
  EXPECT_EQ(catalogue::describeSetting(GetParam().key, value, true), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, DescribeSetting,
    testing::Values(
        plainRow("Text", {0x28, 0x08}, "68 69 00", "SSID = \"hi\""),
        plainRow("OddText", {0x28, 0x08}, "68 0A FF", "SSID = \"h\\x0A\\xFF\""),
        plainRow("EmptyText", {0x28, 0x08}, "", "SSID = \"\""),
        plainRow("NamedNumber", {0x28, 0x22}, "00 00 00 02", "security = 2 (WPA (1 or 2))"),
        plainRow("NumberWithoutName", {0x28, 0x22}, "00 00 01 02", "security = 258"),
        plainRow("FirstWithoutName", {0x28, 0x23}, "00 00 00 03", "WEP authentication = 3"),
        plainRow("NumberOfNoBytes", {0x28, 0x05}, "", "channel = "),
        plainRow("NumberOfTooManyBytes", {0x28, 0x05}, "01 02 03 04 05",
                 "channel = 01 02 03 04 05"),
        plainRow("AuthStatus", {0x2A, 0x1D}, "02",
                 "802.1x authentication status = 2 (Authenticated)"),
        plainRow("Flag", {0x06, 0x14}, "01", "adapter reset = 1"),
        plainRow("Address", {0x0A, 0x02}, "0A 00 00 07", "IP address = 10.0.0.7"),
        WordsRow{{"Key"}, {0x28, 0x09}, "61 62 00", "WEP key 1 = (3 bytes)", "WEP key 1 = \"ab\""},
        WordsRow{{"Unknown"},
                 {0x28, 0xFE},
                 "61 62",
                 "object 28 FE = (2 bytes)",
                 "object 28 FE = 61 62"}),
    support::rowName);

// --- All settings -------------------------------------------------------------------------------

/// One line per setting: group and object number, kind, "secret" if the value is masked, "low byte"
/// if the size field holds only the low byte of the size, the setting's name, and the names of the
/// values from 0.
constexpr std::string_view Settings = R"(06 14 flag adapter reset
06 1F text adapter descriptor
0A 02 address IP address
28 02 number mode: managed|ad-hoc
28 05 number channel
28 08 text SSID
28 09 text secret WEP key 1
28 0B text secret WEP key 2
28 0D text secret WEP key 3
28 0F text secret WEP key 4
28 11 text secret pre-shared key
28 15 number trouble code
28 1F number WEP transmit key
28 22 number security: none|WEP|WPA (1 or 2)|802.1x|WPA2 only
28 23 number WEP authentication: auto|open|shared
28 26 number encryption: none|dynamic WEP|static WEP|TKIP|AES
2A 02 text 802.1x user
2A 03 text secret low byte 802.1x password
2A 06 text certificate organisation
2A 07 text certificate unit
2A 08 text certificate state
2A 09 text certificate country
2A 0A text low byte certificate common name
2A 0B text certificate city
2A 0C flag generate certificate
2A 0D number certificate generation status
2A 0E text certificate request
2A 0F text certificate
2A 10 text CA certificate
2A 11 flag CA certificate installed
2A 12 flag make certificate request
2A 13 flag 802.1x authentication enabled
2A 14 flag EAP-MD5 allowed
2A 15 flag MSCHAPv2 allowed
2A 16 flag LEAP allowed
2A 17 flag PEAP allowed
2A 18 flag EAP-TLS allowed
2A 19 flag EAP-TTLS allowed
2A 1A number 802.1x inner authentication: CHAP|MSCHAP|MSCHAPv2|PAP
2A 1B text 802.1x common name
2A 1C text certificate alternative name
2A 1D number 802.1x authentication status: 12 texts
2A 24 flag validate server certificate
2A 25 text secret all security settings
2A 27 text certificate friendly name
)";

std::string lineOf(const catalogue::SettingInfo& info) {
  constexpr const char* kinds[] = {" text ", " number ", " flag ", " address "};
  std::string line = packets::hexText({info.key.group, info.key.object});
  line.append(kinds[static_cast<std::size_t>(info.kind)]);
  line.append(info.secret ? "secret " : "").append(info.sizeIsLowByte ? "low byte " : "");
  line.append(info.name);
  if (info.numberNames.size() > 5) {  // other tests compare the status texts
    return line + ": " + std::to_string(info.numberNames.size()) + " texts\n";
  }
  const char* separator = ": ";
  for (const std::string_view name : info.numberNames) {
    line.append(separator).append(name);
    separator = "|";
  }
  return line + "\n";
}

TEST(SettingCatalogue, HasEverySettingInTheOrderOfTheNumbers) {
  std::string lines;
  for (const catalogue::SettingInfo& info : catalogue::settingCatalogue()) {
    lines += lineOf(info);
    EXPECT_FALSE(catalogue::groupName(info.key.group).empty()) << info.name;
    EXPECT_EQ(catalogue::isSecret(info.key), info.secret) << info.name;
  }
  EXPECT_EQ(lines, Settings);
}

TEST(SettingCatalogue, NamesTheGroups) {
  EXPECT_EQ(catalogue::groupName(0x28), "wireless network");
  EXPECT_EQ(catalogue::groupName(0x29), "");
}

TEST(NumberOf, ReadsOneToFourBytes) {
  EXPECT_EQ(catalogue::numberOf(bytes("7F")), 0x7FU);
  EXPECT_EQ(catalogue::numberOf(bytes("01 02")), 0x0102U);
  EXPECT_EQ(catalogue::numberOf(bytes("01 02 03")), 0x010203U);
  EXPECT_EQ(catalogue::numberOf(bytes("FF 02 03 04")), 0xFF020304U);
  EXPECT_FALSE(catalogue::numberOf({}));
  EXPECT_FALSE(catalogue::numberOf(bytes("00 00 00 00 01")));
}

}  // namespace
