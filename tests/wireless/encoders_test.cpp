#include <gtest/gtest.h>
#include <string>

#include "testing/setting_encoder.h"

// The encoders of SSID, mode and channel.

namespace {

using support::bytes;
using support::joined;
using support::SettingRow;
using support::textBytes;

class NetworkEncoder : public support::SettingTable {};

TEST_P(NetworkEncoder, AppendsItsObjectAndLogsIt) {
  expectRow();
}

constexpr auto Ssid = &wnpaGenerator::constructSSID;
constexpr auto Mode = &wnpaGenerator::constructMode;
constexpr auto Channel = &wnpaGenerator::constructChannel;

INSTANTIATE_TEST_SUITE_P(
    Ssid, NetworkEncoder,
    testing::Values(
        SettingRow{{"FourLetters"},
                   Ssid,
                   {"--ssid=home"},
                   "28 08 00 00 05 68 6F 6D 65 00",
                   "D [ZVK] SSID = home\n"},
        SettingRow{{"OneLetter"}, Ssid, {"--ssid=x"}, "28 08 00 00 02 78 00", "D [ZVK] SSID = x\n"},
        SettingRow{{"AnyBytes"},
                   Ssid,
                   {"--ssid=%s\xC3\xA4 "},
                   "28 08 00 00 06 25 73 C3 A4 20 00",
                   "D [ZVK] SSID = %s\xC3\xA4 \n"},
        SettingRow{{"Empty"}, Ssid, {}, "", "D [ZVK] SSID = \n"}),
    support::rowName);

TEST_F(NetworkEncoder, DoesNotCutTheSsid) {
  const std::string ssid(300, 's');
  expectObject(Ssid, {"--ssid=" + ssid},
               joined({bytes("28 08 00 01 2D"), textBytes(ssid), bytes("00")}),
               "D [ZVK] SSID = " + ssid + "\n");
}

constexpr const char* Managed = "28 02 00 00 04 00 00 00 00";
constexpr const char* AdHoc = "28 02 00 00 04 00 00 00 01";

SettingRow modeRow(const char* name, const std::string& mode, const char* object) {
  return {{name}, Mode, {"--mode=" + mode}, object, "D [ZVK] Mode = '" + mode + "'\n"};
}

INSTANTIATE_TEST_SUITE_P(
    Mode, NetworkEncoder,
    testing::Values(SettingRow{{"Default"}, Mode, {}, Managed, "D [ZVK] Mode = 'Managed'\n"},
                    modeRow("Managed", "Managed", Managed), modeRow("AdHoc", "Ad-Hoc", AdHoc),
                    modeRow("SpellingOfTheHelpText", "Ad-hoc", Managed),
                    modeRow("SmallLetters", "ad-hoc", Managed),
                    modeRow("BlankAfterTheName", "Ad-Hoc ", Managed), modeRow("Empty", "", "")),
    support::rowName);

SettingRow channelRow(const char* name, const std::string& channel, const std::string& code) {
  return {{name}, Channel, {"--channel=" + channel}, "28 05 00 00 04 00 00 00 " + code, ""};
}

INSTANTIATE_TEST_SUITE_P(
    Channel, NetworkEncoder,
    testing::Values(channelRow("One", "1", "01"), channelRow("Two", "2", "02"),
                    channelRow("Three", "3", "03"), channelRow("Four", "4", "04"),
                    channelRow("Five", "5", "05"), channelRow("Six", "6", "06"),
                    channelRow("Seven", "7", "07"), channelRow("Eight", "8", "08"),
                    channelRow("Nine", "9", "09"), channelRow("Ten", "10", "0A"),
                    channelRow("Eleven", "11", "0B"), channelRow("TwelveIsSix", "12", "06"),
                    channelRow("ThirteenIsSix", "13", "06"),
                    channelRow("FourteenIsSix", "14", "06"), channelRow("ZeroIsSix", "0", "06"),
                    channelRow("LeadingZeroIsSix", "01", "06"),
                    channelRow("LeadingBlankIsSix", " 1", "06"),
                    channelRow("TextIsSix", "auto", "06"), channelRow("EmptyIsSix", "", "06")),
    support::rowName);

}  // namespace
