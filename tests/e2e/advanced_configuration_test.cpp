#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/files.h"
#include "testing/output.h"
#include "testing/packets.h"
#include "testing/printer_run.h"
#include "testing/process.h"
#include "testing/rows.h"

// The real program configures the emulated printer for each security. The tests check the program's
// log, its exit status and the bytes that arrive.

namespace {

using packets::hexText;
using support::Bytes;
using support::lines;
using support::PrinterRun;
using support::runWithPrinter;
using support::TransportReleased;
using Words = std::vector<std::string>;

struct SecurityRow : support::Row {
  Words options;
  std::string packet;
  Words firstLines;       ///< the log lines before the dump of the packet
  std::string shortName;  ///< the security's name in the last line of an attempt's log
  Words stored;           ///< lines of the printer's settings after the run
};

class AdvancedConfiguration : public testing::TestWithParam<SecurityRow> {
 protected:
  /// Returns the log of one attempt.
  static std::string attemptLog(const Bytes& packet, int result) {
    return lines(GetParam().firstLines) + packets::dumpOf(packet) +
           lines({"D [ZVK] Adv " + GetParam().shortName + " ret = " + std::to_string(result)});
  }

  /// Expects that `shown`, the printer's settings, contains the lines of the row.
  static void expectStored(const std::string& shown) {
    for (const std::string& line : GetParam().stored) {
      EXPECT_NE(shown.find(line + "\n"), std::string::npos) << line << " in\n" << shown;
    }
  }

  static Bytes bare() { return support::bytes(GetParam().packet); }
  static Bytes wrapped() { return packets::wrapped(bare()); }

  static Words commandLine() {
    Words arguments = GetParam().options;
    arguments.insert(arguments.begin(), "-ca");
    arguments.emplace_back("{}");
    return arguments;
  }
};

TEST_P(AdvancedConfiguration, IsStoredByThePrinter) {
  const PrinterRun run = runWithPrinter({"--show"}, commandLine());
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, attemptLog(wrapped(), 0) + TransportReleased);
  EXPECT_EQ(run.received, Words{hexText(wrapped())});
  expectStored(run.out);
}

TEST_P(AdvancedConfiguration, IsRepeatedBareIfWrappedPacketsAreRefused) {
  const PrinterRun run = runWithPrinter({"--refuse-wrapped", "--show"}, commandLine());
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, attemptLog(wrapped(), -1) + attemptLog(bare(), 0) + TransportReleased);
  EXPECT_EQ(run.received, (Words{hexText(wrapped()), GetParam().packet}));
  expectStored(run.out);
}

TEST_P(AdvancedConfiguration, ReadsItsOptionsFromAFile) {
  const support::TemporaryFolder folder;
  const std::string file = folder.path("options");
  std::ofstream(file) << lines(GetParam().options);
  const PrinterRun run = runWithPrinter({}, {"-ca", "-file", file, "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, attemptLog(wrapped(), 0) + TransportReleased);
  EXPECT_EQ(run.received, Words{hexText(wrapped())});
}

INSTANTIATE_TEST_SUITE_P(
    Securities, AdvancedConfiguration,
    testing::Values(
        SecurityRow{
            {"Open"},
            {"--security=OPEN", "--ssid=home"},
            hexText(packets::StoreHome),
            {"D [ZVK] Advanced config...", "D [ZVK] Master security = 'OPEN'",
             "D [ZVK] Configuring Open Mode...", "D [ZVK] Mode = 'Managed'",
             "D [ZVK] Security = 'OPEN'", "D [ZVK] Security mode: 0 (No Security)",
             "D [ZVK] SSID = home"},
            "OPEN",
            {"mode = 0 (managed)", "security = 0 (none)", "SSID = \"home\"", "channel = 6"}},
        SecurityRow{{"Shared"},
                    {"--security=SHARED", "--ssid=home", "--encryption=WEP", "--WEP-key1=abcde",
                     "--WEP-transmit=1"},
                    "A5 00 54 50 E0 DA 01 28 09 00 00 05 61 62 63 64 65 28 0B 00 00 00 28 0D 00 00 "
                    "00 28 0F 00 00 00 28 1F 00 00 04 00 00 00 01 28 23 00 00 04 00 00 00 02 28 02 "
                    "00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 01 28 05 00 00 04 00 00 00 06 28 "
                    "08 00 00 05 68 6F 6D 65 00",
                    {"D [ZVK] Advanced config...", "D [ZVK] Master security = 'SHARED'",
                     "D [ZVK] Configuring Shared Mode...", "D [ZVK] WEP Key 1 = 'abcde' (5 bytes)",
                     "D [ZVK] WEP Key 2 = '' (0 bytes)", "D [ZVK] WEP Key 3 = '' (0 bytes)",
                     "D [ZVK] WEP Key 4 = '' (0 bytes)", "D [ZVK] WEP Transmit key = 1",
                     "D [ZVK] WEP auth mode: 2 (Shared)", "D [ZVK] Mode = 'Managed'",
                     "D [ZVK] Security = 'SHARED'", "D [ZVK] Security mode: 1 (WEP)",
                     "D [ZVK] SSID = home"},
                    "SHARED",
                    {"security = 1 (WEP)", "WEP key 1 = \"abcde\"", "WEP transmit key = 1",
                     "WEP authentication = 2 (shared)"}},
        SecurityRow{{"WpaPersonal"},
                    {"--security=WPA-PER", "--ssid=x", "--psk=secret88", "--encryption=AES"},
                    "A5 00 3C 50 E0 DA 01 28 11 00 00 08 73 65 63 72 65 74 38 38 28 26 00 00 04 00 "
                    "00 00 04 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 02 28 05 00 00 04 "
                    "00 00 00 06 28 08 00 00 02 78 00",
                    {"D [ZVK] Advanced config...", "D [ZVK] Master security = 'WPA-PER'",
                     "D [ZVK] Configuring WPA Personal...",
                     "D [ZVK] PSK (Pre-shared key) = secret88 (8 bytes)",
                     "D [ZVK] Encryption (advanced) = AES", "D [ZVK] Mode = 'Managed'",
                     "D [ZVK] Security = 'WPA-PER'",
                     "D [ZVK] Security mode: 2 (WPA PSK (Auto 1 or 2))", "D [ZVK] SSID = x"},
                    "WPA-Personal",
                    {"security = 2 (WPA (1 or 2))", "pre-shared key = \"secret88\"",
                     "encryption = 4 (AES)"}},
        SecurityRow{
            {"WpaEnterprise"},
            {"--security=WPA-ENT", "--ssid=x", "--mode=Ad-Hoc", "--channel=11"},
            "A5 00 2B 50 E0 DA 01 28 11 00 00 00 28 02 00 00 04 00 00 00 01 28 22 00 00 04 "
            "00 00 00 02 28 05 00 00 04 00 00 00 0B 28 08 00 00 02 78 00",
            {"D [ZVK] Advanced config...", "D [ZVK] Master security = 'WPA-ENT'",
             "D [ZVK] Configuring WPA Enterprise...", "D [ZVK] PSK (Pre-shared key) =  (0 bytes)",
             "D [ZVK] Encryption (advanced) = ", "D [ZVK] Mode = 'Ad-Hoc'",
             "D [ZVK] Security = 'WPA-ENT'", "D [ZVK] Security mode: 2 (WPA PSK (Auto 1 or 2))",
             "D [ZVK] SSID = x"},
            "WPA-Ent",
            {"mode = 1 (ad-hoc)", "channel = 11", "security = 2 (WPA (1 or 2))"}}),
    support::rowName);

TEST(AdvancedConfigurationResult, Is255IfWrappedAndBarePacketsAreRefused) {
  const PrinterRun run =
      runWithPrinter({"--refuse-all"}, {"-ca", "--security=OPEN", "--ssid=x", "{}"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.received.size(), 2U);
}

TEST(AdvancedConfigurationResult, Is0WithoutAPacketForAnotherSecurity) {
  const PrinterRun run = runWithPrinter({}, {"-ca", "--security=WPA", "--ssid=x", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, lines({"D [ZVK] Advanced config...", "D [ZVK] Master security = 'WPA'"}) +
                         TransportReleased);
  EXPECT_TRUE(run.received.empty());
}

// --- 802.1x -------------------------------------------------------------------------------------

const Words Credentials = {"-ca",          "--security=802.1x",    "--ssid=x",
                           "--802-user=u", "--802-auth-ext=PEAP",  "--802-auth-inner=PAP",
                           "--802-pwd=p",  "--encryption=WPA-AES", "{}"};
const std::string OptionPacket =
    "A5 00 4E 50 E0 DA 01 28 26 00 00 04 00 00 00 04 2A 14 00 00 01 00 2A 15 00 00 01 00 2A 16 00 "
    "00 01 00 2A 17 00 00 01 01 2A 18 00 00 01 00 2A 19 00 00 01 00 2A 1A 00 00 04 00 00 00 03 2A "
    "02 00 00 02 75 00 2A 03 00 00 02 70 00 2A 24 00 00 01 00";
const std::string NetworkPacket =
    "A5 00 26 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 03 28 08 00 00 02 78 "
    "00 28 05 00 00 04 00 00 00 06";
/// Wraps `packet` and returns the wrapper in hex.
std::string wrapped(const std::string& packet) {
  return hexText(packets::wrapped(support::bytes(packet)));
}

const std::string Query = hexText(packets::wrapped(packets::QueryAuthStatus));

/// Returns the received packets except those of method calls.
Words withoutCalls(const Words& received) {
  Words packets;
  for (const std::string& packet : received) {
    if (!packet.starts_with("A5 00 10 80 A4") && packet.find(" 50 E0 C0 03 ") != 8) {
      packets.push_back(packet);
    }
  }
  return packets;
}

TEST(Authentication, IsConfiguredInTwoPacketsAndItsStatusQueried) {
  const PrinterRun run = runWithPrinter({"--show", "--auth-status=2"}, Credentials);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(withoutCalls(run.received),
            (Words{wrapped(OptionPacket), wrapped(NetworkPacket), Query}));
  EXPECT_NE(run.err.find("D [ZVK] 802.1x password = p (1 bytes)\n"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("D [ZVK] Validate certificate? 0\n"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("D [ZVK] Setting 802.1x ret = 0\n"), std::string::npos) << run.err;
  EXPECT_TRUE(
      run.err.ends_with(lines({"D [ZVK] Status: 2 (Authenticated)", "D [ZVK] Adv 8021x ret = 0"}) +
                        TransportReleased))
      << run.err;
  for (const char* stored :
       {"security = 3 (802.1x)\n", "SSID = \"x\"\n", "802.1x user = \"u\"\n",
        "802.1x password = \"p\"\n", "PEAP allowed = 1\n", "EAP-TLS allowed = 0\n",
        "802.1x inner authentication = 3 (PAP)\n", "validate server certificate = 0\n"}) {
    EXPECT_NE(run.out.find(stored), std::string::npos) << stored << " in\n" << run.out;
  }
}

// If the first packet fails, the command still succeeds, so there is no retry with bare packets.
TEST(Authentication, EndsWith0IfWrappedPacketsAreRefused) {
  const PrinterRun run = runWithPrinter({"--refuse-wrapped", "--show"}, Credentials);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(withoutCalls(run.received), (Words{wrapped(OptionPacket), Query}));
  EXPECT_NE(run.err.find("D [ZVK] Setting 802.1x ret = -1\n"), std::string::npos) << run.err;
  EXPECT_TRUE(run.err.ends_with(lines({"D [ZVK] Adv 8021x ret = 0"}) + TransportReleased))
      << run.err;
  EXPECT_EQ(run.out.find("SSID"), std::string::npos) << run.out;
}

// Without the option --auth-status the printer determines its authentication status itself. It
// reports a missing CA certificate until one is installed.
TEST(Authentication, ValidatesTheServerOnceACaCertificateIsInstalled) {
  const support::TemporaryFolder folder;
  const std::string authority = folder.path("ca.pem");
  const auto made = support::runProcess(
      {"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
       "-keyout", folder.path("ca.key"), "-out", authority, "-subj", "/CN=TestCA", "-days", "30"});
  ASSERT_EQ(made.status, 0) << made.err;
  std::filesystem::create_directory(folder.path("printer"));
  const Words options = {"--state=" + folder.path("printer")};
  EXPECT_EQ(runWithPrinter(options, {"-802s", "{}"}).status, 0);
  const PrinterRun missing = runWithPrinter(options, Credentials);
  EXPECT_NE(missing.err.find("D [ZVK] Status: 11 (CA Certificate Not Installed)\n"),
            std::string::npos)
      << missing.err;
  EXPECT_EQ(runWithPrinter(options, {"-802s", "{}"}).status, 11);
  ASSERT_EQ(runWithPrinter(options, {"-icer", "--802-CA-cer-file=" + authority, "{}"}).status, 0);

  const PrinterRun run = runWithPrinter(options, Credentials);
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.err.find("D [ZVK] Validate certificate? 1\n"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("D [ZVK] Status: 2 (Authenticated)\n"), std::string::npos) << run.err;
  std::string validating = OptionPacket;
  validating.back() = '1';
  EXPECT_EQ(withoutCalls(run.received),
            (Words{wrapped(validating), wrapped(NetworkPacket), Query}));
}

TEST(Authentication, AcceptsAPasswordWithTheSizeField0) {
  Words arguments = Credentials;
  arguments.insert(arguments.begin() + 1, "--802-pwd=" + std::string(300, 'q'));
  std::erase(arguments, "--802-pwd=p");
  const PrinterRun run = runWithPrinter({"--show"}, arguments);
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.err.find("D [ZVK] Setting 802.1x ret = 0\n"), std::string::npos) << run.err;
  EXPECT_NE(run.out.find("802.1x password = \"" + std::string(255, 'q') + "\"\n"),
            std::string::npos)
      << run.out;
}

}  // namespace
