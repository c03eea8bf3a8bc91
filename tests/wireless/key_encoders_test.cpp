#include <gtest/gtest.h>

#include "testing/setting_encoder.h"

// The settings of WEP beside the keys themselves, whose texts are tested with all others.

namespace {

using support::SettingRow;

class WepEncoder : public support::SettingTable {};

TEST_P(WepEncoder, AppendsItsObjectAndTells) {
  expectRow();
}

constexpr auto Transmit = &wnpaGenerator::constructWEPTransmit;
constexpr auto Auth = &wnpaGenerator::constructWEPAuth;

SettingRow transmitRow(const char* name, const char* option, const char* object, const char* log) {
  return {{name}, Transmit, {option}, object, log};
}

INSTANTIATE_TEST_SUITE_P(
    Transmit, WepEncoder,
    testing::Values(transmitRow("One", "--WEP-transmit=1", "28 1F 00 00 04 00 00 00 01",
                                "D [ZVK] WEP Transmit key = 1\n"),
                    transmitRow("Four", "--WEP-transmit=4", "28 1F 00 00 04 00 00 00 04",
                                "D [ZVK] WEP Transmit key = 4\n"),
                    transmitRow("Zero", "--WEP-transmit=0", "28 1F 00 00 04 00 00 00 00",
                                "D [ZVK] WEP Transmit key = 0\n"),
                    // Told as configured, sent as 1.
                    transmitRow("Empty", "--WEP-transmit=", "28 1F 00 00 04 00 00 00 01",
                                "D [ZVK] WEP Transmit key = \n"),
                    transmitRow("DigitsAheadOfText", "--WEP-transmit= 3rd",
                                "28 1F 00 00 04 00 00 00 03", "D [ZVK] WEP Transmit key =  3rd\n"),
                    transmitRow("Text", "--WEP-transmit=two", "28 1F 00 00 04 00 00 00 00",
                                "D [ZVK] WEP Transmit key = two\n"),
                    transmitRow("LargestByte", "--WEP-transmit=255", "28 1F 00 00 04 00 00 00 FF",
                                "D [ZVK] WEP Transmit key = 255\n"),
                    transmitRow("LowestByte", "--WEP-transmit=258", "28 1F 00 00 04 00 00 00 02",
                                "D [ZVK] WEP Transmit key = 258\n"),
                    transmitRow("Negative", "--WEP-transmit=-1", "28 1F 00 00 04 00 00 00 FF",
                                "D [ZVK] WEP Transmit key = -1\n"),
                    transmitRow("Large", "--WEP-transmit=2147483646", "28 1F 00 00 04 00 00 00 FE",
                                "D [ZVK] WEP Transmit key = 2147483646\n"),
                    transmitRow("Huge", "--WEP-transmit=99999999999999999999999",
                                "28 1F 00 00 04 00 00 00 FF",
                                "D [ZVK] WEP Transmit key = 99999999999999999999999\n"),
                    transmitRow("HugeNegative", "--WEP-transmit=-99999999999999999999999",
                                "28 1F 00 00 04 00 00 00 00",
                                "D [ZVK] WEP Transmit key = -99999999999999999999999\n")),
    support::rowName);

TEST_F(WepEncoder, TakesATransmitKeyOf64KiB) {
  const std::string digits(65536, '7');
  expectObject(Transmit, {"--WEP-transmit=" + digits}, support::bytes("28 1F 00 00 04 00 00 00 FF"),
               "D [ZVK] WEP Transmit key = " + digits + "\n");
}

constexpr const char* Auth0 = "28 23 00 00 04 00 00 00 00";
constexpr const char* Auth1 = "28 23 00 00 04 00 00 00 01";
constexpr const char* Auth2 = "28 23 00 00 04 00 00 00 02";
constexpr const char* AutoLine = "D [ZVK] WEP auth mode: 0 (Auto)\n";

INSTANTIATE_TEST_SUITE_P(
    Auth, WepEncoder,
    testing::Values(
        SettingRow{{"NoEncryption"}, Auth, {"--security=OPEN"}, "", ""},
        SettingRow{{"EncryptionNone"}, Auth, {"--encryption=NONE"}, Auth0, AutoLine},
        SettingRow{{"NoneOfOpen"}, Auth, {"--encryption=NONE", "--security=OPEN"}, Auth0, AutoLine},
        SettingRow{{"Open"},
                   Auth,
                   {"--encryption=WEP", "--security=OPEN"},
                   Auth1,
                   "D [ZVK] WEP auth mode: 1 (Open)\n"},
        SettingRow{{"Shared"},
                   Auth,
                   {"--encryption=WEP", "--security=SHARED"},
                   Auth2,
                   "D [ZVK] WEP auth mode: 2 (Shared)\n"},
        SettingRow{
            {"OtherSecurity"}, Auth, {"--encryption=WEP", "--security=802.1x"}, Auth0, AutoLine},
        SettingRow{{"OtherCase"}, Auth, {"--encryption=WEP", "--security=open"}, Auth0, AutoLine},
        SettingRow{{"EmptySecurity"}, Auth, {"--encryption=WEP", "--security="}, Auth0, AutoLine},
        SettingRow{{"OtherEncryption"},
                   Auth,
                   {"--encryption=WEP-STATIC", "--security=OPEN"},
                   Auth0,
                   AutoLine},
        SettingRow{
            {"SmallLetters"}, Auth, {"--encryption=wep", "--security=SHARED"}, Auth0, AutoLine}),
    support::rowName);

}  // namespace
