#include <gtest/gtest.h>
#include <string>

#include "testing/encoder.h"

using support::Bytes;
using support::bytes;
using support::Encoder;
using support::EncoderRow;
using support::Encoders;
using support::joined;
using support::textBytes;

namespace {

constexpr auto Ssid = &wnpaGenerator::constructSSID;
constexpr auto Mode = &wnpaGenerator::constructMode;
constexpr auto Channel = &wnpaGenerator::constructChannel;
}  // namespace

TEST_P(Encoder, ReturnsTheCountOfItsBytesAndLeavesTheTotalAlone) {
  expectCountAndLog();
}

TEST_P(Encoder, AppendsItsObject) {
  expectObject();
}

INSTANTIATE_TEST_SUITE_P(
    Ssid, Encoder,
    testing::Values(
        EncoderRow{{"FourLetters"},
                   Ssid,
                   {"--ssid=home"},
                   "28 08 00 00 05 68 6F 6D 65 00",
                   "D [ZVK] SSID = home\n"},
        EncoderRow{{"OneLetter"}, Ssid, {"--ssid=x"}, "28 08 00 00 02 78 00", "D [ZVK] SSID = x\n"},
        EncoderRow{{"AnyBytes"},
                   Ssid,
                   {"--ssid=%s\xC3\xA4 "},
                   "28 08 00 00 06 25 73 C3 A4 20 00",
                   "D [ZVK] SSID = %s\xC3\xA4 \n"},
        EncoderRow{{"Empty"}, Ssid, {}, "", "D [ZVK] SSID = \n"}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Mode, Encoder,
    testing::Values(
        EncoderRow{{"AdHoc"},
                   Mode,
                   {"--mode=Ad-Hoc"},
                   "28 02 00 00 04 00 00 00 01",
                   "D [ZVK] Mode = 'Ad-Hoc'\n"},
        EncoderRow{
            {"Managed"}, Mode, {}, "28 02 00 00 04 00 00 00 00", "D [ZVK] Mode = 'Managed'\n"},
        EncoderRow{{"SpellingOfTheHelpText"},
                   Mode,
                   {"--mode=Ad-hoc"},
                   "28 02 00 00 04 00 00 00 00",
                   "D [ZVK] Mode = 'Ad-hoc'\n"},
        EncoderRow{{"SmallLetters"},
                   Mode,
                   {"--mode=ad-hoc"},
                   "28 02 00 00 04 00 00 00 00",
                   "D [ZVK] Mode = 'ad-hoc'\n"},
        EncoderRow{{"MoreThanTheName"},
                   Mode,
                   {"--mode=Ad-Hoc "},
                   "28 02 00 00 04 00 00 00 00",
                   "D [ZVK] Mode = 'Ad-Hoc '\n"},
        EncoderRow{{"Empty"}, Mode, {"--mode="}, "", "D [ZVK] Mode = ''\n"}),
    support::rowName);

namespace {

EncoderRow channelRow(const char* name, const char* option, const char* object) {
  return {{name}, Channel, {option}, object, ""};
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Channel, Encoder,
    testing::Values(channelRow("One", "--channel=1", "28 05 00 00 04 00 00 00 01"),
                    channelRow("Two", "--channel=2", "28 05 00 00 04 00 00 00 02"),
                    channelRow("Three", "--channel=3", "28 05 00 00 04 00 00 00 03"),
                    channelRow("Four", "--channel=4", "28 05 00 00 04 00 00 00 04"),
                    channelRow("Five", "--channel=5", "28 05 00 00 04 00 00 00 05"),
                    channelRow("Six", "--channel=6", "28 05 00 00 04 00 00 00 06"),
                    channelRow("Seven", "--channel=7", "28 05 00 00 04 00 00 00 07"),
                    channelRow("Eight", "--channel=8", "28 05 00 00 04 00 00 00 08"),
                    channelRow("Nine", "--channel=9", "28 05 00 00 04 00 00 00 09"),
                    channelRow("Ten", "--channel=10", "28 05 00 00 04 00 00 00 0A"),
                    channelRow("Eleven", "--channel=11", "28 05 00 00 04 00 00 00 0B"),
                    channelRow("TwelveIsSix", "--channel=12", "28 05 00 00 04 00 00 00 06"),
                    channelRow("ThirteenIsSix", "--channel=13", "28 05 00 00 04 00 00 00 06"),
                    channelRow("FourteenIsSix", "--channel=14", "28 05 00 00 04 00 00 00 06"),
                    channelRow("ZeroIsSix", "--channel=0", "28 05 00 00 04 00 00 00 06"),
                    channelRow("LeadingZeroIsSix", "--channel=01", "28 05 00 00 04 00 00 00 06"),
                    channelRow("LeadingBlankIsSix", "--channel= 1", "28 05 00 00 04 00 00 00 06"),
                    channelRow("TextIsSix", "--channel=auto", "28 05 00 00 04 00 00 00 06"),
                    channelRow("EmptyIsSix", "--channel=", "28 05 00 00 04 00 00 00 06")),
    support::rowName);

// --- Long texts ---------------------------------------------------------------------------------

TEST_F(Encoders, SsidIsNotCut) {
  const std::string ssid(300, 's');
  use({"--ssid=" + ssid});
  const Bytes object = joined({bytes("28 08 00 01 2D"), textBytes(ssid), bytes("00")});
  EXPECT_EQ(occurrences(sentObjects(), object), 1);
}

TEST_F(Encoders, PasswordIsNotCut) {
  const std::string password(300, 'p');
  use({"--security=WPA", "--passwd=" + password});
  const Bytes object = joined({bytes("28 11 00 01 2D"), textBytes(password), bytes("00")});
  EXPECT_EQ(occurrences(sentObjects(), object), 1);
}
