#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/generator.h"
#include "testing/packets.h"
#include "testing/rows.h"

// The status queries: what goes out, and what is read from the collected reply.

namespace {

using packets::replyOf;
using support::Bytes;
using support::bytes;
using support::joined;
using support::Output;
using virtual_system::Second;
using Query = support::Operation;
using StatusQueries = support::DefaultGenerator;

// --- What goes out ------------------------------------------------------------------------------

struct RequestRow : support::Row {
  Query query;
  const char* request;
  std::vector<unsigned int> pauses;  ///< when nothing answers
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

TEST_P(Request, IsAnnounced) {
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

// --- The authentication status ------------------------------------------------------------------

struct StatusRow : support::Row {
  std::uint8_t status;
  const char* text;
};

class AuthStatus : public StatusQueries, public testing::WithParamInterface<StatusRow> {};

TEST_P(AuthStatus, HasAText) {
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

TEST_F(StatusQueries, ShowTheWholeReplyAndItsSize) {
  answer({replyOf(bytes("A5 00 09 50 E0 D8 00 2A 1D 00 01 02"))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), 2);
  EXPECT_EQ(output, (Output{"",
                            "D [ZVK] 802.1x Authentication status...\n"
                            "D [ZVK] Auth status response (13 bytes)\n"
                            "E0 A5 00 09 50 E0 D8 00 2A 1D 00 01 02 |....P...*....\n"
                            "D [ZVK] Status: 2 (Authenticated)\n"}));
}

// --- The records of a reply ---------------------------------------------------------------------

struct ScanRow : support::Row {
  const char* records;  ///< group 2A, object 1D for the status, 13 and 11 for the other two
  int authStatus;
  int installed;
  const char* installedLines;
};

class Scan : public StatusQueries, public testing::WithParamInterface<ScanRow> {
 protected:
  /// The records with another object number.
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

TEST_P(Scan, GivesTheFirstStatus) {
  answer({replyOf(recordsFor(0x1D))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), GetParam().authStatus);
}

TEST_P(Scan, GivesTheFirstEnabledFlag) {
  answer({replyOf(recordsFor(0x13))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthEnabled), GetParam().authStatus);
}

TEST_P(Scan, GivesTheLastInstalledFlagAndTellsEach) {
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
        ScanRow{{"StartByteAlone"}, "A5", -1, -1, ""},
        ScanRow{{"OnlyStartBytes"}, "A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5", -1, -1, ""},
        ScanRow{{"EmptyValueAtTheEnd"},
                "A5 00 08 50 E0 D8 00 2A 1D 00 00",
                -1,
                -1,
                "D [ZVK] Status: 0 (no)\n"},
        ScanRow{{"EmptyValueAheadOfAnotherByte"},
                "A5 00 08 50 E0 D8 00 2A 1D 00 00 07",
                7,
                -1,
                "D [ZVK] Status: 0 (no)\n"},
        ScanRow{{"EmptyValueBehindAnother"},
                "A5 00 09 50 E0 D8 00 2A 1D 00 01 01 A5 00 08 50 E0 D8 00 2A 1D 00 00",
                1,
                1,
                "D [ZVK] Status: 1 (yes)\nD [ZVK] Status: 0 (no)\n"},
        ScanRow{{"LengthOfOnlyAHighByte"},
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

TEST_F(StatusQueries, FindTheRecordInAFurtherPacket) {
  answer({joined({replyOf(bytes("A5 00 09 50 E0 D8 00 2A 26 00 01 09"), 0x70),
                  replyOf(bytes("A5 00 09 50 E0 D8 00 2A 1D 00 01 02"))})});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), 2);
}

TEST_F(StatusQueries, PassOverAThousandTruncatedRecords) {
  const std::string truncated = support::repeated("A5 00 09 50 E0 D8 00 2A ", 1000);
  answer({replyOf(bytes(truncated + "A5 00 09 50 E0 D8 00 2A 1D 00 01 02"))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), 2);
}

TEST_F(StatusQueries, HaveNoAnswerWhenOnlyStartBytesCome) {
  // A length of A5A5, which the rest of the stream does not fill.
  answer({Bytes(1000, 0xA5)});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthStatus), -1);
  EXPECT_TRUE(output.err.ends_with("D [ZVK] Auth status response (0 bytes)\n")) << output.err;
}

// --- Flags and dumps ----------------------------------------------------------------------------

TEST_F(StatusQueries, TellEnabledWithoutADump) {
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

TEST_F(StatusQueries, TellWhetherACertificateAuthorityIsInstalled) {
  answer({replyOf(bytes("A5 00 09 50 E0 D8 00 2A 11 00 01 01"))});
  EXPECT_EQ(run(&wnpaGenerator::getCertAuthInstalled), 1);
  EXPECT_EQ(output.err,
            "D [ZVK] Certificate Authority installed?...\n"
            "D [ZVK] Cert auth installed (13 bytes)\n"
            "E0 A5 00 09 50 E0 D8 00 2A 11 00 01 01 |....P...*....\n"
            "D [ZVK] Status: 1 (yes)\n");
}

TEST_F(StatusQueries, DumpAllSecuritySettingsAndAnswerMinusOne) {
  answer({replyOf(bytes("41 42"))});
  EXPECT_EQ(run(&wnpaGenerator::getAllSecuritySettings), -1);
  EXPECT_EQ(output.err,
            "D [ZVK] All security settings...\n"
            "D [ZVK] All security settings (3 bytes)\n"
            "E0 41 42 |.AB\n");
}

TEST_F(StatusQueries, DumpTheCommonNameAndAnswerMinusOne) {
  answer({replyOf(bytes("41"))});
  EXPECT_EQ(run(&wnpaGenerator::get802AuthCommonName), -1);
  EXPECT_EQ(output.err,
            "D [ZVK] 802.1x Auth common name...\n"
            "D [ZVK] Auth common name response (2 bytes)\n"
            "E0 41 |.A\n");
}

TEST_F(StatusQueries, ReadOnUntilThreeSecondsAfterThePause) {
  // Each packet says that another follows. The last one arrives when the time is over.
  device.onWrite = [this](const Bytes& /*request*/) {
    device.reply(replyOf(bytes("01"), 0x70), 4 * Second);
    device.reply(replyOf(bytes("02"), 0x70), 5 * Second);
    device.reply(replyOf(bytes("03"), 0x70), 5 * Second + Second / 2);
  };
  run(&wnpaGenerator::getAllSecuritySettings);
  EXPECT_TRUE(output.err.ends_with("(4 bytes)\nE0 01 E0 02 |....\n")) << output.err;
}

}  // namespace
