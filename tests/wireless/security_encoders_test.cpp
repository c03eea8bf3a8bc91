#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/setting_encoder.h"

namespace {

using support::bytes;
using support::joined;
using support::SettingRow;
using support::textBytes;

class SecurityEncoder : public support::SettingTable {};

TEST_P(SecurityEncoder, AppendsItsObjectAndLogsIt) {
  expectRow();
}

constexpr auto Security = &wnpaGenerator::constructSecurity;
constexpr auto Passwd = &wnpaGenerator::constructPasswd;

// The security modes as they are logged. The digit is the number that is sent.
constexpr const char* NoSecurity = "0 (No Security)";
constexpr const char* Wep = "1 (WEP)";
constexpr const char* Psk = "2 (WPA PSK (Auto 1 or 2))";
constexpr const char* Ieee8021x = "3 (802.1x)";

SettingRow securityRow(const char* name, const std::string& security, const std::string& mode,
                       const std::string& encryption = "") {
  return {{name},
          Security,
          {"--security=" + security, "--encryption=" + encryption},
          "28 22 00 00 04 00 00 00 0" + mode.substr(0, 1),
          "D [ZVK] Security = '" + security + "'\nD [ZVK] Security mode: " + mode + "\n"};
}

INSTANTIATE_TEST_SUITE_P(
    Security, SecurityEncoder,
    testing::Values(
        SettingRow{{"Default"},
                   Security,
                   {},
                   "28 22 00 00 04 00 00 00 00",
                   "D [ZVK] Security = 'None'\n"
                   "D [ZVK] Security mode: 0 (No Security)\n"},
        securityRow("None", "None", NoSecurity), securityRow("Empty", "", NoSecurity),
        securityRow("Open", "OPEN", NoSecurity), securityRow("OpenWithWep", "OPEN", Wep, "WEP"),
        securityRow("OpenWithStaticWep", "OPEN", NoSecurity, "WEP-STATIC"),
        securityRow("NoneWithWep", "None", NoSecurity, "WEP"), securityRow("Wep", "WEP", Wep),
        securityRow("Shared", "SHARED", Wep), securityRow("Wpa", "WPA", Psk),
        securityRow("WpaPersonal", "WPA-PER", Psk), securityRow("Wpa2", "WPA2", Psk),
        securityRow("WpaEnterprise", "WPA-ENT", Psk), securityRow("Ieee8021x", "802.1x", Ieee8021x),
        securityRow("OtherCase", "wpa", NoSecurity), securityRow("OtherText", "WPA3", NoSecurity)),
    support::rowName);

SettingRow passwordRow(const char* name, std::vector<std::string> options, const char* object) {
  options.emplace_back("--passwd=abc");
  return {{name}, Passwd, std::move(options), object, ""};
}

constexpr const char* WepKey = "28 09 00 00 04 61 62 63 00";
constexpr const char* PreSharedKey = "28 11 00 00 04 61 62 63 00";

INSTANTIATE_TEST_SUITE_P(
    Passwd, SecurityEncoder,
    testing::Values(SettingRow{{"SecurityNoneWithoutPassword"}, Passwd, {}, "", ""},
                    passwordRow("SecurityNone", {}, ""),
                    passwordRow("WepKeySlot", {"--security=WEP"}, WepKey),
                    passwordRow("PskSlot", {"--security=WPA"}, PreSharedKey),
                    passwordRow("PskSlotOfOpen", {"--security=OPEN", "--encryption=WEP"},
                                PreSharedKey),
                    passwordRow("PskSlotOfShared", {"--security=SHARED"}, PreSharedKey),
                    passwordRow("EmptySecurityDiffersFromNone", {"--security="}, PreSharedKey),
                    passwordRow("OtherCaseDiffersFromNone", {"--security=none"}, PreSharedKey)),
    support::rowName);

TEST_F(SecurityEncoder, DoesNotCutThePassword) {
  const std::string password(300, 'p');
  expectObject(Passwd, {"--security=WPA", "--passwd=" + password},
               joined({bytes("28 11 00 01 2D"), textBytes(password), bytes("00")}), "");
}

}  // namespace
