#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/basic_batch.h"
#include "testing/output.h"
#include "testing/packets.h"
#include "testing/printer_run.h"

// The real program configures the emulated printer. The tests check the program's log, its exit
// status and the bytes that arrive.

namespace {

using support::lines;
using support::PrinterRun;
using support::runWithPrinter;
using support::TransportReleased;

const std::string BareHome = packets::hexText(basic_batch::SsidHome);
const std::string WrappedHome = packets::hexText(packets::wrapped(basic_batch::SsidHome));

/// Returns the log of a run whose attempts have these results.
std::string diagnostics(std::initializer_list<int> results) {
  std::string text;
  for (const int result : results) {
    text += basic_batch::attemptLines({.ssid = "home"}, result);
  }
  return text + TransportReleased;
}

PrinterRun configureHome(std::vector<std::string> options) {
  return runWithPrinter(std::move(options), {"-c", "--ssid=home", "--security=None", "{}"});
}

TEST(BasicConfiguration, IsStoredByThePrinter) {
  const PrinterRun run = configureHome({"--show"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, lines({"adapter descriptor = \"Emulated wireless adapter -\"",
                            "IP address = 192.168.1.20", "mode = 0 (managed)", "channel = 6",
                            "SSID = \"home\"", "trouble code = 0", "security = 0 (none)"}));
  EXPECT_EQ(run.err, diagnostics({0}));
  EXPECT_EQ(run.received, std::vector{WrappedHome});
}

TEST(BasicConfiguration, AcceptsEveryBasicOption) {
  const PrinterRun run = runWithPrinter(
      {"--show"},
      {"-c", "--ssid=x", "--mode=Ad-Hoc", "--security=WEP", "--channel=3", "--passwd=abcde", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out,
            lines({"adapter descriptor = \"Emulated wireless adapter -\"",
                   "IP address = 192.168.1.20", "mode = 1 (ad-hoc)", "channel = 3", "SSID = \"x\"",
                   "WEP key 1 = \"abcde\"", "trouble code = 0", "security = 1 (WEP)"}));
  EXPECT_EQ(run.received, std::vector{packets::hexText(packets::wrapped(basic_batch::AdHocWep))});
}

TEST(BasicConfiguration, IsRepeatedBareIfWrappedPacketsAreRefused) {
  const PrinterRun run = configureHome({"--refuse-wrapped", "--show"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("SSID = \"home\"\n"), std::string::npos);
  EXPECT_EQ(run.err, diagnostics({-1, 0}));
  EXPECT_EQ(run.received, (std::vector{WrappedHome, BareHome}));
}

TEST(BasicConfiguration, EndsWith255IfWrappedAndBarePacketsAreRefused) {
  const PrinterRun run = configureHome({"--refuse-all", "--show"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.out.find("SSID"), std::string::npos);
  EXPECT_EQ(run.err, diagnostics({-1, -1}));
  EXPECT_EQ(run.received, (std::vector{WrappedHome, BareHome}));
}

TEST(BasicConfiguration, EndsWith255IfTheAdapterIsSilent) {
  const PrinterRun run = configureHome({"--silent"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.err, diagnostics({-1, -1}));
  EXPECT_EQ(run.received, (std::vector{WrappedHome, BareHome}));
}

TEST(BasicConfiguration, EndsWith1IfTheReplyDoesNotEndWith01) {
  for (const char* option : {"--result=00", "--result=02", "--garbage", "--cut=3"}) {
    SCOPED_TRACE(option);
    const PrinterRun run = configureHome({option});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, diagnostics({1}));
    EXPECT_EQ(run.received, std::vector{WrappedHome});
  }
}

TEST(BasicConfiguration, EndsWith255IfTheReplyIsEmpty) {
  EXPECT_EQ(configureHome({"--cut=0"}).status, 255);
}

TEST(BasicConfiguration, ReadsAReplyInPieces) {
  EXPECT_EQ(configureHome({"--pieces=1"}).status, 0);
}

TEST(BasicConfiguration, ReadsAReplyThatArrivesAfterThePause) {
  const PrinterRun run = configureHome({"--late=7"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.received, std::vector{WrappedHome});
}

TEST(BasicConfiguration, WaitsFiveSecondsBeforeAndAfterTheReplyInRealTime) {
  const auto start = std::chrono::steady_clock::now();
  const PrinterRun run = support::runWithPrinterInRealTime({}, {"-c", "--ssid=home", "{}"});
  const auto elapsed = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, diagnostics({0}));
  // The program counts whole seconds of the clock, so a wait may be up to one second shorter. The
  // upper limit leaves time for a busy machine, but not for another attempt, which takes 10 s.
  EXPECT_GE(elapsed, std::chrono::seconds(9));
  EXPECT_LT(elapsed, std::chrono::seconds(19));
}

class PathWithoutPrinter : public testing::TestWithParam<const char*> {};

TEST_P(PathWithoutPrinter, FailsInBothAttemptsAndEndsWith255) {
  const PrinterRun run = runWithPrinter({}, {"-c", "--ssid=home", GetParam()});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, diagnostics({-1, -1}));
  EXPECT_TRUE(run.received.empty());
}

INSTANTIATE_TEST_SUITE_P(Paths, PathWithoutPrinter,
                         testing::Values("", "printer", ":", "1:", "99999999999:1", "/dev/usb/",
                                         "/dev/usb/lp5", "/dev/usb/lp99", "/dev/usb"));

}  // namespace
