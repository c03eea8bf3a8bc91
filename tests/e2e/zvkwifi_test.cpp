// zvkwifi against the emulated printer: results, exit statuses, JSON, trace.

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "e2e/wifi_document.h"
#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"

namespace {

using Json = nlohmann::json;
using support::PrinterRun;
using support::runWifiWithPrinter;
using support::TemporaryFolder;
using Words = std::vector<std::string>;

constexpr std::string_view Passphrase = "long enough\n";

PrinterRun setHome(const Words& options, Words more = {}) {
  Words arguments = {"set", "--ssid=home", "--security=wpa", "--password-from=fd:0"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  arguments.emplace_back("{}");
  return runWifiWithPrinter(options, arguments, Passphrase);
}

TEST(WifiSet, StoresAndConfirms) {
  const PrinterRun run = setHome({"--ssid=old"});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(run.out.find("is in the network \"home\" with the address 192.168.1.20.\n") !=
              std::string::npos)
      << run.out;
  EXPECT_EQ(run.err,
            "Opening the printer\nReading the present network\nStoring the settings\n"
            "Waiting until the printer is in the network\n");
}

TEST(WifiSet, LeavesAPrinterInTheNetworkAlone) {
  const PrinterRun run = setHome({"--ssid=home"}, {"--json", "--quiet"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(parsedDocument(run.out).at("printers").at(0).at("result"), "unchanged");
  // Three queries: SSID, trouble code, address.
  EXPECT_EQ(run.received.size(), 3U);
}

TEST(WifiSet, EndsWith8IfThePrinterDoesNotJoin) {
  const PrinterRun run = setHome({"--ssid=old", "--trouble-code=3"}, {"--wait=20", "--quiet"});
  EXPECT_EQ(run.status, 8);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(
      run.err.starts_with("zvkwifi: The settings are stored, but the printer is not in the "
                          "network. It reports trouble code 3.\n"))
      << run.err;
}

TEST(WifiSet, EndsWith6IfTheAdapterRefuses) {
  const PrinterRun run = setHome({"--ssid=old", "--result=00"}, {"--quiet"});
  EXPECT_EQ(run.status, 6);
  EXPECT_TRUE(run.err.starts_with("zvkwifi: The adapter refused the settings.\n")) << run.err;
}

TEST(WifiSet, EndsWith7IfTheAdapterIsSilent) {
  const PrinterRun run = setHome({"--silent"}, {"--quiet"});
  EXPECT_EQ(run.status, 7);
  EXPECT_TRUE(run.err.starts_with("zvkwifi: The adapter does not answer. Nothing was stored.\n"))
      << run.err;
}

TEST(WifiSet, ReportsAllInOneJsonDocument) {
  const PrinterRun run = setHome({"--ssid=old"}, {"--json", "--quiet"});
  EXPECT_EQ(run.err, "");
  const Json document = parsedDocument(run.out);
  EXPECT_EQ(document.at("schema"), 1);
  const Json& printer = document.at("printers").at(0);
  EXPECT_EQ(printer.at("result"), "confirmed");
  EXPECT_EQ(printer.at("ssid_before"), "old");
  EXPECT_EQ(printer.at("ssid"), "home");
  EXPECT_EQ(printer.at("ip"), "192.168.1.20");
  EXPECT_EQ(printer.at("trouble_code"), 0);
  EXPECT_EQ(printer.at("authentication"), nullptr);
  EXPECT_EQ(printer.at("error"), nullptr);
}

TEST(WifiSet, ReportsAFailureInJsonToo) {
  const PrinterRun run = setHome({"--silent"}, {"--json", "--quiet"});
  EXPECT_EQ(run.status, 7);
  const Json printer = parsedDocument(run.out).at("printers").at(0);
  EXPECT_EQ(printer.at("result"), "no-answer");
  EXPECT_FALSE(printer.at("error").at("remedy").get<std::string>().empty());
}

TEST(WifiSet, ReportsWrongUsageInJsonToo) {
  const PrinterRun run = runWifiWithPrinter({}, {"set", "--json", "--security=wpa", "{}"});
  EXPECT_EQ(run.status, 2);
  const Json document = parsedDocument(run.out);
  EXPECT_TRUE(document.at("printers").empty());
  EXPECT_FALSE(document.at("error").at("message").get<std::string>().empty());
}

TEST(WifiSet, WritesATraceWithoutSecretsForItsOwnerAlone) {
  const TemporaryFolder folder;
  const std::string trace = folder.write("trace", "old content");
  const PrinterRun run = setHome({"--ssid=old"}, {"--quiet", "--trace=" + trace});
  EXPECT_EQ(run.status, 0);
  struct stat status {};
  ASSERT_EQ(::stat(trace.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  const std::string content = support::fileContent(trace);
  EXPECT_TRUE(
      content.starts_with("zvkwifi: -> A5 00 0F 50 E0 63 02 00 09 A5 00 06 50 E0 D8 00 28 "
                          "08\nzvkwifi: wrapped: query: SSID\n"))
      << content;
  EXPECT_NE(content.find("pre-shared key = (11 bytes)"), std::string::npos);
  // "long" in hex.
  EXPECT_EQ(content.find("6C 6F 6E 67"), std::string::npos);
}

TEST(WifiStatus, PrintsALineForEachValue) {
  const PrinterRun run = runWifiWithPrinter({"--ssid=home"}, {"status", "--quiet", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("Network:         home\n"
                         "Address:         192.168.1.20\n"
                         "Trouble code:    0\n"
                         "Authentication:  802.1x not enabled\n"),
            std::string::npos)
      << run.out;
  EXPECT_EQ(run.err, "");
}

TEST(WifiStatus, HasNullForWhatTheAdapterDoesNotReport) {
  const PrinterRun run =
      runWifiWithPrinter({"--ssid=home", "--ip-after=100"}, {"status", "--json", "--quiet", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(parsedDocument(run.out).at("printers").at(0).at("ip"), nullptr);
}

TEST(WifiStatus, EscapesWhatDoesNotPrint) {
  const PrinterRun run = runWifiWithPrinter({"--ssid=a\x1b[2Jb"}, {"status", "--quiet", "{}"});
  EXPECT_NE(run.out.find("a\\x1B[2Jb\n"), std::string::npos) << run.out;
}

TEST(WifiStatus, OfAPrinterThatIsNotThereEndsWith3) {
  const PrinterRun run = runWifiWithPrinter({}, {"status", "--quiet", "/dev/usb/lp9"});
  EXPECT_EQ(run.status, 3);
  EXPECT_TRUE(run.err.starts_with("zvkwifi: There is no printer at /dev/usb/lp9.\n")) << run.err;
  EXPECT_TRUE(run.received.empty());
}

TEST(WifiStatus, OfAnUnknownSerialNumberEndsWith3) {
  const PrinterRun run = runWifiWithPrinter({}, {"status", "--quiet", "no-such-serial"});
  EXPECT_EQ(run.status, 3);
  EXPECT_TRUE(run.err.starts_with("zvkwifi: There is no printer \"no-such-serial\".\n")) << run.err;
}

TEST(WifiReset, ResetsTheAdapter) {
  const PrinterRun run = runWifiWithPrinter({}, {"reset", "--quiet", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.received.size(), 1U);
}

TEST(WifiHelp, IsPrintedForTheProgramAndEachCommand) {
  for (const Words& arguments :
       {Words{"--help"}, Words{"-h"}, Words{"list", "--help"}, Words{"status", "--help"},
        Words{"set", "--help"}, Words{"reset", "--help"}, Words{"cert", "--help"},
        Words{"cert", "list", "--help"}}) {
    const PrinterRun run = runWifiWithPrinter({}, arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_FALSE(run.out.empty());
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.received.empty());
  }
}

TEST(WifiHelp, IncludesTheVersion) {
  const PrinterRun run = runWifiWithPrinter({}, {"--version"});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(run.out.starts_with("zvkwifi ")) << run.out;
}

TEST(WifiOutput, ThatCannotBeWrittenEndsWith1) {
  const support::ProcessResult result =
      support::runProcess({"sh", "-c", std::string(ZVKWIFI) + " --help > /dev/full"});
  EXPECT_EQ(result.status, 1);
}

}  // namespace
