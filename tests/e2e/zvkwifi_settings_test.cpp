// The settings of zvkwifi. If a setting is wrong, the command ends with status 2, and no byte
// reaches the printer.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/rows.h"

namespace {

using support::PrinterRun;
using support::runWifiWithPrinter;
using support::TemporaryFolder;
using Words = std::vector<std::string>;

/// Runs `zvkwifi set` with these settings, and a passphrase from standard input.
PrinterRun set(Words settings, std::string_view passphrase = "long enough\n", Words options = {}) {
  settings.insert(settings.begin(), "set");
  settings.insert(settings.end(), {"--quiet", "--password-from=fd:0", "{}"});
  return runWifiWithPrinter(std::move(options), settings, passphrase);
}

struct WrongRow : support::Row {
  Words arguments;
  const char* error;  ///< the first line without the program's name
};

class WrongCommandLine : public testing::TestWithParam<WrongRow> {};

TEST_P(WrongCommandLine, EndsWithStatus2BeforeThePrinterIsOpened) {
  const PrinterRun run = runWifiWithPrinter({}, GetParam().arguments);
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, std::string("zvkwifi: ") + GetParam().error + "\nNothing was sent.\n");
  EXPECT_TRUE(run.received.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, WrongCommandLine,
    testing::Values(
        WrongRow{{"Command"},
                 {"sett", "--ssid=home", "{}"},
                 "sett: no such command; expected list, status, set, station, reset or cert"},
        WrongRow{{"ConfigSwitch"}, {"-c", "{}"}, "-c: no such option; see zvkwifi --help"},
        WrongRow{
            {"Option"}, {"set", "--sid=home", "{}"}, "--sid: no such option; see zvkwifi --help"},
        WrongRow{{"Password"},
                 {"set", "--ssid=home", "--security=wpa", "--password=hidden77", "{}"},
                 "--password: a secret is not accepted as an argument, because other users can see "
                 "it; use --password-from=prompt, --password-from=file:PATH or "
                 "--password-from=fd:NUMBER"},
        WrongRow{{"EmptyName"}, {"set", "--ssid=", "{}"}, "--ssid: expected a value"},
        WrongRow{{"Wpa3"},
                 {"set", "--ssid=home", "--security=WPA3", "{}"},
                 "--security: expected open, wep, wpa or 802.1x (the adapter does not support "
                 "WPA3), got \"WPA3\""},
        WrongRow{{"LongUser"},
                 {"set", "--ssid=home", "--security=802.1x", "--eap=peap",
                  "--user=a-user-name-of-thirty-eight-characters", "{}"},
                 "--user: expected a user name of 1 to 31 bytes, got "
                 "\"a-user-name-of-thirty-eight-characters\""},
        WrongRow{{"MissingFile"},
                 {"set", "--from=/nowhere/at/all.conf", "{}"},
                 "/nowhere/at/all.conf: expected a settings file that can be read, got \"No such "
                 "file or "
                 "directory\""}),
    support::rowName);

TEST(WifiSettings, WithASecretAsArgumentNeverShowIt) {
  for (const char* option : {"--password=hidden77", "--psk=hidden77", "--pasword=hidden77"}) {
    const PrinterRun run = runWifiWithPrinter({}, {"set", "--ssid=home", option, "{}"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ((run.out + run.err).find("hidden77"), std::string::npos) << run.err;
  }
}

TEST(WifiSettings, WithAKeyOf7CharactersAreRefused) {
  const PrinterRun run = set({"--ssid=home", "--security=wpa"}, "seven77\n");
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(run.received.empty());
  EXPECT_EQ(run.err.find("seven77"), std::string::npos);
  EXPECT_TRUE(run.err.starts_with("zvkwifi: the secret is not valid: expected ")) << run.err;
}

TEST(WifiSettings, AcceptOtherNamesOfASecurity) {
  for (const char* security : {"wpa2", "WPA2", "wpa-personal", "Wpa"}) {
    const PrinterRun run =
        set({"--ssid=home", std::string("--security=") + security, "--wait=0", "--force"});
    EXPECT_EQ(run.status, 0) << run.err;
  }
}

TEST(WifiSettings, Accept8021xInUpperCaseAndItsMethods) {
  const PrinterRun run = set({"--ssid=home", "--security=802.1X", "--user=me", "--eap=PEAP",
                              "--inner=MSCHAPV2", "--wait=0"},
                             "secret\n");
  EXPECT_EQ(run.status, 0) << run.err;
  // The program queries the SSID and two lists of certificates, and sends the options and the
  // network.
  EXPECT_GE(run.received.size(), 3U);
}

TEST(WifiSettings, ComeFromAFileWithEitherLineEnd) {
  const TemporaryFolder folder;
  const std::string passphrase = folder.write("key", "long enough\n");
  for (const std::string end : {"\n", "\r\n"}) {
    const std::string file =
        folder.write("conf", "# home" + end + "ssid = home" + end + "security=wpa" + end +
                                 "password-from=file:" + passphrase + end);
    const PrinterRun run =
        runWifiWithPrinter({"--ssid=old"}, {"set", "--quiet", "--from=" + file, "{}"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("is in the network \"home\""), std::string::npos);
  }
}

TEST(WifiSettings, KeepSpacesQuotesAndBackslashesOfASecret) {
  const PrinterRun run = set({"--ssid=home", "--security=wpa", "--wait=0"}, " a\"b'c\\d e \n");
  EXPECT_EQ(run.status, 0) << run.err;
  // The pre-shared key: " a"b'c\d e ".
  EXPECT_NE(run.received.back().find("28 11 00 00 0B 20 61 22 62 27 63 5C 64 20 65 20 28 02"),
            std::string::npos)
      << run.received.back();
}

TEST(WifiSettings, WithAnEmptyLineAsSecretAreRefused) {
  const PrinterRun run = set({"--ssid=home", "--security=wpa"}, "\n");
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(run.received.empty());
}

TEST(WifiSettings, WithoutASecretAtTheEndOfInputAreRefused) {
  const PrinterRun run = set({"--ssid=home", "--security=wpa"}, "");
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(run.received.empty());
}

TEST(WifiSettings, WithoutASourceForTheSecretAndWithoutATerminalAreRefused) {
  const PrinterRun run =
      runWifiWithPrinter({}, {"set", "--ssid=home", "--security=wpa", "{}"}, "long enough\n");
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(run.received.empty());
}

TEST(WifiSettings, UseOnePipedLineAlsoIfTheAdapterRefusesTheWrapper) {
  const PrinterRun run =
      set({"--ssid=home", "--security=wpa"}, "long enough\n", {"--refuse-wrapped", "--ssid=old"});
  EXPECT_EQ(run.status, 0) << run.err;
}

TEST(WifiSettings, OfADryRunAreShownMaskedAndNotSent) {
  const PrinterRun run = set({"--ssid=home", "--security=wpa", "--dry-run"}, "hidden secret\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(run.received.empty());
  EXPECT_NE(run.out.find("store pre-shared key = (13 bytes)"), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find("hidden"), std::string::npos);
}

}  // namespace
