#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "e2e/wifi_document.h"
#include "testing/environment.h"
#include "testing/files.h"
#include "testing/output.h"
#include "testing/printer_run.h"
#include "testing/process.h"
#include "testing/rows.h"

// Runs of the real programs in which a system call fails.

namespace {

using support::PrinterRun;
using support::runWithPrinter;
using Json = nlohmann::json;
using Words = std::vector<std::string>;

struct FaultRow : support::Row {
  const char* call;  ///< name and number of the call; "+" means all later calls too
  int error;
  Words arguments;
  int status;
  std::size_t received;  ///< packets that reach the printer; a method call consists of two
};

/// Makes calls fail in the programs that the test starts.
class PreloadedFault {
 public:
  PreloadedFault(const char* call, int error)
      : m_Fault("ZVK_FAULT", std::string(call) + " " + std::to_string(error)) {}

 private:
  support::EnvironmentVariable m_Preload{"LD_PRELOAD", FAILING_CALLS};
  support::EnvironmentVariable m_Fault;
};

class FailingCall : public testing::TestWithParam<FaultRow> {
 private:
  PreloadedFault m_Fault{GetParam().call, GetParam().error};
};

TEST_P(FailingCall, EndsTheRunInOrder) {
  const FaultRow& row = GetParam();
  const support::TemporaryFolder folder;
  Words arguments = row.arguments;
  if (arguments.front() == "-csr") {
    arguments.push_back("--cer-path=" + folder.path("request"));
  }
  arguments.emplace_back("{}");
  const PrinterRun run = runWithPrinter({"--ssid=home"}, arguments);
  EXPECT_EQ(run.status, row.status);
  EXPECT_EQ(run.received.size(), row.received);
  EXPECT_TRUE(run.err.ends_with(support::TransportReleased)) << run.err;
}

const Words Configure = {"-c", "--ssid=home", "--security=None"};
const Words MakeRequest = {"-csr", "--cer-common=hall"};

INSTANTIATE_TEST_SUITE_P(
    Calls, FailingCall,
    testing::Values(FaultRow{{"OpenOnce"}, "open 1", EACCES, {"-s"}, 0, 1},
                    FaultRow{{"OpenAlways"}, "open 1+", ENODEV, Configure, 255, 0},
                    FaultRow{{"OpenOfTheRequestFile"}, "open 4", EACCES, MakeRequest, 1, 6},
                    FaultRow{{"WriteOnce"}, "write 1", EIO, {"-ip"}, 0, 1},
                    FaultRow{{"WriteInterrupted"}, "write 1", EINTR, Configure, 0, 1},
                    FaultRow{{"WriteAlways"}, "write 1+", ENODEV, Configure, 255, 0},
                    FaultRow{{"WriteOfTheRequestFile"}, "write 4+", ENOSPC, MakeRequest, 1, 6},
                    FaultRow{{"ReadOnce"}, "read 1", EIO, {"-ip"}, 0, 1},
                    FaultRow{{"ReadAlways"}, "read 1+", ENODEV, {"-t"}, 1, 4},
                    FaultRow{{"SelectInterrupted"}, "select 1", EINTR, {"-s"}, 0, 1},
                    FaultRow{{"SelectAlways"}, "select 1+", EBADF, {"-rcerdefs"}, 0, 2},
                    FaultRow{{"CloseOnce"}, "close 1", EIO, {"-t"}, 0, 1}),
    support::rowName);

// --- zvkwifi ------------------------------------------------------------------------------------

struct WifiRow : support::Row {
  const char* call;
  int error;
  Words arguments;
  int status;
  std::string message;  ///< the beginning of the first line on standard error; empty: no error
  std::string remedy;   ///< the beginning of the second line
};

class WifiFailingCall : public testing::TestWithParam<WifiRow> {
 protected:
  /// Runs the row's command. Checks the exit status.
  PrinterRun run(const char* option) const {
    Words arguments = GetParam().arguments;
    std::ranges::transform(arguments, arguments.begin(),
                           [this](const std::string& text) { return inFolder(text); });
    arguments.insert(arguments.end(), {"--quiet", option, "{}"});
    PrinterRun result = support::runWifiWithPrinter({"--ssid=old"}, arguments, "long enough\n");
    EXPECT_EQ(result.status, GetParam().status);
    return result;
  }

  /// Replaces "{folder}" in the text by the path of the test's folder.
  std::string inFolder(std::string text) const {
    constexpr std::string_view mark = "{folder}";
    const std::size_t at = text.find(mark);
    return at == std::string::npos ? text : text.replace(at, mark.size(), folder.path(""));
  }

  support::TemporaryFolder folder;

 private:
  PreloadedFault m_Fault{GetParam().call, GetParam().error};
};

TEST_P(WifiFailingCall, IsReportedWithWhatToDo) {
  const WifiRow& row = GetParam();
  const PrinterRun result = run("--quiet");
  EXPECT_EQ(result.out.empty(), row.status != 0) << result.out;
  if (row.message.empty()) {
    EXPECT_EQ(result.err, "");
    return;
  }
  const std::size_t end = result.err.find('\n') + 1;
  EXPECT_TRUE(result.err.starts_with("zvkwifi: " + inFolder(row.message))) << result.err;
  EXPECT_TRUE(result.err.substr(end).starts_with(row.remedy)) << result.err;
  // Standard error has only the message and the remedy, and no line about a device that is still
  // open.
  EXPECT_EQ(std::ranges::count(result.err, '\n'), 2) << result.err;
  // Nothing is left of a file that was not completed.
  EXPECT_TRUE(std::filesystem::is_empty(folder.path("")));
}

TEST_P(WifiFailingCall, IsReportedInJson) {
  const WifiRow& row = GetParam();
  const PrinterRun result = run("--json");
  EXPECT_EQ(result.err, "");
  const Json document = parsedDocument(result.out);
  const Json entry = document.at("printers").empty() ? document : document.at("printers").at(0);
  const Json error = entry.at("error");
  ASSERT_EQ(error.is_null(), row.message.empty()) << result.out;
  if (!error.is_null()) {
    EXPECT_TRUE(error.at("message").get<std::string>().starts_with(inFolder(row.message)))
        << result.out;
    EXPECT_TRUE(error.at("remedy").get<std::string>().starts_with(row.remedy)) << result.out;
  }
}

const Words Status = {"status"};
const Words Set = {"set", "--ssid=home", "--security=wpa", "--password-from=fd:0", "--wait=20"};
const Words Reset = {"reset"};
const Words CertList = {"cert", "list"};
const Words CertRequest = {"cert", "request", "--common-name=hall", "--output={folder}request"};

constexpr const char* NoPermission = "No permission to use /dev/usb/lp";
constexpr const char* InUse = "/dev/usb/lp0 is in use by another program.";
constexpr const char* NotThere = "There is no printer at /dev/usb/lp";
constexpr const char* Silent = "The adapter does not answer. Nothing was stored.";
constexpr const char* MaybeStored =
    "The adapter did not answer. The settings may have been stored.";
constexpr const char* MaybeReset = "The adapter did not answer. It may have been reset.";
constexpr const char* CheckAdapter = "Check that the printer has a wireless adapter.";
constexpr const char* CheckCable = "Check that the printer is switched on";

INSTANTIATE_TEST_SUITE_P(
    Calls, WifiFailingCall,
    testing::Values(
        WifiRow{{"OpenForbidden"}, "open 1+", EACCES, Status, 4, NoPermission, ""},
        WifiRow{{"OpenBusy"}, "open 1+", EBUSY, Set, 5, InUse, "Wait until"},
        WifiRow{{"OpenNothing"}, "open 1+", ENOENT, Reset, 3, NotThere, CheckCable},
        WifiRow{{"OpenUnplugged"}, "open 1+", ENODEV, CertList, 3, NotThere, CheckCable},
        WifiRow{{"OpenFailed"},
                "open 1+",
                EMFILE,
                Status,
                3,
                "/dev/usb/lp0 cannot be opened: Too",
                CheckCable},
        WifiRow{{"OpenOnceMore"}, "open 2+", ENODEV, Status, 7, Silent, CheckAdapter},
        WifiRow{{"WriteOnce"}, "write 1", EIO, Status, 0, "", ""},
        WifiRow{{"WriteInterrupted"}, "write 1", EINTR, Status, 0, "", ""},
        WifiRow{{"WriteAlways"}, "write 1+", EIO, Status, 7, Silent, CheckAdapter},
        WifiRow{{"WriteOfTheSettings"}, "write 2+", EIO, Set, 7, MaybeStored, CheckAdapter},
        WifiRow{{"WriteOfTheReset"}, "write 1+", ENODEV, Reset, 7, MaybeReset, CheckAdapter},
        WifiRow{{"WriteOfACall"},
                "write 1+",
                EIO,
                CertList,
                7,
                "The printer does not answer",
                CheckAdapter},
        WifiRow{{"WriteOfTheRequestFile"},
                "write 5+",
                ENOSPC,
                CertRequest,
                1,
                "{folder}request cannot be written.",
                "Check the permissions and the free space"},
        WifiRow{{"ReadOnce"}, "read 1", EIO, Status, 0, "", ""},
        WifiRow{{"ReadAlways"}, "read 1+", EIO, Set, 7, Silent, CheckAdapter},
        WifiRow{{"ReadOfACall"},
                "read 1+",
                ENODEV,
                CertList,
                7,
                "The printer does not answer",
                CheckAdapter},
        WifiRow{{"SelectInterrupted"}, "select 1", EINTR, Status, 0, "", ""},
        WifiRow{{"SelectAlways"}, "select 1+", EBADF, Status, 0, "", ""},
        WifiRow{{"SelectOfTheReset"}, "select 1+", EIO, Reset, 0, "", ""},
        WifiRow{{"CloseOnce"}, "close 1", EIO, CertList, 0, "", ""},
        WifiRow{{"CloseAlways"}, "close 1+", EIO, Status, 0, "", ""}),
    support::rowName);

/// Runs a command of zvkwifi whose standard output is a full device.
support::ProcessResult runOnFullOutput(const Words& arguments) {
  Words command = {"-c", "exec \"$0\" \"$@\" >/dev/full", ZVKWIFI};
  command.insert(command.end(), arguments.begin(), arguments.end());
  command.emplace_back("{}");
  return support::runProcess(support::withFasterClock(
      support::printerCommand({"--ssid=home", "--log=/dev/null"}, command, "sh")));
}

TEST(WifiFullOutput, EndsWith1AndAMessage) {
  for (const char* form : {"--quiet", "--json"}) {
    for (const char* command : {"status", "reset"}) {
      SCOPED_TRACE(std::string(command) + " " + form);
      const support::ProcessResult run = runOnFullOutput({command, form});
      EXPECT_EQ(run.status, 1);
      EXPECT_NE(run.err.find("zvkwifi: standard output: No space left on device\n"
                             "Check the permissions and the free space there"),
                std::string::npos)
          << run.err;
    }
  }
}

}  // namespace
