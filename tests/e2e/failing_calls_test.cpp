#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/environment.h"
#include "testing/files.h"
#include "testing/output.h"
#include "testing/printer_run.h"
#include "testing/rows.h"

// Runs of the real program in which a system call fails.

namespace {

using support::PrinterRun;
using support::runWithPrinter;
using Words = std::vector<std::string>;

struct FaultRow : support::Row {
  const char* call;  ///< name and number of the call; "+" means all later calls too
  int error;
  Words arguments;
  int status;
  std::size_t received;  ///< messages that reach the printer; a method call counts as two
};

class FailingCall : public testing::TestWithParam<FaultRow> {
 private:
  support::EnvironmentVariable m_Preload{"LD_PRELOAD", FAILING_CALLS};
  support::EnvironmentVariable m_Fault{
      "ZVK_FAULT", std::string(GetParam().call) + " " + std::to_string(GetParam().error)};
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

}  // namespace
