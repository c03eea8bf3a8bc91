// The result and the output of each exchange that checks its reply, for many replies.

#include <gtest/gtest.h>
#include <string>

#include "testing/checked_exchange.h"
#include "testing/rows.h"

using support::Bytes;
using support::bytes;
using support::CheckedExchange;
using support::joined;

namespace {

using Operation = int (sendConfig::*)(unsigned char*, int);

constexpr Operation SetConfig = &sendConfig::setConfig;
constexpr Operation ResetIna = &sendConfig::resetINA;
constexpr Operation GetAdapterDescriptor = &sendConfig::getAdapterDescriptor;
constexpr Operation GetTroubleCode = &sendConfig::getTroubleCode;
constexpr Operation GetSsid = &sendConfig::getSSID;
constexpr Operation GetIp = &sendConfig::getIP;

struct CheckedRow : support::Row {
  Operation operation;
  const char* reply;  ///< the reply to every attempt, in hex
  int result;
  std::string printed;
  std::size_t attempts;
};

class CheckedReply : public CheckedExchange, public testing::WithParamInterface<CheckedRow> {};

}  // namespace

TEST_P(CheckedReply, DeterminesTheResult) {
  answer({bytes(GetParam().reply)});
  EXPECT_EQ(run(GetParam().operation), GetParam().result);
  EXPECT_EQ(printed, GetParam().printed);
  EXPECT_EQ(device.writes.size(), GetParam().attempts);
}

INSTANTIATE_TEST_SUITE_P(
    SetConfig, CheckedReply,
    testing::Values(
        CheckedRow{{"NoByte"}, SetConfig, "", -1, "", 1},
        CheckedRow{{"OneByteAccepted"}, SetConfig, "01", 0, "", 1},
        CheckedRow{{"OneByteNotAccepted"}, SetConfig, "00", 1, "", 1},
        CheckedRow{{"OneByteLikeARefusal"}, SetConfig, "D4", 1, "", 1},
        CheckedRow{{"TwoBytes"}, SetConfig, "A5 01", 0, "", 1},
        CheckedRow{{"ThreeBytes"}, SetConfig, "A5 00 D4", 1, "", 1},
        CheckedRow{{"ThreeBytesAccepted"}, SetConfig, "D4 D4 01", 0, "", 1},
        CheckedRow{{"FourBytesRefused"}, SetConfig, "A5 00 01 D4", -1, "", 1},
        CheckedRow{{"FourBytesAccepted"}, SetConfig, "A5 00 01 01", 0, "", 1},
        CheckedRow{{"RefusedAlthoughTheEndIsAccepted"}, SetConfig, "A5 00 03 D4 E0 01", -1, "", 1},
        CheckedRow{{"AcceptedWithAnotherFlag"}, SetConfig, "A5 00 03 50 E0 01", 0, "", 1},
        CheckedRow{{"FlagElsewhere"}, SetConfig, "A5 00 D4 50 D4 01", 0, "", 1},
        CheckedRow{{"OtherEnd"}, SetConfig, "A5 00 03 50 01 81", 1, "", 1}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    ResetIna, CheckedReply,
    testing::Values(CheckedRow{{"NoByte"}, ResetIna, "", 1, "", 2},
                    CheckedRow{{"OneByte"}, ResetIna, "01", 0, "", 1},
                    CheckedRow{{"OneOtherByte"}, ResetIna, "02", 1, "", 2},
                    CheckedRow{{"TwoBytes"}, ResetIna, "A5 01", 0, "", 1},
                    CheckedRow{{"ThreeBytes"}, ResetIna, "A5 00 00", 1, "", 2},
                    CheckedRow{{"RefusalIsNotSpecial"}, ResetIna, "A5 00 03 D4", 1, "", 2},
                    CheckedRow{{"RefusalThatEndsWell"}, ResetIna, "A5 00 03 D4 01", 0, "", 1}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    GetAdapterDescriptor, CheckedReply,
    testing::Values(
        CheckedRow{{"NoByte"}, GetAdapterDescriptor, "", 1, "", 6},
        CheckedRow{{"OneByte"}, GetAdapterDescriptor, "2D", 0, "", 1},
        CheckedRow{{"OneOtherByte"}, GetAdapterDescriptor, "2E", 1, "", 6},
        CheckedRow{{"TwoBytes"}, GetAdapterDescriptor, "2D 2D", 0, "", 1},
        CheckedRow{{"ThreeBytes"}, GetAdapterDescriptor, "2D 2D 00", 1, "", 6},
        CheckedRow{{"RefusalIsNotSpecial"}, GetAdapterDescriptor, "A5 00 03 D4", 1, "", 6},
        CheckedRow{{"RefusalThatEndsWell"}, GetAdapterDescriptor, "A5 00 03 D4 2D", 0, "", 1}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    GetTroubleCode, CheckedReply,
    testing::Values(
        CheckedRow{{"NoByte"}, GetTroubleCode, "", 1, "", 4},
        CheckedRow{{"NoTrouble"}, GetTroubleCode, "00", 0, "", 1},
        CheckedRow{{"OneByte"}, GetTroubleCode, "D4", 0xD4, "", 4},
        CheckedRow{{"TwoBytes"}, GetTroubleCode, "A5 00", 0, "", 1},
        CheckedRow{{"ThreeBytes"}, GetTroubleCode, "A5 00 07", 7, "", 4},
        CheckedRow{{"FourBytesRefused"}, GetTroubleCode, "A5 00 07 D4", -1, "", 1},
        CheckedRow{{"FourBytes"}, GetTroubleCode, "A5 00 07 50", 0x50, "", 4},
        CheckedRow{{"RefusedAlthoughTheEndIsZero"}, GetTroubleCode, "A5 00 07 D4 00", -1, "", 1},
        CheckedRow{{"Code7"}, GetTroubleCode, "A5 00 03 50 E0 07", 7, "", 4},
        CheckedRow{{"Code255"}, GetTroubleCode, "A5 00 03 50 E0 FF", 255, "", 4}),
    support::rowName);

// The reply repeats the request, which has three bytes here. A length of two bytes follows. Then
// the text starts, at the sixth byte.
INSTANTIATE_TEST_SUITE_P(
    GetSsid, CheckedReply,
    testing::Values(
        CheckedRow{{"NoByte"}, GetSsid, "", 1, "", 7},
        CheckedRow{{"OneByte"}, GetSsid, "41", 1, "", 7},
        CheckedRow{{"TwoBytes"}, GetSsid, "41 42", 1, "", 7},
        CheckedRow{{"ThreeBytes"}, GetSsid, "41 42 D4", 1, "", 7},
        CheckedRow{{"FourBytes"}, GetSsid, "41 42 43 44", 1, "", 7},
        CheckedRow{{"FourBytesRefused"}, GetSsid, "A5 00 01 D4", -1, "", 1},
        CheckedRow{{"RefusedAlthoughATextFollows"}, GetSsid, "A5 00 01 D4 E0 41 42 00", -1, "", 1},
        CheckedRow{{"NoByteOfTheText"}, GetSsid, "A5 00 06 00 04", 1, "", 7},
        CheckedRow{{"OneByteOfTheText"}, GetSsid, "A5 00 06 00 04 68", 0, "h\n", 1},
        CheckedRow{{"EmptyText"}, GetSsid, "A5 00 06 00 04 00 41", 0, "\n", 1},
        CheckedRow{
            {"TextUpToItsZeroByte"}, GetSsid, "A5 00 06 00 05 68 6F 6D 65 00 41", 0, "home\n", 1},
        CheckedRow{{"TextWithoutZeroByteEndsWithTheReply"},
                   GetSsid,
                   "A5 00 06 00 04 68 6F 6D 65",
                   0,
                   "home\n",
                   1},
        CheckedRow{{"AnyBytes"}, GetSsid, "A5 00 06 00 04 0A FF 1B 25 73", 0, "\n\xFF\x1B%s\n", 1}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    GetIp, CheckedReply,
    testing::Values(
        CheckedRow{{"NoByte"}, GetIp, "", 1, "", 7}, CheckedRow{{"OneByte"}, GetIp, "C0", 1, "", 7},
        CheckedRow{{"TwoBytes"}, GetIp, "C0 A8", 1, "", 7},
        CheckedRow{{"ThreeBytes"}, GetIp, "C0 A8 D4", 1, "", 7},
        CheckedRow{{"FourBytes"}, GetIp, "C0 A8 01 14", 0, "192.168.1.20\n", 1},
        CheckedRow{{"FourBytesRefused"}, GetIp, "C0 A8 01 D4", -1, "", 1},
        CheckedRow{
            {"RefusedAlthoughAnAddressFollows"}, GetIp, "A5 00 07 D4 C0 A8 01 14", -1, "", 1},
        CheckedRow{
            {"LastFourBytes"}, GetIp, "A5 00 09 50 E0 D8 00 C0 A8 01 14", 0, "192.168.1.20\n", 1},
        CheckedRow{{"OnlyTheFirstByte"}, GetIp, "A5 00 09 50 01 00 00 00", 0, "1.0.0.0\n", 1},
        CheckedRow{{"OnlyTheLastByte"}, GetIp, "A5 00 09 50 00 00 00 FF", 0, "0.0.0.255\n", 1},
        CheckedRow{{"AllBitsSet"}, GetIp, "FF FF FF FF", 0, "255.255.255.255\n", 1},
        CheckedRow{{"ZeroAddress"}, GetIp, "A5 00 09 50 E0 00 00 00 00", 1, "", 7}),
    support::rowName);

// --- Replies that change from attempt to attempt ------------------------------------------------

TEST_F(CheckedExchange, GetTroubleCodeReturnsTheCodeOfTheFourthAttempt) {
  answer({bytes("A5 00 03 50 E0 01"), bytes("A5 00 03 50 E0 02"), bytes("A5 00 03 50 E0 03"),
          bytes("A5 00 03 50 E0 04")});
  EXPECT_EQ(run(GetTroubleCode), 4);
}

TEST_F(CheckedExchange, GetTroubleCodeEndsWithTheFirstCodeZero) {
  answer({bytes("07"), bytes("07"), bytes("07"), bytes("00")});
  EXPECT_EQ(run(GetTroubleCode), 0);
  EXPECT_EQ(device.writes.size(), 4U);
}

TEST_F(CheckedExchange, GetIpRepeatsUntilTheReplyHasAnAddress) {
  answer({bytes("00 00 00 00"), bytes("00 00"), bytes("0A 00 00 01")});
  EXPECT_EQ(run(GetIp), 0);
  EXPECT_EQ(printed, "10.0.0.1\n");
  EXPECT_EQ(device.writes.size(), 3U);
}

TEST_F(CheckedExchange, GetIpDiscardsTheReplyOfThePreviousAttempt) {
  answer({bytes("C0 A8 01"), bytes("00"), bytes("00"), bytes("00")});
  EXPECT_EQ(run(GetIp), 1);
  EXPECT_EQ(printed, "");
}

TEST_F(CheckedExchange, GetIpReturnsMinusOneIfALaterAttemptIsRefused) {
  answer({bytes("00 00 00 00"), bytes("A5 00 01 D4")});
  EXPECT_EQ(run(GetIp), -1);
  EXPECT_EQ(device.writes.size(), 2U);
}

TEST_F(CheckedExchange, GetSsidPrintsOnlyTheTextInItsBuffer) {
  answer({joined({bytes("A5 00 06 00 04"), Bytes(600, 'x')})});
  EXPECT_EQ(run(GetSsid), 0);
  EXPECT_EQ(printed, std::string(512 - 5, 'x') + "\n");
}
