#include <gtest/gtest.h>
#include <string>

#include "testing/setting_encoder.h"

// The WEP settings except the keys. setting_encoding_test.cpp tests the keys.

namespace {

using support::SettingRow;

class WepEncoder : public support::SettingTable {};

TEST_P(WepEncoder, AppendsItsObjectAndLogsIt) {
  expectRow();
}

constexpr auto Transmit = &wnpaGenerator::constructWEPTransmit;
constexpr auto Auth = &wnpaGenerator::constructWEPAuth;

SettingRow transmitRow(const char* name, const std::string& key, const std::string& code) {
  return {{name},
          Transmit,
          {"--WEP-transmit=" + key},
          "28 1F 00 00 04 00 00 00 " + code,
          "D [ZVK] WEP Transmit key = " + key + "\n"};
}

INSTANTIATE_TEST_SUITE_P(
    Transmit, WepEncoder,
    testing::Values(transmitRow("One", "1", "01"), transmitRow("Four", "4", "04"),
                    transmitRow("Zero", "0", "00"),
                    // An empty text is logged unchanged and sent as 1.
                    transmitRow("Empty", "", "01"), transmitRow("DigitsBeforeText", " 3rd", "03"),
                    transmitRow("Text", "two", "00"), transmitRow("LargestByte", "255", "FF"),
                    transmitRow("LowestByte", "258", "02"), transmitRow("Negative", "-1", "FF"),
                    transmitRow("Large", "2147483646", "FE"),
                    transmitRow("Huge", "99999999999999999999999", "FF"),
                    transmitRow("HugeNegative", "-99999999999999999999999", "00"),
                    transmitRow("Size64KiB", std::string(65536, '7'), "FF")),
    support::rowName);

SettingRow authRow(const char* name, const std::string& encryption, const std::string& security,
                   const std::string& mode) {
  return {{name},
          Auth,
          {"--encryption=" + encryption, "--security=" + security},
          "28 23 00 00 04 00 00 00 0" + mode.substr(0, 1),
          "D [ZVK] WEP auth mode: " + mode + "\n"};
}

constexpr const char* Automatic = "0 (Auto)";

INSTANTIATE_TEST_SUITE_P(
    Auth, WepEncoder,
    testing::Values(SettingRow{{"NoEncryption"}, Auth, {"--security=OPEN"}, "", ""},
                    authRow("EncryptionNone", "NONE", "None", Automatic),
                    authRow("NoneOfOpen", "NONE", "OPEN", Automatic),
                    authRow("Open", "WEP", "OPEN", "1 (Open)"),
                    authRow("Shared", "WEP", "SHARED", "2 (Shared)"),
                    authRow("OtherSecurity", "WEP", "802.1x", Automatic),
                    authRow("OtherCase", "WEP", "open", Automatic),
                    authRow("EmptySecurity", "WEP", "", Automatic),
                    authRow("OtherEncryption", "WEP-STATIC", "OPEN", Automatic),
                    authRow("SmallLetters", "wep", "SHARED", Automatic)),
    support::rowName);

}  // namespace
