#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "testing/basic_batch.h"
#include "testing/files.h"
#include "testing/output.h"
#include "testing/packets.h"
#include "testing/printer_run.h"
#include "testing/process.h"

// Options and raw packets from files, and the default run: what zvkconfig does for an unknown
// switch.

namespace {

using packets::hexText;
using support::lines;
using support::PrinterRun;
using support::runWithPrinter;
using support::TemporaryFolder;
using support::TransportReleased;
using Words = std::vector<std::string>;

class WithFile : public testing::Test {
 protected:
  std::string write(std::string_view content) { return m_Folder.write("file", content); }

  std::string folder() { return m_Folder.path(""); }

 private:
  TemporaryFolder m_Folder;
};

/// Makes zvkconfig run with a closed standard input. Use this object only with runs in real time.
/// In other runs faketime's library would open a file, which would get descriptor 0 instead of the
/// device.
class ClosedInput {
 public:
  ClosedInput() {
    const char* const before = std::getenv("ZVK_RUN_UNDER");
    m_Before = before == nullptr ? "" : before;
    const std::string script = m_Folder.write("closed", "exec \"$@\" <&-\n");
    ::setenv("ZVK_RUN_UNDER", ("sh " + script + " " + m_Before).c_str(), 1);
  }
  ~ClosedInput() {
    if (m_Before.empty()) {
      ::unsetenv("ZVK_RUN_UNDER");
    } else {
      ::setenv("ZVK_RUN_UNDER", m_Before.c_str(), 1);
    }
  }
  ClosedInput(const ClosedInput&) = delete;
  ClosedInput& operator=(const ClosedInput&) = delete;

 private:
  TemporaryFolder m_Folder;
  std::string m_Before;
};

using ArgumentFile = WithFile;
using NpaFile = WithFile;

TEST_F(ArgumentFile, ContainsTheOptionsOfAConfiguration) {
  const std::string file = write(
      "# my network\n"
      "--ssid=\"My Net\"\r\n"
      "--security=WPA\n"
      "--mode=Managed\r\n"
      "\n"
      "--passwd=\"two words\"");
  const PrinterRun run = runWithPrinter({}, {"-c", "-file", file, "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, basic_batch::attemptLines({.ssid = "My Net",
                                                .mode = "Managed\r",
                                                .security = "WPA",
                                                .securityMode = "2 (WPA PSK (Auto 1 or 2))"},
                                               0) +
                         TransportReleased);
  EXPECT_EQ(run.received, Words{hexText(packets::wrapped(basic_batch::WpaMyNet))});
}

TEST_F(ArgumentFile, IsTreatedAsEmptyIfItCannotBeRead) {
  for (const std::string& file : {folder(), folder() + "missing"}) {
    const PrinterRun run = runWithPrinter({}, {"-c", "-file", file, "{}"});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.err.find("D [ZVK] SSID = \n"), std::string::npos) << run.err;
    EXPECT_EQ(run.received.size(), 1U);
  }
}

TEST_F(ArgumentFile, IsReadWithStandardInputClosed) {
  const ClosedInput closed;
  const PrinterRun run =
      support::runWithPrinterInRealTime({}, {"-c", "-file", write("--ssid=x\n"), "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.received.size(), 1U);
}

TEST_F(ArgumentFile, NeedsADeviceAfterIt) {
  const auto result = support::runProcess({ZVKCONFIG, "-c", "-file", write("--ssid=x\n")});
  EXPECT_EQ(result.status, 128 + SIGABRT);
}

TEST_F(NpaFile, IsSentUnchanged) {
  const std::string file = write("A5 00 06 50 e0 d8 00 0A 02\n");
  const PrinterRun run = runWithPrinter({}, {"-npa", "-file", file, "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "npaFileData: (18 bytes) A5000650e0d8000A02\n");
  EXPECT_EQ(run.err, lines({"D [ZVK] NPA data: 9 bytes", "A5 00 06 50 E0 D8 00 0A 02 |...P.....",
                            "D [ZVK] sendNPA response (11 bytes)",
                            "E0 D8 00 0A 02 00 04 C0 A8 01 14 |..........."}) +
                         TransportReleased);
  EXPECT_EQ(run.received, Words{hexText(packets::QueryIp)});
}

TEST_F(NpaFile, IsSentWithStandardInputClosed) {
  const ClosedInput closed;
  const PrinterRun run = support::runWithPrinterInRealTime(
      {}, {"-npa", "-file", write("A5 00 06 50 E0 D8 00 0A 02"), "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.received, Words{"A5 00 06 50 E0 D8 00 0A 02"});
}

TEST_F(NpaFile, LosesAnOddLastDigit) {
  const PrinterRun run =
      runWithPrinter({}, {"-npa", "-file", write("A500 0650 E0D8 000A 02F"), "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.received, Words{hexText(packets::QueryIp)});
}

TEST_F(NpaFile, SendsNothingIfItIsMissing) {
  const PrinterRun run = runWithPrinter({}, {"-npa", "-file", folder() + "missing", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, lines({"D [ZVK] NPA data: 0 bytes", "D [ZVK] sendNPA response (0 bytes)"}) +
                         TransportReleased);
  EXPECT_TRUE(run.received.empty());
}

TEST_F(NpaFile, IsTheDeviceIfNoDeviceFollows) {
  const std::string file = write("A5");
  const PrinterRun run = runWithPrinter({}, {"-npa", "-file", file});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, lines({"D [ZVK] NPA data: 1 bytes", "A5 |.",
                            "D [ZVK] Failed to open usb device '" + file + "'!",
                            "D [ZVK] sendNPA response (0 bytes)"}) +
                         TransportReleased);
}

TEST(RawSending, NeedsASecondArgument) {
  EXPECT_EQ(support::runProcess({ZVKCONFIG, "-npa"}).status, 128 + SIGABRT);
}

const std::string Progress =
    "Configuring the printer....\n"
    "Resetting the printer....\n"
    "Connecting to wireless network....Acquiring network address....\n"
    "IP-ADDRESS : ";

TEST(DefaultRun, ConfiguresAndPrintsTheAddress) {
  const PrinterRun run = runWithPrinter({}, {"-x", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, Progress + "192.168.1.20\n");
  EXPECT_TRUE(run.err.starts_with(basic_batch::settingLines({}) + basic_batch::DefaultsDump +
                                  "D [ZVK] Basic config...\n"))
      << run.err;
  EXPECT_EQ(run.received, (Words{hexText(packets::wrapped(basic_batch::Defaults)),
                                 hexText(packets::wrapped(packets::QueryTrouble)),
                                 hexText(packets::wrapped(packets::QueryIp))}));
}

TEST(DefaultRun, ContinuesBareAfterARefusalAndAlwaysSucceeds) {
  const PrinterRun run = runWithPrinter({"--refuse-wrapped"}, {"-x", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, Progress + "192.168.1.20\n");
  ASSERT_EQ(run.received.size(), 4U);
  EXPECT_EQ(run.received[2], hexText(packets::QueryTrouble));
  EXPECT_EQ(run.received[3], hexText(packets::QueryIp));
  EXPECT_EQ(runWithPrinter({"--refuse-all"}, {"-x", "{}"}).status, 0);
}

}  // namespace
