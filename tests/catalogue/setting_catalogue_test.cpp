#include "catalogue/setting_catalogue.h"

#include <gtest/gtest.h>

#include "testing/bytes.h"
#include "testing/rows.h"

namespace {

using npa::SettingKey;
using support::bytes;

struct WordsRow : support::Row {
  SettingKey key;
  const char* value;
  const char* masked;
  const char* shown;
};

class DescribeSetting : public testing::TestWithParam<WordsRow> {};

TEST_P(DescribeSetting, PutsTheValueIntoWords) {
  const auto value = bytes(GetParam().value);
  EXPECT_EQ(catalogue::describeSetting(GetParam().key, value, false), GetParam().masked);
  EXPECT_EQ(catalogue::describeSetting(GetParam().key, value, true), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, DescribeSetting,
    testing::Values(
        WordsRow{{"Text"}, {0x28, 0x08}, "68 69 00", "SSID = \"hi\"", "SSID = \"hi\""},
        WordsRow{{"OddText"},
                 {0x28, 0x08},
                 "68 0A FF",
                 "SSID = \"h\\x0A\\xFF\"",
                 "SSID = \"h\\x0A\\xFF\""},
        WordsRow{{"EmptyText"}, {0x28, 0x08}, "", "SSID = \"\"", "SSID = \"\""},
        WordsRow{{"NamedNumber"},
                 {0x28, 0x22},
                 "00 00 00 02",
                 "security = 2 (WPA (1 or 2))",
                 "security = 2 (WPA (1 or 2))"},
        WordsRow{
            {"NumberWithoutName"}, {0x28, 0x22}, "00 00 01 02", "security = 258", "security = 258"},
        WordsRow{{"NumberOfNoBytes"}, {0x28, 0x05}, "", "channel = ", "channel = "},
        WordsRow{{"NumberOfTooManyBytes"},
                 {0x28, 0x05},
                 "01 02 03 04 05",
                 "channel = 01 02 03 04 05",
                 "channel = 01 02 03 04 05"},
        WordsRow{{"Address"},
                 {0x0A, 0x02},
                 "0A 00 00 07",
                 "IP address = 10.0.0.7",
                 "IP address = 10.0.0.7"},
        WordsRow{{"Key"}, {0x28, 0x09}, "61 62 00", "WEP key 1 = (3 bytes)", "WEP key 1 = \"ab\""},
        WordsRow{{"Unknown"},
                 {0x28, 0xFE},
                 "61 62",
                 "object 28 FE = (2 bytes)",
                 "object 28 FE = 61 62"}),
    support::rowName);

WordsRow plainRow(const char* name, SettingKey key, const char* value, const char* words) {
  return {{name}, key, value, words, words};
}

WordsRow secretRow(const char* name, SettingKey key, const char* value, const char* masked,
                   const char* shown) {
  return {{name}, key, value, masked, shown};
}

INSTANTIATE_TEST_SUITE_P(
    Catalogue, DescribeSetting,
    testing::Values(
        plainRow("Reset", {0x06, 0x14}, "01", "adapter reset = 1"),
        plainRow("Descriptor", {0x06, 0x1F}, "61", "adapter descriptor = \"a\""),
        plainRow("Mode", {0x28, 0x02}, "00 00 00 01", "mode = 1 (ad-hoc)"),
        plainRow("Channel", {0x28, 0x05}, "00 00 00 0B", "channel = 11"),
        secretRow("WepKey2", {0x28, 0x0B}, "61 62", "WEP key 2 = (2 bytes)", "WEP key 2 = \"ab\""),
        secretRow("WepKey3", {0x28, 0x0D}, "61 62", "WEP key 3 = (2 bytes)", "WEP key 3 = \"ab\""),
        secretRow("WepKey4", {0x28, 0x0F}, "61 62", "WEP key 4 = (2 bytes)", "WEP key 4 = \"ab\""),
        secretRow("PreSharedKey", {0x28, 0x11}, "61 62", "pre-shared key = (2 bytes)",
                  "pre-shared key = \"ab\""),
        plainRow("TroubleCode", {0x28, 0x15}, "00 00 00 07", "trouble code = 7"),
        plainRow("WepTransmit", {0x28, 0x1F}, "00 00 00 04", "WEP transmit key = 4"),
        plainRow("WepAuth", {0x28, 0x23}, "00 00 00 02", "WEP authentication = 2 (shared)"),
        plainRow("WepAuthWithoutName", {0x28, 0x23}, "00 00 00 03", "WEP authentication = 3"),
        plainRow("Encryption", {0x28, 0x26}, "00 00 00 04", "encryption = 4 (AES)"),
        plainRow("EncryptionTkip", {0x28, 0x26}, "00 00 00 03", "encryption = 3 (TKIP)"),
        plainRow("AuthUser", {0x2A, 0x02}, "75 00", "802.1x user = \"u\""),
        secretRow("AuthPassword", {0x2A, 0x03}, "70 00", "802.1x password = (2 bytes)",
                  "802.1x password = \"p\""),
        plainRow("CertOrganization", {0x2A, 0x06}, "61", "certificate organisation = \"a\""),
        plainRow("CertUnit", {0x2A, 0x07}, "61 00", "certificate unit = \"a\""),
        plainRow("CertState", {0x2A, 0x08}, "61 00", "certificate state = \"a\""),
        plainRow("CertCountry", {0x2A, 0x09}, "44 45", "certificate country = \"DE\""),
        plainRow("CertCommonName", {0x2A, 0x0A}, "61", "certificate common name = \"a\""),
        plainRow("CertCity", {0x2A, 0x0B}, "61 00", "certificate city = \"a\""),
        plainRow("CertGenerate", {0x2A, 0x0C}, "01", "generate certificate = 1"),
        plainRow("CertGenerateStatus", {0x2A, 0x0D}, "01", "certificate generation status = 1"),
        plainRow("CertRequest", {0x2A, 0x0E}, "61", "certificate request = \"a\""),
        plainRow("Certificate", {0x2A, 0x0F}, "61", "certificate = \"a\""),
        plainRow("CaCertificate", {0x2A, 0x10}, "61", "CA certificate = \"a\""),
        plainRow("CaInstalled", {0x2A, 0x11}, "01", "CA certificate installed = 1"),
        plainRow("CertSignRequest", {0x2A, 0x12}, "01", "make certificate request = 1"),
        plainRow("AuthEnabled", {0x2A, 0x13}, "01", "802.1x authentication enabled = 1"),
        plainRow("MethodMd5", {0x2A, 0x14}, "01", "EAP-MD5 allowed = 1"),
        plainRow("MethodMsChapV2", {0x2A, 0x15}, "00", "MSCHAPv2 allowed = 0"),
        plainRow("MethodLeap", {0x2A, 0x16}, "01", "LEAP allowed = 1"),
        plainRow("MethodPeap", {0x2A, 0x17}, "01", "PEAP allowed = 1"),
        plainRow("MethodTls", {0x2A, 0x18}, "01", "EAP-TLS allowed = 1"),
        plainRow("MethodTtls", {0x2A, 0x19}, "01", "EAP-TTLS allowed = 1"),
        plainRow("InnerAuth", {0x2A, 0x1A}, "00 00 00 03", "802.1x inner authentication = 3 (PAP)"),
        plainRow("InnerAuthMsChapV2", {0x2A, 0x1A}, "00 00 00 02",
                 "802.1x inner authentication = 2 (MSCHAPv2)"),
        plainRow("AuthCommonName", {0x2A, 0x1B}, "61", "802.1x common name = \"a\""),
        plainRow("CertAlternateName", {0x2A, 0x1C}, "61 00",
                 "certificate alternative name = \"a\""),
        plainRow("AuthStatus", {0x2A, 0x1D}, "02",
                 "802.1x authentication status = 2 (Authenticated)"),
        plainRow("ValidateCert", {0x2A, 0x24}, "01", "validate server certificate = 1"),
        secretRow("AllSecurity", {0x2A, 0x25}, "61", "all security settings = (1 bytes)",
                  "all security settings = \"a\""),
        plainRow("CertFriendlyName", {0x2A, 0x27}, "61 00", "certificate friendly name = \"a\"")),
    support::rowName);

TEST(NumberOf, ReadsOneToFourBytes) {
  EXPECT_EQ(catalogue::numberOf(bytes("7F")), 0x7FU);
  EXPECT_EQ(catalogue::numberOf(bytes("01 02")), 0x0102U);
  EXPECT_EQ(catalogue::numberOf(bytes("01 02 03")), 0x010203U);
  EXPECT_EQ(catalogue::numberOf(bytes("FF 02 03 04")), 0xFF020304U);
  EXPECT_FALSE(catalogue::numberOf({}));
  EXPECT_FALSE(catalogue::numberOf(bytes("00 00 00 00 01")));
}

TEST(SettingCatalogue, IsInTheOrderOfNumbersAndKnowsEachGroup) {
  const auto catalogue = catalogue::settingCatalogue();
  EXPECT_EQ(catalogue.size(), 45U);
  for (std::size_t i = 0; i < catalogue.size(); ++i) {
    EXPECT_FALSE(catalogue::groupName(catalogue[i].key.group).empty()) << catalogue[i].name;
    EXPECT_TRUE(i == 0 || catalogue[i - 1].key < catalogue[i].key) << catalogue[i].name;
  }
  EXPECT_EQ(catalogue::groupName(0x28), "wireless network");
  EXPECT_EQ(catalogue::groupName(0x29), "");
}

}  // namespace
