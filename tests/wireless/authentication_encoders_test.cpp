#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "testing/setting_encoder.h"

namespace {

using support::SettingRow;

class AuthenticationEncoder : public support::SettingTable {};

TEST_P(AuthenticationEncoder, AppendsItsObjectAndLogsIt) {
  expectRow();
}

constexpr auto Encryption = &wnpaGenerator::construct802EncryptMode;
constexpr auto Inner = &wnpaGenerator::construct802AuthInner;
constexpr auto Extension = &wnpaGenerator::construct802AuthExtension;

SettingRow encryptionRow(const char* name, const std::string& encryption, const std::string& code) {
  return {{name},
          Encryption,
          {"--encryption=" + encryption},
          "28 26 00 00 04 00 00 00 " + code,
          "D [ZVK] Encryption (advanced) = " + encryption + "\n"};
}

INSTANTIATE_TEST_SUITE_P(
    Encryption, AuthenticationEncoder,
    testing::Values(
        encryptionRow("None", "NONE", "00"), encryptionRow("Dynamic", "WEP-DYNAMIC", "01"),
        encryptionRow("Static", "WEP-STATIC", "02"), encryptionRow("Wep", "WEP", "02"),
        encryptionRow("WpaTkip", "WPA-TKIP", "03"), encryptionRow("Tkip", "TKIP", "03"),
        encryptionRow("WpaAes", "WPA-AES", "04"), encryptionRow("Aes", "AES", "04"),
        encryptionRow("OtherCase", "aes", "00"), encryptionRow("OtherText", "%n\xFF", "00"),
        SettingRow{
            {"Empty"}, Encryption, {"--encryption="}, "", "D [ZVK] Encryption (advanced) = \n"}),
    support::rowName);

SettingRow innerRow(const char* name, const std::string& method, const std::string& code) {
  return {{name},
          Inner,
          {"--802-auth-inner=" + method},
          "2A 1A 00 00 04 00 00 00 " + code,
          "D [ZVK] 802.1x Inner Auth = " + method + "\n"};
}

INSTANTIATE_TEST_SUITE_P(
    InnerAuth, AuthenticationEncoder,
    testing::Values(
        innerRow("Chap", "CHAP", "00"), innerRow("MsChap", "MSCHAP", "01"),
        innerRow("MsChapV2", "MSCHAPv2", "02"), innerRow("Pap", "PAP", "03"),
        innerRow("OtherText", "MSCHAPV2", "00"),
        SettingRow{{"Empty"}, Inner, {"--802-auth-inner="}, "", "D [ZVK] 802.1x Inner Auth = \n"}),
    support::rowName);

/// `allowed` has a digit for each method in the order of the objects: EAP-MD5, MSCHAPv2, LEAP,
/// PEAP, EAP-TLS, EAP-TTLS.
SettingRow extensionRow(const char* name, const std::string& list, const std::string& allowed) {
  std::string objects =
      "2A 14 00 00 01 0. 2A 15 00 00 01 0. 2A 16 00 00 01 0. "
      "2A 17 00 00 01 0. 2A 18 00 00 01 0. 2A 19 00 00 01 0.";
  for (const char digit : allowed) {
    objects[objects.find('.')] = digit;
  }
  return {{name},
          Extension,
          {"--802-auth-ext=" + list},
          objects,
          "D [ZVK] 802.1x Auth Extension = " + list + "\n"};
}

constexpr std::size_t Long = 65536;

INSTANTIATE_TEST_SUITE_P(
    AuthExtension, AuthenticationEncoder,
    testing::Values(
        extensionRow("Md5", "EAP-MD5", "100000"), extensionRow("MsChapV2", "MSCHAPv2", "010000"),
        extensionRow("Leap", "LEAP", "001000"), extensionRow("Peap", "PEAP", "000100"),
        extensionRow("Tls", "EAP-TLS", "000010"),
        // This name does not contain "EAP-TLS".
        extensionRow("Ttls", "EAP-TTLS", "000001"),
        extensionRow("All", "EAP-TTLS|EAP-TLS|PEAP|LEAP|MSCHAPv2|EAP-MD5", "111111"),
        extensionRow("InsideAToken", "xPEAPx|EAP-TTLS", "000101"),
        extensionRow("OverlappingNames", "LEAPEAP", "001100"),
        extensionRow("EmptyTokens", "||LEAP||", "001000"),
        extensionRow("SplitByTheSeparator", "PE|AP|EAP|-TLS|", "000000"),
        extensionRow("OtherCase", "peap|MSCHAPV2", "000000"), extensionRow("Empty", "", "000000"),
        extensionRow("AfterOver64KiBOfSeparators", std::string(Long, '|') + "PEAP", "000100"),
        extensionRow("TokenOf64KiB", std::string(Long, 'E'), "000000")),
    support::rowName);

TEST_F(AuthenticationEncoder, LeavesTheConfiguredListUnchanged) {
  use({"--802-auth-ext=PEAP|LEAP"});
  run(Extension);
  EXPECT_EQ(configuration.get802AuthExt(), "PEAP|LEAP");
}

}  // namespace
