// zvkwifi station. The tests of the real kernel plug in printers.

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "e2e/wifi_document.h"
#include "testing/process.h"

namespace {

using support::ProcessResult;
using Words = std::vector<std::string>;

Words station(const Words& options) {
  Words command = {ZVKWIFI, "station"};
  command.insert(command.end(), options.begin(), options.end());
  return command;
}

TEST(WifiStation, RefusesWrongArgumentsBeforeItWaits) {
  const struct {
    Words options;
    std::string text;
  } rows[] = {
      {{}, "--ssid: expected"},
      {{"--ssid=home"}, "--security: expected"},
      {{"--ssid=home", "--security=wpa3"}, "--security: expected"},
      {{"--ssid=home", "--security=wpa"}, "needs a secret"},
      {{"--ssid=home", "--security=open", "--wait=x"}, "--wait: expected"},
      {{"--ssid=home", "--security=open", "/dev/usb/lp0"}, "too many arguments"},
      {{"--ssid=home", "--security=open", "--dry-run"}, "--dry-run: no such option"},
      {{"--ssid=home", "--security=open", "--all"}, "--all: no such option"},
      {{"--ssid=home", "--security=open", "--verbose"}, "expected a single PRINTER"},
      {{"--ssid=home", "--security=open", "--trace=/dev/null"}, "expected a single PRINTER"},
  };
  for (const auto& row : rows) {
    const ProcessResult result = support::runProcess(station(row.options));
    EXPECT_EQ(result.status, 2) << row.text;
    EXPECT_EQ(result.out, "") << row.text;
    EXPECT_NE(result.err.find(row.text), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("Nothing was sent."), std::string::npos) << result.err;
  }
}

TEST(WifiStation, ReportsAWrongArgumentAsADocument) {
  const ProcessResult result = support::runProcess(station({"--json-lines", "--security=wpa3"}));
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(parsedDocument(result.out).contains("error")) << result.out;
}

TEST(WifiStation, AsksOnceForTheSecretAndEndsAfterASignal) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    support::TerminalProcess program(station({"--ssid=home", "--security=wpa"}));
    ASSERT_TRUE(program.waitFor("Passphrase or key: "));
    // The prompt discards what was typed before it has turned the echo off.
    ASSERT_TRUE(support::eventually([&] { return !program.echoes(); }));
    program.type("a secret key\n");
    ASSERT_TRUE(program.waitFor("Under way: 0. Done: 0, failed: 0, skipped: 0. ("))
        << program.shown();
    ::kill(program.pid(), signal);
    EXPECT_EQ(program.waitForEnd(), 0);
    const std::string& shown = program.shown();
    EXPECT_EQ(shown.find("a secret key"), std::string::npos) << shown;
    EXPECT_NE(shown.find("\rDone: 0, failed: 0, skipped: 0.\r\n"), std::string::npos) << shown;
  }
}

TEST(WifiStation, PrintsADocumentWithTheSummary) {
  support::TerminalProcess program(station({"--ssid=home", "--security=open", "--json"}));
  ASSERT_TRUE(program.waitFor("Ctrl-C ends.\r\n")) << program.shown();
  ::kill(program.pid(), SIGTERM);
  EXPECT_EQ(program.waitForEnd(), 0);
  const std::string& shown = program.shown();
  const std::size_t begin = shown.find('{');
  ASSERT_NE(begin, std::string::npos) << shown;
  const auto document = parsedDocument(shown.substr(begin, shown.size() - begin - 2) + "\n");
  EXPECT_EQ(document, nlohmann::json::parse(R"({"schema": 1, "printers": [],
    "summary": {"done": 0, "failed": 0, "skipped": 0}})"));
}

}  // namespace
