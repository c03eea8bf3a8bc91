#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/generator.h"
#include "testing/packets.h"
#include "testing/rows.h"

// The status queries: their requests, and what they read from the collected reply.

namespace {

using packets::replyOf;
using support::Bytes;
using support::bytes;
using support::joined;
using support::Output;
using virtual_system::Second;
using Query = support::Operation;
using StatusQueries = support::DefaultGenerator;

// --- Requests -----------------------------------------------------------------------------------

struct RequestRow : support::Row {
  Query query;
  const char* request;
  std::vector<unsigned int> pauses;  ///< seconds, if the printer is silent
  const char* announcement;
};

class Request : public StatusQueries, public testing::WithParamInterface<RequestRow> {};

TEST_P(Request, IsWrapped) {
  run(GetParam().query);
  EXPECT_EQ(device.writes.at(0), packets::wrapped(bytes(GetParam().request)));
  EXPECT_EQ(system.sleeps, GetParam().pauses);
}

TEST_P(Request, IsBareWithoutWrapMode) {
  generator->setWrapMode(false);
  run(GetParam().query);
  EXPECT_EQ(device.writes.at(0), bytes(GetParam().request));
}

TEST_P(Request, IsLoggedFirst) {
  run(GetParam().query);
  EXPECT_TRUE(output.err.starts_with(GetParam().announcement)) << output.err;
  EXPECT_EQ(output.out, "");
}

RequestRow requestRow(const char* name, Query query, const char* request, std::size_t attempts,
                      unsigned int pause, const char* announcement = "") {
  return {{name}, query, request, std::vector<unsigned int>(attempts, pause), announcement};
}

using G = wnpaGenerator;

INSTANTIATE_TEST_SUITE_P(
    Queries, Request,
    testing::Values(
        requestRow("Ssid", &G::getSSID, "A5 00 06 50 E0 D8 00 28 08", 7, 2),
        requestRow("Ip", &G::getIP, "A5 00 06 50 E0 D8 00 0A 02", 7, 3),
        requestRow("TroubleCode", &G::getTroubleCode, "A5 00 06 50 E0 D8 00 28 15", 4, 2),
        requestRow("AdapterDescriptor", &G::getAdapterDescriptor, "A5 00 06 50 E0 D8 00 06 1F", 5,
                   10),
        requestRow("AuthStatus", &G::get802AuthStatus, "A5 00 06 50 E0 D8 00 2A 1D", 1, 2,
                   "D [ZVK] 802.1x Authentication status...\n"),
        requestRow("AuthEnabled", &G::get802AuthEnabled, "A5 00 06 50 E0 D8 00 2A 13", 1, 2,
                   "D [ZVK] 802.1x Auth enabled?...\n"),
        requestRow("CertAuthInstalled", &G::getCertAuthInstalled, "A5 00 06 50 E0 D8 00 2A 11", 1,
                   2, "D [ZVK] Certificate Authority installed?...\n"),
        requestRow("AllSecuritySettings", &G::getAllSecuritySettings, "A5 00 06 50 E0 D8 00 2A 25",
                   1, 2, "D [ZVK] All security settings...\n"),
        requestRow("AuthCommonName", &G::get802AuthCommonName, "A5 00 06 50 E0 D8 00 2A 1B", 1, 2,
                   "D [ZVK] 802.1x Auth common name...\n")),
    support::rowName);

// --- Authentication status ----------------------------------------------------------------------

struct StatusRow : support::Row {
  std::uint8_t status;
  const char* text;
};

class AuthStatus : public StatusQueries, public testing::WithParamInterface<StatusRow> {};

TEST_P(AuthStatus, IsLoggedWithItsText) {
  const Bytes record = joined({bytes("A5 00 09 50 E0 D8 00 2A 1D 00 01"), {GetParam().status}});
  answer({replyOf(record)});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), GetParam().status);
  const std::string last =
      "D [ZVK] Status: " + std::to_string(GetParam().status) + " (" + GetParam().text + ")\n";
  EXPECT_TRUE(output.err.ends_with("\n" + last)) << output.err;
}

INSTANTIATE_TEST_SUITE_P(
    Codes, AuthStatus,
    testing::Values(StatusRow{{"NotEnabled"}, 0, "802.1x not enabled"},
                    StatusRow{{"NotAuthenticated"}, 1, "NOT authenticated (deprecated)"},
                    StatusRow{{"Authenticated"}, 2, "Authenticated"},
                    StatusRow{{"NotConnected"}, 3, "Not Connected"},
                    StatusRow{{"NotYetValid"}, 4, "Server Cert Not Yet Valid"},
                    StatusRow{{"Expired"}, 5, "Server Cert Expired"},
                    StatusRow{{"OtherFailure"}, 6, "Other Server Cert Verification Failure"},
                    StatusRow{{"ClientCert"}, 7, "Client Cert Verification Failed"},
                    StatusRow{{"EapType"}, 8, "EAP Type Mismatch"},
                    StatusRow{{"Failed"}, 9, "Authentication Failed (general)"},
                    StatusRow{{"InProgress"}, 10, "Authentication in Progress"},
                    StatusRow{{"NoCa"}, 11, "CA Certificate Not Installed"},
                    StatusRow{{"FirstWithoutText"}, 12, ""}, StatusRow{{"Largest"}, 255, ""}),
    support::rowName);

TEST_F(StatusQueries, LogTheReplyAndItsSize) {
  answer({replyOf(packets::AuthenticatedRecord)});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), 2);
  EXPECT_EQ(output, (Output{"",
                            "D [ZVK] 802.1x Authentication status...\n"
                            "D [ZVK] Auth status response (13 bytes)\n"
                            "E0 A5 00 09 50 E0 D8 00 2A 1D 00 01 02 |....P...*....\n"
                            "D [ZVK] Status: 2 (Authenticated)\n"}));
}

// --- Records of a reply -------------------------------------------------------------------------

struct ScanRow : support::Row {
  const char* records;  ///< the reply's records in hex, with object 1D; other queries replace 1D
  int authStatus;
  int installed;
  const char* installedLines;
};

class Scan : public StatusQueries, public testing::WithParamInterface<ScanRow> {
 protected:
  /// Returns the row's records with another object number.
  static Bytes recordsFor(std::uint8_t object) {
    Bytes records = bytes(GetParam().records);
    for (std::size_t i = 0; i + 1 < records.size(); ++i) {
      if (records[i] == 0x2A && records[i + 1] == 0x1D) {
        records[i + 1] = object;
      }
    }
    return records;
  }
};

TEST_P(Scan, ReturnsTheFirstStatus) {
  answer({replyOf(recordsFor(0x1D))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), GetParam().authStatus);
}

TEST_P(Scan, ReturnsTheFirstEnabledFlag) {
  answer({replyOf(recordsFor(0x13))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthEnabled), GetParam().authStatus);
}

TEST_P(Scan, ReturnsTheLastInstalledFlagAndLogsEach) {
  answer({replyOf(recordsFor(0x11))});
  EXPECT_EQ(run(&wnpaGenerator::getCertAuthInstalled), GetParam().installed);
  std::string lines = output.err;
  const std::size_t first = lines.find("D [ZVK] Status:");
  EXPECT_EQ(first == std::string::npos ? "" : lines.substr(first), GetParam().installedLines);
}

INSTANTIATE_TEST_SUITE_P(
    Replies, Scan,
    testing::Values(
        ScanRow{{"OneRecord"},
                "A5 00 09 50 E0 D8 00 2A 1D 00 01 01",
                1,
                1,
                "D [ZVK] Status: 1 (yes)\n"},
        ScanRow{{"TwoRecords"},
                "A5 00 09 50 E0 D8 00 2A 1D 00 01 01 A5 00 09 50 E0 D8 00 2A 1D 00 01 02",
                1,
                2,
                "D [ZVK] Status: 1 (yes)\nD [ZVK] Status: 2 (no)\n"},
        ScanRow{{"AnotherSettingFirst"},
                "A5 00 09 50 E0 D8 00 2A 26 00 01 09 A5 00 09 50 E0 D8 00 2A 1D 00 01 00",
                0,
                0,
                "D [ZVK] Status: 0 (no)\n"},
        ScanRow{{"AnotherGroup"}, "A5 00 09 50 E0 D8 00 28 1D 00 01 01", -1, -1, ""},
        ScanRow{{"AnotherStartByte"}, "A4 00 09 50 E0 D8 00 2A 1D 00 01 01", -1, -1, ""},
        ScanRow{{"AnotherFlag"}, "A5 00 09 70 E0 D8 00 2A 1D 00 01 01", -1, -1, ""},
        ScanRow{{"AnotherCommand"}, "A5 00 09 50 E1 D8 00 2A 1D 00 01 01", -1, -1, ""},
        ScanRow{{"AnotherKind"}, "A5 00 09 50 E0 DA 01 2A 1D 00 01 01", -1, -1, ""},
        ScanRow{{"WithinTheLengthOfAnother"},
                "A5 A5 00 09 50 E0 D8 00 2A 1D 00 01 04",
                4,
                4,
                "D [ZVK] Status: 4 (no)\n"},
        ScanRow{{"StatusBeyondTheReply"}, "A5 00 09 50 E0 D8 00 2A 1D 00 01", -1, -1, ""},
        ScanRow{{"HeaderCut"}, "A5 00 09 50 E0 D8 00 2A 1D 00", -1, -1, ""},
        ScanRow{{"ObjectCut"}, "A5 00 09 50 E0 D8 00 2A", -1, -1, ""},
        ScanRow{{"OnlyTheStartByte"}, "A5", -1, -1, ""},
        ScanRow{{"OnlyStartBytes"}, "A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5", -1, -1, ""},
        ScanRow{{"EmptyValueAtTheEnd"},
                "A5 00 08 50 E0 D8 00 2A 1D 00 00",
                -1,
                -1,
                "D [ZVK] Status: 0 (no)\n"},
        ScanRow{{"EmptyValueBeforeAnotherByte"},
                "A5 00 08 50 E0 D8 00 2A 1D 00 00 07",
                7,
                -1,
                "D [ZVK] Status: 0 (no)\n"},
        ScanRow{{"EmptyValueAfterAnother"},
                "A5 00 09 50 E0 D8 00 2A 1D 00 01 01 A5 00 08 50 E0 D8 00 2A 1D 00 00",
                1,
                1,
                "D [ZVK] Status: 1 (yes)\nD [ZVK] Status: 0 (no)\n"},
        ScanRow{{"SizeWithOnlyAHighByte"},
                "A5 00 09 50 E0 D8 00 2A 1D 01 00 05",
                5,
                -1,
                "D [ZVK] Status: 0 (no)\n"},
        ScanRow{{"WrongLengthField"},
                "A5 FF FF 50 E0 D8 00 2A 1D 00 01 03",
                3,
                3,
                "D [ZVK] Status: 3 (no)\n"}),
    support::rowName);

TEST_F(StatusQueries, FindTheRecordInALaterPacket) {
  answer({joined({replyOf(bytes("A5 00 09 50 E0 D8 00 2A 26 00 01 09"), 0x70),
                  replyOf(packets::AuthenticatedRecord)})});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), 2);
}

TEST_F(StatusQueries, SkipAThousandTruncatedRecords) {
  const std::string truncated = support::repeated("A5 00 09 50 E0 D8 00 2A ", 1000);
  answer({replyOf(bytes(truncated + packets::hexText(packets::AuthenticatedRecord)))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), 2);
}

TEST_F(StatusQueries, ReturnMinusOneForStartBytesOnly) {
  // The packet's length field says A5A5, which is more than the rest of the reply.
  answer({Bytes(1000, 0xA5)});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), -1);
  EXPECT_TRUE(output.err.ends_with("D [ZVK] Auth status response (0 bytes)\n")) << output.err;
}

// --- Flags and dumps ----------------------------------------------------------------------------

TEST_F(StatusQueries, LogTheEnabledFlagWithoutADump) {
  answer({replyOf(bytes("A5 00 09 50 E0 D8 00 2A 13 00 01 01")),
          replyOf(bytes("A5 00 09 50 E0 D8 00 2A 13 00 01 02"))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthEnabled), 1);
  EXPECT_EQ(output.err,
            "D [ZVK] 802.1x Auth enabled?...\n"
            "D [ZVK] Status: 1 (enabled)\n");
  EXPECT_EQ(run(&wnpaGenerator::get802AuthEnabled), 2);
  EXPECT_EQ(output.err,
            "D [ZVK] 802.1x Auth enabled?...\n"
            "D [ZVK] Status: 2 (disabled)\n");
}

TEST_F(StatusQueries, LogWhetherACaCertificateIsInstalled) {
  answer({replyOf(bytes("A5 00 09 50 E0 D8 00 2A 11 00 01 01"))});
  EXPECT_EQ(run(&wnpaGenerator::getCertAuthInstalled), 1);
  EXPECT_EQ(output.err,
            "D [ZVK] Certificate Authority installed?...\n"
            "D [ZVK] Cert auth installed (13 bytes)\n"
            "E0 A5 00 09 50 E0 D8 00 2A 11 00 01 01 |....P...*....\n"
            "D [ZVK] Status: 1 (yes)\n");
}

TEST_F(StatusQueries, DumpAllSecuritySettingsAndReturnMinusOne) {
  answer({replyOf(bytes("41 42"))});
  EXPECT_EQ(run(&wnpaGenerator::getAllSecuritySettings), -1);
  EXPECT_EQ(output.err,
            "D [ZVK] All security settings...\n"
            "D [ZVK] All security settings (3 bytes)\n"
            "E0 41 42 |.AB\n");
}

TEST_F(StatusQueries, DumpTheCommonNameAndReturnMinusOne) {
  answer({replyOf(bytes("41"))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthCommonName), -1);
  EXPECT_EQ(output.err,
            "D [ZVK] 802.1x Auth common name...\n"
            "D [ZVK] Auth common name response (2 bytes)\n"
            "E0 41 |.A\n");
}

TEST_F(StatusQueries, ReadUntilThreeSecondsAfterThePause) {
  // Each packet announces another packet. The last packet arrives after the deadline.
  device.onWrite = [this](const Bytes& /*request*/) {
    device.reply(replyOf(bytes("01"), 0x70), 4 * Second);
    device.reply(replyOf(bytes("02"), 0x70), 5 * Second);
    device.reply(replyOf(bytes("03"), 0x70), 5 * Second + Second / 2);
  };
  run(&wnpaGenerator::getAllSecuritySettings);
  EXPECT_TRUE(output.err.ends_with("(4 bytes)\nE0 01 E0 02 |....\n")) << output.err;
}

}  // namespace
