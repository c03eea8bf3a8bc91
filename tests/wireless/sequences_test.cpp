#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/basic_batch.h"
#include "testing/generator.h"
#include "testing/packets.h"
#include "testing/rows.h"

using support::Bytes;
using support::bytes;
using support::joined;
using support::Output;
using support::textBytes;

namespace {

/// A fixture for tests of `configBasic`, with a scripted printer.
class ConfigBasic : public support::Generator {
 protected:
  int run() { return Generator::run(&wnpaGenerator::configBasic); }
};

// Mode "Ad-Hoc", security "None", channel 3, SSID "x".
const std::vector<std::string> Example = {"--mode=Ad-Hoc", "--security=None", "--channel=3",
                                          "--ssid=x"};
const Bytes& ExampleBare = basic_batch::AdHoc;

}  // namespace

// --- The packet ---------------------------------------------------------------------------------

TEST_F(ConfigBasic, SendsModeSecurityChannelAndSsidWrapped) {
  use(Example);
  answer({packets::Accepted});
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(device.writes, std::vector<Bytes>{packets::wrapped(ExampleBare)});
}

TEST_F(ConfigBasic, SendsABarePacketWithoutWrapMode) {
  use(Example);
  answer({packets::Accepted});
  generator->setWrapMode(false);
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(device.writes, std::vector<Bytes>{ExampleBare});
}

TEST_F(ConfigBasic, SendsThePasswordLast) {
  use({"--ssid=n", "--security=WPA2", "--passwd=key"});
  generator->setWrapMode(false);
  run();
  EXPECT_EQ(device.writes, std::vector<Bytes>{basic_batch::Wpa2});
}

TEST_F(ConfigBasic, LeavesOutEmptyModeAndSsid) {
  use({"--mode=", "--ssid="});
  generator->setWrapMode(false);
  run();
  EXPECT_EQ(device.writes, std::vector<Bytes>{basic_batch::NoModeNoSsid});
}

TEST_F(ConfigBasic, StartsWithAnEmptyPacketEachTime) {
  use(Example);
  Bytes earlier = bytes("EE EE EE");
  generator->appendDataToNPA(3, earlier.data());
  generator->setWrapMode(false);
  run();
  run();
  EXPECT_EQ(device.writes, (std::vector<Bytes>{ExampleBare, ExampleBare}));
}

TEST_F(ConfigBasic, LogsItsSettingsAndItsResult) {
  use({"--ssid=n", "--security=WPA2", "--passwd=key", "--mode=Ad-Hoc"});
  answer({packets::Accepted});
  run();
  EXPECT_EQ(output,
            (Output{"", basic_batch::attemptLines({.ssid = "n",
                                                   .mode = "Ad-Hoc",
                                                   .security = "WPA2",
                                                   .securityMode = "2 (WPA PSK (Auto 1 or 2))"},
                                                  0)}));
}

// --- The result ---------------------------------------------------------------------------------

namespace {

struct ResultRow : support::Row {
  const char* reply;
  int result;
  const char* lastLine;
};

class ConfigBasicResult : public ConfigBasic, public testing::WithParamInterface<ResultRow> {};

}  // namespace

TEST_P(ConfigBasicResult, IsReturnedAndLogged) {
  use(Example);
  answer({bytes(GetParam().reply)});
  EXPECT_EQ(run(), GetParam().result);
  EXPECT_TRUE(output.err.ends_with(GetParam().lastLine)) << output.err;
  EXPECT_EQ(device.writes.size(), 1U);
  EXPECT_TRUE(generator->getWrapMode());
}

INSTANTIATE_TEST_SUITE_P(
    Replies, ConfigBasicResult,
    testing::Values(
        ResultRow{{"Accepted"}, "A5 00 03 50 E0 01", 0, "\nD [ZVK] Basic config ret = 0\n"},
        ResultRow{{"Refused"}, "A5 00 03 D4 E0 01", -1, "\nD [ZVK] Basic config ret = -1\n"},
        ResultRow{{"Silence"}, "", -1, "\nD [ZVK] Basic config ret = -1\n"},
        ResultRow{{"NotAccepted"}, "A5 00 03 50 E0 00", 1, "\nD [ZVK] Basic config ret = 1\n"}),
    support::rowName);

// --- The largest packets ------------------------------------------------------------------------

namespace {

// The SSID sizes for which the outer length field is 65,535. The field also counts the 4 bytes
// 50 E0 DA 01, 33 bytes of the other objects and of the SSID's header and zero byte, and 9 bytes
// for the wrapper.
constexpr std::size_t LargestBareSsid = 65535 - 4 - 33;
constexpr std::size_t LargestWrappedSsid = LargestBareSsid - 9;

struct SizeRow : support::Row {
  bool wrapMode;
  std::size_t ssidSize;
  const char* header;  ///< the start of the packet, in hex; empty if nothing is sent
};

class ConfigBasicSize : public ConfigBasic, public testing::WithParamInterface<SizeRow> {};

}  // namespace

TEST_P(ConfigBasicSize, IsLimitedByALengthFieldOf65535) {
  const std::string ssid(GetParam().ssidSize, 's');
  use({"--ssid=" + ssid});
  answer({packets::Accepted});
  generator->setWrapMode(GetParam().wrapMode);
  const Bytes header = bytes(GetParam().header);
  if (header.empty()) {
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(output.err.substr(output.err.size() - 30), "D [ZVK] Basic config ret = -1\n");
    EXPECT_EQ(device.opens, 0);
    EXPECT_EQ(system.now(), 0);
  } else {
    EXPECT_EQ(run(), 0);
    const Bytes& sent = device.writes.at(0);
    EXPECT_EQ(Bytes(sent.begin(), sent.begin() + static_cast<std::ptrdiff_t>(header.size())),
              header);
    EXPECT_EQ(sent.size(), 3U + header[1] * 256U + header[2]);
    const Bytes end = joined({textBytes(ssid), bytes("00")});
    EXPECT_TRUE(std::equal(end.rbegin(), end.rend(), sent.rbegin()));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Limits, ConfigBasicSize,
    testing::Values(SizeRow{{"BareBelow"}, false, LargestBareSsid - 1, "A5 FF FE 50 E0 DA 01"},
                    SizeRow{{"BareLargest"}, false, LargestBareSsid, "A5 FF FF 50 E0 DA 01"},
                    SizeRow{{"BareAbove"}, false, LargestBareSsid + 1, ""},
                    SizeRow{{"WrappedBelow"},
                            true,
                            LargestWrappedSsid - 1,
                            "A5 FF FE 50 E0 63 02 FF F8 A5 FF F5 50 E0 DA 01"},
                    SizeRow{{"WrappedLargest"},
                            true,
                            LargestWrappedSsid,
                            "A5 FF FF 50 E0 63 02 FF F9 A5 FF F6 50 E0 DA 01"},
                    SizeRow{{"WrappedAbove"}, true, LargestWrappedSsid + 1, ""},
                    SizeRow{{"ObjectSizeAbove"}, false, 65536, ""},
                    SizeRow{{"FarAbove"}, true, 200'000, ""}),
    support::rowName);
