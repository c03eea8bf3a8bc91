#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/generator.h"
#include "testing/object_store.h"
#include "testing/packets.h"
#include "testing/rows.h"

namespace {

using support::Bytes;
using support::bytes;
using Options = std::vector<std::string>;
using Sequence = support::Operation;
using packets::Accepted;
using packets::dumpOf;
using packets::NotAccepted;
using packets::Refused;
using packets::wrapped;
using Sequences = support::Generator;

// --- One batch ----------------------------------------------------------------------------------

struct BatchRow : support::Row {
  Sequence sequence;
  const char* security;
  Options options;
  const char* packet;
  /// The first log lines. The lines between the first lines and the dump are the same in all rows.
  const char* before;
};

class Batch : public Sequences, public testing::WithParamInterface<BatchRow> {
 protected:
  void prepare(bool wrapMode, const Bytes& reply) {
    Options options = GetParam().options;
    options.push_back(std::string("--security=") + GetParam().security);
    options.insert(options.end(), {"--ssid=x", "--channel=3"});
    use(options);
    generator->setWrapMode(wrapMode);
    answer({reply});
  }

  static Bytes sent(bool wrapMode) {
    const Bytes packet = bytes(GetParam().packet);
    return wrapMode ? wrapped(packet) : packet;
  }
};

TEST_P(Batch, IsSentWrappedAndBare) {
  for (const bool wrapMode : {true, false}) {
    prepare(wrapMode, Accepted);
    device.writes.clear();
    EXPECT_EQ(run(GetParam().sequence), 0);
    EXPECT_EQ(device.writes, std::vector<Bytes>{sent(wrapMode)});
    EXPECT_EQ(output.out, "");
    EXPECT_TRUE(output.err.starts_with(GetParam().before)) << output.err;
    EXPECT_TRUE(output.err.ends_with("D [ZVK] SSID = x\n" + dumpOf(sent(wrapMode)))) << output.err;
  }
}

TEST_P(Batch, ReturnsTheResultOfTheExchange) {
  prepare(true, NotAccepted);
  EXPECT_EQ(run(GetParam().sequence), 1);
  prepare(true, Refused);
  EXPECT_EQ(run(GetParam().sequence), -1);
  EXPECT_TRUE(generator->getWrapMode());
  prepare(true, {});
  EXPECT_EQ(run(GetParam().sequence), -1);
}

TEST_P(Batch, IsNotSentIfItDoesNotFitIntoAPacket) {
  use({"--ssid=" + std::string(65536, 's'), std::string("--security=") + GetParam().security});
  EXPECT_EQ(run(GetParam().sequence), -1);
  EXPECT_EQ(device.opens, 0);
  EXPECT_TRUE(output.err.ends_with("sss\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Sequences, Batch,
    testing::Values(
        BatchRow{{"Open"},
                 &wnpaGenerator::configOpen,
                 "OPEN",
                 {"--WEP-key1=abcde", "--encryption=WEP-STATIC"},
                 "A5 00 26 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 00 "
                 "28 05 00 00 04 00 00 00 03 28 08 00 00 02 78 00",
                 "D [ZVK] Configuring Open Mode...\n"
                 "D [ZVK] Mode = 'Managed'\n"
                 "D [ZVK] Security = 'OPEN'\n"
                 "D [ZVK] Security mode: 0 (No Security)\n"},
        BatchRow{{"OpenWithWep"},
                 &wnpaGenerator::configOpen,
                 "OPEN",
                 {"--WEP-key1=abcde", "--encryption=WEP"},
                 "A5 00 51 50 E0 DA 01 28 09 00 00 05 61 62 63 64 65 28 0B 00 00 00 28 0D 00 00 00 "
                 "28 0F 00 00 00 28 1F 00 00 04 00 00 00 01 28 23 00 00 04 00 00 00 01 "
                 "28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 01 28 05 00 00 04 00 00 00 03 "
                 "28 08 00 00 02 78 00",
                 "D [ZVK] Configuring Open Mode...\n"
                 "D [ZVK] WEP Key 1 = 'abcde' (5 bytes)\n"
                 "D [ZVK] WEP Key 2 = '' (0 bytes)\n"
                 "D [ZVK] WEP Key 3 = '' (0 bytes)\n"
                 "D [ZVK] WEP Key 4 = '' (0 bytes)\n"
                 "D [ZVK] WEP Transmit key = \n"
                 "D [ZVK] WEP auth mode: 1 (Open)\n"
                 "D [ZVK] Mode = 'Managed'\n"
                 "D [ZVK] Security = 'OPEN'\n"
                 "D [ZVK] Security mode: 1 (WEP)\n"},
        BatchRow{{"Shared"},
                 &wnpaGenerator::configShared,
                 "SHARED",
                 {"--WEP-key2=12345", "--WEP-transmit=2", "--encryption=WEP", "--mode=Ad-Hoc"},
                 "A5 00 51 50 E0 DA 01 28 09 00 00 00 28 0B 00 00 05 31 32 33 34 35 28 0D 00 00 00 "
                 "28 0F 00 00 00 28 1F 00 00 04 00 00 00 02 28 23 00 00 04 00 00 00 02 "
                 "28 02 00 00 04 00 00 00 01 28 22 00 00 04 00 00 00 01 28 05 00 00 04 00 00 00 03 "
                 "28 08 00 00 02 78 00",
                 "D [ZVK] Configuring Shared Mode...\n"
                 "D [ZVK] WEP Key 1 = '' (0 bytes)\n"
                 "D [ZVK] WEP Key 2 = '12345' (5 bytes)\n"
                 "D [ZVK] WEP Key 3 = '' (0 bytes)\n"
                 "D [ZVK] WEP Key 4 = '' (0 bytes)\n"
                 "D [ZVK] WEP Transmit key = 2\n"
                 "D [ZVK] WEP auth mode: 2 (Shared)\n"
                 "D [ZVK] Mode = 'Ad-Hoc'\n"
                 "D [ZVK] Security = 'SHARED'\n"
                 "D [ZVK] Security mode: 1 (WEP)\n"},
        BatchRow{{"SharedWithoutEncryption"},
                 &wnpaGenerator::configShared,
                 "SHARED",
                 {},
                 "A5 00 43 50 E0 DA 01 28 09 00 00 00 28 0B 00 00 00 28 0D 00 00 00 28 0F 00 00 00 "
                 "28 1F 00 00 04 00 00 00 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 01 "
                 "28 05 00 00 04 00 00 00 03 28 08 00 00 02 78 00",
                 "D [ZVK] Configuring Shared Mode...\n"
                 "D [ZVK] WEP Key 1 = '' (0 bytes)\n"
                 "D [ZVK] WEP Key 2 = '' (0 bytes)\n"
                 "D [ZVK] WEP Key 3 = '' (0 bytes)\n"
                 "D [ZVK] WEP Key 4 = '' (0 bytes)\n"
                 "D [ZVK] WEP Transmit key = \n"
                 "D [ZVK] Mode = 'Managed'\n"},
        BatchRow{{"WpaPersonal"},
                 &wnpaGenerator::configWPAPersonal,
                 "WPA-PER",
                 {"--psk=secret88", "--encryption=AES"},
                 "A5 00 3C 50 E0 DA 01 28 11 00 00 08 73 65 63 72 65 74 38 38 "
                 "28 26 00 00 04 00 00 00 04 28 02 00 00 04 00 00 00 00 "
                 "28 22 00 00 04 00 00 00 02 28 05 00 00 04 00 00 00 03 28 08 00 00 02 78 00",
                 "D [ZVK] Configuring WPA Personal...\n"
                 "D [ZVK] PSK (Pre-shared key) = secret88 (8 bytes)\n"
                 "D [ZVK] Encryption (advanced) = AES\n"
                 "D [ZVK] Mode = 'Managed'\n"
                 "D [ZVK] Security = 'WPA-PER'\n"
                 "D [ZVK] Security mode: 2 (WPA PSK (Auto 1 or 2))\n"},
        BatchRow{{"WpaEnterprise"},
                 &wnpaGenerator::configWPAEnt,
                 "WPA-ENT",
                 {"--encryption=TKIP"},
                 "A5 00 34 50 E0 DA 01 28 11 00 00 00 28 26 00 00 04 00 00 00 03 "
                 "28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 02 28 05 00 00 04 00 00 00 03 "
                 "28 08 00 00 02 78 00",
                 "D [ZVK] Configuring WPA Enterprise...\n"
                 "D [ZVK] PSK (Pre-shared key) =  (0 bytes)\n"
                 "D [ZVK] Encryption (advanced) = TKIP\n"
                 "D [ZVK] Mode = 'Managed'\n"
                 "D [ZVK] Security = 'WPA-ENT'\n"
                 "D [ZVK] Security mode: 2 (WPA PSK (Auto 1 or 2))\n"}),
    support::rowName);

// --- 802.1x -------------------------------------------------------------------------------------

const Options Credentials = {"--ssid=x",         "--channel=3",         "--security=802.1x",
                             "--encryption=AES", "--802-auth-ext=PEAP", "--802-auth-inner=PAP",
                             "--802-user=u",     "--802-pwd=p"};
const Bytes BareOptions = bytes(
    "A5 00 4E 50 E0 DA 01 28 26 00 00 04 00 00 00 04 2A 14 00 00 01 00 2A 15 00 00 01 00 "
    "2A 16 00 00 01 00 2A 17 00 00 01 01 2A 18 00 00 01 00 2A 19 00 00 01 00 "
    "2A 1A 00 00 04 00 00 00 03 2A 02 00 00 02 75 00 2A 03 00 00 02 70 00 2A 24 00 00 01 01");
const Bytes WrappedOptions = wrapped(BareOptions);
// In this packet the SSID precedes the channel.
const Bytes BareNetwork = bytes(
    "A5 00 26 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 03 "
    "28 08 00 00 02 78 00 28 05 00 00 04 00 00 00 03");
const Bytes WrappedNetwork = wrapped(BareNetwork);
const Bytes WrappedStatusQuery = wrapped(packets::QueryAuthStatus);

const Bytes TwoCertificates = support::success(support::listChild({"a", "b"}));
const Bytes Status = packets::replyOf(packets::AuthenticatedRecord);

const std::string OptionLines =
    "D [ZVK] Setting 8021x Options...\n"
    "D [ZVK] Encryption (advanced) = AES\n"
    "D [ZVK] 802.1x Auth Extension = PEAP\n"
    "D [ZVK] 802.1x Inner Auth = PAP\n"
    "D [ZVK] 802.1x User = u (1 bytes)\n"
    "D [ZVK] 802.1x password = p (1 bytes)\n";

class Authentication : public Sequences {
 protected:
  /// Returns the packets after the method call for the printer's certificates.
  std::vector<Bytes> packets() { return {device.writes.begin() + 1, device.writes.end()}; }
};

TEST_F(Authentication, SendsTheOptionsAndTheNetworkAndQueriesTheStatus) {
  use(Credentials);
  answer({TwoCertificates, Accepted, Accepted, Status});
  EXPECT_EQ(run(&wnpaGenerator::config8021x), 0);
  EXPECT_EQ(packets(), (std::vector<Bytes>{WrappedOptions, WrappedNetwork, WrappedStatusQuery}));
  EXPECT_TRUE(output.err.starts_with("D [ZVK] Configuring for 8021x...\n" + OptionLines))
      << output.err;
  EXPECT_TRUE(output.err.ends_with("D [ZVK] Validate certificate? 1\n" + dumpOf(WrappedOptions) +
                                   "D [ZVK] Setting 802.1x ret = 0\n"
                                   "D [ZVK] Mode = 'Managed'\n"
                                   "D [ZVK] Security = '802.1x'\n"
                                   "D [ZVK] Security mode: 3 (802.1x)\n"
                                   "D [ZVK] SSID = x\n" +
                                   dumpOf(WrappedNetwork) +
                                   "D [ZVK] 802.1x Authentication status...\n"
                                   "D [ZVK] Auth status response (13 bytes)\n"
                                   "E0 A5 00 09 50 E0 D8 00 2A 1D 00 01 02 |....P...*....\n"
                                   "D [ZVK] Status: 2 (Authenticated)\n"))
      << output.err;
  EXPECT_EQ(output.out, "");
}

TEST_F(Authentication, SendsBarePacketsWithoutWrapMode) {
  use(Credentials);
  generator->setWrapMode(false);
  answer({TwoCertificates, Accepted, Accepted, Status});
  EXPECT_EQ(run(&wnpaGenerator::config8021x), 0);
  EXPECT_EQ(packets(), (std::vector<Bytes>{BareOptions, BareNetwork, packets::QueryAuthStatus}));
}

TEST_F(Authentication, ReturnsTheResultOfTheNetworkPacket) {
  use(Credentials);
  answer({TwoCertificates, Accepted, Refused, Status});
  EXPECT_EQ(run(&wnpaGenerator::config8021x), -1);
  EXPECT_EQ(packets().size(), 3U);
  device.writes.clear();
  answer({TwoCertificates, Accepted, NotAccepted, Status});
  EXPECT_EQ(run(&wnpaGenerator::config8021x), 1);
  EXPECT_EQ(packets().size(), 3U);
}

TEST_F(Authentication, ReturnsZeroWithoutANetworkPacketIfTheOptionsFail) {
  for (const Bytes& reply : {Refused, NotAccepted, Bytes()}) {
    use(Credentials);
    answer({TwoCertificates, reply, Status});
    device.writes.clear();
    EXPECT_EQ(run(&wnpaGenerator::config8021x), 0);
    EXPECT_EQ(packets(), (std::vector<Bytes>{WrappedOptions, WrappedStatusQuery}));
    EXPECT_TRUE(output.err.ends_with("D [ZVK] Status: 2 (Authenticated)\n")) << output.err;
  }
}

TEST_F(Authentication, ReturnsMinusOneIfTheNetworkDoesNotFitIntoAPacket) {
  Options options = Credentials;
  options.push_back("--ssid=" + std::string(65536, 's'));
  use(options);
  answer({TwoCertificates, Accepted, Status});
  EXPECT_EQ(run(&wnpaGenerator::config8021x), -1);
  EXPECT_EQ(packets(), (std::vector<Bytes>{WrappedOptions, WrappedStatusQuery}));
}

TEST_F(Authentication, ReturnsTheResultOfTheOptions) {
  use(Credentials);
  answer({TwoCertificates, NotAccepted});
  EXPECT_EQ(run(&wnpaGenerator::set8021xOptions), 1);
  EXPECT_TRUE(output.err.starts_with(OptionLines)) << output.err;
  EXPECT_TRUE(output.err.ends_with("D [ZVK] Setting 802.1x ret = 1\n")) << output.err;
  EXPECT_EQ(packets(), std::vector<Bytes>{WrappedOptions});
}

TEST_F(Authentication, SendsWepKeysOnlyForStaticWep) {
  use({"--encryption=WEP-STATIC", "--WEP-key1=abcde", "--WEP-key4=z", "--WEP-transmit=4"});
  generator->setWrapMode(false);
  answer({Refused, Refused, Accepted});
  EXPECT_EQ(run(&wnpaGenerator::set8021xOptions), 0);
  EXPECT_EQ(device.writes.at(2),
            bytes("A5 00 5A 50 E0 DA 01 28 26 00 00 04 00 00 00 02 2A 14 00 00 01 00 "
                  "2A 15 00 00 01 00 2A 16 00 00 01 00 2A 17 00 00 01 00 2A 18 00 00 01 00 "
                  "2A 19 00 00 01 00 2A 24 00 00 01 00 28 09 00 00 05 61 62 63 64 65 "
                  "28 0B 00 00 00 28 0D 00 00 00 28 0F 00 00 01 7A 28 1F 00 00 04 00 00 00 04"));
  for (const char* encryption : {"--encryption=WEP", "--encryption=WEP-DYNAMIC", "--encryption="}) {
    use({encryption, "--WEP-key1=abcde"});
    run(&wnpaGenerator::set8021xOptions);
    EXPECT_EQ(output.err.find("WEP Key"), std::string::npos) << output.err;
  }
}

// --- Dispatch -----------------------------------------------------------------------------------

struct DispatchRow : support::Row {
  const char* security;
  const char* sequence;  ///< the first line of the sequence; empty if none runs
  const char* last;      ///< the last line if the sequence fails
  int result;
};

class ConfigAdvanced : public Sequences, public testing::WithParamInterface<DispatchRow> {};

TEST_P(ConfigAdvanced, RunsTheSequenceOfTheSecurity) {
  const DispatchRow& row = GetParam();
  use({std::string("--security=") + row.security, "--passwd=p"});
  answer({Refused});
  EXPECT_EQ(run(&wnpaGenerator::configAdvanced), row.result);
  EXPECT_TRUE(output.err.starts_with("D [ZVK] Advanced config...\nD [ZVK] Master security = '" +
                                     std::string(row.security) + "'\n" + row.sequence))
      << output.err;
  EXPECT_TRUE(output.err.ends_with("\n" + std::string(row.last))) << output.err;
  EXPECT_EQ(device.opens > 0, *row.sequence != '\0');
}

INSTANTIATE_TEST_SUITE_P(
    Securities, ConfigAdvanced,
    testing::Values(DispatchRow{{"Authentication"},
                                "802.1x",
                                "D [ZVK] Configuring for 8021x...\n",
                                "D [ZVK] Adv 8021x ret = 0\n",
                                0},
                    DispatchRow{{"Open"},
                                "OPEN",
                                "D [ZVK] Configuring Open Mode...\n",
                                "D [ZVK] Adv OPEN ret = -1\n",
                                -1},
                    DispatchRow{{"Shared"},
                                "SHARED",
                                "D [ZVK] Configuring Shared Mode...\n",
                                "D [ZVK] Adv SHARED ret = -1\n",
                                -1},
                    DispatchRow{{"WpaPersonal"},
                                "WPA-PER",
                                "D [ZVK] Configuring WPA Personal...\n",
                                "D [ZVK] Adv WPA-Personal ret = -1\n",
                                -1},
                    DispatchRow{{"WpaEnterprise"},
                                "WPA-ENT",
                                "D [ZVK] Configuring WPA Enterprise...\n",
                                "D [ZVK] Adv WPA-Ent ret = -1\n",
                                -1},
                    DispatchRow{{"Wpa"}, "WPA", "", "D [ZVK] Master security = 'WPA'\n", 0},
                    DispatchRow{{"None"}, "None", "", "D [ZVK] Master security = 'None'\n", 0},
                    DispatchRow{{"OtherCase"}, "open", "", "D [ZVK] Master security = 'open'\n", 0},
                    DispatchRow{{"Empty"}, "", "", "D [ZVK] Master security = ''\n", 0}),
    support::rowName);

TEST_F(Sequences, StartWithAnEmptyPacketEachTime) {
  use({"--security=OPEN"});
  answer({Accepted});
  run(&wnpaGenerator::configAdvanced);
  run(&wnpaGenerator::configAdvanced);
  EXPECT_EQ(device.writes.at(0), device.writes.at(1));
}

}  // namespace
