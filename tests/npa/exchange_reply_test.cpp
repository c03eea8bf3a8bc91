// What each special exchange makes of a reply.

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

struct JudgedRow : support::Row {
  Operation operation;
  const char* reply;  ///< the same in every attempt
  int result;
  std::string printed;
  std::size_t attempts;
};

class Judged : public CheckedExchange, public testing::WithParamInterface<JudgedRow> {};

}  // namespace

TEST_P(Judged, ByTheBytesThatCame) {
  answer({bytes(GetParam().reply)});
  EXPECT_EQ(run(GetParam().operation), GetParam().result);
  EXPECT_EQ(printed, GetParam().printed);
  EXPECT_EQ(device.writes.size(), GetParam().attempts);
}

INSTANTIATE_TEST_SUITE_P(
    SetConfig, Judged,
    testing::Values(
        JudgedRow{{"NoByte"}, SetConfig, "", -1, "", 1},
        JudgedRow{{"OneByteAccepted"}, SetConfig, "01", 0, "", 1},
        JudgedRow{{"OneByteNotAccepted"}, SetConfig, "00", 1, "", 1},
        JudgedRow{{"OneByteLikeARefusal"}, SetConfig, "D4", 1, "", 1},
        JudgedRow{{"TwoBytes"}, SetConfig, "A5 01", 0, "", 1},
        JudgedRow{{"ThreeBytes"}, SetConfig, "A5 00 D4", 1, "", 1},
        JudgedRow{{"ThreeBytesAccepted"}, SetConfig, "D4 D4 01", 0, "", 1},
        JudgedRow{{"FourBytesRefused"}, SetConfig, "A5 00 01 D4", -1, "", 1},
        JudgedRow{{"FourBytesAccepted"}, SetConfig, "A5 00 01 01", 0, "", 1},
        JudgedRow{{"RefusedThoughTheEndIsAccepted"}, SetConfig, "A5 00 03 D4 E0 01", -1, "", 1},
        JudgedRow{{"AcceptedWithAnotherFlag"}, SetConfig, "A5 00 03 50 E0 01", 0, "", 1},
        JudgedRow{{"FlagElsewhere"}, SetConfig, "A5 00 D4 50 D4 01", 0, "", 1},
        JudgedRow{{"OtherEnd"}, SetConfig, "A5 00 03 50 01 81", 1, "", 1}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    ResetIna, Judged,
    testing::Values(JudgedRow{{"NoByte"}, ResetIna, "", 1, "", 2},
                    JudgedRow{{"OneByte"}, ResetIna, "01", 0, "", 1},
                    JudgedRow{{"OneOtherByte"}, ResetIna, "02", 1, "", 2},
                    JudgedRow{{"TwoBytes"}, ResetIna, "A5 01", 0, "", 1},
                    JudgedRow{{"ThreeBytes"}, ResetIna, "A5 00 00", 1, "", 2},
                    JudgedRow{{"RefusalIsNoSpecialCase"}, ResetIna, "A5 00 03 D4", 1, "", 2},
                    JudgedRow{{"RefusalThatEndsWell"}, ResetIna, "A5 00 03 D4 01", 0, "", 1}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    GetAdapterDescriptor, Judged,
    testing::Values(
        JudgedRow{{"NoByte"}, GetAdapterDescriptor, "", 1, "", 6},
        JudgedRow{{"OneByte"}, GetAdapterDescriptor, "2D", 0, "", 1},
        JudgedRow{{"OneOtherByte"}, GetAdapterDescriptor, "2E", 1, "", 6},
        JudgedRow{{"TwoBytes"}, GetAdapterDescriptor, "2D 2D", 0, "", 1},
        JudgedRow{{"ThreeBytes"}, GetAdapterDescriptor, "2D 2D 00", 1, "", 6},
        JudgedRow{{"RefusalIsNoSpecialCase"}, GetAdapterDescriptor, "A5 00 03 D4", 1, "", 6},
        JudgedRow{{"RefusalThatEndsWell"}, GetAdapterDescriptor, "A5 00 03 D4 2D", 0, "", 1}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    GetTroubleCode, Judged,
    testing::Values(JudgedRow{{"NoByte"}, GetTroubleCode, "", 1, "", 4},
                    JudgedRow{{"NoTrouble"}, GetTroubleCode, "00", 0, "", 1},
                    JudgedRow{{"OneByte"}, GetTroubleCode, "D4", 0xD4, "", 4},
                    JudgedRow{{"TwoBytes"}, GetTroubleCode, "A5 00", 0, "", 1},
                    JudgedRow{{"ThreeBytes"}, GetTroubleCode, "A5 00 07", 7, "", 4},
                    JudgedRow{{"FourBytesRefused"}, GetTroubleCode, "A5 00 07 D4", -1, "", 1},
                    JudgedRow{{"FourBytes"}, GetTroubleCode, "A5 00 07 50", 0x50, "", 4},
                    JudgedRow{
                        {"RefusedThoughTheEndIsZero"}, GetTroubleCode, "A5 00 07 D4 00", -1, "", 1},
                    JudgedRow{{"Code7"}, GetTroubleCode, "A5 00 03 50 E0 07", 7, "", 4},
                    JudgedRow{{"Code255"}, GetTroubleCode, "A5 00 03 50 E0 FF", 255, "", 4}),
    support::rowName);

// The request has three bytes, so the text starts at the sixth.
INSTANTIATE_TEST_SUITE_P(
    GetSsid, Judged,
    testing::Values(
        JudgedRow{{"NoByte"}, GetSsid, "", 1, "", 7},
        JudgedRow{{"OneByte"}, GetSsid, "41", 1, "", 7},
        JudgedRow{{"TwoBytes"}, GetSsid, "41 42", 1, "", 7},
        JudgedRow{{"ThreeBytes"}, GetSsid, "41 42 D4", 1, "", 7},
        JudgedRow{{"FourBytes"}, GetSsid, "41 42 43 44", 1, "", 7},
        JudgedRow{{"FourBytesRefused"}, GetSsid, "A5 00 01 D4", -1, "", 1},
        JudgedRow{{"RefusedThoughATextFollows"}, GetSsid, "A5 00 01 D4 E0 41 42 00", -1, "", 1},
        JudgedRow{{"NoByteOfTheText"}, GetSsid, "A5 00 06 00 04", 1, "", 7},
        JudgedRow{{"OneByteOfTheText"}, GetSsid, "A5 00 06 00 04 68", 0, "h\n", 1},
        JudgedRow{{"EmptyText"}, GetSsid, "A5 00 06 00 04 00 41", 0, "\n", 1},
        JudgedRow{{"TextUpToItsZero"}, GetSsid, "A5 00 06 00 05 68 6F 6D 65 00 41", 0, "home\n", 1},
        JudgedRow{{"TextWithoutZeroEndsWithTheReply"},
                  GetSsid,
                  "A5 00 06 00 04 68 6F 6D 65",
                  0,
                  "home\n",
                  1},
        JudgedRow{{"AnyBytes"}, GetSsid, "A5 00 06 00 04 0A FF 1B 25 73", 0, "\n\xFF\x1B%s\n", 1}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    GetIp, Judged,
    testing::Values(
        JudgedRow{{"NoByte"}, GetIp, "", 1, "", 7}, JudgedRow{{"OneByte"}, GetIp, "C0", 1, "", 7},
        JudgedRow{{"TwoBytes"}, GetIp, "C0 A8", 1, "", 7},
        JudgedRow{{"ThreeBytes"}, GetIp, "C0 A8 D4", 1, "", 7},
        JudgedRow{{"FourBytes"}, GetIp, "C0 A8 01 14", 0, "192.168.1.20\n", 1},
        JudgedRow{{"FourBytesRefused"}, GetIp, "C0 A8 01 D4", -1, "", 1},
        JudgedRow{{"RefusedThoughAnAddressFollows"}, GetIp, "A5 00 07 D4 C0 A8 01 14", -1, "", 1},
        JudgedRow{
            {"LastFourBytes"}, GetIp, "A5 00 09 50 E0 D8 00 C0 A8 01 14", 0, "192.168.1.20\n", 1},
        JudgedRow{{"FirstByteAlone"}, GetIp, "A5 00 09 50 01 00 00 00", 0, "1.0.0.0\n", 1},
        JudgedRow{{"LastByteAlone"}, GetIp, "A5 00 09 50 00 00 00 FF", 0, "0.0.0.255\n", 1},
        JudgedRow{{"AllBitsSet"}, GetIp, "FF FF FF FF", 0, "255.255.255.255\n", 1},
        JudgedRow{{"ZeroAddress"}, GetIp, "A5 00 09 50 E0 00 00 00 00", 1, "", 7}),
    support::rowName);

// --- Replies that change from attempt to attempt ------------------------------------------------

TEST_F(CheckedExchange, GetTroubleCodeReturnsTheCodeOfTheFourthAttempt) {
  answer({bytes("A5 00 03 50 E0 01"), bytes("A5 00 03 50 E0 02"), bytes("A5 00 03 50 E0 03"),
          bytes("A5 00 03 50 E0 04")});
  EXPECT_EQ(run(GetTroubleCode), 4);
}

TEST_F(CheckedExchange, GetTroubleCodeIsOverWhenTheTroubleIs) {
  answer({bytes("07"), bytes("07"), bytes("07"), bytes("00")});
  EXPECT_EQ(run(GetTroubleCode), 0);
  EXPECT_EQ(device.writes.size(), 4U);
}

TEST_F(CheckedExchange, GetIpRepeatsUntilTheAddressIsThere) {
  answer({bytes("00 00 00 00"), bytes("00 00"), bytes("0A 00 00 01")});
  EXPECT_EQ(run(GetIp), 0);
  EXPECT_EQ(printed, "10.0.0.1\n");
  EXPECT_EQ(device.writes.size(), 3U);
}

TEST_F(CheckedExchange, GetIpForgetsTheReplyOfTheAttemptBefore) {
  answer({bytes("C0 A8 01"), bytes("00"), bytes("00"), bytes("00")});
  EXPECT_EQ(run(GetIp), 1);
  EXPECT_EQ(printed, "");
}

TEST_F(CheckedExchange, EachGetIpAttemptMayBeRefused) {
  answer({bytes("00 00 00 00"), bytes("A5 00 01 D4")});
  EXPECT_EQ(run(GetIp), -1);
  EXPECT_EQ(device.writes.size(), 2U);
}

TEST_F(CheckedExchange, GetSsidPrintsAsMuchAsItsBufferHolds) {
  answer({joined({bytes("A5 00 06 00 04"), Bytes(600, 'x')})});
  EXPECT_EQ(run(GetSsid), 0);
  EXPECT_EQ(printed, std::string(512 - 5, 'x') + "\n");
}
