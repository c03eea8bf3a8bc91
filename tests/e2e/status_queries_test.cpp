#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/output.h"
#include "testing/packets.h"
#include "testing/printer_run.h"
#include "testing/rows.h"

// The real program queries the emulated printer.

namespace {

using packets::hexText;
using packets::wrapped;
using support::Bytes;
using support::lines;
using support::PrinterRun;
using support::runWithPrinter;
using support::TransportReleased;
using Words = std::vector<std::string>;

struct QueryRow : support::Row {
  Words options;
  const char* command;
  Bytes query;  ///< without a wrapper
  /// The queries that arrive, in order: "w" is a wrapped query, "b" a bare query.
  const char* arrivals;
  int status;
  const char* out;
};

class StatusQuery : public testing::TestWithParam<QueryRow> {};

TEST_P(StatusQuery, IsSentAndItsReplyPrinted) {
  const QueryRow& row = GetParam();
  const PrinterRun run = runWithPrinter(row.options, {row.command, "{}"});
  EXPECT_EQ(run.status, row.status);
  EXPECT_EQ(run.out, row.out);
  EXPECT_EQ(run.err, TransportReleased);
  Words expected;
  for (const char form : std::string(row.arrivals)) {
    expected.push_back(hexText(form == 'w' ? wrapped(row.query) : row.query));
  }
  EXPECT_EQ(run.received, expected);
}

const Bytes& Ssid = packets::QuerySsid;
const Bytes& Ip = packets::QueryIp;
const Bytes& Trouble = packets::QueryTrouble;
const Bytes& Descriptor = packets::QueryDescriptor;

INSTANTIATE_TEST_SUITE_P(
    Commands, StatusQuery,
    testing::Values(
        QueryRow{{"Ssid"}, {"--ssid=My Net"}, "-s", Ssid, "w", 0, "My Net\n"},
        QueryRow{{"SsidBare"}, {"--refuse-wrapped", "--ssid=x"}, "-s", Ssid, "wb", 0, "x\n"},
        QueryRow{{"SsidRefused"}, {"--refuse-all"}, "-s", Ssid, "wb", 255, ""},
        QueryRow{{"SsidMissing"}, {}, "-s", Ssid, "wwwwwww", 1, ""},
        QueryRow{{"Ip"}, {"--ip=10.0.0.255"}, "-ip", Ip, "w", 0, "10.0.0.255\n"},
        QueryRow{{"IpBare"}, {"--refuse-wrapped"}, "-ip", Ip, "wb", 0, "192.168.1.20\n"},
        QueryRow{{"IpAfterThreeQueries"}, {"--ip-after=3"}, "-ip", Ip, "wwww", 0, "192.168.1.20\n"},
        QueryRow{{"IpAfterSomeSeconds"}, {"--ip-after=12s"}, "-ip", Ip, "www", 0, "192.168.1.20\n"},
        QueryRow{{"IpNever"}, {"--ip=0.0.0.0"}, "-ip", Ip, "wwwwwww", 1, ""},
        QueryRow{{"NoTrouble"}, {}, "-t", Trouble, "w", 0, ""},
        QueryRow{{"NoTroubleBare"}, {"--refuse-wrapped"}, "-t", Trouble, "wb", 0, ""},
        QueryRow{{"Trouble"}, {"--trouble-code=7"}, "-t", Trouble, "wwww", 7, ""},
        QueryRow{{"TroubleThatEnds"},
                 {"--trouble-code=7", "--trouble-over-after=2"},
                 "-t",
                 Trouble,
                 "www",
                 0,
                 ""},
        QueryRow{{"Descriptor"}, {}, "-a", Descriptor, "w", 0, ""},
        QueryRow{{"DescriptorInPieces"}, {"--pieces=7"}, "-a", Descriptor, "w", 0, ""},
        QueryRow{{"DescriptorNeverRight"}, {"--descriptor=x"}, "-a", Descriptor, "wwwwww", 1, ""},
        QueryRow{{"DescriptorRefused"}, {"--refuse-wrapped"}, "-a", Descriptor, "wwwwww", 1, ""}),
    support::rowName);

const std::string WrappedReset = hexText(wrapped(packets::Reset));

TEST(Reset, IsConfirmed) {
  const PrinterRun run = runWithPrinter({}, {"-r", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, TransportReleased);
  EXPECT_EQ(run.received, Words{WrappedReset});
}

TEST(Reset, MakesTwoWrappedAttempts) {
  const PrinterRun run = runWithPrinter({"--refuse-wrapped"}, {"-r", "{}"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.received, (Words{WrappedReset, WrappedReset}));
}

const std::string BareQuery = hexText(packets::QueryAuthStatus);
const std::string WrappedQuery = hexText(wrapped(packets::QueryAuthStatus));

TEST(AuthenticationStatus, IsLoggedInWordsAndReturnedAsTheExitStatus) {
  const PrinterRun run = runWithPrinter({"--auth-status=2"}, {"-802s", "{}"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, lines({"D [ZVK] 802.1x Authentication status...",
                            "D [ZVK] Auth status response (17 bytes)",
                            "E0 63 02 00 0C A5 00 09 50 E0 D8 00 2A 1D 00 01 |.c......P...*...",
                            "02                                              |.",
                            "D [ZVK] Status: 2 (Authenticated)"}) +
                         TransportReleased);
  EXPECT_EQ(run.received, Words{WrappedQuery});
}

TEST(AuthenticationStatus, IsReadFromTheFirstRecordInAReplyOfSeveralPackets) {
  const PrinterRun run =
      runWithPrinter({"--auth-status=11,3", "--other-first", "--packets=3"}, {"-802s", "{}"});
  EXPECT_EQ(run.status, 11);
  EXPECT_NE(run.err.find("D [ZVK] Status: 11 (CA Certificate Not Installed)\n"), std::string::npos)
      << run.err;
}

TEST(AuthenticationStatus, HasNoTextAboveEleven) {
  const PrinterRun run = runWithPrinter({"--auth-status=12"}, {"-802s", "{}"});
  EXPECT_EQ(run.status, 12);
  EXPECT_NE(run.err.find("D [ZVK] Status: 12 ()\n"), std::string::npos) << run.err;
}

TEST(AuthenticationStatus, IsUnknownIfTheRecordIsCut) {
  const PrinterRun run = runWithPrinter({"--cut-record=11"}, {"-802s", "{}"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.err.find("Status:"), std::string::npos) << run.err;
  EXPECT_EQ(run.received, (Words{WrappedQuery, BareQuery}));
}

TEST(AuthenticationStatus, IsQueriedBareIfTheWrappedQueryIsRefused) {
  const PrinterRun run = runWithPrinter({"--refuse-wrapped", "--auth-status=0"}, {"-802s", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.err.find("D [ZVK] Auth status response (0 bytes)\n"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("D [ZVK] Status: 0 (802.1x not enabled)\n"), std::string::npos) << run.err;
  EXPECT_EQ(run.received, (Words{WrappedQuery, BareQuery}));
}

TEST(AuthenticationStatus, FailsIfTheDeviceCannotBeOpened) {
  const PrinterRun run = runWithPrinter({}, {"-802s", "/dev/usb/lp5"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.err, lines({"D [ZVK] 802.1x Authentication status...",
                            "D [ZVK] Failed to open usb device '/dev/usb/lp5'!",
                            "D [ZVK] Auth status response (0 bytes)",
                            "D [ZVK] 802.1x Authentication status...",
                            "D [ZVK] Failed to open usb device '/dev/usb/lp5'!",
                            "D [ZVK] Auth status response (0 bytes)"}) +
                         TransportReleased);
}

}  // namespace
