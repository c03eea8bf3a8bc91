#include <cstddef>
#include <gtest/gtest.h>
#include <string>

#include "testing/setting_encoder.h"

namespace {

using support::Bytes;
using support::bytes;
using support::SettingRow;

class AuthenticationEncoder : public support::SettingTable {};

TEST_P(AuthenticationEncoder, AppendsItsObjectAndTells) {
  expectRow();
}

constexpr auto Encryption = &wnpaGenerator::construct802EncryptMode;
constexpr auto Inner = &wnpaGenerator::construct802AuthInner;
constexpr auto Extension = &wnpaGenerator::construct802AuthExtension;

SettingRow encryptionRow(const char* name, const char* option, const char* object,
                         const char* log) {
  return {{name}, Encryption, {option}, object, log};
}

INSTANTIATE_TEST_SUITE_P(
    Encryption, AuthenticationEncoder,
    testing::Values(
        encryptionRow("None", "--encryption=NONE", "28 26 00 00 04 00 00 00 00",
                      "D [ZVK] Encryption (advanced) = NONE\n"),
        encryptionRow("Dynamic", "--encryption=WEP-DYNAMIC", "28 26 00 00 04 00 00 00 01",
                      "D [ZVK] Encryption (advanced) = WEP-DYNAMIC\n"),
        encryptionRow("Static", "--encryption=WEP-STATIC", "28 26 00 00 04 00 00 00 02",
                      "D [ZVK] Encryption (advanced) = WEP-STATIC\n"),
        encryptionRow("Wep", "--encryption=WEP", "28 26 00 00 04 00 00 00 02",
                      "D [ZVK] Encryption (advanced) = WEP\n"),
        encryptionRow("WpaTkip", "--encryption=WPA-TKIP", "28 26 00 00 04 00 00 00 03",
                      "D [ZVK] Encryption (advanced) = WPA-TKIP\n"),
        encryptionRow("Tkip", "--encryption=TKIP", "28 26 00 00 04 00 00 00 03",
                      "D [ZVK] Encryption (advanced) = TKIP\n"),
        encryptionRow("WpaAes", "--encryption=WPA-AES", "28 26 00 00 04 00 00 00 04",
                      "D [ZVK] Encryption (advanced) = WPA-AES\n"),
        encryptionRow("Aes", "--encryption=AES", "28 26 00 00 04 00 00 00 04",
                      "D [ZVK] Encryption (advanced) = AES\n"),
        encryptionRow("OtherCase", "--encryption=aes", "28 26 00 00 04 00 00 00 00",
                      "D [ZVK] Encryption (advanced) = aes\n"),
        encryptionRow("OtherText", "--encryption=%n\xFF", "28 26 00 00 04 00 00 00 00",
                      "D [ZVK] Encryption (advanced) = %n\xFF\n"),
        encryptionRow("Empty", "--encryption=", "", "D [ZVK] Encryption (advanced) = \n")),
    support::rowName);

SettingRow innerRow(const char* name, const char* option, const char* object, const char* log) {
  return {{name}, Inner, {option}, object, log};
}

INSTANTIATE_TEST_SUITE_P(
    InnerAuth, AuthenticationEncoder,
    testing::Values(innerRow("Chap", "--802-auth-inner=CHAP", "2A 1A 00 00 04 00 00 00 00",
                             "D [ZVK] 802.1x Inner Auth = CHAP\n"),
                    innerRow("MsChap", "--802-auth-inner=MSCHAP", "2A 1A 00 00 04 00 00 00 01",
                             "D [ZVK] 802.1x Inner Auth = MSCHAP\n"),
                    innerRow("MsChapV2", "--802-auth-inner=MSCHAPv2", "2A 1A 00 00 04 00 00 00 02",
                             "D [ZVK] 802.1x Inner Auth = MSCHAPv2\n"),
                    innerRow("Pap", "--802-auth-inner=PAP", "2A 1A 00 00 04 00 00 00 03",
                             "D [ZVK] 802.1x Inner Auth = PAP\n"),
                    innerRow("OtherText", "--802-auth-inner=MSCHAPV2", "2A 1A 00 00 04 00 00 00 00",
                             "D [ZVK] 802.1x Inner Auth = MSCHAPV2\n"),
                    innerRow("Empty", "--802-auth-inner=", "", "D [ZVK] 802.1x Inner Auth = \n")),
    support::rowName);

SettingRow extensionRow(const char* name, const char* option, const char* object, const char* log) {
  return {{name}, Extension, {option}, object, log};
}

constexpr const char* NoMethod =
    "2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 00 "
    "2A 17 00 00 01 00 2A 18 00 00 01 00 2A 19 00 00 01 00";

INSTANTIATE_TEST_SUITE_P(
    AuthExtension, AuthenticationEncoder,
    testing::Values(
        extensionRow("Md5", "--802-auth-ext=EAP-MD5",
                     "2A 14 00 00 01 01 2A 15 00 00 01 00 2A 16 00 00 01 00 "
                     "2A 17 00 00 01 00 2A 18 00 00 01 00 2A 19 00 00 01 00",
                     "D [ZVK] 802.1x Auth Extension = EAP-MD5\n"),
        extensionRow("MsChapV2", "--802-auth-ext=MSCHAPv2",
                     "2A 14 00 00 01 00 2A 15 00 00 01 01 2A 16 00 00 01 00 "
                     "2A 17 00 00 01 00 2A 18 00 00 01 00 2A 19 00 00 01 00",
                     "D [ZVK] 802.1x Auth Extension = MSCHAPv2\n"),
        extensionRow("Leap", "--802-auth-ext=LEAP",
                     "2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 01 "
                     "2A 17 00 00 01 00 2A 18 00 00 01 00 2A 19 00 00 01 00",
                     "D [ZVK] 802.1x Auth Extension = LEAP\n"),
        extensionRow("Peap", "--802-auth-ext=PEAP",
                     "2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 00 "
                     "2A 17 00 00 01 01 2A 18 00 00 01 00 2A 19 00 00 01 00",
                     "D [ZVK] 802.1x Auth Extension = PEAP\n"),
        extensionRow("Tls", "--802-auth-ext=EAP-TLS",
                     "2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 00 "
                     "2A 17 00 00 01 00 2A 18 00 00 01 01 2A 19 00 00 01 00",
                     "D [ZVK] 802.1x Auth Extension = EAP-TLS\n"),
        // Does not hold the name of the one before.
        extensionRow("Ttls", "--802-auth-ext=EAP-TTLS",
                     "2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 00 "
                     "2A 17 00 00 01 00 2A 18 00 00 01 00 2A 19 00 00 01 01",
                     "D [ZVK] 802.1x Auth Extension = EAP-TTLS\n"),
        extensionRow("All", "--802-auth-ext=EAP-TTLS|EAP-TLS|PEAP|LEAP|MSCHAPv2|EAP-MD5",
                     "2A 14 00 00 01 01 2A 15 00 00 01 01 2A 16 00 00 01 01 "
                     "2A 17 00 00 01 01 2A 18 00 00 01 01 2A 19 00 00 01 01",
                     "D [ZVK] 802.1x Auth Extension = "
                     "EAP-TTLS|EAP-TLS|PEAP|LEAP|MSCHAPv2|EAP-MD5\n"),
        extensionRow("InsideAToken", "--802-auth-ext=xPEAPx|EAP-TTLS",
                     "2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 00 "
                     "2A 17 00 00 01 01 2A 18 00 00 01 00 2A 19 00 00 01 01",
                     "D [ZVK] 802.1x Auth Extension = xPEAPx|EAP-TTLS\n"),
        extensionRow("OneInAnother", "--802-auth-ext=LEAPEAP",
                     "2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 01 "
                     "2A 17 00 00 01 01 2A 18 00 00 01 00 2A 19 00 00 01 00",
                     "D [ZVK] 802.1x Auth Extension = LEAPEAP\n"),
        extensionRow("EmptyTokens", "--802-auth-ext=||LEAP||",
                     "2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 01 "
                     "2A 17 00 00 01 00 2A 18 00 00 01 00 2A 19 00 00 01 00",
                     "D [ZVK] 802.1x Auth Extension = ||LEAP||\n"),
        extensionRow("SplitByTheSeparator", "--802-auth-ext=PE|AP|EAP|-TLS|", NoMethod,
                     "D [ZVK] 802.1x Auth Extension = PE|AP|EAP|-TLS|\n"),
        extensionRow("OtherCase", "--802-auth-ext=peap|MSCHAPV2", NoMethod,
                     "D [ZVK] 802.1x Auth Extension = peap|MSCHAPV2\n"),
        extensionRow("Empty", "--802-auth-ext=", NoMethod, "D [ZVK] 802.1x Auth Extension = \n")),
    support::rowName);

TEST_F(AuthenticationEncoder, PassesOver64KiBOfSeparators) {
  constexpr std::size_t size = 65536;
  const std::string list = std::string(size, '|') + "PEAP";
  expectObject(Extension, {"--802-auth-ext=" + list},
               bytes("2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 00 01 00 "
                     "2A 17 00 00 01 01 2A 18 00 00 01 00 2A 19 00 00 01 00"),
               "D [ZVK] 802.1x Auth Extension = " + list + "\n");
  expectObject(Extension, {"--802-auth-ext=" + std::string(size, 'E')}, bytes(NoMethod),
               "D [ZVK] 802.1x Auth Extension = " + std::string(size, 'E') + "\n");
}

TEST_F(AuthenticationEncoder, LeavesTheConfiguredListAsItWas) {
  use({"--802-auth-ext=PEAP|LEAP"});
  support::outputOf([&] { generator->construct802AuthExtension(); });
  EXPECT_EQ(configuration.get802AuthExt(), "PEAP|LEAP");
}

}  // namespace
